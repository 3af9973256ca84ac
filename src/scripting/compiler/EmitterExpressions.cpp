#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

// The register that holds a value: a variable's own, or one for the time being.
Emitter::Register Emitter::Any(const Expr& expr) {
    if (expr.Kind == ExprKind::Variable && IsDirect(*expr.Var)) return static_cast<Register>(expr.Var->Index);
    if (expr.Kind == ExprKind::Self || expr.Kind == ExprKind::Super) return 0;
    if (expr.Kind == ExprKind::ReferTo) return mNewObject;
    if (expr.Kind == ExprKind::Convert && expr.T->IsReference() && expr.T->IsObject() &&
        expr.Left->T->IsObject() && expr.Left->T->ComesFrom(expr.T))
        return Any(*expr.Left);
    if (expr.Kind == ExprKind::Literal)
        if (const auto held = HeldRegister(expr)) return *held;
    const Register to = Temp(expr.T);
    Into(expr, to, true);
    return to;
}

Emitter::Register Emitter::Own(const Expr& expr) {
    const Register to = Temp(expr.T);
    Into(expr, to);
    return to;
}

void Emitter::Copy(const Expr& from, Register reg, Register to) {
    if (reg == to) return;
    Put(from.T->Is(Kind::Structure) ? Code::CopyStruct
        : from.T->IsReference()     ? Code::MoveRef
                                    : Code::Move,
        to, reg);
}

// A structure is copied, unless only its place is wanted.
void Emitter::Into(const Expr& expr, Register to, bool place) {
    switch (expr.Kind) {
        case ExprKind::Literal:
            return EmitLiteral(expr, to);
        case ExprKind::Nil:
            Put(Code::LoadNull, to);
            return;
        case ExprKind::Variable:
            if (IsDirect(*expr.Var)) return Copy(expr, static_cast<Register>(expr.Var->Index), to);
            PutWide(expr.T->IsReference() ? Code::GetTopRef : Code::GetTop, to, expr.Var->Index);
            if (expr.T->Is(Kind::Structure) && !place) Put(Code::CopyStruct, to, to);
            return;
        case ExprKind::Self:
        case ExprKind::Super:
        case ExprKind::ReferTo:
            return Copy(expr, Any(expr), to);
        case ExprKind::Field:
            return EmitField(expr, to, place);
        case ExprKind::Subscript:
            return EmitSubscript(expr, to, place);
        case ExprKind::Unary:
            return EmitUnary(expr, to);
        case ExprKind::Binary:
            return EmitBinary(expr, to);
        case ExprKind::IsA:
            Put(Code::IsA, to, Any(*expr.Left), expr.Other->Index);
            return;
        case ExprKind::Convert:
            return EmitConvert(expr, to);
        case ExprKind::New:
            return EmitNew(expr, to);
        case ExprKind::ArrayOf:
            return EmitArray(expr, to);
        case ExprKind::AddressOf:
            return EmitAddress(expr, to);
        case ExprKind::Invoke:
            return EmitCall(expr, to);
        case ExprKind::InvokeDelegate:
            return EmitDelegateCall(expr, to);
        case ExprKind::RaiseEvent:
            return EmitRaiseEvent(expr, to);
        case ExprKind::Native:
            return EmitNative(expr, to);
        case ExprKind::Host:
            return EmitHost(expr, to);
        case ExprKind::Conditional:
            return EmitConditional(expr, to);
        case ExprKind::Missing:
            if (expr.Left) return Into(*expr.Left, to);
            return Initialise(expr.T, to);
        default:
            Fail(Error::Backend, expr.Line);
    }
}

void Emitter::EmitConditional(const Expr& expr, Register to) {
    Label no, done;
    JumpIfNot(*expr.Left, no);
    size_t mark = Mark();
    Into(*expr.Args[0], to);
    FreeTemps(mark);
    JumpTo(done);
    Place(no);
    mark = Mark();
    Into(*expr.Args[1], to);
    FreeTemps(mark);
    Place(done);
}

void Emitter::EmitLiteral(const Expr& expr, Register to) {
    Slot value;
    if (const auto* text = std::get_if<ConstantText>(&expr.Value)) {
        if (text->View().empty())
            Put(Code::LoadNull, to);
        else
            PutWide(Code::LoadText, to, AddText(*text));
        return;
    }
    if (const bool* flag = std::get_if<bool>(&expr.Value)) {
        value.I = *flag;
    } else if (const double* real = std::get_if<double>(&expr.Value)) {
        value.D = expr.T->Is(Kind::Single) ? static_cast<double>(static_cast<float>(*real)) : *real;
    } else {
        value.I = std::get<int64_t>(expr.Value);
    }
    if (value.I >= INT32_MIN && value.I <= INT32_MAX)
        PutWide(Code::LoadInt, to, value.I);
    else
        PutWide(Code::LoadConst, to, AddConstant(value));
}

