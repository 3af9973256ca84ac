#include <algorithm>
#include <iterator>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// A name or value with a list behind it: a call, a subscript or a conversion.
void Checker::CheckCall(Expr*& expr, const Type* expected) {
    Expr* callee = expr->Left;
    const bool assigns = callee == mAssignTarget && mAssignCall;
    if (callee->Kind == ExprKind::Name) {
        if (!FindName(callee->Name)) {
            if (callee->Name == mArrayName) return CheckArrayLiteral(*expr, expected);
            const String name = sorbel::Fold(Spell(callee->Name));
            if (name == "gettypeinfo") Fail(Error::Introspection, expr->Line);
            if (CallNative(expr, name, nullptr)) return;
            FailUnknown(callee->Name, callee->Line);
        }
    } else if (callee->Kind == ExprKind::Member) {
        CheckExpr(callee->Left);
        if (callee->Left->Kind != ExprKind::Namespace) {
            CheckValue(callee->Left);
            Expr* base = callee->Left;
            const bool members =
                base->T->Is(Kind::Class) || base->T->Is(Kind::Interface) || base->T->Is(Kind::Structure);
            if (!members || !FindMember(base->T, callee->Name)) {
                if (base->T->Is(Kind::Delegate) && callee->Name == mInvokeName)
                    return CallDelegate(expr, base);
                if (CallExtension(expr, callee->Name, base, assigns ? mAssigned : nullptr)) {
                    if (assigns) mAssigned = nullptr;
                    return;
                }
                if (CallNative(expr, Spell(callee->Name), base)) return;
                if (base->T == mPtr) Fail(Error::PtrDereferenced, callee->Line);
                if (CallLookup(expr, *callee, assigns)) return;
                Fail(Error::UndefinedMember, callee->Line);
            }
        }
    }
    CheckExpr(expr->Left);
    callee = expr->Left;
    if (callee->Kind == ExprKind::Namespace) return CheckConversionCall(expr, callee->Other);
    if (callee->Kind == ExprKind::Methods) {
        expr->DirectCall = callee->DirectCall;
        return CallAssignable(expr, callee->Sym->Overloads, callee->Left, assigns);
    }
    CheckValue(expr->Left);
    callee = expr->Left;
    if (callee->T->Is(Kind::Delegate)) return CallDelegate(expr, callee);
    if (callee->T->Is(Kind::Array)) return CheckSubscript(*expr);
    if (callee->Kind == ExprKind::Invoke && expr->Args.empty()) {
        expr = callee;  // a property with an empty list behind it
        return;
    }
    if (CallOperator(expr, "Operator_Subscript", callee, assigns)) return;
    Fail(expr->Args.empty() ? Error::NotCallable : Error::NotAnArray, expr->Line);
}

// The call takes what is assigned to it if one of the methods has a parameter for that.
void Checker::CallAssignable(Expr*& expr, const std::vector<Method*>& overloads, Expr* self, bool assigns) {
    const bool takes = assigns && std::any_of(overloads.begin(), overloads.end(), [](const Method* method) {
                           return !method->Decl->Params.empty() && method->Decl->Params.back().IsAssigns;
                       });
    CallMethods(expr, overloads, self, takes ? mAssigned : nullptr);
    if (takes) mAssigned = nullptr;
}

void Checker::CheckSubscript(Expr& expr) {
    const Type* type = expr.Left->T;
    const int given = static_cast<int>(expr.Args.size());
    if (given == 0) {  // `a()` is the array itself
        expr.Kind = ExprKind::Convert;
        expr.T = type;
        return;
    }
    if (given < type->Rank) Fail(Error::TooFewSubscripts, expr.Line);
    if (given > type->Rank) Fail(Error::TooManySubscripts, expr.Line);
    for (Expr*& index : expr.Args)
        CheckInteger(index, Error::TypeMismatch);
    expr.Kind = ExprKind::Subscript;
    expr.T = type->Element;
}

// `Integer(x)` and `Name(object)`.
void Checker::CheckConversionCall(Expr*& expr, const Type* to) {
    if (to->Is(Kind::Module) || expr->Args.size() != 1) Fail(Error::NotCallable, expr->Line);
    Expr* value = expr->Args[0];
    CheckValue(value, to);
    if (!Convert(value, to)) {
        if (!Castable(value->T, to)) Fail(Error::TypeMismatch, expr->Line);
        ForceConvert(value, to);
    }
    expr = value;
}

