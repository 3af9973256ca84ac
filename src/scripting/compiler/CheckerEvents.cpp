#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// An event is a field of the object for the delegate that answers it. What answers is given the object
// first.
void Checker::DeclareEvent(MethodDecl& decl, Type* owner) {
    Method& event = mOut.Methods.emplace_back();
    event.Decl = &decl;
    event.Owner = owner;
    ResolveSignature(event);
    CheckDelegateSignature(event);
    Parameter sender;
    sender.Name = mNames.Intern("sender");
    sender.Line = decl.Line;
    sender.T = owner;
    MethodDecl& answering = mTree.Methods.emplace_back(decl);
    answering.Params.insert(answering.Params.begin(), sender);
    Method& signature = mOut.Methods.emplace_back();
    signature.Decl = &answering;
    signature.Result = event.Result;
    Type* type = mTypes.Declare(Kind::Delegate, owner->Name + "." + Spell(decl.Name));
    type->Signature = &signature;
    Symbol* symbol = Declare(owner->Own, decl.Name, Symbol::What::Event, decl.Line);
    symbol->Owner = owner;
    symbol->Visible = decl.Visible;
    symbol->T = type;
    symbol->Overloads = {&event};
    Variable& field = mOut.Variables.emplace_back();
    field.Where = Variable::Storage::Field;
    field.Name = decl.Name;
    field.T = type;
    field.Line = decl.Line;
    field.Sym = symbol;
    symbol->Var = &field;
    owner->Fields.push_back(&field);
}

void Checker::CheckRaiseEvent(Expr& expr) {
    Symbol* symbol = FindMember(mNow.Owner, expr.Name);
    if (!symbol || symbol->Is != Symbol::What::Event) Fail(Error::NoSuchEvent, expr.Line);
    if (!mNow.M || mNow.Shared) Fail(Error::InstanceMethodNeedsObject, expr.Line);
    CheckVisible(*symbol, expr.Line);
    Method& event = *symbol->Overloads[0];
    CheckArguments(expr.Args);
    if (MethodCost(event, expr.Args) < 0) FailMethod(event, expr);
    FillArguments(expr.Args, event, expr.Line);
    expr.Args.insert(expr.Args.begin(), ImplicitSelf(expr.Line));
    expr.Left = MakeExpr(ExprKind::Field, expr.Line, symbol->T);
    expr.Left->Left = ImplicitSelf(expr.Line);
    expr.Left->Var = symbol->Var;
    expr.Target = symbol->T->Signature;
    expr.T = event.Result;
}

// AddHandler and RemoveHandler become a call of the library with the object, the delegate and the field.
void Checker::CheckHandler(Stmt& statement) {
    Expr*& event = statement.A;
    if (event->Kind == ExprKind::Member) {
        CheckExpr(event->Left);
        if (event->Left->Kind == ExprKind::Namespace) Fail(Error::HandlerNeedsObject, statement.Line);
        CheckValue(event->Left);
        const Type* type = event->Left->T;
        if (!type->Is(Kind::Class) && !type->Is(Kind::Interface))
            Fail(Error::HandlerNeedsObject, statement.Line);
        Symbol* symbol = FindMember(type, event->Name);
        if (!symbol || symbol->Is != Symbol::What::Event) Fail(Error::HandlerOfNoEvent, statement.Line);
        UseSymbol(event, *symbol, event->Left);
    } else if (event->Kind == ExprKind::Name) {
        CheckExpr(event);
    }
    if (event->Kind != ExprKind::Event) Fail(Error::HandlerNeedsObject, statement.Line);
    CheckConverted(statement.B, event->Sym->T, Error::AssignIncompatible);
    Expr* field = MakeExpr(ExprKind::Literal, statement.Line, mInteger);
    field->Value = int64_t{event->Sym->Var->Index};
    Expr* call = MakeExpr(ExprKind::Native, statement.Line, mVoid);
    call->Args = {event->Left, statement.B, field};
    call->Function = &Native(statement.Kind == StmtKind::AddHandler ? ".AddHandler" : ".RemoveHandler");
    statement.A = call;
    statement.Kind = StmtKind::Expression;
}

}  // namespace sorbel::script
