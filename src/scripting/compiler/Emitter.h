#pragma once

#include <functional>

#include "scripting/compiler/Checker.h"
#include "scripting/compiler/Program.h"

namespace sorbel::script {

/// The number that a literal is, if an operation can hold it; otherwise null.
[[nodiscard]] const int64_t* SmallNumber(const Expr& expr);

/// Writes the machine's operations for a checked tree.
class Emitter {
  public:
    Emitter(Tree& tree, Names& names, Types& types, Checked& checked, Program& program);
    /// Fails with CompileError when a method is too large for the machine.
    void Emit();

  private:
    using Register = uint16_t;
    // Registers from here on are places behind the function's own, where it puts what it passes on.
    static constexpr Register WindowBase = 0xC000;
    static constexpr uint32_t MostRegisters = 0x7000;
    static constexpr uint32_t MostArguments = 0x1000;
    static constexpr size_t MostHeld = 32;

    struct Label {
        int64_t Place = -1;
        std::vector<uint32_t> Uses;
    };
    /// A loop or Select that Exit and Continue may name.
    struct Open {
        BlockKind Kind;
        Label* Exit;
        Label* Continue;
        size_t Finallies;
        size_t Scopes;       // that stay open when it is left
        NameId Counter = 0;  // of a For
    };
    /// A constant that is in a register throughout a loop. Nothing may be written there.
    struct Held {
        const Expr* Literal;
        Register Reg;
    };
    struct Finally {
        Label* Start;
        Register ReturnTo;
        size_t Scopes;  // around its Try
    };

    // The program
    void EmitClasses();
    void EmitClass(Type& type);
    void EmitClassStart(Type& type);
    void EmitMain();
    void EmitMethod(Method& method);
    void EmitFunction(Function& function, uint32_t line, const std::function<void()>& body);
    void FinishFunction(uint32_t line);
    void ArrangeHandlers();
    void EmitDefaultReturn(const Type* result);
    void CollectLabelDepths(const Block& block, size_t depth);

    // Operations
    uint32_t Put(Code code, uint32_t a = 0, uint32_t b = 0, uint32_t c = 0);
    uint32_t PutWide(Code code, uint32_t a, int64_t wide);
    void Place(Label& label);
    void JumpTo(Label& label);
    void JumpWide(Code code, Register a, Label& label);
    void JumpShort(Code code, uint32_t a, uint32_t b, Label& label);
    void Bind(uint32_t use, int64_t place);

    // Registers
    Register NewRegister(const Type* type);
    void FreeRegister(Register reg, const Type* type);
    Register Temp(const Type* type);
    [[nodiscard]] size_t Mark() const { return mTemps.size(); }
    void FreeTemps(size_t mark);
    [[nodiscard]] bool HasReferences(size_t mark) const;
    [[nodiscard]] bool IsTemp(Register reg) const;
    void DeclareVariable(Variable& variable);
    void OpenScope() { mScopes.emplace_back(); }
    void CloseScope();
    void ReleaseScopes(size_t from, size_t downTo);
    void ReleaseTaken(size_t mark);
    [[nodiscard]] bool IsDirect(const Variable& variable) const;
    void Initialise(const Type* type, Register to);
    void MakeArray(const Type* type, Register to, const std::vector<Expr*>& bounds);

    // Statements
    void EmitBlock(const Block& block, bool scope = true);
    void EmitStatement(const Stmt& statement);
    void EmitOne(const Stmt& statement);
    void EmitDim(const Stmt& statement);
    void EmitVariable(const VariableDecl& decl);
    void EmitKept(const Stmt& statement);
    void EmitAssign(const Expr& target, const Expr& value);
    bool EmitAppend(const Expr& target, const Expr& value);
    Register Joined(const std::vector<const Expr*>& texts);
    void EmitIf(const Stmt& statement);
    void EmitSelect(const Stmt& statement);
    void EmitFor(const Stmt& statement);
    void EmitLoop(const Stmt& statement, void (Emitter::*emit)(const Stmt&));
    [[nodiscard]] std::optional<Register> HeldRegister(const Expr& literal) const;
    void EmitForOne(const Stmt& statement, Register counter, Label& top);
    void EmitForStep(const Stmt& statement, Register counter, Label& top);
    void EmitForAny(const Stmt& statement, Register counter, Register step, Label& exit);
    void EmitForEach(const Stmt& statement);
    void EmitWhile(const Stmt& statement);
    void EmitDo(const Stmt& statement);
    void EmitLoopBody(const Stmt& statement, BlockKind kind, Label& exit, Label& next);
    void EmitTry(const Stmt& statement);
    void EmitCatches(const Stmt& statement, Register caught, Label& exit);
    void LeaveBlocks(size_t finallies, size_t scopes);
    void EmitLeave(const Stmt& statement);
    void EmitReturn(const Expr* value);
    void EmitReDim(const Stmt& statement);