void Checker::CheckArrayLiteral(Expr& expr, const Type* expected) {
    CheckArguments(expr.Args);
    const bool wanted = expected && expected->Is(Kind::Array) && expected->Rank == 1;
    if (expr.Args.empty() && !wanted) Fail(Error::TypeMismatch, expr.Line);
    const Type* element = wanted ? expected->Element : expr.Args[0]->T;
    if (!wanted && (!element || element->Is(Kind::Nil) || element->Is(Kind::Array)))
        Fail(Error::NoArrayOfThis, expr.Line);
    if (!wanted)
        for (const Expr* part : expr.Args)
            if (TypeCost(part->T, element) < 0) element = mVariant;
    for (Expr*& part : expr.Args)
        if (!Convert(part, element)) Fail(Error::TypeMismatch, expr.Line);
    expr.Kind = ExprKind::ArrayOf;
    expr.T = mTypes.ArrayOf(element, 1);
}

// An address needs to know its parameter first, and waits.
void Checker::CheckArguments(std::vector<Expr*>& arguments) {
    for (Expr*& argument : arguments)
        if (argument->Kind != ExprKind::AddressOf) CheckValue(argument);
}

int Checker::MethodCost(const Method& method, const std::vector<Expr*>& arguments) const {
    const std::vector<Parameter>& params = method.Decl->Params;
    int total = 0;
    size_t at = 0;
    for (const Parameter& param : params) {
        const bool assigned = param.IsAssigns;
        if (param.IsParamArray) {
            const size_t after = !params.empty() && params.back().IsAssigns ? 1 : 0;
            // One array in the place of the list is the list.
            if (arguments.size() == at + 1 + after && arguments[at]->T == param.T) {
                ++at;
                continue;
            }
            for (; at + after < arguments.size(); ++at) {
                const int cost = Cost(*arguments[at], param.T->Element);
                if (cost < 0) return -1;
                total += cost + 1;
            }
            continue;
        }
        if (at >= arguments.size() ||
            (!assigned && !params.empty() && params.back().IsAssigns && at + 1 >= arguments.size())) {
            if (!param.IsOptional) return -1;
            ++total;
            continue;
        }
        const int cost = param.ByRef && arguments[at]->T != param.T ? -1 : Cost(*arguments[at], param.T);
        if (cost < 0) return -1;
        total += cost * 4;
        ++at;
    }
    return at == arguments.size() ? total : -1;
}

// Of many methods of one name those that take just these types: they need no comparison with the others.
// Nothing if there is none, or if a list of no arguments would fit as well.
std::vector<Method*> Checker::ExactOverloads(const std::vector<Method*>& overloads,
                                             const std::vector<Expr*>& arguments) const {
    constexpr size_t few = 16;
    std::vector<Method*> exact;
    const Symbol* symbol = overloads.size() > few ? overloads[0]->Sym : nullptr;
    if (!symbol || symbol->TakesLists || &symbol->Overloads != &overloads) return exact;
    std::vector<const Type*> types;
    for (const Expr* argument : arguments)
        types.push_back(argument->T);
    for (auto [at, end] = mSignatures.equal_range(SignatureIn(*symbol, types)); at != end; ++at) {
        const std::vector<Parameter>& params = at->second->Decl->Params;
        const bool same =
            at->second->Sym == symbol && !(!params.empty() && params.back().IsAssigns) &&
            std::equal(params.begin(), params.end(), types.begin(), types.end(),
                       [](const Parameter& param, const Type* type) { return param.T == type; });
        if (same) exact.push_back(at->second);
    }
    return exact;
}

void Checker::CallMethods(Expr*& expr, const std::vector<Method*>& overloads, Expr* self, Expr* assigned) {
    CheckArguments(expr->Args);
    std::vector<Method*> candidates;
    if (!assigned) candidates = ExactOverloads(overloads, expr->Args);
    const auto wanted = [assigned](const Method* method) {
        const std::vector<Parameter>& params = method->Decl->Params;
        return (!params.empty() && params.back().IsAssigns) == (assigned != nullptr);
    };
    if (candidates.empty())
        std::copy_if(overloads.begin(), overloads.end(), std::back_inserter(candidates), wanted);
    if (candidates.empty())
        Fail(assigned ? Error::NoAssignsParameter : Error::AccessorNeedsAssignment, expr->Line);
    if (assigned) {
        CheckValue(assigned);
        expr->Args.push_back(assigned);
    }
    Method* best = nullptr;
    int least = 0;
    bool tie = false;
    for (Method* method : candidates) {
        const int cost = MethodCost(*method, expr->Args);
        if (cost < 0 || (best && cost > least)) continue;
        tie = best && cost == least;
        best = method;
        least = cost;
    }
    if (!best && candidates.size() == 1) FailMethod(*candidates[0], *expr);
    if (!best) FailOverloads(candidates, *expr);
    if (tie) Fail(Error::Ambiguous, expr->Line);
    const bool extends = !best->Decl->Params.empty() && best->Decl->Params[0].IsExtends;
    if (extends && expr->Kind != ExprKind::Member && !expr->Parenthesised)
        Fail(Error::ExtensionNeedsBase, expr->Line, {best->Decl->Params[0].T->Name});
    FinishCall(expr, *best, self);
}

