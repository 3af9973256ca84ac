#include <algorithm>

#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

Emitter::Register Emitter::Window(size_t place) {
    if (place >= MostArguments) Fail(Error::Backend, mLine);
    mFunction->Window = std::max(mFunction->Window, static_cast<uint32_t>(place + 1));
    return static_cast<Register>(WindowBase + place);
}

// Whether an expression runs code of the script or the host, which could change a variable. The library does
// not.
bool Emitter::MayChange(const Expr& expr) const {
    switch (expr.Kind) {
        case ExprKind::Invoke:
        case ExprKind::InvokeDelegate:
        case ExprKind::RaiseEvent:
        case ExprKind::Host:
        case ExprKind::New:
            return true;
        default:
            break;
    }
    if (expr.Left && MayChange(*expr.Left)) return true;
    if (expr.Right && MayChange(*expr.Right)) return true;
    for (const Expr* part : expr.Args)
        if (MayChange(*part)) return true;
    return false;
}

// Numbers from variables, without calls and counted things: such an argument is worked out where it is
// passed.
bool Emitter::IsSimple(const Expr& expr) const {
    if (expr.T->IsReference()) return false;
    switch (expr.Kind) {
        case ExprKind::Literal:
            return true;
        case ExprKind::Variable:
            return true;
        case ExprKind::Unary:
            return IsSimple(*expr.Left);
        case ExprKind::Binary:
            return !expr.T->Is(Kind::Boolean) && IsSimple(*expr.Left) && IsSimple(*expr.Right);
        case ExprKind::Convert:
            return !expr.Left->T->IsReference() && IsSimple(*expr.Left);
        case ExprKind::Missing:
            return !expr.Left || IsSimple(*expr.Left);
        default:
            return false;
    }
}

// Whether a text is in a variable of which nothing is known elsewhere, not even where an exception is caught.
// Such a variable can do without its text during a call that brings it back.
bool Emitter::IsOnlyHere(const Variable& variable) const {
    const bool local = variable.Where == Variable::Storage::Local || !variable.UsedByMethods;
    return variable.T->Is(Kind::String) && IsDirect(variable) && local && mTries == 0;
}

// An element or field whose object and index are worked out once, for the way there and the way back.
void Emitter::PreparePlace(Argument& argument) {
    Expr place = *argument.Value;
    argument.Base = Own(*place.Left);
    Variable base, index;
    base.Index = argument.Base;
    Expr held, at;
    held.Kind = at.Kind = ExprKind::Variable;
    held.T = place.Left->T;
    held.Var = &base;
    at.T = mInteger;
    at.Var = &index;
    if (place.Kind == ExprKind::Subscript) {
        argument.Index = ArrayIndex(place, argument.Base);
        if (!IsTemp(argument.Index)) {
            const Register copy = Temp(mInteger);
            Put(Code::Move, copy, argument.Index);
            argument.Index = copy;
        }
        index.Index = argument.Index;
        place.Args = {&at};
    }
    place.Left = &held;
    argument.Reg = Own(place);
}

void Emitter::PrepareArgument(Argument& argument, bool byRef, bool copies) {
    const Expr& value = *argument.Value;
    if (byRef && value.Kind != ExprKind::Variable) return PreparePlace(argument);
    argument.Simple = !byRef && IsSimple(value) && !copies;
    if (argument.Simple) return;
    argument.Lent = byRef && !copies && value.Kind == ExprKind::Variable && IsOnlyHere(*value.Var);
    argument.Reg = copies ? Own(value) : Any(value);
    argument.Taken =
        IsTemp(argument.Reg) && value.Kind != ExprKind::ReferTo && !(byRef && value.T->IsReference());
}

