#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

void Checker::CheckMain() {
    mNow = {};
    mNow.Owner = mTop;
    mNow.InMain = true;
    CollectLabels(mTree.Main);
    mNow.Scopes.emplace_back();
    // Variables of the outermost block are everyone's; each is declared when its line is reached, and stays
    // for the methods that are checked afterwards.
    for (Stmt* statement : mTree.Main) {
        CheckStatement(*statement);
        if (statement->Kind != StmtKind::Dim) continue;
        for (VariableDecl& decl : statement->Vars) {
            if (decl.Var->Where == Variable::Storage::Top) continue;
            decl.Var->Where = Variable::Storage::Top;
            mOut.TopVariables.push_back(decl.Var);
        }
    }
}

// An error in the main program leaves variables behind it undeclared, which the methods may use rightly.
void Checker::DeclareRest() {
    mNow.Scopes.resize(1);
    mTopVariables = std::move(mNow.Scopes.front());
    mNow.Scopes = {{}};
    for (Stmt* statement : mTree.Main) {
        if (statement->Kind != StmtKind::Dim) continue;
        for (VariableDecl& decl : statement->Vars)
            if (!mTopVariables.contains(decl.Name))
                mTopVariables[decl.Name] = DeclareLocal(decl.Name, FindWholeType(decl.Named), decl.Line)->Sym;
    }
}

void Checker::CheckBody(Method& method) {
    mNow = {};
    mNow.M = &method;
    mNow.Owner = method.Owner;
    mNow.Shared = !method.IsInstance();
    mNow.Scopes.emplace_back();
    for (Parameter& parameter : method.Decl->Params) {
        if (parameter.Default) {
            CheckConverted(parameter.Default, parameter.T, Error::AssignIncompatible);
            if (parameter.Default->Kind != ExprKind::Literal && parameter.Default->Kind != ExprKind::Nil &&
                parameter.Default->Kind != ExprKind::Convert)
                Fail(Error::ConstantExpected, parameter.Line);
        }
        parameter.Var = DeclareLocal(parameter.Name, parameter.T, parameter.Line);
        parameter.Var->IsParameter = true;
    }
    CollectLabels(method.Decl->Body);
    if (method.Owner == mDictionary) MakeLibraryBody(method);
    CheckBlock(method.Decl->Body, false);
}

namespace {

/// Whether what stands inside relies on what the start of the statement has done: a jump into it is refused.
bool PreparesBlocks(StmtKind kind) {
    switch (kind) {
        case StmtKind::For:
        case StmtKind::ForEach:
        case StmtKind::Select:
        case StmtKind::Try:
            return true;
        default:
            return false;
    }
}

}  // namespace

void Checker::CollectLabels(const Block& block, const Block* around) {
    for (const Stmt* statement : block) {
        if (statement->Kind == StmtKind::Label) {
            if (!mNow.Labels.emplace(statement->Name, around).second)
                Fail(Error::DuplicateLabel, statement->Line);
        }
        const auto collect = [&](const Block& inner) {
            CollectLabels(inner, PreparesBlocks(statement->Kind) ? &inner : around);
        };
        for (const Branch& branch : statement->Branches)
            collect(branch.Body);
        collect(statement->Body);
        collect(statement->Else);
    }
}

void Checker::CheckGoto(const Stmt& statement) const {
    const auto label = mNow.Labels.find(statement.Name);
    if (label == mNow.Labels.end()) Fail(Error::GotoTarget, statement.Line);
    const Block* wanted = label->second;
    if (wanted && std::find(mNow.Inside.begin(), mNow.Inside.end(), wanted) == mNow.Inside.end())
        Fail(Error::GotoTarget, statement.Line);
}

void Checker::CheckBlock(Block& block, bool scope) {
    if (scope) mNow.Scopes.emplace_back();
    mNow.Inside.push_back(&block);
    for (Stmt* statement : block)
        CheckStatement(*statement);
    mNow.Inside.pop_back();
    if (scope) mNow.Scopes.pop_back();
}

