// The loop that runs operations, and nothing else. Labels as values let each operation jump to the next one
// by itself, which processors predict better than one switch for all; both compilers of the project have
// them.
#pragma GCC diagnostic ignored "-Wpedantic"

#include <cmath>

#include "scripting/compiler/Machine.h"

namespace sorbel::script {

namespace {

int64_t Wrap(uint64_t value) {
    return static_cast<int64_t>(value);
}

[[noreturn]] void FailDivision() {
    throw Failure{"DivisionByZeroException", "A whole number cannot be divided by zero."};
}

bool IsWithin(Slot index, Slot array) {
    return array.A && static_cast<uint64_t>(index.I) < static_cast<uint64_t>(array.A->Count);
}

template <typename E>
E& ElementOf(Slot array, Slot index) {
    return reinterpret_cast<E*>(array.A->Data)[index.I];
}

}  // namespace

void Machine::Loop(const Frame* below) {
    static const void* const labels[] = {
#define X(Name, Letters) &&L_##Name,
        SORBEL_OPCODES(X)
#undef X
    };
    const NativeFunction* const* const natives = mNatives;
    Frame* frame = mTop;
    const Function* fn = frame->F;
    Slot* r = frame->Base;
    const Instruction* pc = frame->Next;  // the operation that comes next
    Slot* window = nullptr;
    Slot result;
    uint16_t place = 0;

// Operands are read where they are used, and what most operations do not need is not worked out for them.
#define THIS pc[-1]
#define NEXT                                            \
    do {                                                \
        ++pc;                                           \
        goto* labels[static_cast<uint16_t>(THIS.What)]; \
    } while (false)
#define RA r[THIS.A]
#define RB r[THIS.B]
#define RC r[THIS.C]
#define NUMBER static_cast<uint32_t>(THIS.Wide())
#define SAVE() frame->Next = pc
#define OP(Name, ...) \
    L_##Name : {      \
        __VA_ARGS__;  \
    }                 \
    NEXT;
// A jump back most likely goes where the last one went, and asking for that in this way lets a processor run
// ahead with the next round before it has read the distance. The empty assembly keeps the compiler from
// noticing that both ways come to the same.
// Here and at the start of a method a script can be stopped: elsewhere arguments may be under way that belong
// to nobody yet, and whatever does not end has such places. Whoever wants attention makes the machine forget
// where the last jump went, so that a jump to the same place, as nearly all are, has nothing more to ask.
#define JUMP(Distance)                                                                         \
    do {                                                                                       \
        const int32_t distance = Distance;                                                     \
        pc += distance;                                                                        \
        if (distance < 0) [[likely]] {                                                         \
            const Instruction* start = mAttention.mRoundStart.load(std::memory_order_relaxed); \
            if (pc == start) [[likely]] {                                                      \
                asm volatile("" : "+r"(start));                                                \
                pc = start;                                                                    \
            } else {                                                                           \
                if (mAttention.IsAsked()) goto askWatch;                                       \
                mAttention.mRoundStart.store(pc, std::memory_order_relaxed);                   \
            }                                                                                  \
        }                                                                                      \
        NEXT;                                                                                  \
    } while (false)
#define JUMP_IF(Condition) \
    if (Condition) JUMP(THIS.ShortC())
#define JUMP_FAR_IF(Condition) \
    if (Condition) JUMP(THIS.Wide())
#define NEED_DIVISOR(Number) \
    if ((Number) == 0) goto divisionByZero
#define NEED_ELEMENT(Array, Index) \
    if (!IsWithin(Index, Array)) goto outOfBounds
#define NEED_OBJECT(Slot) \
    if (!(Slot).H) goto isNil
#define ENTER(Callee, Window)      \
    SAVE();                        \
    Enter(Callee, Window, THIS.A); \
    frame = mTop;                  \
    fn = frame->F;                 \
    r = frame->Base;               \
    pc = frame->Next;              \
    if (mAttention.IsAsked()) goto askWatch
#define LEAVE()                    \
    if (!fn->References.empty()) { \
        SAVE();                    \
        ReleaseFrame(*frame);      \
    }                              \
    place = frame->Result;         \
    frame = --mTop;                \
    if (frame == below) {          \
        mResult = result;          \
        return;                    \
    }                              \
    fn = frame->F;                 \
    r = frame->Base;               \
    pc = frame->Next
#define GET(E, Field)     \
    NEED_ELEMENT(RB, RC); \
    RA.Field = ElementOf<E>(RB, RC)
#define SET(E, Value)     \
    NEED_ELEMENT(RA, RB); \
    ElementOf<E>(RA, RB) = static_cast<E>(Value)