void Emitter::EmitUnary(const Expr& expr, Register to) {
    const Register value = Any(*expr.Left);
    if (expr.Operator == Op::Not)
        Put(expr.T->Is(Kind::Boolean) ? Code::NotB : Code::NotI, to, value);
    else
        Put(expr.T->IsReal() ? Code::NegF : Code::NegI, to, value);
    // Only bits that the type has may be set.
    if (expr.Operator == Op::Not && expr.T->IsInteger()) EmitNumber(*mInteger, *expr.T, to, to);
}

namespace {

Code ArithmeticCode(Op op, const Type& type) {
    const bool real = type.IsReal(), big = type.Is(Kind::UInt64);
    switch (op) {
        case Op::Add:
            return type.Is(Kind::String) ? Code::Concat : real ? Code::AddF : Code::AddI;
        case Op::Subtract:
            return real ? Code::SubF : Code::SubI;
        case Op::Multiply:
            return real ? Code::MulF : Code::MulI;
        case Op::Divide:
            return Code::DivF;
        case Op::IntegerDivide:
            return big ? Code::DivU : Code::DivI;
        case Op::Modulo:
            return real ? Code::ModF : big ? Code::ModU : Code::ModI;
        case Op::Power:
            return Code::PowF;
        case Op::And:
            return Code::AndI;
        case Op::Or:
            return Code::OrI;
        default:
            return Code::XorI;
    }
}

}  // namespace

void Emitter::EmitBinary(const Expr& expr, Register to) {
    if (IsComparison(expr.Operator) || expr.Operator == Op::Is) return EmitComparison(expr, to);
    if (expr.T->Is(Kind::Boolean)) {
        if (expr.Operator != Op::Xor) return EmitTruth(expr, to);
        const Register left = MayChange(*expr.Right) ? Own(*expr.Left) : Any(*expr.Left);
        Put(Code::XorI, to, left, Any(*expr.Right));
        return;
    }
    const Register left = MayChange(*expr.Right) ? Own(*expr.Left) : Any(*expr.Left);
    const int64_t* small = SmallNumber(*expr.Right);
    if (small && expr.T->IsInteger() && (expr.Operator == Op::Add || expr.Operator == Op::Subtract)) {
        const int64_t amount = expr.Operator == Op::Add ? *small : -*small;
        Put(Code::AddK, to, left, static_cast<uint16_t>(amount));
        return;
    }
    const Register right = Any(*expr.Right);
    // A text that was made for this expression alone grows where it is.
    const bool grows = expr.T->Is(Kind::String) && IsTemp(left) && left != to;
    Put(ArithmeticCode(expr.Operator, *expr.T), grows ? left : to, left, right);
    if (grows) Put(Code::Take, to, left);
    if (expr.T->Is(Kind::Single)) Put(Code::RoundF, to, to);
}

void Emitter::EmitComparison(const Expr& expr, Register to) {
    const Register left = MayChange(*expr.Right) ? Own(*expr.Left) : Any(*expr.Left);
    EmitCompared(expr, left, Any(*expr.Right), to);
}

void Emitter::EmitCompared(const Expr& expr, Register left, Register right, Register to) {
    const Type& type = *expr.Left->T;
    const bool swap = expr.Operator == Op::Greater || expr.Operator == Op::GreaterEqual;
    const int family = type.IsReal() ? 1 : type.Is(Kind::String) ? 2 : 0;
    static constexpr Code equal[] = {Code::EqI, Code::EqF, Code::EqS},
                          unequal[] = {Code::NeI, Code::NeF, Code::NeS},
                          less[] = {Code::LtI, Code::LtF, Code::LtS},
                          lessEqual[] = {Code::LeI, Code::LeF, Code::LeS};
    Code code = equal[family];
    if (expr.Operator == Op::NotEqual) code = unequal[family];
    if (expr.Operator == Op::Less || expr.Operator == Op::Greater)
        code = type.Is(Kind::UInt64) ? Code::LtU : less[family];
    if (expr.Operator == Op::LessEqual || expr.Operator == Op::GreaterEqual)
        code = type.Is(Kind::UInt64) ? Code::LeU : lessEqual[family];
    Put(code, to, swap ? right : left, swap ? left : right);
}

// And and Or of truths: the second is not asked when the first decides.
void Emitter::EmitTruth(const Expr& expr, Register to) {
    const Register result = Temp(mBoolean);
    Label no, done;
    JumpOn(expr, false, no);
    PutWide(Code::LoadInt, result, 1);
    JumpTo(done);
    Place(no);
    PutWide(Code::LoadInt, result, 0);
    Place(done);
    Put(Code::Move, to, result);
}

