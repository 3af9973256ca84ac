#include <algorithm>
#include <numeric>
#include <optional>

#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

// Counts in a register. The last round is found by comparing before the step is added, so that a counter at
// the end of its range does not run over and begin anew.
void Emitter::EmitFor(const Stmt& statement) {
    OpenScope();
    const Type* type = statement.Var->T;
    if (statement.DeclaresCounter) DeclareVariable(*statement.Var);
    DeclareVariable(*statement.Hidden);
    const bool direct = IsDirect(*statement.Var);
    const size_t mark = Mark();
    const Register counter = direct ? static_cast<Register>(statement.Var->Index) : Temp(type);
    const auto limit = static_cast<Register>(statement.Hidden->Index);
    const Register first = Temp(type);
    Into(*statement.A, first);
    Into(*statement.B, limit);
    Register step = 0;
    const int64_t* literal = nullptr;
    if (statement.C) {
        step = Temp(type);
        Into(*statement.C, step);
        if (statement.C->Kind == ExprKind::Literal) literal = std::get_if<int64_t>(&statement.C->Value);
        if (literal && *literal == 0) literal = nullptr;  // fails when it is reached
    }
    Put(Code::Move, counter, first);
    const bool one = !statement.C || (literal && *literal == 1);
    const bool plain = type->IsInteger() && !type->Is(Kind::UInt64);
    const bool down = statement.Down || (literal && *literal < 0);
    Label top, exit, next;
    if (!direct) PutWide(Code::SetTop, counter, statement.Var->Index);
    const bool known = !statement.C || literal;
    if (known && !(statement.Down && statement.C) && (plain || !statement.C)) {
        // The loop is passed by if the counter lies behind the limit from the start.
        const Register low = down ? limit : counter, high = down ? counter : limit;
        if (type->IsReal())
            JumpShort(Code::JNotLeF, low, high, exit);
        else
            JumpShort(type->Is(Kind::UInt64) ? Code::JLtU : Code::JLtI, high, low, exit);
        Place(top);
        EmitLoopBody(statement, BlockKind::For, exit, next);
        mLine = statement.EndLine;
        if (plain && one && (direct || (type->Is(Kind::Int64) && !down))) {
            EmitForOne(statement, counter, top);
        } else if (type->Is(Kind::Int64) && direct && literal && *literal != 0) {
            Put(Code::ForStep, counter, limit, step);
            JumpTo(top);
        } else {
            if (!direct) PutWide(Code::GetTop, counter, statement.Var->Index);
            EmitForStep(statement, counter, top);
        }
    } else {
        EmitForAny(statement, counter, step, exit);
    }
    Place(exit);
    FreeTemps(mark);
    CloseScope();
}

// The end of a round of a loop that counts by one.
void Emitter::EmitForOne(const Stmt& statement, Register counter, Label& top) {
    const Type* type = statement.Var->T;
    const auto limit = static_cast<Register>(statement.Hidden->Index);
    if (IsDirect(*statement.Var)) {
        JumpShort(statement.Down ? Code::ForDown : Code::ForUp, counter, limit, top);
        // Only behind the last round can the counter have left its range.
        if (!type->Is(Kind::Int64)) EmitNumber(*mInteger, *type, counter, counter);
        return;
    }
    Label more, out;
    PutWide(Code::GetTop, counter, statement.Var->Index);
    JumpShort(Code::ForUp, counter, limit, more);
    PutWide(Code::SetTop, counter, statement.Var->Index);
    JumpTo(out);
    Place(more);
    PutWide(Code::SetTop, counter, statement.Var->Index);
    JumpTo(top);
    Place(out);
}

// The end of a round with another step or number: adds it and goes on while the limit is not passed. An
// integer that runs over its end leaves the loop.
void Emitter::EmitForStep(const Stmt& statement, Register counter, Label& top) {
    const Type* type = statement.Var->T;
    const auto limit = static_cast<Register>(statement.Hidden->Index);
    const int64_t* literal = statement.C ? std::get_if<int64_t>(&statement.C->Value) : nullptr;
    const bool down = statement.Down || (literal && *literal < 0);
    const bool direct = IsDirect(*statement.Var);
    const size_t mark = Mark();
    const Register step = Temp(type), before = Temp(type);
    Put(Code::Move, before, counter);
    if (type->IsReal()) {
        Slot one;
        one.D = 1;
        PutWide(Code::LoadConst, step, AddConstant(one));
        Put(statement.Down ? Code::SubF : Code::AddF, counter, counter, step);
    } else {
        const int64_t amount = literal ? (statement.Down ? 0 - *literal : *literal) : statement.Down ? -1 : 1;
        Slot constant;
        constant.I = amount;
        PutWide(Code::LoadConst, step, AddConstant(constant));
        Put(Code::AddI, counter, counter, step);
        EmitNumber(*mInteger, *type, counter, counter);
    }
    if (!direct) PutWide(Code::SetTop, counter, statement.Var->Index);
    Label over;
    const Register a = down ? limit : counter, b = down ? counter : limit;
    if (type->IsReal()) {
        JumpShort(Code::JLeF, a, b, top);
    } else {
        const bool isUnsigned = type->Is(Kind::UInt64);
        const Register low = down ? counter : before, high = down ? before : counter;
        JumpShort(isUnsigned ? Code::JLeU : Code::JLeI, high, low, over);
        JumpShort(isUnsigned ? Code::JLeU : Code::JLeI, a, b, top);
    }
    Place(over);
    FreeTemps(mark);
}

