#include <cmath>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

void Checker::Evaluate(Constant& constant) {
    if (constant.Progress == Constant::State::Done) return;
    const uint32_t line = constant.Decl ? constant.Decl->Line : constant.Member->Line;
    if (constant.Progress == Constant::State::Busy) Fail(Error::RecursiveConstant, line);
    if (constant.Failure) throw CompileError(*constant.Failure);
    constant.Progress = Constant::State::Busy;
    try {
        const Depth::Step step(mDepth, line);
        WorkOut(constant);
    } catch (const CompileError& error) {
        constant.Progress = Constant::State::Failed;
        constant.Failure = error;
        throw;
    }
    constant.Progress = Constant::State::Done;
}

void Checker::WorkOut(Constant& constant) {
    // A constant sees what its own place sees, not what stands around its first use.
    Context before = std::move(mNow);
    mNow = {};
    mNow.Owner = constant.Owner;
    mNow.InConstant = true;
    if (constant.Member) {
        EvaluateMember(constant);
    } else {
        const uint32_t line = constant.Decl->Line;
        Expr*& init = constant.Decl->Init;
        CheckValue(init);
        constant.T = init->T;
        if (constant.Decl->Named.Given()) {
            constant.T = FindWholeType(constant.Decl->Named);
            if (constant.T->K >= Kind::Variant) Fail(Error::ConstantType, line);
            CheckConverted(init, constant.T, Error::AssignIncompatible);
        }
        if (init->Kind != ExprKind::Literal) Fail(Error::ConstNeedsConstant, line);
        constant.Value = init->Value;
    }
    mNow = std::move(before);
}

void Checker::EvaluateMember(Constant& constant) {
    const EnumMember& member = *constant.Member;
    if (!member.Value) {
        // From the first one on, as each needs the one before it.
        std::vector<Constant*> open;
        for (Constant* before = constant.Before; before && before->Progress == Constant::State::Open;
             before = before->Before)
            open.push_back(before);
        for (size_t at = open.size(); at-- > 0;)
            Evaluate(*open[at]);
        if (constant.Before) Evaluate(*constant.Before);
        const int64_t last = constant.Before ? std::get<int64_t>(constant.Before->Value) : -1;
        constant.Value = static_cast<int64_t>(static_cast<uint64_t>(last) + 1);
        return;
    }
    Expr* value = member.Value;
    CheckValue(value);
    if (value->Kind != ExprKind::Literal) Fail(Error::ConstantExpected, member.Line);
    if (!value->T->IsInteger()) Fail(Error::EnumNotInteger, member.Line);
    constant.Value = value->Value;
}

// Works an operation of literals out. The types are checked already.
bool Checker::Fold(Expr& expr) const {
    const auto literal = [](const Expr* part) {
        return !part || part->Kind == ExprKind::Literal;
    };
    if (!literal(expr.Left) || !literal(expr.Right)) return false;
    const ConstantValue& left = expr.Left->Value;
    if (expr.Operator == Op::Not && std::holds_alternative<bool>(left)) {
        expr.Value = !std::get<bool>(left);
    } else if (expr.Operator == Op::Negate || expr.Operator == Op::Not) {
        if (const double* real = std::get_if<double>(&left))
            expr.Value = -*real;
        else if (const int64_t* number = std::get_if<int64_t>(&left))
            expr.Value = static_cast<int64_t>(expr.Operator == Op::Not ? ~static_cast<uint64_t>(*number)
                                                                       : 0 - static_cast<uint64_t>(*number));
        else
            return false;
    } else {
        const ConstantValue& right = expr.Right->Value;
        if (left.index() != right.index()) return false;
        if (std::holds_alternative<ConstantText>(left) && expr.Operator == Op::Add)
            JoinTexts(expr);
        else if (std::holds_alternative<int64_t>(left))
            return FoldIntegers(expr, std::get<int64_t>(left), std::get<int64_t>(right));
        else if (std::holds_alternative<double>(left))
            return FoldReals(expr, std::get<double>(left), std::get<double>(right));
        else
            return false;
    }
    expr.Kind = ExprKind::Literal;
    return true;
}

void Checker::JoinTexts(Expr& expr) const {
    const StringView left = std::get<ConstantText>(expr.Left->Value).View(),
                     right = std::get<ConstantText>(expr.Right->Value).View();
    mTree.Room.Keep(left.size() + right.size(), expr.Line);
    String joined;
    joined.reserve(left.size() + right.size());
    joined.append(left).append(right);
    expr.Value = ConstantText(std::move(joined));
    // The parts would make a long sum a square of its length.
    for (Expr* part : {expr.Left, expr.Right}) {
        const ConstantText& text = std::get<ConstantText>(part->Value);
        if (!text.IsShared()) mTree.Room.GiveBack(text.View().size());
        part->Value = ConstantText();
    }
}

bool Checker::FoldIntegers(Expr& expr, int64_t a, int64_t b) const {
    if (expr.Left->T->IsUnsigned() || expr.Right->T->IsUnsigned()) return false;
    const auto x = static_cast<uint64_t>(a), y = static_cast<uint64_t>(b);
    switch (expr.Operator) {
        case Op::Add:
            expr.Value = static_cast<int64_t>(x + y);
            break;
        case Op::Subtract:
            expr.Value = static_cast<int64_t>(x - y);
            break;
        case Op::Multiply:
            expr.Value = static_cast<int64_t>(x * y);
            break;
        case Op::And:
            expr.Value = static_cast<int64_t>(x & y);
            break;
        case Op::Or:
            expr.Value = static_cast<int64_t>(x | y);
            break;
        case Op::Xor:
            expr.Value = static_cast<int64_t>(x ^ y);
            break;
        case Op::IntegerDivide:
            if (b == 0) return false;
            expr.Value = b == -1 ? static_cast<int64_t>(0 - x) : a / b;
            break;
        case Op::Modulo:
            if (b == 0) return false;
            expr.Value = b == -1 ? 0 : a % b;
            break;
        default:
            return false;
    }
    expr.Kind = ExprKind::Literal;
    return true;
}

bool Checker::FoldReals(Expr& expr, double a, double b) const {
    if (!expr.T->Is(Kind::Double)) return false;
    switch (expr.Operator) {
        case Op::Add:
            expr.Value = a + b;
            break;
        case Op::Subtract:
            expr.Value = a - b;
            break;
        case Op::Multiply:
            expr.Value = a * b;
            break;
        case Op::Divide:
            expr.Value = a / b;
            break;
        case Op::Power:
            expr.Value = std::pow(a, b);
            break;
        default:
            return false;
    }
    expr.Kind = ExprKind::Literal;
    return true;
}

}  // namespace sorbel::script
