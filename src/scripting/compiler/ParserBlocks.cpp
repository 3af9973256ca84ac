#include "scripting/compiler/Parser.h"

namespace sorbel::script {

// select = "Select" "Case" expression { "Case" tests block } [ ( "Case" "Else" | "Else" ) block ] "End"
// "Select"
void Parser::ReadSelect(Block& block) {
    Stmt* statement = NewStmt(StmtKind::Select);
    Take();
    Expect(Tok::KCase);
    statement->A = ReadExpr();
    EndStatement();
    const auto stop = [this] {
        return At(Tok::KCase) || At(Tok::KElse) || AtEnd(Tok::KSelect);
    };
    SkipLines();
    while (!AtEnd(Tok::KSelect)) {
        if (!At(Tok::KCase) && !At(Tok::KElse))
            Fail(At(Tok::End) || At(Tok::KEnd) ? Error::MissingEndSelect : Error::Syntax,
                 At(Tok::End) || At(Tok::KEnd) ? statement->Line : Line());
        const uint32_t line = Line();
        if (statement->HasElse) Fail(Error::CaseAfterElse, line);
        if (Take().Kind == Tok::KElse || Accept(Tok::KElse)) {
            statement->HasElse = true;
            EndStatement();
            ReadBlock(statement->Else, stop, Error::MissingEndSelect, statement->Line);
            continue;
        }
        Branch branch;
        branch.Line = line;
        do
            branch.Tests.push_back(ReadCaseTest());
        while (Accept(Tok::Comma));
        EndStatement();
        ReadBlock(branch.Body, stop, Error::MissingEndSelect, statement->Line);
        statement->Branches.push_back(std::move(branch));
    }
    Take();
    Take();
    block.push_back(statement);
}

// test = [ "Is" ] relation expression | "IsA" type | expression [ "To" expression ]
CaseTest Parser::ReadCaseTest() {
    CaseTest test;
    if (Accept(Tok::KIsA)) {
        test.How = CaseTest::Form::IsA;
        test.Named = ReadTypeName();
        return test;
    }
    const bool is = Accept(Tok::KIs);
    static constexpr std::pair<Tok, Op> relations[] = {
        {Tok::Equal, Op::Equal},     {Tok::NotEqual, Op::NotEqual},
        {Tok::Less, Op::Less},       {Tok::LessEqual, Op::LessEqual},
        {Tok::Greater, Op::Greater}, {Tok::GreaterEqual, Op::GreaterEqual}};
    for (const auto& [token, relation] : relations)
        if (Accept(token)) {
            test.How = CaseTest::Form::Relation;
            test.Relation = relation;
            test.Low = ReadExpr();
            return test;
        }
    if (is) Fail(Error::Syntax, Line());
    test.Low = ReadExpr();
    if (Accept(Tok::KTo)) {
        test.How = CaseTest::Form::Range;
        test.High = ReadExpr();
    }
    return test;
}

// for = "For" ( each | count ) block "Next" [ name ]
void Parser::ReadFor(Block& block) {
    Stmt* statement = NewStmt(StmtKind::For);
    Take();
    if (At(Tok::NewLine) || At(Tok::End)) Fail(Error::ForCondition, statement->Line);
    if (Accept(Tok::KEach)) statement->Kind = StmtKind::ForEach;
    statement->Name = DeclaredName();
    if (At(Tok::KAs)) {
        statement->DeclaresCounter = true;
        statement->Named = ReadAsType();
    }
    if (statement->Kind == StmtKind::ForEach)
        ReadForEach(*statement);
    else
        ReadForCount(*statement);
    EndStatement();
    ReadBlock(
        statement->Body, [this] { return At(Tok::KNext); }, Error::MissingNext, statement->Line);
    statement->EndLine = Line();
    Take();
    if (At(Tok::Identifier) && Take().Name != statement->Name)
        Fail(Error::WrongNextVariable, statement->EndLine);
    block.push_back(statement);
}

// each = "Each" name [ "As" type ] "In" expression
void Parser::ReadForEach(Stmt& statement) {
    if (At(Tok::NewLine)) Fail(Error::ForCondition, statement.Line);
    Expect(Tok::KIn);
    statement.A = ReadCondition(Error::ForCondition);
}

// count = name [ "As" type ] "=" expression ( "To" | "DownTo" ) expression [ "Step" expression ]
void Parser::ReadForCount(Stmt& statement) {
    if (At(Tok::NewLine)) Fail(Error::ForCondition, statement.Line);
    Expect(Tok::Equal);
    statement.A = ReadCondition(Error::ForCondition);
    statement.Down = At(Tok::KDownTo);
    if (At(Tok::NewLine)) Fail(Error::ForCondition, statement.Line);
    if (!Accept(Tok::KDownTo)) Expect(Tok::KTo);
    statement.B = ReadCondition(Error::ForCondition);
    if (Accept(Tok::KStep)) statement.C = ReadExpr();
}

// while = "While" condition block "Wend"
void Parser::ReadWhile(Block& block) {
    Stmt* statement = NewStmt(StmtKind::While);
    Take();
    statement->A = ReadCondition(Error::WhileCondition);
    EndStatement();
    ReadBlock(
        statement->Body, [this] { return At(Tok::KWend); }, Error::MissingWend, statement->Line);
    Take();
    block.push_back(statement);
}

// do = "Do" [ ( "While" | "Until" ) condition ] block "Loop" [ ( "While" | "Until" ) condition ]
void Parser::ReadDo(Block& block) {
    Stmt* statement = NewStmt(StmtKind::Do);
    const auto condition = [&](bool atEnd) {
        const bool until = At(Tok::KUntil);
        if (!until && !At(Tok::KWhile)) return;
        if (statement->A) Fail(Error::Syntax, Line());
        Take();
        statement->Until = until;
        statement->AtEnd = atEnd;
        statement->A = ReadCondition(Error::WhileCondition);
    };
    Take();
    condition(false);
    EndStatement();
    ReadBlock(
        statement->Body, [this] { return At(Tok::KLoop); }, Error::MissingLoop, statement->Line);
    statement->EndLine = Line();
    Take();
    condition(true);
    block.push_back(statement);
}

// try = "Try" block { "Catch" [ name [ "As" type ] ] block } [ "Finally" block ] "End" "Try"
void Parser::ReadTry(Block& block) {
    Stmt* statement = NewStmt(StmtKind::Try);
    Take();
    EndStatement();
    const auto stop = [this] {
        return At(Tok::KCatch) || At(Tok::KFinally) || AtEnd(Tok::KTry);
    };
    ReadBlock(statement->Body, stop, Error::MissingEndTry, statement->Line);
    while (At(Tok::KCatch)) {
        Branch branch;
        branch.Line = Line();
        Take();
        if (!At(Tok::NewLine)) {
            branch.HasName = true;
            branch.Name = DeclaredName();
            if (At(Tok::KAs)) branch.Named = ReadAsType();
        }
        EndStatement();
        ReadBlock(branch.Body, stop, Error::MissingEndTry, statement->Line);
        statement->Branches.push_back(std::move(branch));
    }
    if (Accept(Tok::KFinally)) {
        EndStatement();
        statement->HasElse = true;
        ReadBlock(
            statement->Else, [this] { return AtEnd(Tok::KTry); }, Error::MissingEndTry, statement->Line);
    }
    Take();
    Take();
    block.push_back(statement);
}

}  // namespace sorbel::script
