#include "scripting/compiler/Parser.h"

namespace sorbel::script {

Parser::Parser(const std::vector<Token>& tokens, Names& names, Tree& tree)
    : mTokens(tokens), mNames(names), mTree(tree) {
    mGet = names.Intern("Get");
    mSet = names.Intern("Set");
    mDirectiveIf = names.Intern("#If");
    mDirectiveElse = names.Intern("#Else");
    mDirectiveElseIf = names.Intern("#ElseIf");
    mDirectiveEndIf = names.Intern("#EndIf");
    mDirectivePragma = names.Intern("#Pragma");
    mErrorWord = names.Intern("Error");
    mWarningWord = names.Intern("Warning");
    mAttributes = names.Intern("Attributes");
    mReDim = names.Intern("ReDim");
    mAlignment = names.Intern("StructureAlignment");
}

// program = { declaration | statement }
void Parser::ReadProgram() {
    CheckReadable();
    mTree.Top.K = Kind::Module;
    for (SkipLines(); !At(Tok::End); SkipLines()) {
        if (!ReadDeclaration(mTree.Top)) ReadStatement(mTree.Main);
        EndStatement();
    }
}

// --- Tokens ---

const Token& Parser::Ahead(size_t count) const {
    return mTokens[std::min(mAt + count, mTokens.size() - 1)];
}

void Parser::CheckReadable() const {
    if (!At(Tok::Bad)) return;
    std::vector<String> details;
    if (const StringView text = Now().Text.View(); !text.empty()) details.emplace_back(text);
    Fail(static_cast<Error>(Now().Integer), Line(), std::move(details));
}

const Token& Parser::Take() {
    const Token& taken = mTokens[mAt];
    if (taken.Kind != Tok::End) ++mAt;
    CheckReadable();
    return taken;
}

bool Parser::Accept(Tok kind) {
    if (!At(kind)) return false;
    Take();
    return true;
}

const Token& Parser::Expect(Tok kind) {
    if (!At(kind)) Fail(Error::Syntax, Line());
    return Take();
}

void Parser::CloseParenthesis() {
    if (Accept(Tok::RightParen)) return;
    const bool ended = At(Tok::NewLine) || At(Tok::End) || IsKeyword(Now().Kind);
    Fail(ended ? Error::TooFewParentheses : Error::Syntax, Line());
}

void Parser::EndStatement() {
    if (At(Tok::RightParen)) Fail(Error::TooManyParentheses, Line());
    if (At(Tok::Colon)) Fail(Error::PairCreation, Line());
    if (!At(Tok::End)) Expect(Tok::NewLine);
}

void Parser::SkipLines() {
    for (;;) {
        if (At(Tok::Directive))
            ReadDirective();
        else if (!Accept(Tok::NewLine))
            break;
    }
    if (At(Tok::End) && !mOpenIfs.empty()) Fail(Error::MissingEndIfDirective, mOpenIfs.back().Line);
}

NameId Parser::DeclaredName() {
    if (IsKeyword(Now().Kind)) Fail(Error::ReservedIdentifier, Line());
    return Expect(Tok::Identifier).Name;
}

// Behind a dot every word is a name.
NameId Parser::MemberName() {
    if (IsKeyword(Now().Kind)) return Take().Name;
    return Expect(Tok::Identifier).Name;
}

// type = name { "." name } [ "(" { "," } ")" ]
TypeName Parser::ReadTypeName() {
    TypeName type;
    type.Line = Line();
    if (!At(Tok::Identifier)) {
        if (At(Tok::NewLine) || At(Tok::End)) Fail(Error::Syntax, Line());
        Fail(Error::ExpectedType, Line(), {String(Now().Spelling)});
    }
    type.Path.push_back(Take().Name);
    while (Accept(Tok::Dot))
        type.Path.push_back(MemberName());
    if (At(Tok::LeftParen) && (Ahead(1).Kind == Tok::RightParen || Ahead(1).Kind == Tok::Comma))
        type.Rank = ReadArrayRank();
    return type;
}

// rank = "(" { "," } ")"
int Parser::ReadArrayRank() {
    Expect(Tok::LeftParen);
    int rank = 1;
    while (Accept(Tok::Comma))
        ++rank;
    CloseParenthesis();
    return rank;
}

TypeName Parser::ReadAsType() {
    Expect(Tok::KAs);
    return ReadTypeName();
}

Expr* Parser::NewExpr(ExprKind kind, uint32_t line) {
    mTree.Room.Need(sizeof(Expr), line);
    Expr& expr = mTree.Exprs.emplace_back();
    expr.Kind = kind;
    expr.Line = line;
    return &expr;
}

// To be called when the parts are in place.
Expr* Parser::Deeper(Expr* expr) {
    uint16_t depth = 0;
    for (const Expr* part : {expr->Left, expr->Right})
        if (part) depth = std::max(depth, part->Depth);
    for (const Expr* part : expr->Args)
        depth = std::max(depth, part->Depth);
    if (depth >= MaxDepth) Fail(Error::Nesting, expr->Line);
    expr->Depth = static_cast<uint16_t>(depth + 1);
    return expr;
}

Stmt* Parser::NewStmt(StmtKind kind) {
    mTree.Room.Need(sizeof(Stmt), Line());
    Stmt& statement = mTree.Stmts.emplace_back();
    statement.Kind = kind;
    statement.Line = Line();
    return &statement;
}

}  // namespace sorbel::script