// A step that is only known when the loop starts, or is no whole number: its sign decides the comparison.
// Nothing would end a loop with a step of 0.
void Emitter::EmitForAny(const Stmt& statement, Register counter, Register step, Label& exit) {
    const Type* type = statement.Var->T;
    const auto limit = static_cast<Register>(statement.Hidden->Index);
    const bool direct = IsDirect(*statement.Var);
    const size_t mark = Mark();
    const Register zero = Temp(type), before = Temp(type);
    if (statement.Down) Put(type->IsReal() ? Code::NegF : Code::NegI, step, step);
    PutWide(Code::LoadInt, zero, 0);  // also the real number
    Label top, up, test, body, next;
    const bool real = type->IsReal(), big = type->Is(Kind::UInt64);
    JumpShort(real ? Code::JNeF : Code::JNeI, step, zero, test);
    PutWide(Code::CallNative, before, NativeIndex(Native(".NoStep")));
    const Code less = real ? Code::JLtF : big ? Code::JLtU : Code::JLtI;
    const Code lessEqual = real ? Code::JLeF : big ? Code::JLeU : Code::JLeI;
    Place(test);
    if (big) {
        JumpTo(up);
    } else {
        JumpShort(real ? Code::JLeF : Code::JLeI, zero, step, up);
    }
    JumpShort(lessEqual, limit, counter, body);
    JumpTo(exit);
    Place(up);
    JumpShort(lessEqual, counter, limit, body);
    JumpTo(exit);
    Place(body);
    EmitLoopBody(statement, BlockKind::For, exit, next);
    mLine = statement.EndLine;
    if (direct && type->Is(Kind::Int64)) {
        Put(Code::ForStep, counter, limit, step);
        JumpTo(body);
        JumpTo(exit);
        return FreeTemps(mark);
    }
    if (!direct) PutWide(Code::GetTop, counter, statement.Var->Index);
    Put(Code::Move, before, counter);
    Put(real ? Code::AddF : Code::AddI, counter, counter, step);
    if (type->Is(Kind::Single)) Put(Code::RoundF, counter, counter);
    if (!real) EmitNumber(*mInteger, *type, counter, counter);
    if (!direct) PutWide(Code::SetTop, counter, statement.Var->Index);
    if (!real && !big) {
        // Past the end of its range the counter would come in again from the other side.
        Label rising, fine;
        JumpShort(Code::JLtI, zero, step, rising);
        JumpShort(less, before, counter, exit);
        JumpTo(test);
        Place(rising);
        JumpShort(less, counter, before, exit);
    }
    if (big) JumpShort(less, counter, before, exit);
    JumpTo(test);
    FreeTemps(mark);
}

void Emitter::EmitForEach(const Stmt& statement) {
    OpenScope();
    if (statement.DeclaresCounter) DeclareVariable(*statement.Var);
    DeclareVariable(*statement.Hidden);
    DeclareVariable(*statement.Index);
    const auto array = static_cast<Register>(statement.Hidden->Index);
    const auto index = static_cast<Register>(statement.Index->Index);
    Into(*statement.A, array);
    PutWide(Code::LoadInt, index, -1);
    Label top, exit, next;
    JumpTo(next);
    Place(top);
    Expr variable;
    variable.Kind = ExprKind::Variable;
    variable.T = statement.Var->T;
    variable.Var = statement.Var;
    size_t mark = Mark();
    EmitAssign(variable, *statement.B);
    FreeTemps(mark);
    EmitLoopBody(statement, BlockKind::For, exit, next);
    mLine = statement.EndLine;
    // The array may grow or shrink meanwhile, so its end is asked for in each round.
    mark = Mark();
    Put(Code::AddK, index, index, 1);
    const Register count = Temp(mInteger);
    Put(Code::Move, Window(0), array);
    PutWide(Code::CallNative, count, NativeIndex(Native(".Count")));
    JumpShort(Code::JLtI, index, count, top);
    FreeTemps(mark);
    Place(exit);
    CloseScope();
}

