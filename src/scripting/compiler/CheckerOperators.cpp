#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// An operator that the types do not have. The more is known, the more the message says.
void Checker::FailOperator(const Expr& expr) const {
    const Type* left = expr.Left->T;
    if (left->Is(Kind::Nil)) Fail(Error::UndefinedOperator, expr.Line);  // it has no type to name
    if (!expr.Right) Fail(Error::NoOperator, expr.Line, {left->Name, Spelling(expr.Operator)});
    if (left->Is(Kind::Array) || expr.Right->T->Is(Kind::Array)) Fail(Error::UseWholeArray, expr.Line);
    const bool text = expr.Operator == Op::Add || IsComparison(expr.Operator);
    const bool known = left->IsNumber() || (left->Is(Kind::String) && text) ||
                       (expr.Operator == Op::Equal || expr.Operator == Op::NotEqual);
    if (known)
        Fail(Error::NoOperatorWith, expr.Line, {left->Name, Spelling(expr.Operator), expr.Right->T->Name});
    Fail(Error::NoOperator, expr.Line, {left->Name, Spelling(expr.Operator)});
}

void Checker::CheckUnary(Expr*& expr) {
    CheckValue(expr->Left);
    if (TryOperatorMethod(expr)) return;
    const Type* type = expr->Left->T;
    if (type->Is(Kind::Variant)) {
        ForceConvert(expr->Left, expr->Operator == Op::Not ? mBoolean : mDouble);
        type = expr->Left->T;
    }
    if (expr->Operator == Op::Not) {
        if (type->Is(Kind::Array)) Fail(Error::UseWholeArray, expr->Line);
        if (!type->Is(Kind::Boolean) && !type->IsInteger()) Fail(Error::NeedsBoolean, expr->Line);
        expr->T = type;
    } else {
        if (!type->IsNumber()) FailOperator(*expr);
        // The lowest Integer is written as a number that is none by itself.
        const bool large = type->Is(Kind::UInt64) && expr->Left->Kind == ExprKind::Literal;
        if (large && std::get<int64_t>(expr->Left->Value) < 0 &&
            std::get<int64_t>(expr->Left->Value) != INT64_MIN)
            Fail(Error::TypeMismatch, expr->Line);
        expr->T = type->IsReal() ? type : mInteger;
    }
    Fold(*expr);
}

void Checker::CheckBinary(Expr*& expr) {
    CheckValue(expr->Left);
    CheckValue(expr->Right);
    if (expr->Operator == Op::Is) return CheckIs(*expr);
    if (TryOperatorMethod(expr)) return;
    if (expr->Operator >= Op::And) return CheckLogic(expr);
    if (IsComparison(expr->Operator)) return CheckComparison(expr);
    CheckArithmetic(expr);
}

void Checker::CheckIs(Expr& expr) {
    for (const Expr* part : {expr.Left, expr.Right})
        if (!part->T->IsObject() && !part->T->Is(Kind::Variant)) Fail(Error::IsNeedsObjects, expr.Line);
    for (Expr** part : {&expr.Left, &expr.Right})
        if ((*part)->T->Is(Kind::Variant)) ForceConvert(*part, mTypes.Root());
    expr.T = mBoolean;
}

void Checker::CheckLogic(Expr*& expr) {
    for (Expr** part : {&expr->Left, &expr->Right}) {
        if ((*part)->T->Is(Kind::Array)) Fail(Error::UseWholeArray, expr->Line);
        if ((*part)->T->Is(Kind::Variant)) ForceConvert(*part, mBoolean);
    }
    const Type *left = expr->Left->T, *right = expr->Right->T;
    if (left->Is(Kind::Boolean) && right->Is(Kind::Boolean)) {
        expr->T = mBoolean;
        return;
    }
    if (!left->IsInteger() || !right->IsInteger()) Fail(Error::NeedsBoolean, expr->Line);
    expr->T = left->Is(Kind::UInt64) || right->Is(Kind::UInt64) ? mTypes.Of(Kind::UInt64) : mInteger;
    ForceConvert(expr->Left, expr->T);
    ForceConvert(expr->Right, expr->T);
    Fold(*expr);
}

