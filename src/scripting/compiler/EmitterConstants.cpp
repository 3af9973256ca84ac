#include <bit>

#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

namespace {

/// Finds the constants that operations of a loop take from registers.
class ConstantSearch {
  public:
    ConstantSearch(std::vector<const Expr*>& found, size_t most) : mFound(found), mMost(most) {}

    void Visit(const Stmt& statement) {
        const bool isPlace = statement.Kind == StmtKind::Assign && statement.A->Kind != ExprKind::Variable;
        Visit(statement.A, false);
        Visit(statement.B, isPlace);
        Visit(statement.C, false);
        Visit(statement.Args);
        for (const VariableDecl& decl : statement.Vars)
            Visit(decl.Init, false);
        for (const Branch& branch : statement.Branches) {
            Visit(branch.Condition, false);
            for (const CaseTest& test : branch.Tests)
                Visit(test.Low, false);
            Visit(branch.Body);
        }
        Visit(statement.Body);
        Visit(statement.Else);
    }

  private:
    void Visit(const Block& block) {
        for (const Stmt* statement : block)
            Visit(*statement);
    }

    void Visit(const std::vector<Expr*>& list) {
        for (const Expr* expr : list)
            Visit(expr, false);
    }

    // `wanted` says that the value is asked for in a register, which may be any.
    void Visit(const Expr* expr, bool wanted) {
        if (!expr) return;
        if (expr->Kind == ExprKind::Literal) {
            const bool counts = wanted && expr->Value != ConstantValue(ConstantText());
            if (counts && mFound.size() < mMost) mFound.push_back(expr);
            return;
        }
        const bool operation = expr->Kind == ExprKind::Binary || expr->Kind == ExprKind::Unary;
        Visit(expr->Left, operation);
        Visit(expr->Right, operation && !HoldsNumber(*expr));
        for (const Expr* part : expr->Args)
            Visit(part, expr->Kind == ExprKind::Subscript || IsTextFor(*expr, part));
    }

    // A number is put where it is passed on by its own operation; a text is counted once less in a register.
    static bool IsTextFor(const Expr& call, const Expr* part) {
        const bool calls = call.Kind == ExprKind::Native || call.Kind == ExprKind::Host;
        return calls && part && std::holds_alternative<ConstantText>(part->Value);
    }

    static bool HoldsNumber(const Expr& binary) {
        const Op op = binary.Operator;
        const bool able = op == Op::Add || op == Op::Subtract || IsComparison(op);
        return able && binary.Left->T->IsInteger() && SmallNumber(*binary.Right);
    }

    std::vector<const Expr*>& mFound;
    size_t mMost;
};

bool IsSameConstant(const Expr& a, const Expr& b) {
    if (a.T != b.T) return false;
    const double *x = std::get_if<double>(&a.Value), *y = std::get_if<double>(&b.Value);
    if (x && y) return std::bit_cast<uint64_t>(*x) == std::bit_cast<uint64_t>(*y);  // -0 is not 0
    return a.Value == b.Value;
}

}  // namespace

const int64_t* SmallNumber(const Expr& expr) {
    if (expr.Kind != ExprKind::Literal) return nullptr;
    const int64_t* number = std::get_if<int64_t>(&expr.Value);
    return number && *number > INT16_MIN && *number <= INT16_MAX ? number : nullptr;
}

// The constants of a loop are put in registers once, before it; those of a loop within belong to the outer
// one. Where there are labels, control could come into the loop without passing its start.
void Emitter::EmitLoop(const Stmt& statement, void (Emitter::*emit)(const Stmt&)) {
    if (mHolds || !mLabels.empty()) return (this->*emit)(statement);
    std::vector<const Expr*> found;
    ConstantSearch(found, MostHeld).Visit(statement);
    for (const Expr* literal : found) {
        if (HeldRegister(*literal)) continue;
        const Register reg = NewRegister(literal->T);
        EmitLiteral(*literal, reg);
        mHeld.push_back({literal, reg});
    }
    mHolds = true;
    (this->*emit)(statement);
    mHolds = false;
    for (const Held& held : mHeld)
        FreeRegister(held.Reg, held.Literal->T);
    mHeld.clear();
}

std::optional<Emitter::Register> Emitter::HeldRegister(const Expr& literal) const {
    for (const Held& held : mHeld)
        if (IsSameConstant(*held.Literal, literal)) return held.Reg;
    return {};
}

}  // namespace sorbel::script
