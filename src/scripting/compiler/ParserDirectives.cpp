#include "scripting/compiler/Parser.h"

namespace sorbel::script {

// directive = "#If" condition [ "Then" ] | "#ElseIf" condition | "#Else" | "#EndIf" | "#Pragma" ...
// Lines that do not count are skipped as tokens, so they need not be statements.
void Parser::ReadDirective() {
    const uint32_t line = Line();
    const NameId name = Take().Name;
    if (name == mDirectiveIf) return ReadIf(line);
    if (name == mDirectivePragma) return ReadPragma(line);
    if (name == mDirectiveElse || name == mDirectiveElseIf) {
        if (mOpenIfs.empty() || mOpenIfs.back().SawElse) Fail(Error::StrayElse, line);
        // The branch before was read, so what is left of this #If does not count.
        mOpenIfs.back().SawElse = name == mDirectiveElse;
        return SkipInactive(false);
    }
    const bool apart = name == mNames.Intern("#End") && Accept(Tok::KIf);
    if (name != mDirectiveEndIf && !apart) Fail(Error::Syntax, line);
    if (mOpenIfs.empty()) Fail(Error::StrayEndIf, line);
    mOpenIfs.pop_back();
    EndStatement();
}

void Parser::ReadIf(uint32_t line) {
    const bool holds = DirectiveCondition();
    mOpenIfs.push_back({line, holds, false});
    if (!holds) SkipInactive(true);
}

// Goes to the end of this #If, or to the branch of it that counts.
void Parser::SkipInactive(bool mayElse) {
    int inner = 0;
    for (; mTokens[mAt].Kind != Tok::End; ++mAt) {
        if (mTokens[mAt].Kind != Tok::Directive) continue;
        const NameId name = mTokens[mAt].Name;
        const bool ends =
            name == mDirectiveEndIf || (name == mNames.Intern("#End") && Ahead(1).Kind == Tok::KIf);
        if (name == mDirectiveIf) ++inner;
        if (ends && inner-- == 0) return;  // ReadDirective reads it
        if (inner > 0 || (name != mDirectiveElse && name != mDirectiveElseIf)) continue;
        OpenIf& open = mOpenIfs.back();
        if (open.SawElse && mayElse) Fail(Error::StrayElse, Line());
        if (!mayElse) continue;
        Take();
        if (name == mDirectiveElse) {
            open.SawElse = true;
            return;
        }
        if (DirectiveCondition()) return;
        --mAt;  // the loop steps over the line end again
    }
}

bool Parser::DirectiveCondition() {
    const uint32_t line = Line();
    if (At(Tok::NewLine)) Fail(Error::ConditionNotConstant, line);
    const ConstantValue value = DirectiveValue(*ReadExpr());
    Accept(Tok::KThen);
    EndStatement();
    if (value.index() == 0) Fail(Error::ConditionNotConstant, line);
    if (!std::holds_alternative<bool>(value)) Fail(Error::ConditionNotBoolean, line);
    return std::get<bool>(value);
}

namespace {

std::optional<double> RealOf(const ConstantValue& value) {
    if (const double* real = std::get_if<double>(&value)) return *real;
    if (const int64_t* number = std::get_if<int64_t>(&value)) return static_cast<double>(*number);
    return {};
}

bool Holds(Op op, int order) {
    switch (op) {
        case Op::Equal:
            return order == 0;
        case Op::NotEqual:
            return order != 0;
        case Op::Less:
            return order < 0;
        case Op::LessEqual:
            return order <= 0;
        case Op::Greater:
            return order > 0;
        default:
            return order >= 0;
    }
}

template <typename T>
int OrderOf(const T& a, const T& b) {
    return a < b ? -1 : b < a;
}

// As the language compares: texts without regard to letter case, numbers of any kind with each other.
ConstantValue Compared(Op op, const ConstantValue& left, const ConstantValue& right) {
    const ConstantText *x = std::get_if<ConstantText>(&left), *y = std::get_if<ConstantText>(&right);
    if (x && y) return Holds(op, OrderOf(Fold(x->View()), Fold(y->View())));
    const int64_t *i = std::get_if<int64_t>(&left), *j = std::get_if<int64_t>(&right);
    if (i && j) return Holds(op, OrderOf(*i, *j));
    const auto a = RealOf(left), b = RealOf(right);
    if (a && b) return Holds(op, OrderOf(*a, *b));
    const bool truths = std::holds_alternative<bool>(left) && std::holds_alternative<bool>(right);
    if (!truths || (op != Op::Equal && op != Op::NotEqual)) return {};
    return (left == right) == (op == Op::Equal);
}

// Arithmetic of numbers; nothing where there is no result.
ConstantValue Worked(Op op, const ConstantValue& left, const ConstantValue& right) {
    const int64_t *i = std::get_if<int64_t>(&left), *j = std::get_if<int64_t>(&right);
    const auto a = RealOf(left), b = RealOf(right);
    if (!a || !b) return {};
    int64_t whole = 0;
    if (op == Op::Add && i && j) return __builtin_add_overflow(*i, *j, &whole) ? ConstantValue() : whole;
    if (op == Op::Subtract && i && j) return __builtin_sub_overflow(*i, *j, &whole) ? ConstantValue() : whole;
    if (op == Op::Multiply && i && j) return __builtin_mul_overflow(*i, *j, &whole) ? ConstantValue() : whole;
    if (op == Op::Add) return *a + *b;
    if (op == Op::Subtract) return *a - *b;
    if (op == Op::Multiply) return *a * *b;
    if (op == Op::Divide && *b != 0) return *a / *b;
    if (!i || !j || *j == 0 || (op != Op::IntegerDivide && op != Op::Modulo)) return {};
    if (*j == -1) return Worked(Op::Subtract, int64_t{0}, op == Op::Modulo ? int64_t{0} : *i);
    return op == Op::Modulo ? *i % *j : *i / *j;
}

}  // namespace

// The value of an expression of literals, constants that stand above, and logic; nothing if it is not
// constant.
ConstantValue Parser::DirectiveValue(const Expr& expr) {
    const Depth::Step step(mDepth, expr.Line);
    if (expr.Kind == ExprKind::Literal) return expr.Value;
    if (expr.Kind == ExprKind::Name) return NamedValue(expr.Name);
    if (expr.Kind == ExprKind::Unary) {
        const ConstantValue value = DirectiveValue(*expr.Left);
        if (expr.Operator == Op::Negate) return Worked(Op::Subtract, int64_t{0}, value);
        if (const bool* flag = std::get_if<bool>(&value)) return !*flag;
        return value;
    }
    if (expr.Kind != ExprKind::Binary) return {};
    const ConstantValue left = DirectiveValue(*expr.Left), right = DirectiveValue(*expr.Right);
    if (left.index() == 0 || right.index() == 0) return {};
    if (IsComparison(expr.Operator)) return Compared(expr.Operator, left, right);
    if (expr.Operator < Op::Equal) return Worked(expr.Operator, left, right);
    const bool *a = std::get_if<bool>(&left), *b = std::get_if<bool>(&right);
    if (!a || !b) return {};
    if (expr.Operator == Op::And) return *a && *b;
    if (expr.Operator == Op::Or) return *a || *b;
    if (expr.Operator == Op::Xor) return *a != *b;
    return {};
}

ConstantValue Parser::NamedValue(NameId id) {
    const String name = Fold(mNames.Spelling(id));
    if (name == "debugbuild" || name == "targetwindows" || name == "targetmacos") return false;
    if (name == "targetlinux" || name == "targetdesktop" || name == "target64bit") return true;
    const auto found = mConstants.find(id);
    if (found == mConstants.end()) return {};
    DirectiveConstant& constant = found->second;
    using State = DirectiveConstant::State;
    if (constant.Progress == State::Busy) Fail(Error::RecursiveConstant, constant.Init->Line);
    if (constant.Progress == State::Open) {
        constant.Progress = State::Busy;
        constant.Value = DirectiveValue(*constant.Init);
        constant.Progress = State::Done;
    }
    return constant.Value;
}

// pragma = "#Pragma" ( "Error" text | "Warning" text | anything )
void Parser::ReadPragma(uint32_t line) {
    const bool error = AtWord(mErrorWord), warning = AtWord(mWarningWord);
    if (error || warning) {
        Take();
        if (!At(Tok::Text)) Fail(error ? Error::PragmaErrorText : Error::PragmaWarningText, line);
        const String text(Take().Text.View());
        if (error) Fail(Error::PragmaError, line, {text});
        mTree.Warnings.push_back({line, text});
    }
    while (!At(Tok::NewLine) && !At(Tok::End))
        Take();
    EndStatement();
}

}  // namespace sorbel::script
