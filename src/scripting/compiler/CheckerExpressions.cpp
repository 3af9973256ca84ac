#include <utility>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

Expr* Checker::MakeExpr(ExprKind kind, uint32_t line, const Type* type) {
    mTree.Room.Need(sizeof(Expr), line);
    Expr& expr = mTree.Exprs.emplace_back();
    expr.Kind = kind;
    expr.Line = line;
    expr.T = type;
    return &expr;
}

Expr* Checker::MakeText(String text, uint32_t line) {
    Expr* expr = MakeExpr(ExprKind::Literal, line, mString);
    expr->Value = ConstantText(std::move(text));
    return expr;
}

Expr* Checker::Reference(Variable& variable, uint32_t line) {
    Expr* expr = MakeExpr(ExprKind::Variable, line, variable.T);
    expr->Var = &variable;
    return expr;
}

// Gives an expression its meaning and type. The result may be no value: a namespace or a method not called.
void Checker::CheckExpr(Expr*& expr, const Type* expected) {
    if (expr->T) return;  // made by the checker itself
    const Depth::Step step(mDepth, expr->Line);
    switch (expr->Kind) {
        case ExprKind::Literal: {
            static constexpr Kind kinds[] = {Kind::Void, Kind::Boolean, Kind::Int64, Kind::Double,
                                             Kind::String};
            expr->T = mTypes.Of(expr->Written == LiteralForm::Color      ? Kind::Color
                                : expr->Written == LiteralForm::Unsigned ? Kind::UInt64
                                                                         : kinds[expr->Value.index()]);
            return;
        }
        case ExprKind::Nil:
            expr->T = mNil;
            return;
        case ExprKind::Name:
            return CheckName(expr);
        case ExprKind::Member:
            return CheckMember(expr);
        case ExprKind::Call:
            return CheckCall(expr, expected);
        case ExprKind::Unary:
            return CheckUnary(expr);
        case ExprKind::Binary:
            return CheckBinary(expr);
        case ExprKind::IsA:
            return CheckIsA(*expr);
        case ExprKind::New:
            return CheckNew(*expr);
        case ExprKind::AddressOf:
            return CheckAddressOf(*expr, expected);
        case ExprKind::Self:
            return CheckSelf(*expr);
        case ExprKind::Super:
            return CheckSuper(*expr);
        case ExprKind::Cast:
            return CheckCast(expr);
        case ExprKind::RaiseEvent:
            return CheckRaiseEvent(*expr);
        case ExprKind::Conditional:
            return CheckConditional(expr, expected);
        default:
            return;
    }
}

// The same, where a value is needed: a method that is only named is called.
void Checker::CheckValue(Expr*& expr, const Type* expected) {
    CheckExpr(expr, expected);
    if (expr->Kind == ExprKind::Methods) CallMethods(expr, expr->Sym->Overloads, expr->Left, nullptr);
    if (expr->Kind == ExprKind::Event) Fail(Error::Syntax, expr->Line);
    if (expr->Kind == ExprKind::Namespace)
        Fail(Error::ValueExpected, expr->Line, {expected ? expected->Name : "Variant", expr->Other->Name});
    if (expr->T->Is(Kind::Void)) Fail(Error::NoValue, expr->Line);
}

void Checker::CheckConverted(Expr*& expr, const Type* to, Error mismatch) {
    CheckValue(expr, to);
    if (Convert(expr, to)) return;
    // An array in place of a single value has a message of its own.
    if (expr->T->Is(Kind::Array) && !to->Is(Kind::Array)) Fail(Error::UseWholeArray, expr->Line);
    Fail(mismatch, expr->Line);
}

void Checker::CheckInteger(Expr*& expr, Error mismatch) {
    CheckValue(expr, mInteger);
    if (!expr->T->IsInteger() && !expr->T->Is(Kind::Variant)) Fail(mismatch, expr->Line);
    ForceConvert(expr, mInteger);
}

void Checker::CheckName(Expr*& expr) {
    if (Symbol* symbol = FindName(expr->Name)) return UseSymbol(expr, *symbol, nullptr);
    expr->HasList = false;
    if (CallNative(expr, Spell(expr->Name), nullptr)) return;
    FailUnknown(expr->Name, expr->Line);
}

Expr* Checker::ImplicitSelf(uint32_t line) {
    return MakeExpr(ExprKind::Self, line, mNow.Owner);
}

// An instance's member was named without an instance.
void Checker::NeedInstance(Expr& expr, const Symbol& symbol, bool property) {
    const bool accessor = mNow.M && mNow.M->IsAccessor;
    if (property)
        Fail(accessor ? Error::SharedAccessorUsesProperty : Error::SharedUsesInstanceProperty, expr.Line);
    if (accessor) Fail(Error::SharedAccessorUsesMethod, expr.Line);
    Fail(Error::InstanceMethodOf, expr.Line, {symbol.Owner->Name});
}

