#include "scripting/compiler/Parser.h"

namespace sorbel::script {

namespace {

struct Operator {
    Op What;
    int Strength;
};

// The binary operators, the weakest first.
Operator BinaryOperator(Tok kind) {
    switch (kind) {
        case Tok::KOr:
            return {Op::Or, 1};
        case Tok::KXor:
            return {Op::Xor, 1};
        case Tok::KAnd:
            return {Op::And, 2};
        case Tok::Equal:
            return {Op::Equal, 4};
        case Tok::NotEqual:
            return {Op::NotEqual, 4};
        case Tok::Less:
            return {Op::Less, 4};
        case Tok::LessEqual:
            return {Op::LessEqual, 4};
        case Tok::Greater:
            return {Op::Greater, 4};
        case Tok::GreaterEqual:
            return {Op::GreaterEqual, 4};
        case Tok::KIs:
            return {Op::Is, 4};
        case Tok::KIsA:
            return {Op::None, 4};
        case Tok::Plus:
            return {Op::Add, 5};
        case Tok::Minus:
            return {Op::Subtract, 5};
        case Tok::KMod:
            return {Op::Modulo, 6};
        case Tok::Backslash:
            return {Op::IntegerDivide, 6};
        case Tok::Star:
            return {Op::Multiply, 6};
        case Tok::Slash:
            return {Op::Divide, 6};
        case Tok::Caret:
            return {Op::Power, 8};
        default:
            return {Op::None, 0};
    }
}
constexpr int NotStrength = 3;
constexpr int NegateStrength = 7;

}  // namespace

const char* Spelling(Op op) {
    static constexpr const char* texts[] = {"",  "+",  "-", "*",  "/",  "\\",  "Mod", "^",   "=",   "<>",
                                            "<", "<=", ">", ">=", "Is", "And", "Or",  "Xor", "Not", "-"};
    return texts[static_cast<size_t>(op)];
}

const char* MethodName(Op op) {
    static constexpr const char* texts[] = {
        "",      "Add",     "Subtract", "Multiply", "Divide",  "IntegerDivide", "Modulo",
        "Power", "Compare", "Compare",  "Compare",  "Compare", "Compare",       "Compare",
        "",      "And",     "Or",       "Xor",      "Not",     "Negate"};
    return texts[static_cast<size_t>(op)];
}

// expression = unary { operator unary }, by strength
Expr* Parser::ReadExpr(int above) {
    Nested nested(*this);
    Expr* left = ReadUnary();
    for (;;) {
        const Operator op = BinaryOperator(Now().Kind);
        if (op.Strength == 0 || op.Strength <= above) return left;
        Expr* binary = NewExpr(At(Tok::KIsA) ? ExprKind::IsA : ExprKind::Binary, Line());
        Take();
        binary->Left = left;
        binary->Operator = op.What;
        if (binary->Kind == ExprKind::IsA)
            binary->Named = ReadTypeName();
        else
            binary->Right = ReadExpr(op.Strength);
        left = Deeper(binary);
    }
}

// A condition whose absence has a number of its own.
Expr* Parser::ReadCondition(Error missing) {
    if (At(Tok::NewLine) || At(Tok::End) || At(Tok::KThen)) Fail(missing, Line());
    return ReadExpr();
}

// unary = "-" unary | "+" unary | "Not" unary | postfix
Expr* Parser::ReadUnary() {
    const uint32_t line = Line();
    if (Accept(Tok::Plus)) return ReadExpr(NegateStrength);
    const bool negate = At(Tok::Minus);
    if (!negate && !At(Tok::KNot)) return ReadPostfix();
    Take();
    Expr* unary = NewExpr(ExprKind::Unary, line);
    unary->Operator = negate ? Op::Negate : Op::Not;
    unary->Left = ReadExpr(negate ? NegateStrength : NotStrength);
    return Deeper(unary);
}

// postfix = primary { "." name | "(" arguments ")" }
Expr* Parser::ReadPostfix() {
    Expr* expr = ReadPrimary();
    for (;;) {
        if (At(Tok::Dot)) {
            expr = ReadMember(expr);
        } else if (At(Tok::LeftParen)) {
            Expr* call = NewExpr(ExprKind::Call, Line());
            call->Left = expr;
            ReadArguments(*call);
            expr = Deeper(call);
        } else {
            return expr;
        }
    }
}

Expr* Parser::ReadMember(Expr* object) {
    Expr* member = NewExpr(ExprKind::Member, Line());
    Take();
    member->Left = object;
    member->Value = ConstantText(String(Now().Spelling));  // which Operator_Lookup is given
    member->Name = MemberName();
    return Deeper(member);
}

// arguments = "(" [ expression { "," expression } ] ")"
void Parser::ReadArguments(Expr& call) {
    Nested nested(*this);
    Expect(Tok::LeftParen);
    call.HasList = true;
    if (Accept(Tok::RightParen)) return;
    do
        call.Args.push_back(ReadExpr());
    while (Accept(Tok::Comma));
    CloseParenthesis();
}

// address = ( "AddressOf" | "WeakAddressOf" ) primary { "." name }
Expr* Parser::ReadAddress() {
    Nested nested(*this);
    const Token& token = Now();
    Take();
    Expr* expr = NewExpr(ExprKind::AddressOf, token.Line);
    expr->Weak = token.Kind == Tok::KWeakAddressOf;
    expr->Left = ReadPrimary();
    while (At(Tok::Dot))
        expr->Left = ReadMember(expr->Left);
    return Deeper(expr);
}

// primary = literal | name | "(" expression ")" | new | address | cast | conditional | raise | "Self" | "Me"
// | "Super" |
//           "Nil"
Expr* Parser::ReadPrimary() {
    const Token& token = Now();
    const auto literal = [&](ConstantValue value) {
        Take();
        Expr* expr = NewExpr(ExprKind::Literal, token.Line);
        expr->Value = std::move(value);
        return expr;
    };
    const auto simple = [&](ExprKind kind) {
        Take();
        Expr* expr = NewExpr(kind, token.Line);
        expr->Name = token.Name;
        return expr;
    };
    switch (token.Kind) {
        case Tok::Integer:
            return literal(token.Integer);
        case Tok::Unsigned: {
            Expr* expr = literal(token.Integer);
            expr->Written = LiteralForm::Unsigned;
            return expr;
        }
        case Tok::Real:
            return literal(token.Real);
        case Tok::Text:
            return literal(token.Text);
        case Tok::KTrue:
            return literal(true);
        case Tok::KFalse:
            return literal(false);
        case Tok::KNil:
            return simple(ExprKind::Nil);
        case Tok::Identifier:
            return simple(ExprKind::Name);
        case Tok::KSelf:
            return simple(ExprKind::Self);
        case Tok::KSuper:
            return simple(ExprKind::Super);
        case Tok::KNew:
            return ReadNew();
        case Tok::KCType:
            return ReadCast();
        case Tok::KRaiseEvent:
            return ReadRaiseEvent();
        case Tok::KIf:
            return ReadConditional();
        case Tok::Color: {
            Expr* expr = literal(token.Integer);
            expr->Written = LiteralForm::Color;
            return expr;
        }
        case Tok::KMe: {
            Expr* expr = simple(ExprKind::Self);
            expr->Weak = true;
            return expr;
        }
        case Tok::KAddressOf:
        case Tok::KWeakAddressOf:
            return ReadAddress();
        case Tok::LeftParen: {
            Take();
            Expr* expr = ReadExpr();
            CloseParenthesis();
            expr->Parenthesised = true;
            return expr;
        }
        default:
            Fail(Error::Syntax, token.Line);
    }
}

// new = "New" type [ arguments ]
Expr* Parser::ReadNew() {
    Expr* expr = NewExpr(ExprKind::New, Line());
    Take();
    expr->Named = ReadTypeName();
    if (expr->Named.Rank == 1)
        expr->Named.Rank = 0, expr->HasList = true;  // `New Name()` has no arguments
    else if (At(Tok::LeftParen))
        ReadArguments(*expr);
    return Deeper(expr);
}

// conditional = "If" "(" condition "," expression "," expression ")"
Expr* Parser::ReadConditional() {
    Expr* expr = NewExpr(ExprKind::Conditional, Line());
    Take();
    ReadArguments(*expr);
    const size_t given = expr->Args.size();
    if (given != 3)
        Fail(given < 3 ? Error::TooFewArguments : Error::TooManyArguments, expr->Line,
             {std::to_string(given), "3"});
    expr->Left = expr->Args[0];
    expr->Args.erase(expr->Args.begin());
    return Deeper(expr);
}

// cast = "CType" "(" expression "," type ")"
Expr* Parser::ReadCast() {
    Expr* expr = NewExpr(ExprKind::Cast, Line());
    Take();
    Expect(Tok::LeftParen);
    expr->Left = ReadExpr();
    Expect(Tok::Comma);
    expr->Named = ReadTypeName();
    CloseParenthesis();
    return Deeper(expr);
}

}  // namespace sorbel::script