void Checker::CheckStatement(Stmt& statement) {
    switch (statement.Kind) {
        case StmtKind::Expression:
            return CheckExpressionStatement(statement);
        case StmtKind::Assign:
            return CheckAssign(statement);
        case StmtKind::Dim:
            return CheckDim(statement);
        case StmtKind::Select:
            return CheckSelect(statement);
        case StmtKind::For:
            return CheckFor(statement);
        case StmtKind::ForEach:
            return CheckForEach(statement);
        case StmtKind::Try:
            return CheckTry(statement);
        case StmtKind::Exit:
        case StmtKind::Continue:
            return CheckLeave(statement);
        case StmtKind::Return:
            return CheckReturn(statement);
        case StmtKind::ReDim:
            return CheckReDim(statement);
        case StmtKind::AddHandler:
        case StmtKind::RemoveHandler:
            return CheckHandler(statement);
        case StmtKind::Using:
            return CheckUsing(statement);
        case StmtKind::Label:
            return;
        case StmtKind::Goto:
            return CheckGoto(statement);
        case StmtKind::Const:
            return CheckConsts(statement);
        case StmtKind::If:
            for (Branch& branch : statement.Branches) {
                CheckCondition(branch.Condition);
                CheckBlock(branch.Body);
            }
            return CheckBlock(statement.Else);
        case StmtKind::While:
        case StmtKind::Do:
            if (statement.A && !statement.AtEnd) CheckCondition(statement.A);
            mNow.Blocks.push_back({statement.Kind == StmtKind::Do ? BlockKind::Do : BlockKind::While});
            CheckBlock(statement.Body);
            mNow.Blocks.pop_back();
            if (statement.A && statement.AtEnd) CheckCondition(statement.A);
            return;
        case StmtKind::Raise: {
            CheckValue(statement.A);
            const Symbol* root = FindMember(mTop, mNames.Intern("RuntimeException"));
            if (!statement.A->T->Is(Kind::Class) || !statement.A->T->ComesFrom(root->T))
                Fail(Error::NotAnException, statement.Line);
            return;
        }
    }
}

void Checker::CheckConsts(Stmt& statement) {
    for (ConstDecl& decl : statement.Consts) {
        CheckValue(decl.Init);
        if (decl.Named.Given()) {
            const Type* type = FindWholeType(decl.Named);
            if (type->K >= Kind::Variant) Fail(Error::ConstantType, decl.Line);
            CheckConverted(decl.Init, type, Error::AssignIncompatible);
        }
        if (decl.Init->Kind != ExprKind::Literal) Fail(Error::ConstNeedsConstant, decl.Line);
        Symbol*& slot = mNow.Scopes.back()[decl.Name];
        if (slot) Fail(slot->Var ? Error::LocalSameAsConstant : Error::DuplicateConstant, decl.Line);
        slot = &mOut.Symbols.emplace_back();
        slot->Is = Symbol::What::Constant;
        slot->Name = decl.Name;
        slot->Const = &mOut.Constants.emplace_back();
        slot->Const->Progress = Constant::State::Done;
        slot->Const->T = decl.Init->T;
        slot->Const->Value = decl.Init->Value;
    }
}

void Checker::CheckCondition(Expr*& condition) {
    CheckConverted(condition, mBoolean, Error::TypeMismatch);
}

Variable* Checker::Hidden(const Type* type) {
    Variable& variable = mOut.Variables.emplace_back();
    variable.T = type;
    variable.In = mNow.M;
    return &variable;
}

Variable* Checker::DeclareLocal(NameId name, const Type* type, uint32_t line) {
    Symbol*& slot = mNow.Scopes.back()[name];
    if (slot) Fail(slot->Const ? Error::LocalSameAsConstant : Error::Redefined, line);
    slot = &mOut.Symbols.emplace_back();
    slot->Name = name;
    slot->Var = Hidden(type);
    slot->Var->Name = name;
    slot->Var->Line = line;
    slot->Var->Sym = slot;
    return slot->Var;
}

void Checker::CheckDim(Stmt& statement) {
    for (VariableDecl& decl : statement.Vars)
        CheckVariable(decl, statement.IsStatic);
}