    NEXT;

    OP(LoadInt, RA.I = THIS.Wide())
    OP(LoadConst, RA = mProgram.Constants[NUMBER])
    OP(LoadText, SAVE(); Text* text = ProgramText(NUMBER); Memory::Retain(text); Put(RA, text))
    OP(
        LoadNull, if (RA.H) {
            SAVE();
            Put(RA, nullptr);
        })
    OP(Move, RA = RB)
    OP(MoveRef, SAVE(); Memory::Retain(RB.H); Put(RA, RB.H))
    OP(
        Take, SAVE(); script::Heap* taken = RB.H; if (THIS.A != THIS.B) {
            RB.H = nullptr;
            Put(RA, taken);
        })
    OP(ArgRef, Memory::Retain(RB.H); RA.H = RB.H)
    OP(ArgTake, RA.H = RB.H; RB.H = nullptr)
    OP(CopyStruct, SAVE(); CopyStructure(RA, RB.O))
    OP(GetTop, RA = mStack.get()[THIS.Wide()])
    OP(GetTopRef, SAVE(); script::Heap* held = mStack.get()[THIS.Wide()].H; Memory::Retain(held);
       Put(RA, held))
    OP(SetTop, mStack.get()[THIS.Wide()] = RA)
    OP(SetTopRef, SAVE(); Memory::Retain(RA.H); Put(mStack.get()[THIS.Wide()], RA.H))

    OP(AddI, RA.I = Wrap(RB.U + RC.U))
    OP(SubI, RA.I = Wrap(RB.U - RC.U))
    OP(MulI, RA.I = Wrap(RB.U * RC.U))
    OP(DivI, NEED_DIVISOR(RC.I); RA.I = RC.I == -1 ? Wrap(0 - RB.U) : RB.I / RC.I)
    OP(ModI, NEED_DIVISOR(RC.I); RA.I = RC.I == -1 ? 0 : RB.I % RC.I)
    OP(DivU, NEED_DIVISOR(RC.U); RA.U = RB.U / RC.U)
    OP(ModU, NEED_DIVISOR(RC.U); RA.U = RB.U % RC.U)
    OP(AndI, RA.U = RB.U & RC.U)
    OP(OrI, RA.U = RB.U | RC.U)
    OP(XorI, RA.U = RB.U ^ RC.U)
    OP(AddK, RA.I = Wrap(RB.U + static_cast<uint64_t>(int64_t{THIS.ShortC()})))
    OP(NegI, RA.I = Wrap(0 - RB.U))
    OP(NotI, RA.U = ~RB.U)
    OP(NotB, RA.I = RB.I == 0)
    OP(AddF, RA.D = RB.D + RC.D)
    OP(SubF, RA.D = RB.D - RC.D)
    OP(MulF, RA.D = RB.D * RC.D)
L_DivF : {
    // Division by zero is defined for real numbers: it gives infinity, or no number.
    const double divisor = RC.D;
    if (divisor != 0)
        RA.D = RB.D / divisor;
    else
        RA.D = RB.D == 0 || std::isnan(RB.D)
                   ? NAN
                   : std::copysign(INFINITY, std::copysign(1, RB.D) * std::copysign(1, divisor));
}
    NEXT;
    OP(ModF, RA.D = std::fmod(RB.D, RC.D))
    OP(PowF, RA.D = std::pow(RB.D, RC.D))
    OP(NegF, RA.D = -RB.D)
    OP(RoundF, RA.D = std::fabs(RB.D) > 3.4028235677973366e38 && std::isfinite(RB.D)
                          ? std::copysign(INFINITY, RB.D)
                          : static_cast<double>(static_cast<float>(RB.D)))
    OP(IntToReal, RA.D = static_cast<double>(RB.I))
    OP(UIntToReal, RA.D = static_cast<double>(RB.U))
    OP(RealToInt, RA.I = WholeOf(RB.D))
    OP(RealToUInt, RA.U = UnsignedOf(RB.D))
    OP(NarrowI8, RA.I = static_cast<int8_t>(RB.U))
    OP(NarrowI16, RA.I = static_cast<int16_t>(RB.U))
    OP(NarrowI32, RA.I = static_cast<int32_t>(RB.U))
    OP(NarrowU8, RA.I = static_cast<uint8_t>(RB.U))
    OP(NarrowU16, RA.I = static_cast<uint16_t>(RB.U))
    OP(NarrowU32, RA.I = static_cast<uint32_t>(RB.U))