void Checker::FailOverloads(const std::vector<Method*>& overloads, const Expr& expr) {
    size_t shorter = 0, longer = 0;
    for (const Method* method : overloads) {
        size_t least = 0;
        bool open = false;
        for (const Parameter& param : method->Decl->Params) {
            least += !param.IsOptional && !param.IsParamArray;
            open |= param.IsParamArray;
        }
        shorter += !open && expr.Args.size() > method->Decl->Params.size();
        longer += expr.Args.size() < least;
    }
    if (shorter == overloads.size()) Fail(Error::TooManyForOverloads, expr.Line);
    if (longer == overloads.size()) Fail(Error::TooFewForOverloads, expr.Line);
    if (shorter + longer == overloads.size()) Fail(Error::WrongCountForOverloads, expr.Line);
    Fail(Error::IncompatibleForOverloads, expr.Line);
}

void Checker::FailCounts(const Method& method, const Expr& expr, size_t least, size_t most) {
    const String got = std::to_string(expr.Args.size());
    if (expr.Args.size() > most)
        Fail(least == most ? Error::TooManyArguments : Error::TooManyArgumentsOptional, expr.Line,
             {got, std::to_string(most)});
    const std::vector<Parameter>& params = method.Decl->Params;
    if (expr.Args.size() + 1 == least && least == most && least > 1) {
        const Parameter& missing = params[expr.Args.size()];
        Fail(Error::MissingArgument, expr.Line,
             {got, std::to_string(least), missing.T->Name, Spell(missing.Name)});
    }
    Fail(least == most ? Error::TooFewArguments : Error::TooFewArgumentsOptional, expr.Line,
         {got, std::to_string(least)});
}

// Why the only method of this name does not fit.
void Checker::FailMethod(const Method& method, const Expr& expr) {
    const std::vector<Parameter>& params = method.Decl->Params;
    size_t least = 0, most = 0;
    for (const Parameter& param : params) {
        least += !param.IsOptional && !param.IsParamArray;
        most = param.IsParamArray ? SIZE_MAX / 2 : most + 1;
    }
    if (expr.Args.size() < least || expr.Args.size() > most) FailCounts(method, expr, least, most);
    std::vector<const Type*> wanted, given;
    std::vector<std::pair<const Parameter*, const Expr*>> wrong;
    for (size_t at = 0; at < expr.Args.size(); ++at) {
        const Parameter& param = params[std::min(at, params.size() - 1)];
        const Type* type = param.IsParamArray ? param.T->Element : param.T;
        wanted.push_back(type);
        given.push_back(expr.Args[at]->T ? expr.Args[at]->T : mTypes.Of(Kind::Delegate));
        if (Cost(*expr.Args[at], type) < 0 || (param.ByRef && expr.Args[at]->T != type))
            wrong.emplace_back(&param, expr.Args[at]);
    }
    if (wrong.size() != 1) Fail(Error::ArgumentTypes, expr.Line, {Describe(wanted), Describe(given)});
    const Parameter& param = *wrong[0].first;
    const String name = Spell(param.Name), is = wrong[0].second->T ? wrong[0].second->T->Name : "Delegate";
    if (param.IsParamArray) Fail(Error::ParamArrayType, expr.Line, {name, param.T->Element->Name, is});
    Fail(Error::ArgumentType, expr.Line, {name, param.T->Name, is});
}

void Checker::CheckByRef(const Expr& argument, const Parameter& param) const {
    const bool place = argument.Kind == ExprKind::Variable || argument.Kind == ExprKind::Field ||
                       argument.Kind == ExprKind::Subscript;
    // The array of a structure stays that structure's own.
    const bool inner = place && argument.Kind == ExprKind::Field && argument.T->Is(Kind::Array) &&
                       argument.Left->T->Is(Kind::Structure);
    if (!place || inner || argument.Parenthesised || argument.T != param.T)
        Fail(Error::ByRefNeedsVariable, argument.Line);
}

