#include "scripting/compiler/Emitter.h"

#include <algorithm>
#include <iterator>

namespace sorbel::script {

Emitter::Emitter(Tree& tree, Names& names, Types& types, Checked& checked, Program& program)
    : mTree(tree), mNames(names), mTypes(types), mChecked(checked), mProgram(program) {
    mInteger = types.Of(Kind::Int64);
    mBoolean = types.Of(Kind::Boolean);
}

void Emitter::Emit() {
    if (mChecked.TopVariables.size() > MostRegisters / 2) Fail(Error::Backend, 1);
    for (size_t index = 0; index < mChecked.TopVariables.size(); ++index)
        mChecked.TopVariables[index]->Index = static_cast<uint32_t>(index);
    mProgram.Functions.resize(1 + mChecked.Bodies.size());
    EmitClasses();
    EmitMain();
    for (Method* method : mChecked.Bodies)
        EmitMethod(*method);
}

void Emitter::EmitClasses() {
    mProgram.Classes.resize(mChecked.Classes.size());
    for (Type* type : mChecked.Classes)
        EmitClass(*type);
    std::vector<std::vector<const Checked::Implementation*>> implementations(mChecked.Classes.size());
    for (const auto& implementation : mChecked.Implementations)
        implementations[implementation.Class->Index].push_back(&implementation);
    std::vector<const Type*> nearest(mChecked.Classes.size());  // that implements something: itself, or above
    const auto above = [&nearest](const Type* type) {
        return type->Base ? nearest[type->Base->Index] : nullptr;
    };
    for (const Type* type : mChecked.Classes) {
        nearest[type->Index] = implementations[type->Index].empty() ? above(type) : type;
        auto& bySelector = mProgram.Classes[type->Index].BySelector;
        // Heirs take over the interfaces of their superclass; a method of their own stands in the place of
        // the one that was found there.
        for (const Type* cls = nearest[type->Index]; cls; cls = above(cls))
            for (const auto* implementation : implementations[cls->Index]) {
                const Method* found = implementation->Found;
                const Method* method =
                    found->Slot >= 0 ? type->Virtual[static_cast<size_t>(found->Slot)] : found;
                bySelector.try_emplace(implementation->Wanted->Selector, method->Function);
            }
    }
}

void Emitter::EmitClass(Type& type) {
    ClassInfo& info = mProgram.Classes[type.Index];
    info.T = &type;
    info.Base = type.Base ? &mProgram.Classes[type.Base->Index] : nullptr;
    info.IsStructure = type.Is(Kind::Structure);
    mTree.Room.Need((type.Fields.size() + type.Virtual.size()) * sizeof(void*),
                    type.Decl ? type.Decl->Line : 1);
    bool starts = false;
    for (const Variable* field : type.Fields) {
        info.ReferenceField.push_back(field->T->IsReference());
        const bool structure = field->T->Is(Kind::Structure);
        info.StructureField.push_back(structure ? &mProgram.Classes[field->T->Index] : nullptr);
        if (info.IsStructure && field->T->Is(Kind::Array)) {
            const uint32_t shape = ArrayShapeOf(field->T);
            const int64_t bound = std::get<int64_t>(field->Decl->Bounds[0]->Value);
            info.FixedArrays.push_back({field->Index, mProgram.Arrays[shape], bound});
        }
        starts |= field->T->Is(Kind::Array) || (field->Decl && field->Decl->Init);
    }
    for (const Method* method : type.Virtual)
        info.Virtual.push_back(method->Function);
    std::vector<uint32_t> own = {type.Index};
    for (const Type* part : type.Reached)
        own.push_back(part->Index);
    std::sort(own.begin(), own.end());
    static const std::vector<uint32_t> none;
    const std::vector<uint32_t>& inherited = info.Base ? info.Base->Ancestors : none;
    std::set_union(own.begin(), own.end(), inherited.begin(), inherited.end(),
                   std::back_inserter(info.Ancestors));
    if (type.Destructor) info.Destructor = static_cast<int>(type.Destructor->Function);
    mProgram.ExceptionClasses.emplace(Fold(type.Name), type.Index);
    if (starts && type.Is(Kind::Class)) EmitClassStart(type);
}

// A function that gives the fields of a new object their first values.
void Emitter::EmitClassStart(Type& type) {
    const auto index = static_cast<uint32_t>(mProgram.Functions.size());
    mProgram.Functions.emplace_back();
    mStarts.emplace(&type, index);
    mMethod = nullptr;
    EmitFunction(mProgram.Functions[index], type.Decl ? type.Decl->Line : 0, [&] {
        const Register self = NewRegister(&type);
        for (const Variable* field : type.Fields) {
            const bool array = field->T->Is(Kind::Array);
            if (!field->Decl || (!array && !field->Decl->Init)) continue;
            const size_t mark = Mark();
            const Register value = Temp(field->T);
            if (array)
                MakeArray(field->T, value, field->Decl->Bounds);
            else
                Into(*field->Decl->Init, value);
            Put(field->T->IsReference() ? Code::SetFieldTake : Code::SetField, self, value, field->Index);
            FreeTemps(mark);
        }
        Put(Code::Return);
    });
}

void Emitter::EmitMain() {
    mMethod = nullptr;
    mIsMain = true;
    EmitFunction(mProgram.Functions[0], 1, [&] {
        for (const Variable* variable : mChecked.TopVariables)
            NewRegister(variable->T);
        // A method may use a variable before the main program reaches its line.
        for (const Variable* variable : mChecked.TopVariables)
            if (!variable->IsProperty) Initialise(variable->T, static_cast<Register>(variable->Index));
        for (const Variable* variable : mChecked.Initialised)
            EmitVariable(*variable->Decl);
        CollectLabelDepths(mTree.Main, 0);
        EmitBlock(mTree.Main, false);
        Put(Code::Return);
    });
    mIsMain = false;
}

void Emitter::EmitMethod(Method& method) {
    mMethod = &method;
    Function& function = mProgram.Functions[method.Function];
    function.Name = mNames.Spelling(method.Decl->Name);
    function.ResultIsReference = method.Result->IsReference();
    function.InLibrary = method.Decl->InLibrary;
    EmitFunction(function, method.Decl->Line, [&] {
        mScopes.emplace_back();
        if (method.IsInstance()) NewRegister(method.Owner);
        for (const Parameter& parameter : method.Decl->Params)
            parameter.Var->Index = NewRegister(parameter.T);
        CollectLabelDepths(method.Decl->Body, 0);
        EmitBlock(method.Decl->Body, false);
        EmitDefaultReturn(method.Result);
    });
}

void Emitter::EmitDefaultReturn(const Type* result) {
    if (result->Is(Kind::Void)) {
        Put(Code::Return);
        return;
    }
    const Register value = Temp(result);
    Initialise(result, value);
    Put(result->IsReference() ? Code::ReturnTake : Code::ReturnValue, value);
}

// Writes the code; if a jump turns out too long for its operand, once more with long jumps.
void Emitter::EmitFunction(Function& function, uint32_t line, const std::function<void()>& body) {
    for (const bool far : {false, true}) {
        function.Code.clear();
        function.Lines.clear();
        function.Handlers.clear();
        function.Window = 0;
        mFunction = &function;
        mFar = far;
        mTooFar = false;
        mLine = line;
        mRegisters = 0;
        mReferences.clear();
        mFree.clear();
        mTemps.clear();
        mTaken.clear();
        mScopes.clear();
        mScopes.emplace_back();
        mOpen.clear();
        mFinallies.clear();
        mTries = 0;
        mHeld.clear();
        mHolds = false;
        mLabels.clear();
        body();
        if (!mTooFar) break;
    }
    FinishFunction(line);
}

// Now the number of registers is known, so the places behind them are too.
void Emitter::FinishFunction(uint32_t line) {
    if (mRegisters > MostRegisters) Fail(Error::Backend, line);
    mFunction->Registers = mRegisters;
    const auto fix = [&](uint16_t& operand) {
        if (operand >= WindowBase) operand = static_cast<uint16_t>(operand - WindowBase + mRegisters);
    };
    for (Instruction& instruction : mFunction->Code) {
        const char* operands = Operands(instruction.What);
        if (operands[0] == 'r') fix(instruction.A);
        if (operands[1] == 'r') fix(instruction.B);
        if (operands[1] && operands[2] == 'r') fix(instruction.C);
    }
    ArrangeHandlers();
    mFunction->References.clear();
    mFunction->Fresh.clear();
    mFunction->GivenBack.clear();
    const uint32_t self = mMethod && mMethod->IsInstance() ? 1 : 0;
    const size_t parameters = mMethod ? mMethod->Decl->Params.size() + self : mIsMain ? 0 : 1;
    mFunction->Parameters = static_cast<uint32_t>(parameters);
    for (const auto& [reg, type] : mReferences) {
        const bool parameter = reg < parameters;
        const bool byRef = parameter && mMethod && reg >= self && mMethod->Decl->Params[reg - self].ByRef;
        (byRef ? mFunction->GivenBack : mFunction->References).push_back(static_cast<uint16_t>(reg));
        if (!parameter) mFunction->Fresh.push_back(static_cast<uint16_t>(reg));
    }
}

// --- Operations ---

// Whatever does not fit in its operand is refused here, so that no operation ever means another thing.
uint32_t Emitter::Put(Code code, uint32_t a, uint32_t b, uint32_t c) {
    if (std::max({a, b, c}) > UINT16_MAX) Fail(Error::Backend, mLine);
    mTree.Room.Need(sizeof(Instruction) + sizeof(uint32_t), mLine);
    mFunction->Code.push_back(
        {code, static_cast<uint16_t>(a), static_cast<uint16_t>(b), static_cast<uint16_t>(c)});
    mFunction->Lines.push_back(mLine);
    return static_cast<uint32_t>(mFunction->Code.size() - 1);
}

uint32_t Emitter::PutWide(Code code, uint32_t a, int64_t wide) {
    if (wide < INT32_MIN || wide > INT32_MAX) Fail(Error::Backend, mLine);
    const uint32_t place = Put(code, a);
    mFunction->Code[place].SetWide(static_cast<int32_t>(wide));
    return place;
}

void Emitter::Bind(uint32_t use, int64_t place) {
    Instruction& instruction = mFunction->Code[use];
    const int64_t distance = place - use - 1;
    if (Operands(instruction.What)[1] == 'w') {
        if (distance < INT32_MIN || distance > INT32_MAX) Fail(Error::Backend, mLine);
        instruction.SetWide(static_cast<int32_t>(distance));
        return;
    }
    if (distance < INT16_MIN || distance > INT16_MAX) mTooFar = true;
    instruction.C = static_cast<uint16_t>(distance);
}

void Emitter::Place(Label& label) {
    label.Place = static_cast<int64_t>(mFunction->Code.size());
    for (const uint32_t use : label.Uses)
        Bind(use, label.Place);
    label.Uses.clear();
}

void Emitter::JumpTo(Label& label) {
    JumpWide(Code::Jump, 0, label);
}

void Emitter::JumpWide(Code code, Register a, Label& label) {
    const uint32_t use = PutWide(code, a, 0);
    if (label.Place >= 0)
        Bind(use, label.Place);
    else
        label.Uses.push_back(use);
}

void Emitter::JumpShort(Code code, uint32_t a, uint32_t b, Label& label) {
    if (mFar) {
        Put(code, a, b, 1);
        PutWide(Code::Jump, 0, 1);
        return JumpTo(label);
    }
    const uint32_t use = Put(code, a, b);
    if (label.Place >= 0)
        Bind(use, label.Place);
    else
        label.Uses.push_back(use);
}

// --- Registers ---

namespace {

// Objects of a block go at its end; a text that stays a little longer is noticed by nobody.
bool GoesAtOnce(const Type& type) {
    return type.IsReference() && !type.Is(Kind::String);
}

}  // namespace

// A register that counts references serves one type only: whatever way control takes, what is in it is of
// that type. Other registers share one list.
Emitter::Register Emitter::NewRegister(const Type* type) {
    const bool reference = type->IsReference();
    std::vector<Register>& free = mFree[reference ? type : nullptr];
    if (free.empty()) {
        if (mRegisters >= MostRegisters) Fail(Error::Backend, mLine);
        if (reference) mReferences.emplace_back(mRegisters, type);
        free.push_back(static_cast<Register>(mRegisters++));
    }
    const Register reg = free.back();
    free.pop_back();
    if (GoesAtOnce(*type)) mTaken.push_back(reg);
    return reg;
}

void Emitter::FreeRegister(Register reg, const Type* type) {
    mFree[type->IsReference() ? type : nullptr].push_back(reg);
}

Emitter::Register Emitter::Temp(const Type* type) {
    const Register reg = NewRegister(type);
    mTemps.push_back({reg, type});
    return reg;
}

// What a statement needed in between is let go of at its end, so that objects go when they are expected to.
void Emitter::FreeTemps(size_t mark) {
    while (mTemps.size() > mark) {
        const TempRegister temp = mTemps.back();
        mTemps.pop_back();
        if (temp.T->IsReference()) Put(Code::LoadNull, temp.Reg);
        FreeRegister(temp.Reg, temp.T);
    }
}

bool Emitter::HasReferences(size_t mark) const {
    for (size_t at = mark; at < mTemps.size(); ++at)
        if (mTemps[at].T->IsReference()) return true;
    return false;
}

bool Emitter::IsTemp(Register reg) const {
    for (size_t at = mTemps.size(); at-- > 0;)
        if (mTemps[at].Reg == reg) return true;
    return false;
}

void Emitter::DeclareVariable(Variable& variable) {
    variable.Index = NewRegister(variable.T);
    mScopes.back().push_back(&variable);
}

void Emitter::CloseScope() {
    ReleaseScopes(mScopes.size(), mScopes.size() - 1);
    for (const Variable* variable : mScopes.back())
        FreeRegister(static_cast<Register>(variable->Index), variable->T);
    mScopes.pop_back();
}

// Lets go of what the variables hold of the scopes above `downTo`, the innermost first.
void Emitter::ReleaseScopes(size_t from, size_t downTo) {
    while (from > downTo)
        for (const Variable* variable : mScopes[--from])
            if (GoesAtOnce(*variable->T)) Put(Code::LoadNull, variable->Index);
}

// An exception left a block somewhere: whatever its registers held since the mark goes.
void Emitter::ReleaseTaken(size_t mark) {
    std::vector<Register> taken(mTaken.begin() + static_cast<ptrdiff_t>(mark), mTaken.end());
    std::sort(taken.begin(), taken.end());
    taken.erase(std::unique(taken.begin(), taken.end()), taken.end());
    for (const Register reg : taken)
        Put(Code::LoadNull, reg);
}

bool Emitter::IsDirect(const Variable& variable) const {
    return variable.Where == Variable::Storage::Local ||
           (variable.Where == Variable::Storage::Top && mIsMain);
}

void Emitter::Initialise(const Type* type, Register to) {
    if (type->Is(Kind::Array))
        MakeArray(type, to, {});
    else if (type->Is(Kind::Structure))
        PutWide(Code::New, to, type->Index);
    else if (type->IsReference())
        Put(Code::LoadNull, to);
    else
        PutWide(Code::LoadInt, to, 0);
}

void Emitter::MakeArray(const Type* type, Register to, const std::vector<Expr*>& bounds) {
    const size_t mark = Mark();
    std::vector<Register> values;
    for (const Expr* bound : bounds)
        values.push_back(Own(*bound));
    for (int place = 0; place < type->Rank; ++place) {
        const Register slot = Window(static_cast<size_t>(place));
        if (bounds.empty())
            PutWide(Code::LoadInt, slot, -1);
        else
            Put(Code::Move, slot, values[static_cast<size_t>(place)]);
    }
    Put(Code::NewArray, to, Window(0), ArrayShapeOf(type));
    FreeTemps(mark);
}

uint32_t Emitter::AddConstant(Slot value) {
    mProgram.Constants.push_back(value);
    return static_cast<uint32_t>(mProgram.Constants.size() - 1);
}

// A long text that is used many times is looked at once.
uint32_t Emitter::AddText(const ConstantText& text) {
    const auto [known, unseen] = mTextPlaces.try_emplace(text.View().data(), 0);
    if (!unseen) return known->second;
    const auto [place, added] = mTexts.try_emplace(text.View(), static_cast<uint32_t>(mProgram.Texts.size()));
    if (added) mProgram.Texts.push_back(text);
    return known->second = place->second;
}

uint32_t Emitter::BoxType(const Type* type) {
    const auto [place, added] = mBoxTypes.try_emplace(type, static_cast<uint32_t>(mProgram.BoxTypes.size()));
    if (added) mProgram.BoxTypes.push_back(type);
    return place->second;
}

uint32_t Emitter::ArrayShapeOf(const Type* type) {
    const auto [place, added] = mShapes.try_emplace(type, static_cast<uint32_t>(mProgram.Arrays.size()));
    if (!added) return place->second;
    ArrayShape shape;
    shape.T = type;
    shape.Rank = static_cast<uint32_t>(type->Rank);
    shape.Element = ElementKindOf(*type->Element);
    if (type->Element->Is(Kind::Structure)) shape.Structure = &mProgram.Classes[type->Element->Index];
    mProgram.Arrays.push_back(shape);
    return place->second;
}

ElementKind ElementKindOf(const Type& type) {
    switch (type.K) {
        case Kind::Boolean:
        case Kind::UInt8:
            return ElementKind::U8;
        case Kind::Int8:
            return ElementKind::I8;
        case Kind::Int16:
            return ElementKind::I16;
        case Kind::UInt16:
            return ElementKind::U16;
        case Kind::Int32:
            return ElementKind::I32;
        case Kind::UInt32:
        case Kind::Color:
            return ElementKind::U32;
        case Kind::Single:
            return ElementKind::F32;
        case Kind::Int64:
        case Kind::UInt64:
        case Kind::Double:
        case Kind::Ptr:
        case Kind::Enum:
            return ElementKind::I64;
        default:
            return ElementKind::Reference;
    }
}

}  // namespace sorbel::script
