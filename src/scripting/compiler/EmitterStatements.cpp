#include <algorithm>

#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

void Emitter::CollectLabelDepths(const Block& block, size_t depth) {
    for (const Stmt* statement : block) {
        if (statement->Kind == StmtKind::Label) mLabels[statement->Name].Finallies = depth;
        const bool guarded = statement->Kind == StmtKind::Try && statement->HasElse;
        for (const Branch& branch : statement->Branches)
            CollectLabelDepths(branch.Body, depth + guarded);
        CollectLabelDepths(statement->Body, depth + guarded);
        CollectLabelDepths(statement->Else, depth);
    }
}

void Emitter::EmitBlock(const Block& block, bool scope) {
    if (scope) OpenScope();
    for (const Stmt* statement : block) {
        mLine = statement->Line;
        const size_t mark = Mark();
        EmitStatement(*statement);
        FreeTemps(mark);
    }
    if (scope) CloseScope();
}

// What `a += b` needs to know once, for the time of the statement.
void Emitter::EmitKept(const Stmt& statement) {
    for (const VariableDecl& kept : statement.Vars) {
        const size_t mark = Mark();
        DeclareVariable(*kept.Var);
        Into(*kept.Init, static_cast<Register>(kept.Var->Index), true);
        FreeTemps(mark);
    }
}

void Emitter::EmitStatement(const Stmt& statement) {
    if (statement.Change == Op::None) return EmitOne(statement);
    OpenScope();
    EmitKept(statement);
    const size_t mark = Mark();
    EmitOne(statement);
    FreeTemps(mark);
    CloseScope();
}

void Emitter::EmitOne(const Stmt& statement) {
    switch (statement.Kind) {
        case StmtKind::Expression: {
            const bool value = !statement.A->T->Is(Kind::Void);
            Into(*statement.A, value ? Temp(statement.A->T) : Register{0});
            return;
        }
        case StmtKind::Assign:
            return EmitAssign(*statement.A, *statement.B);
        case StmtKind::Dim:
            return EmitDim(statement);
        case StmtKind::Const:
        case StmtKind::Using:
        case StmtKind::AddHandler:  // a call since it was checked
        case StmtKind::RemoveHandler:
            return;
        case StmtKind::If:
            return EmitIf(statement);
        case StmtKind::Select:
            return EmitSelect(statement);
        case StmtKind::For:
            return EmitLoop(statement, &Emitter::EmitFor);
        case StmtKind::ForEach:
            return EmitLoop(statement, &Emitter::EmitForEach);
        case StmtKind::While:
            return EmitLoop(statement, &Emitter::EmitWhile);
        case StmtKind::Do:
            return EmitLoop(statement, &Emitter::EmitDo);
        case StmtKind::Exit:
        case StmtKind::Continue:
            return EmitLeave(statement);
        case StmtKind::Goto: {
            NamedLabel& label = mLabels[statement.Name];
            LeaveBlocks(label.Finallies, mScopes.size());
            return JumpTo(label.Target);
        }
        case StmtKind::Label:
            return Place(mLabels[statement.Name].Target);
        case StmtKind::Return:
            return EmitReturn(statement.A);
        case StmtKind::Try:
            return EmitTry(statement);
        case StmtKind::Raise:
            Put(Code::Raise, Any(*statement.A));
            return;
        case StmtKind::ReDim:
            return EmitReDim(statement);
    }
}

void Emitter::EmitDim(const Stmt& statement) {
    for (const VariableDecl& decl : statement.Vars) {
        mLine = decl.Line;
        if (!statement.IsStatic) {
            if (decl.Var->Where == Variable::Storage::Local) DeclareVariable(*decl.Var);
            EmitVariable(decl);
            continue;
        }
        // The first value is given once only.
        Expr flag;
        flag.Kind = ExprKind::Variable;
        flag.T = mBoolean;
        flag.Var = mChecked.StaticFlags.at(decl.Var);
        Expr yes;
        yes.Value = true;
        yes.T = mBoolean;
        Label done;
        JumpOn(flag, true, done);
        EmitVariable(decl);
        EmitAssign(flag, yes);
        Place(done);
    }
}