void Checker::UseSymbol(Expr*& expr, Symbol& symbol, Expr* self) {
    CheckVisible(symbol, expr->Line);
    const bool hasSelf = mNow.M && !mNow.Shared && symbol.Owner && mNow.Owner->ComesFrom(symbol.Owner);
    switch (symbol.Is) {
        case Symbol::What::Variable:
            expr->Var = symbol.Var;
            expr->T = symbol.Var->T;
            expr->Kind = ExprKind::Variable;
            symbol.Var->UsedByMethods |= !mNow.InMain;
            if (symbol.Var->Where != Variable::Storage::Field) return;
            if (!self && !hasSelf) NeedInstance(*expr, symbol, true);
            expr->Kind = ExprKind::Field;
            expr->Left = self ? self : ImplicitSelf(expr->Line);
            return;
        case Symbol::What::Constant:
            Evaluate(*symbol.Const);
            expr->Kind = ExprKind::Literal;
            expr->Left = nullptr;
            expr->Value = symbol.Const->Value;
            expr->T = symbol.Const->T;
            expr->Sym = &symbol;
            return;
        case Symbol::What::Type:
            expr->Kind = ExprKind::Namespace;
            expr->Other = symbol.T;
            expr->T = mVoid;
            return;
        case Symbol::What::Property: {
            const bool set = expr == mAssignTarget && !mAssignCall;
            Method* accessor = set ? symbol.Prop->Set : symbol.Prop->Get;
            if (!accessor) Fail(set ? Error::ReadOnlyProperty : Error::WriteOnlyProperty, expr->Line);
            if (accessor->IsInstance() && !self && !hasSelf) NeedInstance(*expr, symbol, true);
            expr->Args.clear();
            if (set) {
                CheckConverted(mAssigned, symbol.Prop->T, Error::AssignIncompatible);
                expr->Args.push_back(std::exchange(mAssigned, nullptr));
            }
            return FinishCall(expr, *accessor, self);
        }
        case Symbol::What::Methods:
            if (expr == mAssignTarget && !mAssignCall) {
                expr->Args.clear();
                Expr* assigned = mAssigned;
                CallMethods(expr, symbol.Overloads, self, assigned);
                mAssigned = nullptr;
                return;
            }
            expr->Kind = ExprKind::Methods;
            expr->Sym = &symbol;
            expr->Left = self;
            expr->T = mVoid;
            return;
        case Symbol::What::Event:
            if (!self && !hasSelf) Fail(Error::InstanceMethodNeedsObject, expr->Line);
            expr->Kind = ExprKind::Event;
            expr->Sym = &symbol;
            expr->Left = self ? self : ImplicitSelf(expr->Line);
            expr->T = mVoid;
            return;
    }
}

void Checker::CheckMember(Expr*& expr) {
    CheckExpr(expr->Left);
    Expr* base = expr->Left;
    if (base->Kind == ExprKind::Namespace) {
        if (sorbel::Fold(Spell(expr->Name)) == "gettypeinfo") Fail(Error::Introspection, expr->Line);
        Symbol* symbol = FindMember(base->Other, expr->Name);
        if (!symbol) Fail(Error::UndefinedMember, expr->Line);
        if (symbol->Is == Symbol::What::Methods) {
            const Method& method = *symbol->Overloads.front();
            const bool inherits = mNow.M && !mNow.Shared && mNow.Owner->ComesFrom(base->Other);
            if (method.IsInstance() && !inherits)
                Fail(Error::StaticReferenceToInstance, expr->Line, {base->Other->Name});
            if (!method.Decl->Params.empty() && method.Decl->Params[0].IsExtends)
                Fail(Error::StaticReferenceToExtension, expr->Line, {method.Decl->Params[0].T->Name});
        }
        expr->Left = nullptr;
        return UseSymbol(expr, *symbol, nullptr);
    }
    CheckValue(expr->Left);
    base = expr->Left;
    const Type* type = base->T;
    if (type->Is(Kind::Class) || type->Is(Kind::Interface) || type->Is(Kind::Structure)) {
        if (Symbol* symbol = FindMember(type, expr->Name)) {
            // Shared members need no object, so the one before the dot is not asked for.
            UseSymbol(expr, *symbol, base);
            if (base->Kind == ExprKind::Super) expr->DirectCall = true;
            return;
        }
    }
    expr->HasList = false;
    if (type->Is(Kind::Delegate) && expr->Name == mInvokeName) return CallDelegate(expr, base);
    const bool assigns = expr == mAssignTarget && !mAssignCall;
    if (CallExtension(expr, expr->Name, base, assigns ? mAssigned : nullptr)) {
        if (assigns) mAssigned = nullptr;
        return;
    }
    if (CallNative(expr, Spell(expr->Name), base)) return;
    if (type == mPtr) Fail(Error::PtrDereferenced, expr->Line);
    if (CallLookup(expr, *expr, assigns)) return;
    Fail(Error::UndefinedMember, expr->Line);
}

void Checker::CheckSelf(Expr& expr) {
    const bool inClass = mNow.M && !mNow.Shared;
    if (!inClass) Fail(expr.Weak ? Error::MeInModule : Error::SelfInModule, expr.Line);
    expr.T = mNow.Owner;
}