    OP(EqI, RA.I = RB.I == RC.I)
    OP(NeI, RA.I = RB.I != RC.I)
    OP(LtI, RA.I = RB.I < RC.I)
    OP(LeI, RA.I = RB.I <= RC.I)
    OP(LtU, RA.I = RB.U < RC.U)
    OP(LeU, RA.I = RB.U <= RC.U)
    OP(EqF, RA.I = RB.D == RC.D)
    OP(NeF, RA.I = RB.D != RC.D)
    OP(LtF, RA.I = RB.D < RC.D)
    OP(LeF, RA.I = RB.D <= RC.D)
    OP(EqS, RA.I = SameText(RB.T, RC.T))
    OP(NeS, RA.I = !SameText(RB.T, RC.T))
    OP(LtS, RA.I = CompareTexts(RB.T, RC.T) < 0)
    OP(LeS, RA.I = CompareTexts(RB.T, RC.T) <= 0)

    OP(Jump, JUMP_FAR_IF(true))
    OP(JumpIf, JUMP_FAR_IF(RA.I))
    OP(JumpUnless, JUMP_FAR_IF(!RA.I))
    OP(JEqI, JUMP_IF(RA.I == RB.I))
    OP(JNeI, JUMP_IF(RA.I != RB.I))
    OP(JLtI, JUMP_IF(RA.I < RB.I))
    OP(JLeI, JUMP_IF(RA.I <= RB.I))
    OP(JLtU, JUMP_IF(RA.U < RB.U))
    OP(JLeU, JUMP_IF(RA.U <= RB.U))
    OP(JEqF, JUMP_IF(RA.D == RB.D))
    OP(JNeF, JUMP_IF(RA.D != RB.D))
    OP(JLtF, JUMP_IF(RA.D < RB.D))
    OP(JLeF, JUMP_IF(RA.D <= RB.D))
    OP(JNotLtF, JUMP_IF(!(RA.D < RB.D)))
    OP(JNotLeF, JUMP_IF(!(RA.D <= RB.D)))
    OP(JEqS, JUMP_IF(SameText(RA.T, RB.T)))
    OP(JNeS, JUMP_IF(!SameText(RA.T, RB.T)))
    OP(JLtS, JUMP_IF(CompareTexts(RA.T, RB.T) < 0))
    OP(JLeS, JUMP_IF(CompareTexts(RA.T, RB.T) <= 0))
    OP(JEqK, JUMP_IF(RA.I == THIS.ShortB()))
    OP(JNeK, JUMP_IF(RA.I != THIS.ShortB()))
    OP(JLtK, JUMP_IF(RA.I < THIS.ShortB()))
    OP(JLeK, JUMP_IF(RA.I <= THIS.ShortB()))
    OP(JGtK, JUMP_IF(RA.I > THIS.ShortB()))
    OP(JGeK, JUMP_IF(RA.I >= THIS.ShortB()))
    OP(ForUp, const int64_t before = RA.I; RA.I = Wrap(RA.U + 1); JUMP_IF(before < RB.I))
    OP(ForDown, const int64_t before = RA.I; RA.I = Wrap(RA.U - 1); JUMP_IF(before > RB.I))

L_ForStep : {
    // The jump that follows belongs to this operation: it is taken here, or stepped over.
    int64_t next = 0;
    const bool over = __builtin_add_overflow(RA.I, RC.I, &next);
    RA.I = next;
    const bool more = !over && (RC.I >= 0 ? next <= RB.I : next >= RB.I);
    ++pc;
    JUMP_FAR_IF(more);
}
    NEXT;
L_Call : {
    window = r + fn->Registers;
    ENTER(mProgram.Functions[NUMBER], window);
}
    NEXT;
L_CallVirtual : {
    window = r + fn->Registers;
    ENTER(mProgram.Functions[window->O->Class->Virtual[THIS.B]], window);
}
    NEXT;
L_CallInterface : {
    window = r + fn->Registers;
    ENTER(FunctionOf(window->O, THIS.B), window);
}
    NEXT;
L_CallDelegate : {
    window = r + fn->Registers;
    const Delegate& delegate = *RB.G;
    if (delegate.HasTarget) {
        Memory::Retain(delegate.Target);
        window->O = delegate.Target;
    } else {
        ++window;
    }
    ENTER(mProgram.Functions[delegate.Function], window);
}
    NEXT;
    OP(CallNative, SAVE(); window = r + fn->Registers; natives[NUMBER]->Run(*this, window); RA = *window)
    OP(CallNativeRef, SAVE(); window = r + fn->Registers; natives[NUMBER]->Run(*this, window);
       Put(RA, window->H))
    OP(CallHost, SAVE(); window = r + fn->Registers; CallHost(NUMBER, window); RA = *window)
    OP(CallHostRef, SAVE(); window = r + fn->Registers; CallHost(NUMBER, window); Put(RA, window->H))
    OP(TakeOut, SAVE(); Put(RA, RB.H))

L_Return : { LEAVE(); }
    NEXT;
L_ReturnValue : {
    result = RA;
    LEAVE();
    r[place] = result;
}
    NEXT;
L_ReturnTake : {
    result = RA;
    RA.H = nullptr;
    LEAVE();
    Put(r[place], result.H);
}
    NEXT;