// Puts defaults and the list of a ParamArray in place, and converts every argument.
void Checker::FillArguments(std::vector<Expr*>& arguments, Method& method, uint32_t line) {
    std::vector<Expr*> given = std::move(arguments);
    arguments.clear();
    const std::vector<Parameter>& params = method.Decl->Params;
    const size_t after = !params.empty() && params.back().IsAssigns ? 1 : 0;
    size_t at = 0;
    for (const Parameter& param : params) {
        const bool left = param.IsAssigns ? at < given.size() : at + after < given.size();
        if (param.IsParamArray) {
            if (given.size() == at + 1 + after && given[at]->T == param.T) {
                arguments.push_back(given[at++]);
                continue;
            }
            Expr* list = MakeExpr(ExprKind::ArrayOf, line, param.T);
            for (; at + after < given.size(); ++at) {
                Convert(given[at], param.T->Element);
                list->Args.push_back(given[at]);
            }
            arguments.push_back(list);
        } else if (left) {
            if (param.ByRef) CheckByRef(*given[at], param);
            Convert(given[at], param.T);
            arguments.push_back(given[at++]);
        } else {
            Expr* missing = MakeExpr(ExprKind::Missing, line, param.T);
            missing->Left = param.Default;
            // A call may stand before the body that gives the default its type.
            if (param.Default && !param.Default->T && param.Default->Kind == ExprKind::Literal)
                CheckConverted(missing->Left, param.T, Error::AssignIncompatible);
            else if (param.Default && !param.Default->T) {
                Context before = std::move(mNow);
                mNow = {};
                mNow.Owner = method.Owner;
                CheckConverted(missing->Left, param.T, Error::AssignIncompatible);
                mNow = std::move(before);
            }
            arguments.push_back(missing);
        }
    }
}

void Checker::FinishCall(Expr*& expr, Method& method, Expr* self) {
    if (method.IsInstance() && !self) {
        const bool hasSelf = mNow.M && !mNow.Shared && mNow.Owner->ComesFrom(method.Owner);
        if (!hasSelf) NeedInstance(*expr, *method.Sym, false);
        self = ImplicitSelf(expr->Line);
    }
    FillArguments(expr->Args, method, expr->Line);
    if (self && self->Kind == ExprKind::Super) expr->DirectCall = true;
    expr->Kind = method.Host >= 0 ? ExprKind::Host : ExprKind::Invoke;
    expr->HostIndex = method.Host;
    expr->Target = &method;
    expr->Left = method.IsInstance() ? self : nullptr;
    expr->Right = nullptr;
    expr->T = method.Result;
}

// A method with an Extends parameter, called behind a dot.
bool Checker::CallExtension(Expr*& expr, NameId name, Expr* base, Expr* assigned) {
    Symbol* symbol = FindName(name);
    if (!symbol || symbol->Is != Symbol::What::Methods) return false;
    std::vector<Method*> extensions, fitting;
    for (Method* method : symbol->Overloads) {
        const std::vector<Parameter>& params = method->Decl->Params;
        if (params.empty() || !params[0].IsExtends) continue;
        extensions.push_back(method);
        const bool same = params[0].T == base->T || (base->T->IsObject() && base->T->ComesFrom(params[0].T));
        if (same) fitting.push_back(method);
    }
    if (extensions.empty()) return false;
    const Parameter& first = extensions[0]->Decl->Params[0];
    if (fitting.empty() && FindNative(Spell(name)).empty()) {
        if (TypeCost(base->T, first.T) >= 0)
            Fail(Error::ExtensionConversion, expr->Line, {Spell(name), base->T->Name, first.T->Name});
        Fail(Error::ExtendsOther, expr->Line, {first.T->Name, base->T->Name});
    }
    if (fitting.empty()) return false;
    expr->Args.insert(expr->Args.begin(), base);
    expr->Parenthesised = true;  // tells the call that its base is given
    CallMethods(expr, fitting, nullptr, assigned);
    return true;
}

void Checker::CallDelegate(Expr*& expr, Expr* delegate) {
    Method& signature = *delegate->T->Signature;
    CheckArguments(expr->Args);
    if (MethodCost(signature, expr->Args) < 0) FailMethod(signature, *expr);
    FillArguments(expr->Args, signature, expr->Line);
    expr->Kind = ExprKind::InvokeDelegate;
    expr->Target = &signature;
    expr->Left = delegate;
    expr->T = signature.Result;
}

}  // namespace sorbel::script
