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

// The value of an expression of literals, constants that stand above, and logic; nothing if it is not
// constant.
ConstantValue Parser::DirectiveValue(const Expr& expr) const {
    if (expr.Kind == ExprKind::Literal) return expr.Value;
    if (expr.Kind == ExprKind::Name) {
        const String name = Fold(mNames.Spelling(expr.Name));
        if (name == "debugbuild" || name == "targetwindows" || name == "targetmacos") return false;
        if (name == "targetlinux" || name == "targetdesktop" || name == "target64bit") return true;
        const auto found = mConstants.find(expr.Name);
        return found == mConstants.end() ? ConstantValue() : DirectiveValue(*found->second);
    }
    if (expr.Kind == ExprKind::Unary && expr.Operator == Op::Not) {
        const ConstantValue value = DirectiveValue(*expr.Left);
        if (const bool* flag = std::get_if<bool>(&value)) return !*flag;
        return value;
    }
    if (expr.Kind != ExprKind::Binary) return {};
    const ConstantValue left = DirectiveValue(*expr.Left), right = DirectiveValue(*expr.Right);
    if (left.index() == 0 || right.index() == 0) return {};
    if (expr.Operator == Op::Equal) return left == right;
    if (expr.Operator == Op::NotEqual) return left != right;
    const bool *a = std::get_if<bool>(&left), *b = std::get_if<bool>(&right);
    if (!a || !b) return {};
    if (expr.Operator == Op::And) return *a && *b;
    if (expr.Operator == Op::Or) return *a || *b;
    if (expr.Operator == Op::Xor) return *a != *b;
    return {};
}

// pragma = "#Pragma" ( "Error" text | "Warning" text | anything )
void Parser::ReadPragma(uint32_t line) {
    const bool error = AtWord(mErrorWord), warning = AtWord(mWarningWord);
    if (error || warning) {
        Take();
        if (!At(Tok::Text)) Fail(error ? Error::PragmaErrorText : Error::PragmaWarningText, line);
        const String text = Take().Text;
        if (error) Fail(Error::PragmaError, line, {text});
        mTree.Warnings.push_back({line, text});
    }
    while (!At(Tok::NewLine) && !At(Tok::End))
        Take();
    EndStatement();
}

}  // namespace sorbel::script