// First everything that can fail or call is worked out, then the values are put in their places: nothing that
// counts references lies there while something can go wrong.
void Emitter::PassArguments(std::vector<Argument>& arguments, const MethodDecl& decl, size_t first,
                            bool check) {
    size_t changing = arguments.size();  // the last that may change something
    while (changing > 0 && !MayChange(*arguments[changing - 1].Value))
        --changing;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const bool later = at + 1 < changing;
        const bool byRef = at >= first && decl.Params[at - first].ByRef;
        // A structure is passed as a copy of its own.
        const bool structure = arguments[at].Value->T->Is(Kind::Structure);
        PrepareArgument(arguments[at], byRef, structure || (later && at >= first));
    }
    if (check) Put(Code::CheckNil, arguments[0].Reg);
    for (size_t at = 0; at < arguments.size(); ++at)
        if (arguments[at].Simple) Into(*arguments[at].Value, Window(at));
    for (size_t at = 0; at < arguments.size(); ++at) {
        const Argument& argument = arguments[at];
        if (argument.Simple) continue;
        const Type& type = *argument.Value->T;
        Code code = Code::Move;
        if (type.IsReference()) {
            const bool lent = argument.Lent &&
                              std::count_if(arguments.begin(), arguments.end(), [&](const Argument& other) {
                                  return !other.Simple && other.Reg == argument.Reg;
                              }) == 1;
            code = argument.Taken || lent ? Code::ArgTake : Code::ArgRef;
        }
        Put(code, Window(at), argument.Reg);
    }
}

// ByRef: what the method left in its parameter becomes the value of the variable. All parameters are emptied
// first: an element or field that has gone meanwhile fails, and nothing may be left behind then.
void Emitter::TakeBack(const std::vector<Argument>& arguments, const MethodDecl& decl, size_t first) {
    std::vector<std::pair<const Argument*, Register>> others;
    for (size_t at = first; at < arguments.size(); ++at) {
        if (!decl.Params[at - first].ByRef) continue;
        const Expr& place = *arguments[at].Value;
        const bool direct = place.Kind == ExprKind::Variable && IsDirect(*place.Var);
        const Register to = direct ? static_cast<Register>(place.Var->Index) : Temp(place.T);
        Put(place.T->IsReference() ? Code::TakeOut : Code::Move, to, Window(at));
        if (!direct) others.emplace_back(&arguments[at], to);
    }
    for (const auto& [argument, value] : others)
        PutBack(*argument, value);
}

void Emitter::PutBack(const Argument& argument, Register value) {
    const Expr& place = *argument.Value;
    const bool reference = place.T->IsReference();
    if (place.Kind == ExprKind::Variable) {
        PutWide(reference ? Code::SetTopRef : Code::SetTop, value, place.Var->Index);
    } else if (place.Kind == ExprKind::Field) {
        Put(reference ? Code::SetFieldTake : Code::SetField, argument.Base, value, place.Var->Index);
    } else {
        static constexpr Code codes[] = {Code::Set8,  Code::Set8,   Code::Set16,
                                         Code::Set16, Code::Set32,  Code::Set32,
                                         Code::Set64, Code::SetF32, Code::SetElementTake};
        Put(codes[static_cast<size_t>(ElementKindOf(*place.T))], argument.Base, argument.Index, value);
    }
}

// Whether a variable that a method changes by reference lies where the result is wanted.
bool Emitter::GivesBack(const std::vector<Argument>& arguments, const MethodDecl& decl, size_t first,
                        Register to) const {
    for (size_t at = first; at < arguments.size(); ++at) {
        const Expr& place = *arguments[at].Value;
        const bool variable = place.Kind == ExprKind::Variable && IsDirect(*place.Var);
        if (decl.Params[at - first].ByRef && variable && place.Var->Index == to) return true;
    }
    return false;
}

// The result of a call counts more than what the method left in the same variable.
Emitter::Register Emitter::ResultRegister(const std::vector<Argument>& arguments, const Method& method,
                                          size_t first, Register to) {
    const bool shared = !method.Result->Is(Kind::Void) && GivesBack(arguments, *method.Decl, first, to);
    return shared ? Temp(method.Result) : to;
}