void Checker::CheckSuper(Expr& expr) {
    if (!mNow.M || mNow.Shared) Fail(Error::SuperInModule, expr.Line);
    if (!mNow.Owner->Base || mNow.Owner->Base == mTypes.Root()) Fail(Error::NoSuperclass, expr.Line);
    expr.T = mNow.Owner->Base;
}

void Checker::CheckIsA(Expr& expr) {
    CheckValue(expr.Left);
    const Type* type = FindType(expr.Named);
    if (!expr.Left->T->IsObject() && !expr.Left->T->Is(Kind::Variant)) Fail(Error::IsNeedsObjects, expr.Line);
    if (!type->IsObject()) Fail(Error::NoSuchClass, expr.Line);
    if (expr.Left->T->Is(Kind::Variant)) ForceConvert(expr.Left, mTypes.Root());
    expr.Other = type;
    expr.T = mBoolean;
}

// new: of a class only; what else can be named has an error of its own.
void Checker::CheckNew(Expr& expr) {
    Symbol* symbol = expr.Named.Path.size() == 1 ? FindName(expr.Named.Path[0]) : nullptr;
    const String& name = Spell(expr.Named.Path.back());
    if (expr.Named.Path.size() == 1 && (!symbol || symbol->Is != Symbol::What::Type)) {
        if (!symbol) {
            const String near = Suggestion(name, true);
            if (!near.empty()) Fail(Error::NewDidYouMean, expr.Line, {name, near});
            Fail(Error::NoSuchClass, expr.Line);
        }
        Fail(Error::NewNonClass, expr.Line, {name});
    }
    if (symbol && symbol->T->Is(Kind::Module)) Fail(Error::NewNonClass, expr.Line, {name});
    const Type* type = FindType(expr.Named, Error::NoSuchClass);
    switch (type->K) {
        case Kind::Class:
            return CheckNewObject(expr, *type);
        case Kind::Interface:
            Fail(Error::NewInterface, expr.Line);
        case Kind::Structure:
            Fail(Error::NewStructure, expr.Line);
        case Kind::Enum:
            Fail(Error::NewEnum, expr.Line);
        default:
            Fail(Error::NewNonClass, expr.Line, {type->Name});
    }
}

void Checker::CheckNewObject(Expr& expr, const Type& type) {
    const Type* cls = &type;
    while (cls && cls->Constructors.empty())
        cls = cls->Base;
    expr.T = &type;
    expr.Other = &type;
    if (!cls) {
        CheckArguments(expr.Args);
        if (!expr.Args.empty())
            Fail(Error::TooManyArguments, expr.Line, {std::to_string(expr.Args.size()), "0"});
        return;
    }
    // The constructor is called on the new object, which the call stands for.
    Expr* call = MakeExpr(ExprKind::Call, expr.Line, nullptr);
    call->Args = std::move(expr.Args);
    expr.Args.clear();
    Expr* self = MakeExpr(ExprKind::ReferTo, expr.Line, &type);
    const Symbol& symbol = *cls->Constructors.front()->Sym;
    if (symbol.Visible != Visibility::Public) {
        bool inside = false;
        for (const Type* place = mNow.Owner; place; place = place->Owner)
            inside |=
                place == symbol.Owner || (symbol.Visible == Visibility::Protected && place->ComesFrom(cls));
        if (!inside) Fail(Error::ProtectedConstructor, expr.Line);
    }
    CallMethods(call, cls->Constructors, self, nullptr);
    call->DirectCall = true;
    expr.Left = call;
}

void Checker::CheckAddressOf(Expr& expr, const Type* expected) {
    CheckExpr(expr.Left);
    if (expr.Left->Kind != ExprKind::Methods) Fail(Error::CannotAddressOf, expr.Line);
    if (!expected || !expected->Is(Kind::Delegate)) Fail(Error::TypeMismatch, expr.Line);
    const Method& wanted = *expected->Signature;
    for (Method* method : expr.Left->Sym->Overloads) {
        if (method->Host >= 0) Fail(Error::CannotAddressOf, expr.Line);
        if (!SameParameters(*method, wanted) || method->Result != wanted.Result) continue;
        if (expr.Weak && !method->IsInstance()) Fail(Error::WeakNeedsInstance, expr.Line);
        expr.Target = method;
        Expr* self = expr.Left->Left;
        if (method->IsInstance() && !self) {
            if (!mNow.M || mNow.Shared) Fail(Error::InstanceMethodOf, expr.Line, {method->Owner->Name});
            self = ImplicitSelf(expr.Line);
        }
        expr.Left = method->IsInstance() ? self : nullptr;
        expr.T = expected;
        return;
    }
    Fail(Error::AssignIncompatible, expr.Line);
}

void Checker::CheckCast(Expr*& expr) {
    const Type* to = FindWholeType(expr->Named);
    Expr* value = expr->Left;
    CheckValue(value, to);
    if (!Convert(value, to)) {
        if (!Castable(value->T, to)) Fail(Error::TypeMismatch, expr->Line);
        ForceConvert(value, to);
    }
    expr = value;
}

}  // namespace sorbel::script