// Gives a declared variable its first value, anew each time its line is reached.
void Emitter::EmitVariable(const VariableDecl& decl) {
    const Variable& variable = *decl.Var;
    const bool direct = IsDirect(variable);
    const size_t mark = Mark();
    const Register to = direct ? static_cast<Register>(variable.Index) : Temp(variable.T);
    if (decl.Init && direct && IsSimple(*decl.Init)) {
        Into(*decl.Init, to);
    } else if (decl.Init) {
        // The value may refer to what the variable held the round before.
        Into(*decl.Init, to);
    } else if (variable.T->Is(Kind::Array)) {
        MakeArray(variable.T, to, decl.Bounds);
    } else {
        Initialise(variable.T, to);
    }
    if (!direct) PutWide(variable.T->IsReference() ? Code::SetTopRef : Code::SetTop, to, variable.Index);
    FreeTemps(mark);
}

namespace {

// Whether two expressions look as if they were the same place.
bool SamePlace(const Expr* a, const Expr* b) {
    if (!a || !b) return a == b;
    const bool same = a->Kind == b->Kind && a->T == b->T && a->Var == b->Var && a->Operator == b->Operator &&
                      a->Value == b->Value && a->Function == b->Function && a->Args.size() == b->Args.size();
    if (!same || !SamePlace(a->Left, b->Left) || !SamePlace(a->Right, b->Right)) return false;
    for (size_t at = 0; at < a->Args.size(); ++at)
        if (!SamePlace(a->Args[at], b->Args[at])) return false;
    return true;
}

// The parts of a sum of texts, from the left.
std::vector<const Expr*> TermsOf(const Expr& value) {
    std::vector<const Expr*> terms;
    const Expr* first = &value;
    for (; first->Kind == ExprKind::Binary && first->Operator == Op::Add && first->T->Is(Kind::String);
         first = first->Left)
        terms.push_back(first->Right);
    terms.push_back(first);
    std::reverse(terms.begin(), terms.end());
    return terms;
}

}  // namespace

// `place = place + a + b`: a text can grow where it is only while nobody else has it. So what is added is put
// together first, and then the place lets go of its text until the longer one is put there. Nothing else of
// the script runs meanwhile, and the place is written to in any case.
bool Emitter::EmitAppend(const Expr& target, const Expr& value) {
    std::vector<const Expr*> added = TermsOf(value);
    const Expr& first = *added.front();
    added.erase(added.begin());
    const bool changes = MayChange(value);
    const bool direct = target.Kind == ExprKind::Variable && IsDirect(*target.Var);
    if (added.empty() || !SamePlace(&target, &first)) return false;
    if (direct && added.size() == 1 && !changes) return false;
    if (direct) {
        const auto variable = static_cast<Register>(target.Var->Index);
        if (!changes) {
            Put(Code::Concat, variable, variable, Joined(added));
            return true;
        }
        const Register before = Own(target);
        const Register rest = Joined(added);
        Put(Code::Take, variable, before);
        Put(Code::Concat, variable, variable, rest);
        return true;
    }
    Register holder = 0, index = 0;
    if (target.Kind != ExprKind::Variable) holder = changes ? Own(*target.Left) : Any(*target.Left);
    if (target.Kind == ExprKind::Subscript) {
        index = ArrayIndex(target, holder);
        if (changes && !IsTemp(index)) {
            const Register copy = Temp(mInteger);
            Put(Code::Move, copy, index);
            index = copy;
        }
    }
    const auto write = [&](Register text) {
        if (target.Kind == ExprKind::Variable)
            PutWide(Code::SetTopRef, text, target.Var->Index);
        else if (target.Kind == ExprKind::Field)
            Put(Code::SetFieldTake, holder, text, target.Var->Index);
        else
            Put(Code::SetElementTake, holder, index, text);
    };
    const Register text = Own(first);
    const Register rest = Joined(added);
    const Register nothing = Temp(target.T);
    Put(Code::LoadNull, nothing);
    write(nothing);
    Put(Code::Concat, text, text, rest);
    write(text);
    return true;
}