// --- Try ---

// A way out that does not pass the ends of blocks: what lies in them goes, and what they do finally is done.
void Emitter::LeaveBlocks(size_t finallies, size_t scopes) {
    size_t open = mScopes.size();
    for (size_t at = mFinallies.size(); at-- > finallies;) {
        ReleaseScopes(open, mFinallies[at].Scopes);
        open = std::min(open, mFinallies[at].Scopes);
        JumpWide(Code::GoSub, mFinallies[at].ReturnTo, *mFinallies[at].Start);
    }
    ReleaseScopes(open, scopes);
}

// The finally block is code of its own that every way out calls, so it stands in the program once.
void Emitter::EmitTry(const Stmt& statement) {
    const Type* root = mProgram.Classes[mProgram.ExceptionClasses.at("runtimeexception")].T;
    const auto place = [this] {
        return static_cast<uint32_t>(mFunction->Code.size());
    };
    ++mTries;
    const Register caught = Temp(root);
    Label finallyStart, after, exit;
    const Register returnTo = statement.HasElse ? Temp(mInteger) : Register{0};
    if (statement.HasElse) mFinallies.push_back({&finallyStart, returnTo, mScopes.size()});
    const auto leave = [&] {
        if (statement.HasElse) JumpWide(Code::GoSub, returnTo, finallyStart);
        JumpTo(after);
    };
    mOpen.push_back({BlockKind::Try, &exit, nullptr, mFinallies.size(), mScopes.size()});
    const size_t taken = mTaken.size();
    const uint32_t start = place();
    EmitBlock(statement.Body);
    const uint32_t end = place();
    leave();
    if (!statement.Branches.empty()) {
        mFunction->Handlers.push_back({start, end, place()});
        Put(Code::GetCaught, caught);
        ReleaseTaken(taken);
        EmitCatches(statement, caught, exit);
    }
    mOpen.pop_back();
    const uint32_t catchEnd = place();
    Place(exit);
    leave();
    if (statement.HasElse) {
        mFunction->Handlers.push_back({start, end, place()});
        if (catchEnd > end) mFunction->Handlers.push_back({end, catchEnd, place()});
        mFinallies.pop_back();
        Put(Code::GetCaught, caught);
        ReleaseTaken(taken);
        JumpWide(Code::GoSub, returnTo, finallyStart);
        Put(Code::Raise, caught);
        Place(finallyStart);
        EmitBlock(statement.Else);
        Put(Code::ReturnSub, returnTo);
    }
    Place(after);
    --mTries;
}

// So far the innermost handlers stand first; afterwards each place has just its own, which is found at once.
void Emitter::ArrangeHandlers() {
    std::vector<uint32_t> edges;
    for (const Handler& handler : mFunction->Handlers) {
        edges.push_back(handler.Start);
        edges.push_back(handler.End);
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    const auto partAt = [&edges](uint32_t place) {
        return static_cast<size_t>(std::lower_bound(edges.begin(), edges.end(), place) - edges.begin());
    };
    std::vector<std::optional<uint32_t>> targets(edges.size());
    std::vector<size_t> free(edges.size() + 1);  // the next part without a handler, or one on the way to it
    std::iota(free.begin(), free.end(), 0);
    const auto nextFree = [&free](size_t part) {
        while (free[part] != part)
            part = free[part] = free[free[part]];
        return part;
    };
    for (const Handler& handler : mFunction->Handlers)
        for (size_t part = nextFree(partAt(handler.Start)); part < partAt(handler.End);
             part = nextFree(part)) {
            targets[part] = handler.Target;
            free[part] = part + 1;
        }
    mFunction->Handlers.clear();
    for (size_t part = 0; part < edges.size(); ++part)
        if (targets[part]) mFunction->Handlers.push_back({edges[part], edges[part + 1], *targets[part]});
}

void Emitter::EmitCatches(const Stmt& statement, Register caught, Label& exit) {
    for (const Branch& branch : statement.Branches) {
        Label next;
        mLine = branch.Line;
        const size_t mark = Mark();
        const Register fits = Temp(mBoolean);
        Put(Code::IsA, fits, caught, branch.T->Index);
        FreeTemps(mark);
        JumpWide(Code::JumpUnless, fits, next);
        OpenScope();
        DeclareVariable(*branch.Var);
        Put(Code::Take, branch.Var->Index, caught);
        EmitBlock(branch.Body, false);
        CloseScope();
        JumpTo(exit);
        Place(next);
    }
    Put(Code::Raise, caught);
}

}  // namespace sorbel::script