void Checker::CheckVariable(VariableDecl& decl, bool isStatic) {
    const Type* type = FindWholeType(decl.Named);
    for (Expr*& bound : decl.Bounds)
        CheckInteger(bound, Error::BoundsNotInteger);
    if (decl.Init) {
        if (decl.IsNew && type->Is(Kind::Array))
            Fail(decl.HasBounds ? Error::OneNewPerDim : Error::NoArrayOfThis, decl.Line);
        CheckConverted(decl.Init, type,
                       type->Is(Kind::Array) ? Error::AssignWholeArray : Error::AssignIncompatible);
    }
    decl.Var = DeclareLocal(decl.Name, type, decl.Line);
    if (!isStatic) return;
    decl.Var->Where = Variable::Storage::Top;
    mOut.TopVariables.push_back(decl.Var);
    // Tells whether the first value is set already.
    Variable* flag = Hidden(mBoolean);
    flag->Where = Variable::Storage::Top;
    mOut.TopVariables.push_back(flag);
    mOut.StaticFlags.emplace(decl.Var, flag);
}

void Checker::CheckExpressionStatement(Stmt& statement) {
    CheckExpr(statement.A);
    Expr& expr = *statement.A;
    switch (expr.Kind) {
        case ExprKind::Invoke:
        case ExprKind::Host:
            if (expr.Target->IsAccessor || (expr.Target->Host >= 0 && expr.Target->Sym->Prop)) break;
            [[fallthrough]];
        case ExprKind::InvokeDelegate:
        case ExprKind::RaiseEvent:
            if (!expr.T->Is(Kind::Void) && !statement.Explicit) Fail(Error::UnusedResult, statement.Line);
            return;
        case ExprKind::Native:
            if (*expr.Function->Result && !statement.Explicit) {
                if (StringView(expr.Function->Name) == "Pop" || StringView(expr.Function->Name) == "Input")
                    return;
                Fail(Error::UnusedResult, statement.Line);
            }
            return;
        case ExprKind::Methods: {
            CallMethods(statement.A, expr.Sym->Overloads, expr.Left, nullptr);
            return CheckExpressionStatement(statement);
        }
        default:
            break;
    }
    if (statement.Explicit) Fail(Error::IllegalCall, statement.Line);
    Fail(Error::Syntax, statement.Line);
}

void Checker::CheckSelect(Stmt& statement) {
    CheckValue(statement.A);
    if (statement.A->T->Is(Kind::Array)) Fail(Error::UseWholeArray, statement.Line);
    statement.Hidden = Hidden(statement.A->T->Is(Kind::Nil) ? mVariant : statement.A->T);
    ForceConvert(statement.A, statement.Hidden->T);
    mNow.Blocks.push_back({BlockKind::Select});
    for (Branch& branch : statement.Branches) {
        for (CaseTest& test : branch.Tests)
            CheckCase(test, *statement.Hidden, branch.Line);
        CheckBlock(branch.Body);
    }
    CheckBlock(statement.Else);
    mNow.Blocks.pop_back();
}

// A test becomes a condition on the hidden variable that holds the subject.
void Checker::CheckCase(CaseTest& test, Variable& subject, uint32_t line) {
    const auto compare = [&](Op op, Expr* value) {
        Expr* expr = MakeExpr(ExprKind::Binary, line, nullptr);
        expr->Operator = op;
        expr->Left = Reference(subject, line);
        expr->Right = value;
        return expr;
    };
    Expr* condition = nullptr;
    if (test.How == CaseTest::Form::IsA) {
        condition = MakeExpr(ExprKind::IsA, line, nullptr);
        condition->Left = Reference(subject, line);
        condition->Named = test.Named;
    } else if (test.How == CaseTest::Form::Range) {
        condition = MakeExpr(ExprKind::Binary, line, nullptr);
        condition->Operator = Op::And;
        condition->Left = compare(Op::GreaterEqual, test.Low);
        condition->Right = compare(Op::LessEqual, test.High);
    } else {
        const bool relation = test.How == CaseTest::Form::Relation;
        condition = compare(relation ? test.Relation : Op::Equal, test.Low);
    }
    CheckCondition(condition);
    test.Low = condition;
}

namespace {

bool IsNegative(const Expr& step) {
    if (step.Kind != ExprKind::Literal) return false;
    if (const double* real = std::get_if<double>(&step.Value)) return *real < 0;
    const int64_t* number = std::get_if<int64_t>(&step.Value);
    return number && *number < 0 && !step.T->IsUnsigned();
}

}  // namespace

