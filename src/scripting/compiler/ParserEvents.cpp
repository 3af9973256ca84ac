#include <algorithm>

#include "scripting/compiler/Parser.h"

namespace sorbel::script {

// event = "Event" name [ "(" parameters ")" ] [ "As" type ]
void Parser::ReadEvent(TypeDecl& owner, const Modifiers& modifiers) {
    MethodDecl& event = mTree.Methods.emplace_back();
    event.Line = Line();
    if (owner.K != Kind::Class) Fail(Error::EventOutsideClass, event.Line);
    if (modifiers.Shared) Fail(Error::Syntax, event.Line);
    Take();
    event.Name = DeclaredName();
    event.Visible = modifiers.Visible;
    event.SignatureOnly = true;
    if (At(Tok::LeftParen)) ReadParameters(event.Params);
    event.IsFunction = At(Tok::KAs);
    if (event.IsFunction) event.Result = ReadAsType();
    owner.Events.push_back(&event);
}

// raise = "RaiseEvent" name [ arguments ]
Expr* Parser::ReadRaiseEvent() {
    Expr* expr = NewExpr(ExprKind::RaiseEvent, Line());
    Take();
    expr->Name = DeclaredName();
    if (At(Tok::LeftParen)) ReadArguments(*expr);
    return Deeper(expr);
}

// handler = ( "AddHandler" | "RemoveHandler" ) postfix "," expression
void Parser::ReadHandler(Block& block) {
    Stmt* statement = NewStmt(At(Tok::KAddHandler) ? StmtKind::AddHandler : StmtKind::RemoveHandler);
    Take();
    statement->A = ReadPostfix();
    Expect(Tok::Comma);
    statement->B = ReadExpr();
    block.push_back(statement);
}

// Only in front of a declaration, so that the word stays free for names elsewhere.
bool Parser::AtAttributes() const {
    if (!AtWord(mAttributes) || Ahead(1).Kind != Tok::LeftParen) return false;
    size_t at = 2;
    for (int open = 1; open > 0; ++at) {
        const Tok kind = Ahead(at).Kind;
        if (kind == Tok::NewLine || kind == Tok::End) return false;
        open += kind == Tok::LeftParen ? 1 : kind == Tok::RightParen ? -1 : 0;
    }
    if (Ahead(at).Kind == Tok::Identifier) return true;  // a property, or more attributes
    while (Ahead(at).Kind == Tok::NewLine)
        ++at;
    static constexpr Tok starts[] = {Tok::KPublic, Tok::KProtected, Tok::KPrivate,   Tok::KGlobal,
                                     Tok::KShared, Tok::KSub,       Tok::KFunction,  Tok::KClass,
                                     Tok::KModule, Tok::KInterface, Tok::KStructure, Tok::KEnum,
                                     Tok::KConst,  Tok::KEvent,     Tok::KDelegate,  Tok::KProperty};
    return std::find(std::begin(starts), std::end(starts), Ahead(at).Kind) != std::end(starts) ||
           (Ahead(at).Kind == Tok::Identifier && Ahead(at).Name == mAttributes);
}

// attributes = "Attributes" "(" name [ "=" constant ] { "," ... } ")"
// A script runs the same with and without them; only what is surely wrong is reported.
void Parser::ReadAttributes() {
    Take();
    Expect(Tok::LeftParen);
    std::vector<NameId> names;
    do {
        const uint32_t line = Line();
        const NameId name = At(Tok::Text) ? mNames.Intern(Take().Text.View()) : MemberName();
        if (std::find(names.begin(), names.end(), name) != names.end()) Fail(Error::DuplicateAttribute, line);
        names.push_back(name);
        const ConstantValue value = Accept(Tok::Equal) ? DirectiveValue(*ReadExpr()) : ConstantValue();
        if (name != mAlignment) continue;
        const int64_t* number = std::get_if<int64_t>(&value);
        const bool power = number && *number >= 1 && *number <= 128 && (*number & (*number - 1)) == 0;
        if (!power) Fail(Error::StructureAlignment, line);
    } while (Accept(Tok::Comma));
    CloseParenthesis();
    while (Accept(Tok::NewLine)) {
    }
}

}  // namespace sorbel::script