// Texts one behind the other, in one register.
Emitter::Register Emitter::Joined(const std::vector<const Expr*>& texts) {
    const auto changes = [this](const Expr* text) {
        return MayChange(*text);
    };
    const bool changed = std::any_of(texts.begin() + 1, texts.end(), changes);
    Register joined = changed ? Own(*texts[0]) : Any(*texts[0]);
    for (size_t at = 1; at < texts.size(); ++at) {
        const Register right = Any(*texts[at]);
        const Register to = IsTemp(joined) ? joined : Temp(texts[0]->T);
        Put(Code::Concat, to, joined, right);
        joined = to;
    }
    return joined;
}

void Emitter::EmitAssign(const Expr& target, const Expr& value) {
    if (target.T->Is(Kind::String) && EmitAppend(target, value)) return;
    if (target.Kind == ExprKind::Variable && IsDirect(*target.Var))
        return Into(value, static_cast<Register>(target.Var->Index));
    if (target.Kind == ExprKind::Variable) {
        const Register reg = target.T->Is(Kind::Structure) ? Own(value) : Any(value);
        PutWide(target.T->IsReference() ? Code::SetTopRef : Code::SetTop, reg, target.Var->Index);
        return;
    }
    const bool changes = MayChange(value);
    if (target.Kind == ExprKind::Field) {
        const Register object = changes ? Own(*target.Left) : Any(*target.Left);
        const bool owned = target.T->Is(Kind::Structure) || (target.T->IsReference() && MayChange(value));
        const Register reg = owned ? Own(value) : Any(value);
        const bool take = target.T->IsReference() && IsTemp(reg);
        Put(take                      ? Code::SetFieldTake
            : target.T->IsReference() ? Code::SetFieldRef
                                      : Code::SetField,
            object, reg, target.Var->Index);
        return;
    }
    const Register array = changes ? Own(*target.Left) : Any(*target.Left);
    Register index = ArrayIndex(target, array);
    if (changes && !IsTemp(index)) {
        const Register copy = Temp(mInteger);
        Put(Code::Move, copy, index);
        index = copy;
    }
    const Register reg = target.T->Is(Kind::Structure) ? Own(value) : Any(value);
    const bool take = target.T->IsReference() && IsTemp(reg);
    static constexpr Code codes[] = {Code::Set8,  Code::Set8,  Code::Set16,  Code::Set16,     Code::Set32,
                                     Code::Set32, Code::Set64, Code::SetF32, Code::SetElement};
    const Code code = codes[static_cast<size_t>(ElementKindOf(*target.T))];
    Put(take ? Code::SetElementTake : code, array, index, reg);
}

void Emitter::EmitIf(const Stmt& statement) {
    Label after;
    for (size_t at = 0; at < statement.Branches.size(); ++at) {
        const Branch& branch = statement.Branches[at];
        Label next;
        mLine = branch.Line;
        JumpIfNot(*branch.Condition, next);
        EmitBlock(branch.Body);
        const bool last = at + 1 == statement.Branches.size() && statement.Else.empty();
        if (!last) JumpTo(after);
        Place(next);
    }
    EmitBlock(statement.Else);
    Place(after);
}

void Emitter::EmitSelect(const Stmt& statement) {
    OpenScope();
    DeclareVariable(*statement.Hidden);
    Into(*statement.A, static_cast<Register>(statement.Hidden->Index));
    Label after;
    mOpen.push_back({BlockKind::Select, &after, nullptr, mFinallies.size(), mScopes.size()});
    for (const Branch& branch : statement.Branches) {
        Label found, next;
        mLine = branch.Line;
        for (const CaseTest& test : branch.Tests)
            JumpOn(*test.Low, true, found);
        JumpTo(next);
        Place(found);
        EmitBlock(branch.Body);
        JumpTo(after);
        Place(next);
    }
    EmitBlock(statement.Else);
    Place(after);
    mOpen.pop_back();
    CloseScope();
}

