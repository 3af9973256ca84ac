#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// A method of the class Dictionary hands its object and its arguments to the function of the library.
void Checker::MakeLibraryBody(Method& method) {
    MethodDecl& decl = *method.Decl;
    const bool assigns = !decl.Params.empty() && decl.Params.back().IsAssigns;
    Expr* call = MakeExpr(ExprKind::Native, decl.Line, method.Result);
    call->Function = &Native(".Dictionary" + (assigns ? "Assign" : Spell(decl.Name)));
    call->Args.push_back(ImplicitSelf(decl.Line));
    for (const Parameter& parameter : decl.Params)
        call->Args.push_back(Reference(*parameter.Var, decl.Line));
    Stmt& statement = mTree.Stmts.emplace_back();
    statement.Kind = decl.IsFunction ? StmtKind::Return : StmtKind::Expression;
    statement.Line = decl.Line;
    statement.A = call;
    decl.Body = {&statement};
    decl.InLibrary = true;
}

// For Each goes through the keys as they were at the start.
void Checker::CheckKeys(Expr*& dictionary) {
    Expr* call = MakeExpr(ExprKind::Call, dictionary->Line, nullptr);
    CallMethods(call, FindMember(mDictionary, mNames.Intern("Keys"))->Overloads, dictionary, nullptr);
    dictionary = call;
}

}  // namespace sorbel::script