// Goes to the label if the condition is `when`.
void Emitter::JumpOn(const Expr& expr, bool when, Label& label) {
    if (expr.Kind == ExprKind::Unary && expr.Operator == Op::Not) return JumpOn(*expr.Left, !when, label);
    const bool logic = expr.Kind == ExprKind::Binary && (expr.Operator == Op::And || expr.Operator == Op::Or);
    if (logic) {
        const bool both = (expr.Operator == Op::And) == when;
        if (!both) {
            JumpOn(*expr.Left, when, label);
            return JumpOn(*expr.Right, when, label);
        }
        Label skip;
        JumpOn(*expr.Left, !when, skip);
        JumpOn(*expr.Right, when, label);
        return Place(skip);
    }
    const size_t mark = Mark();
    if (expr.Kind == ExprKind::Literal) {
        if (std::get<bool>(expr.Value) == when) JumpTo(label);
        return;
    }
    if (expr.Kind == ExprKind::Binary && JumpComparison(expr, when, label)) return;
    Register value = Any(expr);
    if (HasReferences(mark)) {
        // What was needed on the way goes on both ways.
        const Register plain = NewRegister(mBoolean);
        Put(Code::Move, plain, value);
        FreeTemps(mark);
        FreeRegister(plain, mBoolean);
        value = plain;
    } else {
        FreeTemps(mark);
    }
    JumpWide(when ? Code::JumpIf : Code::JumpUnless, value, label);
}

// A comparison and its jump in one operation, where nothing has to be let go of in between.
bool Emitter::JumpComparison(const Expr& expr, bool when, Label& label) {
    if (!IsComparison(expr.Operator) && expr.Operator != Op::Is) return false;
    const Type& type = *expr.Left->T;
    if (type.IsReference() && !type.Is(Kind::String)) return false;
    const size_t mark = Mark();
    if (JumpOnNumber(expr, when, label)) return true;
    const Register left = MayChange(*expr.Right) ? Own(*expr.Left) : Any(*expr.Left);
    const Register right = Any(*expr.Right);
    if (HasReferences(mark)) {
        const Register result = NewRegister(mBoolean);
        EmitCompared(expr, left, right, result);
        FreeTemps(mark);
        FreeRegister(result, mBoolean);
        JumpWide(when ? Code::JumpIf : Code::JumpUnless, result, label);
        return true;
    }
    FreeTemps(mark);
    EmitJump(expr, when, left, right, label);
    return true;
}

void Emitter::EmitJump(const Expr& expr, bool when, Register left, Register right, Label& label) {
    const Type& type = *expr.Left->T;
    const bool swap = expr.Operator == Op::Greater || expr.Operator == Op::GreaterEqual;
    const Register a = swap ? right : left, b = swap ? left : right;
    const bool equality =
        expr.Operator == Op::Equal || expr.Operator == Op::NotEqual || expr.Operator == Op::Is;
    const bool strictly = expr.Operator == Op::Less || expr.Operator == Op::Greater;
    if (equality) {
        const bool wanted = (expr.Operator != Op::NotEqual) == when;
        if (type.IsReal()) return JumpShort(wanted ? Code::JEqF : Code::JNeF, a, b, label);
        if (type.Is(Kind::String)) return JumpShort(wanted ? Code::JEqS : Code::JNeS, a, b, label);
        return JumpShort(wanted ? Code::JEqI : Code::JNeI, a, b, label);
    }
    if (type.IsReal()) {
        const Code yes = strictly ? Code::JLtF : Code::JLeF, no = strictly ? Code::JNotLtF : Code::JNotLeF;
        return JumpShort(when ? yes : no, a, b, label);
    }
    // Not below is the same as at most, the other way round.
    const int family = type.Is(Kind::UInt64) ? 1 : type.Is(Kind::String) ? 2 : 0;
    static constexpr Code less[] = {Code::JLtI, Code::JLtU, Code::JLtS},
                          lessEqual[] = {Code::JLeI, Code::JLeU, Code::JLeS};
    if (when) return JumpShort((strictly ? less : lessEqual)[family], a, b, label);
    JumpShort((strictly ? lessEqual : less)[family], b, a, label);
}

// The same against a small number that stands in the operation.
bool Emitter::JumpOnNumber(const Expr& expr, bool when, Label& label) {
    const int64_t* small = SmallNumber(*expr.Right);
    const Type& type = *expr.Left->T;
    if (!small || type.IsReal() || type.Is(Kind::UInt64) || expr.Operator == Op::Is) return false;
    const size_t mark = Mark();
    const Register left = Any(*expr.Left);
    if (HasReferences(mark)) {
        const Register plain = NewRegister(mInteger);
        Put(Code::Move, plain, left);
        FreeTemps(mark);
        FreeRegister(plain, mInteger);
        EmitJumpK(expr.Operator, when, plain, *small, label);
        return true;
    }
    FreeTemps(mark);
    EmitJumpK(expr.Operator, when, left, *small, label);
    return true;
}

void Emitter::EmitJumpK(Op op, bool when, Register left, int64_t number, Label& label) {
    static constexpr Code yes[] = {Code::JEqK, Code::JNeK, Code::JLtK, Code::JLeK, Code::JGtK, Code::JGeK};
    static constexpr Code no[] = {Code::JNeK, Code::JEqK, Code::JGeK, Code::JGtK, Code::JLeK, Code::JLtK};
    const auto at = static_cast<size_t>(op) - static_cast<size_t>(Op::Equal);
    JumpShort((when ? yes : no)[at], left, static_cast<uint16_t>(number), label);
}

}  // namespace sorbel::script