    // Expressions: Any gives the register where the value is, Into puts it where it is wanted.
    Register Any(const Expr& expr);
    Register Own(const Expr& expr);  ///< a register that nothing else changes
    void Into(const Expr& expr, Register to, bool place = false);
    void Copy(const Expr& from, Register reg, Register to);
    void EmitConditional(const Expr& expr, Register to);
    void EmitLiteral(const Expr& expr, Register to);
    void EmitUnary(const Expr& expr, Register to);
    void EmitBinary(const Expr& expr, Register to);
    void EmitComparison(const Expr& expr, Register to);
    void EmitCompared(const Expr& expr, Register left, Register right, Register to);
    void EmitTruth(const Expr& expr, Register to);
    void EmitConvert(const Expr& expr, Register to);
    void EmitNumber(const Type& from, const Type& to, Register value, Register into);
    void EmitNew(const Expr& expr, Register to);
    void EmitArray(const Expr& expr, Register to);
    void EmitSubscript(const Expr& expr, Register to, bool place);
    void EmitField(const Expr& expr, Register to, bool place);
    void EmitAddress(const Expr& expr, Register to);
    Register ArrayIndex(const Expr& expr, Register array);
    void JumpIfNot(const Expr& expr, Label& label) { JumpOn(expr, false, label); }
    void JumpOn(const Expr& expr, bool when, Label& label);
    bool JumpComparison(const Expr& expr, bool when, Label& label);
    void EmitJump(const Expr& expr, bool when, Register left, Register right, Label& label);
    void EmitJumpK(Op op, bool when, Register left, int64_t number, Label& label);
    bool JumpOnNumber(const Expr& expr, bool when, Label& label);

    // Calls
    struct Argument {
        const Expr* Value;
        Register Reg = 0;
        bool Simple = false;  // worked out in its place behind the registers
        bool Taken = false;   // its register gives the value away
        bool Lent = false;    // likewise, and gets it back, if no other argument needs it
        Register Base = 0;    // the object or array of a ByRef place
        Register Index = 0;
    };
    void EmitCall(const Expr& expr, Register to);
    void EmitDelegateCall(const Expr& expr, Register to);
    void EmitRaiseEvent(const Expr& expr, Register to);
    void EmitNative(const Expr& expr, Register to);
    void EmitHost(const Expr& expr, Register to);
    void PassArguments(std::vector<Argument>& arguments, const MethodDecl& decl, size_t first,
                       bool check = false);
    void PreparePlace(Argument& argument);
    void PrepareArgument(Argument& argument, bool byRef, bool copies);
    void PassNative(const std::vector<Expr*>& values);
    void TakeBack(const std::vector<Argument>& arguments, const MethodDecl& decl, size_t first);
    [[nodiscard]] bool GivesBack(const std::vector<Argument>& arguments, const MethodDecl& decl, size_t first,
                                 Register to) const;
    Register ResultRegister(const std::vector<Argument>& arguments, const Method& method, size_t first,
                            Register to);
    void TakeResult(const Type* type, Register result, Register to);
    void PutBack(const Argument& argument, Register value);
    Register Window(size_t place);
    [[nodiscard]] bool IsOnlyHere(const Variable& variable) const;
    [[nodiscard]] bool IsSimple(const Expr& expr) const;
    [[nodiscard]] bool MayChange(const Expr& expr) const;

    uint32_t AddConstant(Slot value);
    uint32_t AddText(const ConstantText& text);
    uint32_t BoxType(const Type* type);
    uint32_t ArrayShapeOf(const Type* type);

    Tree& mTree;
    Names& mNames;
    Types& mTypes;
    Checked& mChecked;
    Program& mProgram;
    const Type *mInteger, *mBoolean;

    // The function that is being written
    Function* mFunction = nullptr;
    const Method* mMethod = nullptr;
    bool mIsMain = false;
    bool mFar = false;
    bool mTooFar = false;
    uint32_t mLine = 0;
    uint32_t mRegisters = 0;
    std::vector<std::pair<uint32_t, const Type*>> mReferences;
    std::unordered_map<const Type*, std::vector<Register>> mFree;
    struct TempRegister {
        Register Reg;
        const Type* T;
    };
    std::vector<TempRegister> mTemps;
    std::vector<Register> mTaken;  // registers for objects and their like, in the order of their use
    std::vector<std::vector<Variable*>> mScopes;
    std::vector<Open> mOpen;
    std::vector<Finally> mFinallies;
    int mTries = 0;  // around what is being written
    std::vector<Held> mHeld;
    bool mHolds = false;  // within a loop, whether or not it has constants
    struct NamedLabel {
        Label Target;
        size_t Finallies = 0;
    };
    std::unordered_map<NameId, NamedLabel> mLabels;
    Register mNewObject = 0;
    std::unordered_map<const Type*, uint32_t> mStarts;      // functions that give fields their first values
    std::unordered_map<StringView, uint32_t> mTexts;        // as the program keeps them
    std::unordered_map<const char*, uint32_t> mTextPlaces;  // the same, by where the tree keeps them
    std::unordered_map<const Type*, uint32_t> mBoxTypes, mShapes;
};

}  // namespace sorbel::script