void Emitter::TakeResult(const Type* type, Register result, Register to) {
    if (result != to) Put(type->IsReference() ? Code::Take : Code::Move, to, result);
}

void Emitter::EmitCall(const Expr& expr, Register target) {
    const Method& method = *expr.Target;
    std::vector<Argument> arguments;
    const size_t first = expr.Left ? 1 : 0;
    if (expr.Left) arguments.push_back({expr.Left});
    for (const Expr* argument : expr.Args)
        arguments.push_back({argument});
    const bool check = expr.Left && expr.Left->Kind != ExprKind::Self && expr.Left->Kind != ExprKind::Super &&
                       expr.Left->Kind != ExprKind::ReferTo;
    mLine = expr.Line;
    PassArguments(arguments, *method.Decl, first, check);
    mLine = expr.Line;
    const Register to = ResultRegister(arguments, method, first, target);
    if (method.Owner && method.Owner->Is(Kind::Interface)) {
        (void)Window(0);
        Put(Code::CallInterface, to, static_cast<uint32_t>(method.Selector));
    } else if (method.Slot >= 0 && !expr.DirectCall) {
        Put(Code::CallVirtual, to, static_cast<uint32_t>(method.Slot));
    } else {
        PutWide(Code::Call, to, method.Function);
    }
    TakeBack(arguments, *method.Decl, first);
    TakeResult(method.Result, to, target);
}

// A delegate's arguments leave the first place free for the object that the method may belong to.
void Emitter::EmitDelegateCall(const Expr& expr, Register to) {
    const Register delegate = Own(*expr.Left);
    mLine = expr.Line;
    Put(Code::CheckNil, delegate);
    std::vector<Argument> arguments;
    Expr nothing;
    nothing.T = mInteger;
    nothing.Value = int64_t{0};
    arguments.push_back({&nothing, delegate});
    bool changes = false;  // an argument may be the end of what a weak delegate calls
    for (const Expr* argument : expr.Args) {
        arguments.push_back({argument});
        changes |= MayChange(*argument);
    }
    PassArguments(arguments, *expr.Target->Decl, 1, changes);
    mLine = expr.Line;
    const Register result = ResultRegister(arguments, *expr.Target, 1, to);
    Put(Code::CallDelegate, result, delegate);
    TakeBack(arguments, *expr.Target->Decl, 1);
    TakeResult(expr.Target->Result, result, to);
}

// Without anyone who answers, the event's result is empty.
void Emitter::EmitRaiseEvent(const Expr& expr, Register to) {
    Variable handler;
    handler.T = expr.Left->T;
    handler.Index = Own(*expr.Left);
    const Register answered = Temp(mBoolean);
    Put(Code::Move, Window(0), handler.Index);
    PutWide(Code::CallNative, answered, NativeIndex(Native(".Handled")));
    Label none, done;
    JumpWide(Code::JumpUnless, answered, none);
    Expr held;
    held.Kind = ExprKind::Variable;
    held.T = handler.T;
    held.Var = &handler;
    Expr call = expr;
    call.Left = &held;
    EmitDelegateCall(call, to);
    JumpTo(done);
    Place(none);
    if (!expr.T->Is(Kind::Void)) Initialise(expr.T, to);
    Place(done);
}

// The library borrows its arguments: they stay where they are and only their addresses are passed.
void Emitter::PassNative(const std::vector<Expr*>& values) {
    std::vector<Register> registers(values.size());
    std::vector<bool> simple(values.size());
    for (size_t at = 0; at < values.size(); ++at) {
        const Expr& value = *values[at];
        if (!value.T) continue;  // a number that is missing
        bool later = false;
        for (size_t other = at + 1; other < values.size(); ++other)
            later |= values[other]->T && MayChange(*values[other]);
        simple[at] = IsSimple(value) && !later;
        if (!simple[at]) registers[at] = later ? Own(value) : Any(value);
    }
    for (size_t at = 0; at < values.size(); ++at) {
        const Register place = Window(at);
        if (!values[at]->T) {
            Slot missing;
            missing.I = INT64_MIN;
            PutWide(Code::LoadConst, place, AddConstant(missing));
        } else if (simple[at]) {
            Into(*values[at], place);
        } else {
            Put(Code::Move, place, registers[at]);
        }
    }
}