namespace {

/// What two numbers are before they are added or compared.
Kind CommonKind(const Type& a, const Type& b) {
    if (a.IsReal() || b.IsReal()) {
        const bool single = (a.Is(Kind::Single) || a.IsInteger()) && (b.Is(Kind::Single) || b.IsInteger());
        return single && a.IsReal() && b.IsReal() ? Kind::Single : Kind::Double;
    }
    return a.Is(Kind::UInt64) || b.Is(Kind::UInt64) ? Kind::UInt64 : Kind::Int64;
}

const char* VariantFunction(Op op) {
    switch (op) {
        case Op::Add:
            return ".Add";
        case Op::Subtract:
            return ".Subtract";
        case Op::Multiply:
            return ".Multiply";
        case Op::Divide:
            return ".Divide";
        case Op::Power:
            return ".Power";
        case Op::IntegerDivide:
            return ".IntegerDivide";
        case Op::Modulo:
            return ".Modulo";
        default:
            return ".Compare";
    }
}

}  // namespace

// The type that two values have in common; null if they have none.
const Type* Checker::SharedType(const Type* a, const Type* b, const Type* expected) const {
    if (a == b) return a;
    if (expected && TypeCost(a, expected) >= 0 && TypeCost(b, expected) >= 0) return expected;
    if (a->IsNumber() && b->IsNumber()) return mTypes.Of(CommonKind(*a, *b));
    if (a->Is(Kind::Class) && b->Is(Kind::Class)) {
        const Type* base = a;
        while (base && !b->ComesFrom(base))
            base = base->Base;
        return base == mTypes.Root() && a != base && b != base ? nullptr : base;
    }
    if (a->Is(Kind::Variant) || TypeCost(a, b) < 0) return TypeCost(b, a) >= 0 ? a : nullptr;
    return b;
}

// Only the value that the condition chooses is worked out.
void Checker::CheckConditional(Expr*& expr, const Type* expected) {
    CheckCondition(expr->Left);
    Expr *&yes = expr->Args[0], *&no = expr->Args[1];
    CheckValue(yes, expected);
    CheckValue(no, expected);
    const Type* type = SharedType(yes->T, no->T, expected);
    if (!type || !Convert(yes, type) || !Convert(no, type)) Fail(Error::TypeMismatch, expr->Line);
    expr->T = type;
    if (expr->Left->Kind == ExprKind::Literal) expr = std::get<bool>(expr->Left->Value) ? yes : no;
}

void Checker::CheckArithmetic(Expr*& expr) {
    const Type *left = expr->Left->T, *right = expr->Right->T;
    if (left->Is(Kind::Variant) || right->Is(Kind::Variant)) {
        if (!Convert(expr->Left, mVariant) || !Convert(expr->Right, mVariant)) FailOperator(*expr);
        expr->Kind = ExprKind::Native;
        expr->Args = {expr->Left, expr->Right};
        return FinishNative(*expr, Native(VariantFunction(expr->Operator)));
    }
    if (left->Is(Kind::String) && right->Is(Kind::String) && expr->Operator == Op::Add) {
        expr->T = mString;
        Fold(*expr);
        return;
    }
    if (!left->IsNumber() || !right->IsNumber()) FailOperator(*expr);
    Kind common = CommonKind(*left, *right);
    if (expr->Operator == Op::Divide && common != Kind::Single) common = Kind::Double;
    if (expr->Operator == Op::Power) common = Kind::Double;
    if (expr->Operator == Op::IntegerDivide && common >= Kind::Single) common = Kind::Int64;
    expr->T = mTypes.Of(common);
    ForceConvert(expr->Left, expr->T);
    ForceConvert(expr->Right, expr->T);
    Fold(*expr);
}