void Checker::CheckFor(Stmt& statement) {
    mNow.Scopes.emplace_back();
    CheckValue(statement.A);
    CheckValue(statement.B);
    if (statement.C) CheckValue(statement.C);
    if (statement.DeclaresCounter) {
        statement.Var = DeclareLocal(statement.Name, FindWholeType(statement.Named), statement.Line);
    } else {
        const Symbol* symbol = FindName(statement.Name);
        if (!symbol) Fail(Error::UndefinedIdentifier, statement.Line);
        if (symbol->Is == Symbol::What::Constant) Fail(Error::ConstantAssigned, statement.Line);
        if (symbol->Is != Symbol::What::Variable || symbol->Var->Where == Variable::Storage::Field)
            Fail(Error::NotALocal, statement.Line);
        statement.Var = symbol->Var;
    }
    const Type* type = statement.Var->T;
    if (!type->IsNumber()) Fail(Error::TypeMismatch, statement.Line);
    // Before the step is converted: no number of this type is below 0.
    const bool down = statement.Down || (statement.C && IsNegative(*statement.C));
    if (type->IsUnsigned() && down) Fail(Error::UnsignedDownwards, statement.Line);
    for (Expr** part : {&statement.A, &statement.B, &statement.C})
        if (*part && !Convert(*part, type)) Fail(Error::TypeMismatch, statement.Line);
    statement.Hidden = Hidden(type);
    mNow.Blocks.push_back({BlockKind::For, statement.Name});
    CheckBlock(statement.Body);
    mNow.Blocks.pop_back();
    mNow.Scopes.pop_back();
}

void Checker::CheckForEach(Stmt& statement) {
    mNow.Scopes.emplace_back();
    CheckValue(statement.A);
    if (statement.A->T->ComesFrom(mDictionary)) CheckKeys(statement.A);
    const Type* array = statement.A->T;
    if (array->IsObject()) {
        const Symbol* iterable = FindMember(mTop, mNames.Intern("Iterable"));
        Fail(array->ComesFrom(iterable->T) ? Error::IterableObject : Error::NotIterable, statement.Line);
    }
    if (!array->Is(Kind::Array) || array->Rank != 1) Fail(Error::NotAnArray, statement.Line);
    if (statement.DeclaresCounter) {
        statement.Var = DeclareLocal(statement.Name, FindWholeType(statement.Named), statement.Line);
    } else {
        const Symbol* symbol = FindName(statement.Name);
        if (!symbol) Fail(Error::UndefinedIdentifier, statement.Line);
        if (symbol->Is != Symbol::What::Variable || symbol->Var->Where == Variable::Storage::Field)
            Fail(Error::NotALocal, statement.Line);
        statement.Var = symbol->Var;
    }
    // The element is read as `array(index)`, converted to the variable's type.
    statement.Hidden = Hidden(array);
    statement.Index = Hidden(mInteger);
    Expr* element = MakeExpr(ExprKind::Subscript, statement.Line, array->Element);
    element->Left = Reference(*statement.Hidden, statement.Line);
    element->Args.push_back(Reference(*statement.Index, statement.Line));
    statement.B = element;
    if (!Convert(statement.B, statement.Var->T)) Fail(Error::TypeMismatch, statement.Line);
    mNow.Blocks.push_back({BlockKind::For, statement.Name});
    CheckBlock(statement.Body);
    mNow.Blocks.pop_back();
    mNow.Scopes.pop_back();
}

void Checker::CheckTry(Stmt& statement) {
    mNow.Blocks.push_back({BlockKind::Try});
    CheckBlock(statement.Body);
    const Type* root = FindMember(mTop, mNames.Intern("RuntimeException"))->T;
    for (Branch& branch : statement.Branches) {
        branch.T = branch.Named.Given() ? FindWholeType(branch.Named) : root;
        if (!branch.T->Is(Kind::Class) || !branch.T->ComesFrom(root))
            Fail(Error::NotAnException, branch.Line);
        mNow.Scopes.emplace_back();
        branch.Var = branch.HasName ? DeclareLocal(branch.Name, branch.T, branch.Line) : Hidden(branch.T);
        CheckBlock(branch.Body, false);
        mNow.Scopes.pop_back();
    }
    mNow.Blocks.pop_back();
    CheckBlock(statement.Else);
}

