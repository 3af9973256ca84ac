#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// How far a value's type is from another: 0 the same, more the less fitting, -1 no way without a cast.
int Checker::TypeCost(const Type* from, const Type* to) const {
    if (from == to) return 0;
    if (from->IsNumber() && to->IsNumber()) {
        if (from->IsInteger() && to->IsInteger()) return to->Is(Kind::Int64) ? 1 : 3;
        if (from->IsReal() && to->IsReal()) return to->Is(Kind::Double) ? 1 : 2;
        return to->Is(Kind::Double) ? 2 : 4;
    }
    if (to->Is(Kind::Variant)) return from->Is(Kind::Structure) || from->Is(Kind::Void) ? -1 : 6;
    if (from->Is(Kind::Variant)) return to->Is(Kind::Structure) || to->Is(Kind::Void) ? -1 : 7;
    if (from->Is(Kind::Nil)) {
        const bool empty = to->IsObject() || to->Is(Kind::Array) || to->Is(Kind::Delegate) || to == mPtr;
        return empty ? 1 : -1;
    }
    if (to == mTypes.Root() && from->IsObject()) return 3;
    if (from->IsObject() && to->IsObject() && from->ComesFrom(to)) {
        int steps = 1;
        for (const Type* cls = from; cls && cls != to; cls = cls->Base)
            if (steps < 2) ++steps;
        return steps;
    }
    return UserConversion(from, to) ? 5 : -1;
}

namespace {

// A number that stands in the script and is beyond every integer, or beyond all but the largest.
bool IsOutOfRange(const Expr& expr, const Type& to) {
    if (expr.Kind != ExprKind::Literal || !to.IsInteger()) return false;
    if (const double* real = std::get_if<double>(&expr.Value))
        return *real < -0x1p63 || *real >= (to.Is(Kind::UInt64) ? 0x1p64 : 0x1p63);
    return expr.T->Is(Kind::UInt64) && !to.Is(Kind::UInt64) && std::get<int64_t>(expr.Value) < 0;
}

}  // namespace

int Checker::Cost(const Expr& from, const Type* to) const {
    if (from.Kind == ExprKind::AddressOf && !from.T) return to->Is(Kind::Delegate) ? 0 : -1;
    if (!from.T) return 0;
    if (IsOutOfRange(from, *to)) return -1;
    return TypeCost(from.T, to);
}

// Operator_Convert: a function of the class that gives the type, or a Sub of the class that takes it.
Method* Checker::UserConversion(const Type* from, const Type* to) const {
    if (to->Is(Kind::Interface)) return nullptr;  // what is no such object cannot become one
    const auto look = [&](const Type* cls, auto fits) -> Method* {
        if (!cls->Is(Kind::Class)) return nullptr;
        const Symbol* symbol = FindMember(cls, mConvert);
        if (!symbol || symbol->Is != Symbol::What::Methods) return nullptr;
        for (Method* method : symbol->Overloads)
            if (fits(*method)) return method;
        return nullptr;
    };
    if (Method* found = look(from, [&](const Method& method) {
            return method.Decl->IsFunction && method.Decl->Params.empty() && method.Result == to;
        }))
        return found;
    return look(to, [&](const Method& method) {
        return !method.Decl->IsFunction && method.Decl->Params.size() == 1 &&
               method.Decl->Params[0].T == from && method.Owner == to;
    });
}

bool Checker::Castable(const Type* from, const Type* to) const {
    if (TypeCost(from, to) >= 0) return true;
    if (from->IsObject() && to->IsObject()) return true;
    const bool fromNumber = from->IsNumber() || from->Is(Kind::Boolean);
    const auto coded = [](const Type* type) {
        return type->Is(Kind::Enum) || type->Is(Kind::Color) || type->Is(Kind::Ptr);
    };
    if (coded(from)) return to->IsInteger();
    if (coded(to)) return from->IsInteger();
    return fromNumber && (to->IsNumber() || to->Is(Kind::Boolean));
}

// Makes the value one of type `to`, visibly in the tree; false if that needs a cast or cannot be.
bool Checker::Convert(Expr*& expr, const Type* to) {
    if (expr->Kind == ExprKind::AddressOf && !expr->T) CheckValue(expr, to);
    if (expr->T == to) return true;
    if (IsOutOfRange(*expr, *to)) return false;
    if (TypeCost(expr->T, to) < 0) {
        const bool converts = expr->T->Is(Kind::Class) && FindMember(expr->T, mConvert);
        if (converts && to->Is(Kind::Interface)) Fail(Error::ConvertToInterface, expr->Line);
        if (expr->T == mPtr && to->Is(Kind::Delegate)) Fail(Error::DelegateFromPtr, expr->Line);
        if (to == mPtr && expr->T->Is(Kind::Delegate)) Fail(Error::PtrFromDelegate, expr->Line);
        return false;
    }
    ForceConvert(expr, to);
    return true;
}

namespace {

// A number written in the text is one of the wanted type from the start.
bool ConvertLiteral(Expr& expr, const Type* to) {
    if (expr.Kind != ExprKind::Literal) return false;
    if (const int64_t* number = std::get_if<int64_t>(&expr.Value)) {
        if (to->IsReal() && !expr.T->IsUnsigned())
            expr.Value = static_cast<double>(*number);
        else if (!to->Is(Kind::Int64) && !to->Is(Kind::UInt64) && (*number < 0 || *number > 127))
            return false;
    } else if (!std::holds_alternative<double>(expr.Value) || !to->Is(Kind::Double)) {
        return false;
    }
    expr.T = to;
    return true;
}

}  // namespace

void Checker::ForceConvert(Expr*& expr, const Type* to) {
    if (expr->T == to) return;
    if (to == mPtr && expr->T->Is(Kind::Nil)) {
        expr = MakeExpr(ExprKind::Literal, expr->Line, mPtr);
        expr->Value = int64_t{0};
        return;
    }
    if (expr->T->IsNumber() && to->IsNumber() && ConvertLiteral(*expr, to)) return;
    if (!expr->T->Is(Kind::Variant) && !to->Is(Kind::Variant) && !expr->T->Is(Kind::Nil)) {
        const bool user = expr->T->Is(Kind::Class) || to->Is(Kind::Class);
        Method* method = user ? UserConversion(expr->T, to) : nullptr;
        if (method && !expr->T->ComesFrom(to)) {
            if (!Sees(method->Decl->Visible, method->Owner))
                Fail(Error::ProtectedConversion, expr->Line, {expr->T->Name, to->Name, "Operator_Convert"});
            Expr* call = MakeExpr(ExprKind::Call, expr->Line, nullptr);
            if (method->Decl->IsFunction) {
                FinishCall(call, *method, expr);
                expr = call;
                return;
            }
            Expr* made = MakeExpr(ExprKind::New, expr->Line, to);
            made->Other = to;
            call->Args.push_back(expr);
            FinishCall(call, *method, MakeExpr(ExprKind::ReferTo, expr->Line, to));
            call->DirectCall = true;
            made->Left = call;
            expr = made;
            return;
        }
    }
    Expr* converted = MakeExpr(ExprKind::Convert, expr->Line, to);
    converted->Left = expr;
    expr = converted;
}

}  // namespace sorbel::script
