#include "scripting/compiler/Parser.h"

namespace sorbel::script {

// block = { statement line-end }, up to what `stop` sees. A line that ends some other block means that the
// end of this one is missing.
void Parser::ReadBlock(Block& block, const Stop& stop, Error missing, uint32_t opened) {
    Nested nested(*this);
    for (SkipLines(); !stop(); SkipLines()) {
        switch (Now().Kind) {
            case Tok::End:
            case Tok::KEnd:
            case Tok::KNext:
            case Tok::KWend:
            case Tok::KLoop:
            case Tok::KElse:
            case Tok::KElseIf:
            case Tok::KCase:
            case Tok::KCatch:
            case Tok::KFinally:
                // What ends no block by itself is wrong where it stands.
                Fail(missing, missing == Error::Syntax && !At(Tok::End) ? Line() : opened);
            default:
                break;
        }
        ReadStatement(block);
        EndStatement();
    }
}

// statement = keyword-statement | label | simple
void Parser::ReadStatement(Block& block) {
    Nested nested(*this);
    if (ReadKeywordStatement(block)) return;
    if (At(Tok::Identifier) && Ahead(1).Kind == Tok::Colon && Ahead(2).Kind == Tok::NewLine) {
        Stmt* label = NewStmt(StmtKind::Label);
        label->Name = Take().Name;
        Take();
        block.push_back(label);
        return;
    }
    ReadSimple(block);
}

bool Parser::ReadKeywordStatement(Block& block) {
    switch (Now().Kind) {
        case Tok::KDim:
        case Tok::KVar:
            ReadDim(block, false);
            return true;
        case Tok::KStatic:
            ReadDim(block, true);
            return true;
        case Tok::KConst: {
            Stmt* statement = NewStmt(StmtKind::Const);
            ReadConsts(statement->Consts, Visibility::Public);
            block.push_back(statement);
            return true;
        }
        case Tok::KIf:
            ReadIfStatement(block);
            return true;
        case Tok::KSelect:
            ReadSelect(block);
            return true;
        case Tok::KFor:
            ReadFor(block);
            return true;
        case Tok::KWhile:
            ReadWhile(block);
            return true;
        case Tok::KDo:
            ReadDo(block);
            return true;
        case Tok::KTry:
            ReadTry(block);
            return true;
        case Tok::KExit:
            ReadExit(block, StmtKind::Exit);
            return true;
        case Tok::KContinue:
            ReadExit(block, StmtKind::Continue);
            return true;
        case Tok::KReDim:
            ReadReDim(block);
            return true;
        case Tok::KAddHandler:
        case Tok::KRemoveHandler:
            ReadHandler(block);
            return true;
        case Tok::KDeclare:
            Fail(Error::DeclareIllegal, Line());
        case Tok::KUsing:
        case Tok::KGoto:
        case Tok::KReturn:
        case Tok::KRaise:
            ReadShort(block);
            return true;
        default:
            return false;
    }
}

// short = "Using" path | "Goto" name | "Return" [ expression ] | "Raise" expression
void Parser::ReadShort(Block& block) {
    Stmt* statement = NewStmt(StmtKind::Return);
    const Tok word = Take().Kind;
    if (word == Tok::KUsing) {
        statement->Kind = StmtKind::Using;
        statement->Named = ReadTypeName();
    } else if (word == Tok::KGoto) {
        statement->Kind = StmtKind::Goto;
        statement->Name = Expect(Tok::Identifier).Name;
    } else {
        const bool raise = word == Tok::KRaise;
        if (raise) statement->Kind = StmtKind::Raise;
        if (raise || (!At(Tok::NewLine) && !At(Tok::End) && !At(Tok::KElse))) statement->A = ReadExpr();
    }
    block.push_back(statement);
}

// The operator in front of the `=` of an assignment.
Op Parser::AcceptChange() {
    static constexpr std::pair<Tok, Op> changes[] = {{Tok::PlusEqual, Op::Add},
                                                     {Tok::MinusEqual, Op::Subtract},
                                                     {Tok::StarEqual, Op::Multiply},
                                                     {Tok::SlashEqual, Op::Divide}};
    for (const auto& [token, op] : changes)
        if (Accept(token)) return op;
    return Op::None;
}

// simple = postfix "." "ReDim" bounds
//        | [ "Call" ] postfix [ ( "=" | "+=" | "-=" | "*=" | "/=" ) expression | expression { "," expression
//        } ]
void Parser::ReadSimple(Block& block) {
    Stmt* statement = NewStmt(StmtKind::Expression);
    statement->Explicit = Accept(Tok::KCall);
    if (statement->Explicit && !At(Tok::Identifier) && !At(Tok::KSelf) && !At(Tok::KMe) && !At(Tok::KSuper) &&
        !At(Tok::KRaiseEvent))
        Fail(Error::IllegalCall, statement->Line);
    // In `Print (a) + b` the parenthesis belongs to the argument.
    bool bare = false;
    if (At(Tok::Identifier) && Ahead(1).Kind == Tok::LeftParen && Ahead(1).SpaceBefore) {
        size_t at = 1;
        int open = 0;
        do {
            open += Ahead(at).Kind == Tok::LeftParen ? 1 : Ahead(at).Kind == Tok::RightParen ? -1 : 0;
            ++at;
        } while (open > 0 && Ahead(at).Kind != Tok::NewLine && Ahead(at).Kind != Tok::End);
        const Tok next = Ahead(at).Kind;
        bare = (next >= Tok::Plus && next <= Tok::GreaterEqual && next != Tok::Equal) || next == Tok::Comma;
    }
    Expr* target = bare ? ReadPrimary() : ReadPostfix();
    if (target->Kind == ExprKind::Call && target->Left->Kind == ExprKind::Member &&
        target->Left->Name == mReDim && !target->Args.empty()) {
        statement->Kind = StmtKind::ReDim;
        target->Left = target->Left->Left;
        statement->Args.push_back(target);
        block.push_back(statement);
        return;
    }
    if (!statement->Explicit) statement->Change = AcceptChange();
    if (statement->Change != Op::None || (!statement->Explicit && Accept(Tok::Equal))) {
        statement->Kind = StmtKind::Assign;
        statement->B = ReadExpr();
    } else if (!At(Tok::NewLine) && !At(Tok::End) && !At(Tok::KElse) && !At(Tok::RightParen)) {
        if (target->Kind != ExprKind::Name && target->Kind != ExprKind::Member) Fail(Error::Syntax, Line());
        Expr* call = NewExpr(ExprKind::Call, target->Line);
        call->Left = target;
        call->HasList = true;
        do
            call->Args.push_back(ReadExpr());
        while (Accept(Tok::Comma));
        target = Deeper(call);
    }
    statement->A = target;
    block.push_back(statement);
}

// dim = ( "Dim" | "Var" | "Static" ) variables
void Parser::ReadDim(Block& block, bool isStatic) {
    Stmt* statement = NewStmt(StmtKind::Dim);
    statement->IsStatic = isStatic;
    Take();
    ReadVariables(statement->Vars);
    block.push_back(statement);
}

// variables = variable { "," variable } — names without a type take that of the next one with a type
void Parser::ReadVariables(std::vector<VariableDecl>& vars) {
    do {
        vars.push_back(ReadVariable());
        if (!vars.back().Named.Given()) continue;
        for (size_t at = vars.size() - 1; at-- > 0 && !vars[at].Named.Given();) {
            if (vars.back().IsNew) Fail(Error::OneNewPerDim, vars[at].Line);
            // The type is shared, what stands in parentheses behind a name is not.
            const int typeRank = vars.back().Named.Rank - vars.back().OwnRank;
            if (typeRank > 0 && vars[at].OwnRank > 0) Fail(Error::Syntax, vars[at].Line);
            vars[at].Named = vars.back().Named;
            vars[at].Named.Rank = typeRank + vars[at].OwnRank;
            vars[at].Init = vars.back().Init;
        }
    } while (Accept(Tok::Comma));
    if (!vars.back().Named.Given()) Fail(Error::Syntax, Line());
}

// variable = name [ "(" [ bounds ] ")" ] [ "As" ( type | new ) [ "=" expression ] ]
VariableDecl Parser::ReadVariable() {
    VariableDecl decl;
    decl.Line = Line();
    decl.Name = DeclaredName();
    if (At(Tok::LeftParen)) {
        if (Ahead(1).Kind == Tok::RightParen || Ahead(1).Kind == Tok::Comma) {
            decl.OwnRank = ReadArrayRank();
        } else {
            Take();
            decl.HasBounds = true;
            do
                decl.Bounds.push_back(ReadExpr());
            while (Accept(Tok::Comma));
            CloseParenthesis();
            decl.OwnRank = static_cast<int>(decl.Bounds.size());
        }
    }
    if (!At(Tok::KAs)) return decl;
    if (Ahead(1).Kind == Tok::KNew) {
        Take();
        decl.IsNew = true;
        decl.Init = ReadNew();
        decl.Named = decl.Init->Named;
    } else {
        decl.Named = ReadAsType();
        if (Accept(Tok::Equal)) decl.Init = ReadExpr();
    }
    if (decl.OwnRank > 0 && decl.Named.Rank > 0) Fail(Error::Syntax, decl.Line);
    decl.Named.Rank += decl.OwnRank;
    return decl;
}

// const = "Const" name [ "As" type ] "=" expression { "," ... }
void Parser::ReadConsts(std::vector<ConstDecl>& consts, Visibility visible) {
    Take();
    do {
        ConstDecl decl;
        decl.Line = Line();
        decl.Name = DeclaredName();
        decl.Visible = visible;
        if (At(Tok::KAs)) decl.Named = ReadAsType();
        Expect(Tok::Equal);
        decl.Init = ReadExpr();
        mConstants.emplace(decl.Name, DirectiveConstant{decl.Init, {}, {}});
        consts.push_back(std::move(decl));
    } while (Accept(Tok::Comma));
}

// if = "If" condition "Then" ( line-end block-if | line-if )
void Parser::ReadIfStatement(Block& block) {
    Stmt* statement = NewStmt(StmtKind::If);
    Take();
    Branch branch;
    branch.Line = statement->Line;
    branch.Condition = ReadCondition(Error::IfCondition);
    if (At(Tok::RightParen)) Fail(Error::TooManyParentheses, Line());
    if (!Accept(Tok::KThen)) Fail(Error::MissingThen, Line());
    statement->Branches.push_back(std::move(branch));
    if (At(Tok::NewLine))
        ReadBlockIf(*statement);
    else
        ReadLineIf(*statement);
    block.push_back(statement);
}

// block-if = block { "ElseIf" condition "Then" block } [ "Else" block ] "End" "If"
void Parser::ReadBlockIf(Stmt& statement) {
    const auto stop = [this] {
        return At(Tok::KElse) || At(Tok::KElseIf) || AtEnd(Tok::KIf);
    };
    ReadBlock(statement.Branches.back().Body, stop, Error::MissingEndIf, statement.Line);
    // `Else If` on one line goes on with the same If.
    const auto again = [this] {
        return At(Tok::KElseIf) || (At(Tok::KElse) && Ahead(1).Kind == Tok::KIf);
    };
    while (again()) {
        Branch branch;
        branch.Line = Line();
        if (Take().Kind == Tok::KElse) Take();
        branch.Condition = ReadCondition(Error::ElseIfCondition);
        if (!Accept(Tok::KThen)) Fail(Error::MissingThen, Line());
        statement.Branches.push_back(std::move(branch));
        ReadBlock(statement.Branches.back().Body, stop, Error::MissingEndIf, statement.Line);
    }
    if (Accept(Tok::KElse)) {
        statement.HasElse = true;
        ReadBlock(
            statement.Else, [this] { return AtEnd(Tok::KIf); }, Error::MissingEndIf, statement.Line);
    }
    Take();
    Take();
}

// line-if = statement [ "Else" statement ]
void Parser::ReadLineIf(Stmt& statement) {
    ReadStatement(statement.Branches.back().Body);
    if (!Accept(Tok::KElse)) return;
    statement.HasElse = true;
    ReadStatement(statement.Else);
}

// exit = ( "Exit" | "Continue" ) [ block-name ], behind "For" perhaps with the name that the loop counts with
void Parser::ReadExit(Block& block, StmtKind kind) {
    Stmt* statement = NewStmt(kind);
    Take();
    static constexpr std::pair<Tok, BlockKind> names[] = {
        {Tok::KFor, BlockKind::For}, {Tok::KWhile, BlockKind::While},
        {Tok::KDo, BlockKind::Do},   {Tok::KSelect, BlockKind::Select},
        {Tok::KSub, BlockKind::Sub}, {Tok::KFunction, BlockKind::Function},
        {Tok::KTry, BlockKind::Try}, {Tok::KProperty, BlockKind::Property},
    };
    for (const auto& [token, target] : names)
        if (Accept(token)) {
            statement->Target = target;
            break;
        }
    if (statement->Target == BlockKind::For && At(Tok::Identifier)) {
        statement->HasName = true;
        statement->Name = Take().Name;
    }
    block.push_back(statement);
}

// redim = "ReDim" postfix { "," postfix }, each with bounds
void Parser::ReadReDim(Block& block) {
    Stmt* statement = NewStmt(StmtKind::ReDim);
    Take();
    do {
        Expr* target = ReadPostfix();
        if (target->Kind != ExprKind::Call || target->Args.empty()) Fail(Error::Syntax, target->Line);
        statement->Args.push_back(target);
    } while (Accept(Tok::Comma));
    block.push_back(statement);
}

}  // namespace sorbel::script
