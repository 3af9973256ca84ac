#pragma once

#include <cmath>
#include <cstdlib>
#include <memory>
#include <utility>

#include "scripting/compiler/Program.h"
#include "scripting/compiler/ScriptHost.h"
#include "scripting/compiler/Strings.h"
#include "scripting/compiler/Watch.h"

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
    Machine(const Program& program, const Types& types, ScriptHost* host, Console& console, Footprint& room);
    ~Machine() override;

    /// Runs the main program to its end, or until `watch`, which may be null, ends it. Nothing if all went
    /// well.
    std::optional<ScriptFailure> Run(Watch* watch);

    // For the library
    [[nodiscard]] Memory& Store() { return mMemory; }
    [[nodiscard]] Console& Words() { return mConsole; }
    [[nodiscard]] const Types& KnownTypes() const { return mTypes; }
    /// A new text as a function's result; nothing for the empty one.
    void Give(Slot& to, StringView text);
    void GiveCharacter(Slot& to, char ascii);
    Array* NewTexts(int64_t count);
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
    static constexpr uint32_t Spare = 8;  // slots above a method's own

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
    class Watched;

    /// Runs the method on top until no frame above `below` is left.
    void Execute(const Frame* below);
    void Loop(const Frame* below);
    void AskWatch() const;
    void Enter(const Function& function, Slot* base, uint16_t result);
    [[noreturn]] void RefuseCall(const Function& function, Slot* base);
    void ReleaseFrame(const Frame& frame);
    [[noreturn]] void RaiseObject(Object* exception);
    bool Unwind(Object* exception, const Frame* below);
    Object* MakeException(const Failure& failure);
    void Destroy(Object& object, const Function& destructor);
    [[noreturn]] void EndForMemory();
    [[nodiscard]] int64_t CurrentLine() const;
    [[nodiscard]] Slot* FreeStack() const;
    void EndAll();

    // Operations that are too large for the loop
    void NewArray(Slot& to, const Slot* bounds, const ArrayShape& shape);
    void ReDim(Array* array, const Slot* bounds, uint32_t rank);
    void ResizeInOrder(Array& array, int64_t count, Array& gone);
    void Rearrange(Array& array, int64_t count, const std::vector<int64_t>& sizes, Array& gone);
    [[nodiscard]] static int64_t FlatIndex(const Array* array, const Slot* indices);
    void MakeDelegate(Slot& to, Object* target, const DelegateShape& shape);
    const Function& FunctionOf(const Object* object, int selector) const;
    void CopyElements(Array& to, const Array& from);
    Object* Clone(const Object& from);
    /// The old value goes last: that may run a destructor, which must find everything in order.
    void Put(Slot& to, script::Heap* value);
    Text* ProgramText(uint32_t index);
    void CallHost(uint32_t index, Slot* arguments);

    const Program& mProgram;
    const Types& mTypes;
    ScriptHost* mHost;
    std::vector<HostMember> mHostMembers;
    Console& mConsole;
    Memory mMemory;
    struct FreeBlock {
        void operator()(void* block) const { std::free(block); }
    };
    std::unique_ptr<Slot, FreeBlock> mStack;  // neither is touched before it is used
    std::unique_ptr<Frame, FreeBlock> mFrames;
    Frame* mTop;  // of the method that runs; at the start of mFrames, where no method is, if none does
    const NativeFunction* const* mNatives = NativeTable();
    std::vector<Text*> mTexts;  // the program's, made when they are first needed
    Text* mCharacters[128] = {};
    Object* mCaught = nullptr;
    Slot mResult;
    int mRuns = 0;
    Watch* mWatch = nullptr;
    Attention mAttention;
    uint64_t mSeed = 0x9E3779B97F4A7C15u;
    size_t mLargestGiven = 0;  // of the texts that the host has got
    std::optional<ScriptFailure> mFatal;
};

inline void Machine::Put(Slot& to, script::Heap* value) {
    script::Heap* old = to.H;
    to.H = value;
    mMemory.Release(old);
}

inline void Machine::Enter(const Function& function, Slot* base, uint16_t result) {
    const auto wanted = static_cast<ptrdiff_t>(function.Registers + function.Window + Spare);
    if (mStack.get() + StackSlots - base < wanted || mTop == mFrames.get() + MostFrames)
        RefuseCall(function, base);
    for (const uint16_t reg : function.Fresh)
        base[reg].H = nullptr;
    *++mTop = {&function, function.Code.data(), base, result};
}

inline void Machine::ReleaseFrame(const Frame& frame) {
    for (const uint16_t reg : frame.F->References)
        mMemory.Release(std::exchange(frame.Base[reg].H, nullptr));
}

/// A real number as a whole one: without what stands behind the point, and within the range.
[[nodiscard]] inline int64_t WholeOf(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775808.0) return INT64_MAX;
    if (value < -9223372036854775808.0) return INT64_MIN;
    return static_cast<int64_t>(value);
}
[[nodiscard]] inline uint64_t UnsignedOf(double value) {
    if (value >= 18446744073709551616.0) return UINT64_MAX;
    if (value < 0 && value >= -9223372036854775808.0)
        return static_cast<uint64_t>(static_cast<int64_t>(value));
    return value >= 0 ? static_cast<uint64_t>(value) : 0;
}

/// The value of a Variant as one of `type`; counts a reference for the receiver.
[[nodiscard]] Slot Unbox(Machine& machine, Box* box, const Type& type);
/// Gives an array room for more elements, and its size. New elements are 0 or nothing; elements that go must
/// have been released.
void ResizeArray(Memory& memory, Array& array, int64_t count);

}  // namespace sorbel::script