void Checker::CheckComparison(Expr*& expr) {
    expr->T = mBoolean;
    const Type *left = expr->Left->T, *right = expr->Right->T;
    const bool equality = expr->Operator == Op::Equal || expr->Operator == Op::NotEqual;
    if (left->IsNumber() && right->IsNumber()) {
        const Type* common = mTypes.Of(CommonKind(*left, *right));
        ForceConvert(expr->Left, common);
        ForceConvert(expr->Right, common);
        return;
    }
    const bool nil = left->Is(Kind::Nil) || right->Is(Kind::Nil);
    if ((left->Is(Kind::Variant) || right->Is(Kind::Variant)) && !nil) {
        if (!Convert(expr->Left, mVariant) || !Convert(expr->Right, mVariant)) FailOperator(*expr);
        // The library's comparison gives a number, which is compared with 0.
        Expr* call = MakeExpr(ExprKind::Native, expr->Line, nullptr);
        call->Args = {expr->Left, expr->Right};
        FinishNative(*call, Native(".Compare"));
        expr->Left = call;
        expr->Right = MakeExpr(ExprKind::Literal, expr->Line, mInteger);
        expr->Right->Value = int64_t{0};
        return;
    }
    if (left->Is(Kind::String) && right->Is(Kind::String)) return;
    if (left == right && left->Is(Kind::Enum)) return;
    if (equality) {
        if (left == right && (left->Is(Kind::Boolean) || left->Is(Kind::Color) || left->Is(Kind::Ptr) ||
                              left->Is(Kind::Delegate)))
            return;
        if (left->IsObject() && right->IsObject()) return;
        const Type* other = left->Is(Kind::Nil) ? right : left;
        if (nil && other == mPtr) {
            ForceConvert(expr->Left, mPtr);
            return ForceConvert(expr->Right, mPtr);
        }
        if (nil && (other->Is(Kind::Variant) || other->Is(Kind::Array) || other->Is(Kind::Delegate))) return;
        if (left->Is(Kind::Array) && left == right) return;
    }
    FailOperator(*expr);
}

// Operator_Add and its like, of the left value's class or, with Right behind the name, of the right one's.
bool Checker::TryOperatorMethod(Expr*& expr) {
    const char* suffix = MethodName(expr->Operator);
    const auto find = [&](const Expr* on, const String& name) -> Symbol* {
        if (!on->T->Is(Kind::Class)) return nullptr;
        Symbol* symbol = FindMember(on->T, mNames.Intern(name));
        return symbol && symbol->Is == Symbol::What::Methods ? symbol : nullptr;
    };
    const auto call = [&](const Symbol& symbol, Expr* self, Expr* argument) {
        Expr* made = MakeExpr(ExprKind::Call, expr->Line, nullptr);
        if (argument) made->Args.push_back(argument);
        for (const Method* method : symbol.Overloads)
            if (MethodCost(*method, made->Args) >= 0) {
                CallMethods(made, symbol.Overloads, self, nullptr);
                return made;
            }
        return static_cast<Expr*>(nullptr);
    };
    if (!*suffix) return false;
    // Whether there is an object at all is no matter of its class.
    const bool nil = expr->Left->T->Is(Kind::Nil) || (expr->Right && expr->Right->T->Is(Kind::Nil));
    if (nil && (expr->Operator == Op::Equal || expr->Operator == Op::NotEqual)) return false;
    const String name = String("Operator_") + suffix;
    Expr* made = nullptr;
    bool swapped = false;
    if (const Symbol* symbol = find(expr->Left, name)) made = call(*symbol, expr->Left, expr->Right);
    if (!made && expr->Right) {
        if (const Symbol* symbol = find(expr->Right, IsComparison(expr->Operator) ? name : name + "Right")) {
            made = call(*symbol, expr->Right, expr->Left);
            swapped = true;
        }
    }
    if (!made) return false;
    if (!IsComparison(expr->Operator)) {
        expr = made;
        return true;
    }
    // The method tells the order by a number below, equal to or above 0.
    if (!made->T->IsInteger()) return false;
    Expr* zero = MakeExpr(ExprKind::Literal, expr->Line, mInteger);
    zero->Value = int64_t{0};
    ForceConvert(made, mInteger);
    expr->Left = swapped ? zero : made;
    expr->Right = swapped ? made : zero;
    expr->T = mBoolean;
    return true;
}

// A method of the object that a notation stands for; false if its class has none.
bool Checker::CallOperator(Expr*& expr, const char* name, Expr* self, bool assigns) {
    if (!self->T->Is(Kind::Class) && !self->T->Is(Kind::Interface)) return false;
    const Symbol* symbol = FindMember(self->T, mNames.Intern(name));
    if (!symbol || symbol->Is != Symbol::What::Methods) return false;
    CheckVisible(*symbol, expr->Line);
    CallAssignable(expr, symbol->Overloads, self, assigns);
    return true;
}

// `object.name`, where the class has no such member: Operator_Lookup is given the name as it is written.
bool Checker::CallLookup(Expr*& expr, const Expr& member, bool assigns) {
    Expr* self = member.Left;
    expr->Args.insert(expr->Args.begin(),
                      MakeText(String(std::get<ConstantText>(member.Value).View()), member.Line));
    return CallOperator(expr, "Operator_Lookup", self, assigns);
}

}  // namespace sorbel::script
