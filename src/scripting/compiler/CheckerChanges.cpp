#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// `a += b` is `a = a + b`, but what leads to `a` is worked out once.
void Checker::ExpandChange(Stmt& statement) {
    Expr* value = MakeExpr(ExprKind::Binary, statement.Line, nullptr);
    value->Operator = statement.Change;
    value->Left = Repeated(*statement.A, statement);
    value->Right = statement.B;
    statement.B = value;
}

namespace {

bool IsPlain(const Expr* expr) {
    return expr->Kind == ExprKind::Literal || expr->Kind == ExprKind::Variable || !expr->T;
}

}  // namespace

// The same place once more, to be read. Both share the parts that are checked here.
Expr* Checker::Repeated(Expr& target, Stmt& statement) {
    const bool call = target.Kind == ExprKind::Call;
    if (call) CheckArguments(target.Args);
    const bool plain = std::all_of(target.Args.begin(), target.Args.end(), IsPlain);
    Expr& callee = call ? *target.Left : target;
    if (callee.Kind == ExprKind::Member || (call && callee.Kind != ExprKind::Name)) {
        Expr*& base = callee.Kind == ExprKind::Member ? callee.Left : target.Left;
        CheckExpr(base);
        if (base->Kind != ExprKind::Namespace) {
            CheckValue(base);
            WorkOutOnce(base, statement, !plain);
        }
    }
    if (!plain)
        for (Expr*& argument : target.Args)
            if (argument->T) WorkOutOnce(argument, statement, true);
    Expr& copy = mTree.Exprs.emplace_back(target);
    if (call && !callee.T) copy.Left = &mTree.Exprs.emplace_back(callee);
    for (Expr*& argument : copy.Args)  // a literal becomes what its place needs
        if (argument->Kind == ExprKind::Literal) argument = &mTree.Exprs.emplace_back(*argument);
    return &copy;
}

// Puts a value aside in a variable of the statement, unless it can be asked for again. A structure stays in
// its place, and only what leads there is put aside.
void Checker::WorkOutOnce(Expr*& expr, Stmt& statement, bool always) {
    const bool inPlace = expr->T->Is(Kind::Structure);
    switch (expr->Kind) {
        case ExprKind::Literal:
        case ExprKind::Nil:
        case ExprKind::Self:
        case ExprKind::Super:
            return;
        case ExprKind::Variable:
            if (inPlace || !always) return;
            break;
        case ExprKind::Field:
            if (inPlace) return WorkOutOnce(expr->Left, statement, always);
            break;
        case ExprKind::Subscript: {
            if (!inPlace) break;
            const bool plain = std::all_of(expr->Args.begin(), expr->Args.end(), IsPlain);
            WorkOutOnce(expr->Left, statement, always || !plain);
            for (Expr*& index : expr->Args)
                WorkOutOnce(index, statement, always || !plain);
            return;
        }
        default:
            break;
    }
    VariableDecl& kept = statement.Vars.emplace_back();
    kept.Line = expr->Line;
    kept.Init = expr;
    kept.Var = Hidden(expr->T);
    expr = Reference(*kept.Var, expr->Line);
}

}  // namespace sorbel::script