    OP(New, SAVE(); Put(RA, mMemory.NewObject(mProgram.Classes[NUMBER])))
    OP(GetField, NEED_OBJECT(RB); RA = RB.O->Fields()[THIS.C])
    OP(GetFieldRef, SAVE(); NEED_OBJECT(RB); script::Heap* field = RB.O->Fields()[THIS.C].H;
       Memory::Retain(field); Put(RA, field))
L_GetFieldStruct : {
    SAVE();
    NEED_OBJECT(RB);
    Slot& field = RB.O->Fields()[THIS.C];
    if (!field.O) field.O = mMemory.NewObject(*RB.O->Class->StructureField[THIS.C]);
    Memory::Retain(field.H);
    Put(RA, field.H);
}
    NEXT;
    OP(SetField, NEED_OBJECT(RA); RA.O->Fields()[THIS.C] = RB)
    OP(SetFieldRef, SAVE(); NEED_OBJECT(RA); Slot& field = RA.O->Fields()[THIS.C]; Memory::Retain(RB.H);
       Put(field, RB.H))
    OP(SetFieldTake, SAVE(); NEED_OBJECT(RA); Slot& field = RA.O->Fields()[THIS.C];
       script::Heap* value = RB.H; RB.H = nullptr; Put(field, value))
    OP(CheckNil, SAVE();
       if (!RA.H || (RA.H->What == HeapKind::Delegate && RA.G->HasTarget && !RA.G->Target)) FailNil())
    OP(IsA, RA.I = RB.O && RB.O->Class->Is(THIS.C))
L_Cast : {
    SAVE();
    Object* object = RB.O;
    if (object && !object->Class->Is(THIS.C))
        throw Failure{"IllegalCastException", "An object is not of the class that it is cast to."};
    Memory::Retain(object);
    Put(RA, object);
}
    NEXT;
    OP(NewArray, SAVE(); NewArray(RA, &RB, mProgram.Arrays[THIS.C]))
    OP(ReDim, SAVE(); ReDim(RA.A, &RB, THIS.C))
    OP(FlatIndex, SAVE(); RA.I = FlatIndex(RB.A, &RC))
    OP(GetI8, GET(int8_t, I))
    OP(GetU8, GET(uint8_t, I))
    OP(GetI16, GET(int16_t, I))
    OP(GetU16, GET(uint16_t, I))
    OP(GetI32, GET(int32_t, I))
    OP(GetU32, GET(uint32_t, I))
    OP(Get64, NEED_ELEMENT(RB, RC); RA = ElementOf<Slot>(RB, RC))
    OP(GetF32, GET(float, D))
    OP(GetElement, SAVE(); NEED_ELEMENT(RB, RC); script::Heap* element = ElementOf<script::Heap*>(RB, RC);
       Memory::Retain(element); Put(RA, element))
L_GetElementStruct : {
    SAVE();
    NEED_ELEMENT(RB, RC);
    auto& element = ElementOf<Object*>(RB, RC);
    if (!element) element = mMemory.NewObject(*RB.A->Structure);
    Memory::Retain(element);
    Put(RA, element);
}
    NEXT;
    OP(Set8, SET(uint8_t, RC.U))
    OP(Set16, SET(uint16_t, RC.U))
    OP(Set32, SET(uint32_t, RC.U))
    OP(Set64, SET(Slot, RC))
    OP(SetF32, SET(float, RC.D))
    OP(SetElement, SAVE(); NEED_ELEMENT(RA, RB); Slot& element = ElementOf<Slot>(RA, RB);
       Memory::Retain(RC.H); Put(element, RC.H))
    OP(SetElementTake, SAVE(); NEED_ELEMENT(RA, RB); Slot& element = ElementOf<Slot>(RA, RB);
       script::Heap* value = RC.H; RC.H = nullptr; Put(element, value))
    OP(Concat, SAVE(); AppendText(mMemory, RA, RB, RC))
    OP(Length, RA.I = CountCharacters(RB.T))
L_Box : {
    SAVE();
    script::Heap* box = mMemory.NewBox(mProgram.BoxTypes[THIS.C], RB);
    Put(RA, box);
}
    NEXT;
L_Unbox : {
    SAVE();
    const Type& type = *mProgram.BoxTypes[THIS.C];
    const Slot value = Unbox(*this, RB.V, type);
    if (type.IsReference())
        Put(RA, value.H);
    else
        RA = value;
}
    NEXT;
    OP(MakeDelegate, SAVE(); MakeDelegate(RA, RB.O, mProgram.Delegates[THIS.C]))
L_Raise : {
    SAVE();
    if (!RA.O) FailNil();
    Memory::Retain(RA.O);
    RaiseObject(RA.O);
}
    OP(GetCaught, SAVE(); Object* caught = mCaught; mCaught = nullptr; Put(RA, caught))
    OP(GoSub, RA.I = pc - fn->Code.data(); pc += THIS.Wide())
    OP(ReturnSub, pc = fn->Code.data() + RA.I)

askWatch:
    frame->Next = pc + 1;  // to tell the line of what comes next
    AskWatch();
    NEXT;
divisionByZero:
    SAVE();
    FailDivision();
outOfBounds:
    SAVE();
    FailOutOfBounds();
isNil:
    SAVE();
    FailNil();
#undef THIS
#undef NEXT
#undef RA
#undef RB
#undef RC
#undef NUMBER
#undef SAVE
#undef OP
#undef JUMP
#undef JUMP_IF
#undef JUMP_FAR_IF
#undef NEED_DIVISOR
#undef NEED_ELEMENT
#undef NEED_OBJECT
#undef GET
#undef SET
#undef ENTER
#undef LEAVE
}

}  // namespace sorbel::script