void Emitter::EmitNative(const Expr& expr, Register to) {
    // A text's length needs no call.
    if (StringView(expr.Function->Name) == "Len") {
        Put(Code::Length, to, Any(*expr.Args[0]));
        return;
    }
    PassNative(expr.Args);
    (void)Window(0);
    mLine = expr.Line;
    const bool nothing = expr.T->Is(Kind::Void);
    PutWide(!nothing && expr.T->IsReference() ? Code::CallNativeRef : Code::CallNative,
            nothing ? Temp(mInteger) : to, NativeIndex(*expr.Function));
}

void Emitter::EmitHost(const Expr& expr, Register to) {
    PassNative(expr.Args);
    (void)Window(0);
    mLine = expr.Line;
    const bool reference = !expr.T->Is(Kind::Void) && expr.T->IsReference();
    PutWide(reference ? Code::CallHostRef : Code::CallHost, expr.T->Is(Kind::Void) ? Temp(mInteger) : to,
            expr.HostIndex);
}

void Emitter::EmitNew(const Expr& expr, Register to) {
    const Register object = Temp(expr.T);
    PutWide(Code::New, object, expr.Other->Index);
    if (const auto start = mStarts.find(expr.Other); start != mStarts.end()) {
        Put(Code::ArgRef, Window(0), object);
        PutWide(Code::Call, 0, start->second);
    }
    if (expr.Left) {
        const Register outer = mNewObject;
        mNewObject = object;
        Into(*expr.Left, 0);
        mNewObject = outer;
    }
    Put(Code::Take, to, object);
}

void Emitter::EmitArray(const Expr& expr, Register to) {
    const Register array = Temp(expr.T);
    PutWide(Code::LoadInt, Window(0), static_cast<int64_t>(expr.Args.size()) - 1);
    Put(Code::NewArray, array, Window(0), ArrayShapeOf(expr.T));
    static constexpr Code codes[] = {Code::Set8,  Code::Set8,  Code::Set16,  Code::Set16,         Code::Set32,
                                     Code::Set32, Code::Set64, Code::SetF32, Code::SetElementTake};
    const Code code = codes[static_cast<size_t>(ElementKindOf(*expr.T->Element))];
    for (size_t at = 0; at < expr.Args.size(); ++at) {
        const size_t mark = Mark();
        const Register value = Own(*expr.Args[at]);
        const Register index = Temp(mInteger);
        PutWide(Code::LoadInt, index, static_cast<int64_t>(at));
        Put(code, array, index, value);
        FreeTemps(mark);
    }
    Put(Code::Take, to, array);
}

Emitter::Register Emitter::ArrayIndex(const Expr& expr, Register array) {
    if (expr.Args.size() == 1) return Any(*expr.Args[0]);
    std::vector<Register> values;
    for (const Expr* index : expr.Args)
        values.push_back(Own(*index));
    for (size_t place = 0; place < values.size(); ++place)
        Put(Code::Move, Window(place), values[place]);
    const Register flat = Temp(mInteger);
    Put(Code::FlatIndex, flat, array, Window(0));
    return flat;
}

void Emitter::EmitSubscript(const Expr& expr, Register to, bool place) {
    bool changes = false;
    for (const Expr* index : expr.Args)
        changes |= MayChange(*index);
    const Register array = changes ? Own(*expr.Left) : Any(*expr.Left);
    const Register index = ArrayIndex(expr, array);
    static constexpr Code codes[] = {Code::GetI8,  Code::GetU8, Code::GetI16, Code::GetU16,    Code::GetI32,
                                     Code::GetU32, Code::Get64, Code::GetF32, Code::GetElement};
    const bool structure = expr.T->Is(Kind::Structure);
    const Code code = codes[static_cast<size_t>(ElementKindOf(*expr.T))];
    Put(structure ? Code::GetElementStruct : code, to, array, index);
    if (structure && !place) Put(Code::CopyStruct, to, to);
}

