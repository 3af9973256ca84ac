#pragma once

#include <cstdint>

namespace sorbel::script {

// clang-format off
/// The machine's operations with their operands: r register, i number, w one wide number, j jump within the
/// function, - none. "Ref" operations count references; "Top" ones reach registers of the main program; jumps
/// are counted from the next operation. Operations with K compare or add a number that they hold.
#define SORBEL_OPCODES(X) \
    X(LoadInt, "rw") X(LoadConst, "rw") X(LoadText, "rw") X(LoadNull, "r--") X(Move, "rr-") \
    X(MoveRef, "rr-") X(Take, "rr-") X(ArgRef, "rr-") X(ArgTake, "rr-") X(CopyStruct, "rr-") \
    X(GetTop, "rw") X(GetTopRef, "rw") X(SetTop, "rw") X(SetTopRef, "rw") \
    X(AddI, "rrr") X(SubI, "rrr") X(MulI, "rrr") X(DivI, "rrr") X(ModI, "rrr") X(DivU, "rrr") \
    X(ModU, "rrr") X(AndI, "rrr") X(OrI, "rrr") X(XorI, "rrr") X(AddK, "rri") X(NegI, "rr-") \
    X(NotI, "rr-") X(NotB, "rr-") X(AddF, "rrr") X(SubF, "rrr") X(MulF, "rrr") X(DivF, "rrr") \
    X(ModF, "rrr") X(PowF, "rrr") X(NegF, "rr-") X(RoundF, "rr-") X(IntToReal, "rr-") \
    X(UIntToReal, "rr-") X(RealToInt, "rr-") X(RealToUInt, "rr-") X(NarrowI8, "rr-") X(NarrowI16, "rr-") \
    X(NarrowI32, "rr-") X(NarrowU8, "rr-") X(NarrowU16, "rr-") X(NarrowU32, "rr-") X(EqI, "rrr") \
    X(NeI, "rrr") X(LtI, "rrr") X(LeI, "rrr") X(LtU, "rrr") X(LeU, "rrr") X(EqF, "rrr") X(NeF, "rrr") \
    X(LtF, "rrr") X(LeF, "rrr") X(EqS, "rrr") X(NeS, "rrr") X(LtS, "rrr") X(LeS, "rrr") X(Jump, "-w") \
    X(JumpIf, "rw") X(JumpUnless, "rw") X(JEqI, "rrj") X(JNeI, "rrj") X(JLtI, "rrj") X(JLeI, "rrj") \
    X(JLtU, "rrj") X(JLeU, "rrj") X(JEqF, "rrj") X(JNeF, "rrj") X(JLtF, "rrj") X(JLeF, "rrj") \
    X(JNotLtF, "rrj") X(JNotLeF, "rrj") X(JEqS, "rrj") X(JNeS, "rrj") X(JLtS, "rrj") X(JLeS, "rrj") \
    X(JEqK, "rij") X(JNeK, "rij") X(JLtK, "rij") X(JLeK, "rij") X(JGtK, "rij") X(JGeK, "rij") \
    X(ForUp, "rrj") X(ForDown, "rrj") X(ForStep, "rrr") X(Call, "rw") X(CallVirtual, "ri-") X(CallInterface, "ri-") \
    X(CallDelegate, "rr-") X(CallNative, "rw") X(CallNativeRef, "rw") X(CallHost, "rw") \
    X(CallHostRef, "rw") X(TakeOut, "rr-") X(Return, "---") X(ReturnValue, "r--") X(ReturnTake, "r--") \
    X(New, "rw") X(GetField, "rri") X(GetFieldRef, "rri") X(GetFieldStruct, "rri") X(SetField, "rri") \
    X(SetFieldRef, "rri") X(SetFieldTake, "rri") X(CheckNil, "r--") X(IsA, "rri") X(Cast, "rri") \
    X(NewArray, "rri") X(ReDim, "rri") X(FlatIndex, "rrr") X(GetI8, "rrr") X(GetU8, "rrr") \
    X(GetI16, "rrr") X(GetU16, "rrr") X(GetI32, "rrr") X(GetU32, "rrr") X(Get64, "rrr") X(GetF32, "rrr") \
    X(GetElement, "rrr") X(GetElementStruct, "rrr") X(Set8, "rrr") X(Set16, "rrr") X(Set32, "rrr") \
    X(Set64, "rrr") X(SetF32, "rrr") X(SetElement, "rrr") X(SetElementTake, "rrr") X(Concat, "rrr") \
    X(Length, "rr-") X(Box, "rri") X(Unbox, "rri") X(MakeDelegate, "rri") X(Raise, "r--") \
    X(GetCaught, "r--") X(GoSub, "rw") X(ReturnSub, "r--")
// clang-format on

enum class Code : uint16_t {
#define X(Name, Operands) Name,
    SORBEL_OPCODES(X)
#undef X
};

[[nodiscard]] inline const char* Operands(Code code) {
    static constexpr const char* texts[] = {
#define X(Name, Letters) Letters,
        SORBEL_OPCODES(X)
#undef X
    };
    return texts[static_cast<uint16_t>(code)];
}

/// One operation in 64 bits.
struct Instruction {
    Code What;
    uint16_t A;
    uint16_t B;
    uint16_t C;
    [[nodiscard]] int32_t Wide() const {
        return static_cast<int32_t>(static_cast<uint32_t>(B) | static_cast<uint32_t>(C) << 16);
    }
    [[nodiscard]] int16_t ShortB() const { return static_cast<int16_t>(B); }
    [[nodiscard]] int16_t ShortC() const { return static_cast<int16_t>(C); }
    void SetWide(int32_t value) {
        B = static_cast<uint16_t>(static_cast<uint32_t>(value) & 0xFFFF);
        C = static_cast<uint16_t>(static_cast<uint32_t>(value) >> 16);
    }
};
static_assert(sizeof(Instruction) == 8);

}  // namespace sorbel::script