void Checker::CheckLeave(const Stmt& statement) const {
    const bool exits = statement.Kind == StmtKind::Exit;
    const auto isLoop = [](BlockKind kind) {
        return kind == BlockKind::For || kind == BlockKind::While || kind == BlockKind::Do;
    };
    const auto inside = [&](auto test) {
        return std::any_of(mNow.Blocks.begin(), mNow.Blocks.end(), [&](const Context::OpenBlock& block) {
            return (!statement.HasName || block.Counter == statement.Name) && test(block.Kind);
        });
    };
    bool found = false;
    switch (statement.Target) {
        case BlockKind::Any:
            if (!exits && !inside(isLoop)) Fail(Error::NothingToContinue, statement.Line);
            found =
                inside([&](BlockKind kind) { return isLoop(kind) || (exits && kind == BlockKind::Select); });
            break;
        case BlockKind::Sub:
            found = exits && mNow.M && !mNow.M->Decl->IsFunction;
            break;
        case BlockKind::Function:
            found = exits && mNow.M && mNow.M->Decl->IsFunction;
            break;
        case BlockKind::Property:
            found = exits && mNow.M && mNow.M->IsAccessor;
            break;
        default:
            found = (exits || isLoop(statement.Target)) &&
                    inside([&](BlockKind kind) { return kind == statement.Target; });
    }
    static constexpr const char* names[] = {"loop", "For",      "While", "Do",      "Select",
                                            "Sub",  "Function", "Try",   "Property"};
    if (found) return;
    const String counter = statement.HasName ? " " + Spell(statement.Name) : "";
    Fail(Error::NoBlock, statement.Line,
         {names[static_cast<size_t>(statement.Target)] + counter, exits ? "Exit" : "Continue"});
}

void Checker::CheckReturn(Stmt& statement) {
    const Type* result = mNow.M ? mNow.M->Result : mVoid;
    if (!statement.A) {
        if (!result->Is(Kind::Void)) Fail(Error::ReturnNeedsValue, statement.Line);
        return;
    }
    if (result->Is(Kind::Void)) Fail(Error::ValueFromSub, statement.Line);
    CheckConverted(statement.A, result, Error::TypeMismatch);
}

void Checker::CheckReDim(Stmt& statement) {
    for (Expr* target : statement.Args) {
        CheckValue(target->Left);
        const Type* type = target->Left->T;
        if (!type->Is(Kind::Array)) Fail(Error::NotAnArray, statement.Line);
        const int given = static_cast<int>(target->Args.size());
        if (given < type->Rank) Fail(Error::TooFewSubscripts, statement.Line);
        if (given > type->Rank) Fail(Error::TooManySubscripts, statement.Line);
        for (Expr*& bound : target->Args)
            CheckInteger(bound, Error::BoundsNotInteger);
    }
}

void Checker::CheckAssign(Stmt& statement) {
    if (statement.Change != Op::None) ExpandChange(statement);
    Expr*& target = statement.A;
    // A call on the left may be one of a method with an Assigns parameter.
    Expr* callee = target->Kind == ExprKind::Call ? target->Left : target;
    mAssigned = statement.B;
    mAssignTarget = callee;
    mAssignCall = callee != target;
    CheckExpr(target);
    const bool used = mAssigned == nullptr;
    mAssigned = nullptr;
    mAssignTarget = nullptr;
    if (used) {
        statement.Kind = StmtKind::Expression;
        return;
    }
    switch (target->Kind) {
        case ExprKind::Namespace:
            Fail(target->Other->Is(Kind::Module) ? Error::AssignToModule : Error::AssignToType,
                 statement.Line);
        case ExprKind::Literal:
            Fail(target->Sym ? Error::ConstantAssigned : Error::Syntax, statement.Line);
        case ExprKind::Methods:
            Fail(Error::NoAssignsParameter, statement.Line);
        case ExprKind::Variable:
        case ExprKind::Field:
        case ExprKind::Subscript:
            break;
        case ExprKind::Invoke:
            Fail(target->Target->IsAccessor ? Error::ReadOnlyProperty : Error::NoAssignsParameter,
                 statement.Line);
        default:
            Fail(Error::Syntax, statement.Line);
    }
    const bool array = target->T->Is(Kind::Array);
    if (array && target->Kind == ExprKind::Field && target->Left->T->Is(Kind::Structure))
        Fail(Error::AssignWholeArray, statement.Line);
    CheckConverted(statement.B, target->T, array ? Error::AssignWholeArray : Error::AssignIncompatible);
}

}  // namespace sorbel::script
