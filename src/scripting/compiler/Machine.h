#pragma once

#include <cstdlib>
#include <memory>

#include "scripting/compiler/Program.h"
#include "scripting/compiler/ScriptHost.h"
#include "scripting/compiler/Strings.h"

namespace sorbel::script {

/// What ended a script before its end.
struct ScriptFailure {
    String ClassName;
    String Message;
    int64_t Line = 0;
};

/// Where a script's words go and come from.
class Console {
  public:
    virtual ~Console() = default;
    virtual void Print(StringView text) = 0;
    virtual String Input(StringView prompt) = 0;
};

/// Runs a program. Registers are 64-bit places in windows on one stack; which of them count references is
/// known for each function beforehand.
class Machine final : public Memory::Destroyer {
  public:
    Machine(const Program& program, const Types& types, ScriptHost* host, Console& console);
    ~Machine() override;

    /// Runs the main program to its end. Nothing if all went well.
    std::optional<ScriptFailure> Run();
    /// Ends the script after so many operations; none at all if never called.
    void SetBudget(int64_t operations) { mBudget = operations; }

    // For the library
    [[nodiscard]] Memory& Store() { return mMemory; }
    [[nodiscard]] Console& Words() { return mConsole; }
    [[nodiscard]] const Types& KnownTypes() const { return mTypes; }
    /// A new text as a function's result; nothing for the empty one.
    void Give(Slot& to, StringView text);
    void GiveCharacter(Slot& to, char ascii);
    Array* NewTexts(const std::vector<String>& texts);
    uint64_t Random();
    /// Calls back from the library: runs what a delegate stands for to its end. The values stay the caller's;
    /// a structure is to be a copy. An exception of the script leaves it as a C++ one.
    Slot Invoke(const Delegate& delegate, std::initializer_list<Slot> values, bool references);
    void CopyStructure(Slot& to, Object* from);
    void Destroy(Object& object) override;

  private:
    static constexpr size_t StackSlots = size_t{1} << 20;
    static constexpr size_t MostFrames = 100000;
    static constexpr int MostRuns = 100;

    struct Frame {
        const Function* F;
        const Instruction* Next;
        Slot* Base;
        uint16_t Result;
    };
    /// An exception on its way through C++ code.
    struct Thrown {
        Object* Exception;
    };
    struct Stopped {};

    void Execute(size_t depth);
    template <bool Counted>
    void Loop(size_t depth);
    void Enter(const Function& function, Slot* base, uint16_t result);
    void ReleaseFrame(const Frame& frame);
    [[noreturn]] void RaiseObject(Object* exception);
    bool Unwind(Object* exception, size_t depth);
    Object* MakeException(const Failure& failure);
    [[nodiscard]] int64_t CurrentLine() const;
    [[nodiscard]] Slot* FreeStack() const;
    void EndAll();

    // Operations that are too large for the loop
    void NewArray(Slot& to, const Slot* bounds, const ArrayShape& shape);
    void ReDim(Array* array, const Slot* bounds, uint32_t rank);
    [[nodiscard]] static int64_t FlatIndex(const Array* array, const Slot* indices);
    void MakeDelegate(Slot& to, Object* target, const DelegateShape& shape);
    const Function& FunctionOf(const Object* object, int selector) const;
    void CopyElements(Array& to, const Array& from);
    Object* Clone(const Object& from);
    void Put(Slot& to, script::Heap* value);
    Text* ProgramText(uint32_t index);
    void CallHost(uint32_t index, Slot* arguments);

    const Program& mProgram;
    const Types& mTypes;
    ScriptHost* mHost;
    std::vector<HostMember> mHostMembers;
    Console& mConsole;
    Memory mMemory;
    struct FreeSlots {
        void operator()(Slot* slots) const { std::free(slots); }
    };
    std::unique_ptr<Slot, FreeSlots> mStack;  // not touched before it is used
    std::vector<Frame> mFrames;
    std::vector<Text*> mTexts;  // the program's, made when they are first needed
    Text* mCharacters[128] = {};
    Object* mCaught = nullptr;
    Slot mResult;
    int mRuns = 0;
    int64_t mBudget = INT64_MAX;
    uint64_t mSeed = 0x9E3779B97F4A7C15u;
    std::optional<ScriptFailure> mFatal;
};

/// The value of a Variant as one of `type`; counts a reference for the receiver.
[[nodiscard]] Slot Unbox(Machine& machine, Box* box, const Type& type);
/// Gives an array room for more elements, and its size. New elements are 0 or nothing; elements that go must
/// have been released.
void ResizeArray(Memory& memory, Array& array, int64_t count);

}  // namespace sorbel::script