void Emitter::EmitLoopBody(const Stmt& statement, BlockKind kind, Label& exit, Label& next) {
    mOpen.push_back({kind, &exit, &next, mFinallies.size(), mScopes.size(), statement.Name});
    EmitBlock(statement.Body);
    mOpen.pop_back();
    Place(next);
}

void Emitter::EmitWhile(const Stmt& statement) {
    Label top, exit, next;
    // The condition stands at the end, so that each round takes one jump.
    JumpTo(next);
    Place(top);
    EmitLoopBody(statement, BlockKind::While, exit, next);
    mLine = statement.Line;
    JumpOn(*statement.A, true, top);
    Place(exit);
}

void Emitter::EmitDo(const Stmt& statement) {
    Label top, exit, next;
    const bool atStart = statement.A && !statement.AtEnd;
    if (atStart) JumpOn(*statement.A, statement.Until, exit);
    Place(top);
    EmitLoopBody(statement, BlockKind::Do, exit, next);
    mLine = statement.AtEnd ? statement.EndLine : statement.Line;
    if (statement.A)
        JumpOn(*statement.A, !statement.Until, top);
    else
        JumpTo(top);
    Place(exit);
}

void Emitter::EmitLeave(const Stmt& statement) {
    if (statement.Target == BlockKind::Sub || statement.Target == BlockKind::Function ||
        statement.Target == BlockKind::Property)
        return EmitReturn(nullptr);
    const bool exits = statement.Kind == StmtKind::Exit;
    for (size_t at = mOpen.size(); at-- > 0;) {
        const Open& open = mOpen[at];
        const bool any = statement.Target == BlockKind::Any &&
                         (open.Kind != BlockKind::Try && (exits || open.Kind != BlockKind::Select));
        if (!any && open.Kind != statement.Target) continue;
        if (statement.HasName && open.Counter != statement.Name) continue;
        LeaveBlocks(open.Finallies, open.Scopes);
        return JumpTo(exits ? *open.Exit : *open.Continue);
    }
}

void Emitter::EmitReturn(const Expr* value) {
    if (!value) {
        LeaveBlocks(0, mScopes.size());
        return EmitDefaultReturn(mMethod ? mMethod->Result : mTypes.Of(Kind::Void));
    }
    if (!value->T->IsReference() && mFinallies.empty()) {
        Put(Code::ReturnValue, Any(*value));
        return;
    }
    const bool local = value->Kind == ExprKind::Variable && value->Var->Where == Variable::Storage::Local;
    const bool byRef = local && value->Var->IsParameter && mMethod && [&] {
        for (const Parameter& parameter : mMethod->Decl->Params)
            if (parameter.Var == value->Var) return parameter.ByRef;
        return false;
    }();
    if (local && mFinallies.empty() && !byRef) {
        Put(Code::ReturnTake, value->Var->Index);
        return;
    }
    // The finally blocks are written later and know nothing of this value: its register is not given to
    // others.
    const Register reg = mFinallies.empty() ? Temp(value->T) : NewRegister(value->T);
    Into(*value, reg);
    LeaveBlocks(0, mScopes.size());
    Put(value->T->IsReference() ? Code::ReturnTake : Code::ReturnValue, reg);
}

void Emitter::EmitReDim(const Stmt& statement) {
    for (const Expr* target : statement.Args) {
        const Register array = Own(*target->Left);
        std::vector<Register> values;
        for (const Expr* bound : target->Args)
            values.push_back(Own(*bound));
        for (size_t place = 0; place < values.size(); ++place)
            Put(Code::Move, Window(place), values[place]);
        Put(Code::ReDim, array, Window(0), static_cast<uint32_t>(values.size()));
    }
}

}  // namespace sorbel::script