void Emitter::EmitField(const Expr& expr, Register to, bool place) {
    const Register object = Any(*expr.Left);
    const bool structure = expr.T->Is(Kind::Structure);
    const Code code = structure               ? Code::GetFieldStruct
                      : expr.T->IsReference() ? Code::GetFieldRef
                                              : Code::GetField;
    Put(code, to, object, expr.Var->Index);
    if (structure && !place) Put(Code::CopyStruct, to, to);
}

void Emitter::EmitAddress(const Expr& expr, Register to) {
    const Method& method = *expr.Target;
    DelegateShape shape;
    shape.T = expr.T;
    shape.Weak = expr.Weak;
    shape.Index = method.Function;
    if (expr.Left) {
        shape.Calls = DelegateShape::How::Instance;
        if (method.Owner->Is(Kind::Interface)) {
            shape.Calls = DelegateShape::How::Interface;
            shape.Index = static_cast<uint32_t>(method.Selector);
        } else if (method.Slot >= 0 && expr.Left->Kind != ExprKind::Super) {
            shape.Calls = DelegateShape::How::Virtual;
            shape.Index = static_cast<uint32_t>(method.Slot);
        }
    }
    mProgram.Delegates.push_back(shape);
    const Register target = expr.Left ? Any(*expr.Left) : to;
    Put(Code::MakeDelegate, to, target, static_cast<uint32_t>(mProgram.Delegates.size() - 1));
}

// --- Conversions ---

void Emitter::EmitNumber(const Type& from, const Type& to, Register value, Register into) {
    const auto move = [&](Code code) {
        Put(code, into, value);
    };
    if (to.IsReal()) {
        if (!from.IsReal())
            move(from.Is(Kind::UInt64) ? Code::UIntToReal : Code::IntToReal);
        else if (into != value)
            move(Code::Move);
        if (to.Is(Kind::Single) && !from.Is(Kind::Single)) Put(Code::RoundF, into, into);
        return;
    }
    if (from.IsReal()) {
        move(to.Is(Kind::UInt64) ? Code::RealToUInt : Code::RealToInt);
        value = into;
    }
    switch (to.K) {
        case Kind::Int8:
            return move(Code::NarrowI8);
        case Kind::Int16:
            return move(Code::NarrowI16);
        case Kind::Int32:
            return move(Code::NarrowI32);
        case Kind::UInt8:
            return move(Code::NarrowU8);
        case Kind::UInt16:
            return move(Code::NarrowU16);
        case Kind::UInt32:
        case Kind::Color:
            return move(Code::NarrowU32);
        case Kind::Boolean: {
            const Register zero = Temp(mInteger);
            PutWide(Code::LoadInt, zero, 0);
            Put(Code::NeI, into, value, zero);
            return;
        }
        default:
            if (into != value) move(Code::Move);
    }
}

void Emitter::EmitConvert(const Expr& expr, Register to) {
    const Type &from = *expr.Left->T, &type = *expr.T;
    if (from.Is(Kind::Nil)) {
        Put(Code::LoadNull, to);
    } else if (type.Is(Kind::Variant)) {
        Put(Code::Box, to, Any(*expr.Left), BoxType(&from));
    } else if (from.Is(Kind::Variant)) {
        Put(Code::Unbox, to, Any(*expr.Left), BoxType(&type));
    } else if (!type.IsReference()) {
        EmitNumber(from, type, Any(*expr.Left), to);
    } else if (type.IsObject() && !from.ComesFrom(&type) && type.Index != 0) {
        Put(Code::Cast, to, Any(*expr.Left), type.Index);
    } else {
        Put(Code::MoveRef, to, Any(*expr.Left));
    }
}

}  // namespace sorbel::script
