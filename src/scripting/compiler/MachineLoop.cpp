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

int64_t WholeOf(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 9223372036854775808.0) return INT64_MAX;
    if (value < -9223372036854775808.0) return INT64_MIN;
    return static_cast<int64_t>(value);
}

uint64_t UnsignedOf(double value) {
    if (value >= 18446744073709551616.0) return UINT64_MAX;
    if (value < 0 && value >= -9223372036854775808.0)
        return static_cast<uint64_t>(static_cast<int64_t>(value));
    return value >= 0 ? static_cast<uint64_t>(value) : 0;
}

[[noreturn]] void FailDivision() {
    throw Failure{"DivisionByZeroException", "A whole number cannot be divided by zero."};
}

// A script is stopped after a jump or at the start of a method only: elsewhere arguments may be under way
// that belong to nobody yet. Whatever does not end has such places.
[[maybe_unused]] bool MayStop(Code code) {
    return code >= Code::Jump && code <= Code::CallDelegate;
}

template <typename E>
E& Element(Slot array, Slot index) {
    const Array* a = array.A;
    if (!a || static_cast<uint64_t>(index.I) >= static_cast<uint64_t>(a->Count)) FailOutOfBounds();
    return reinterpret_cast<E*>(a->Data)[index.I];
}

Slot& FieldOf(Slot object, uint16_t index) {
    if (!object.O) FailNil();
    return object.O->Fields()[index];
}

}  // namespace

template <bool Counted>
void Machine::Loop(size_t depth) {
    static const void* const labels[] = {
#define X(Name, Letters) &&L_##Name,
        SORBEL_OPCODES(X)
#undef X
    };
    Frame* frame = &mFrames.back();
    const Function* fn = frame->F;
    Slot* r = frame->Base;
    const Instruction* pc = frame->Next;
    Instruction i{};
    Slot result;

#define NEXT                                                       \
    do {                                                           \
        if constexpr (Counted)                                     \
            if (--mBudget < 0 && MayStop(i.What)) throw Stopped{}; \
        i = *pc++;                                                 \
        goto* labels[static_cast<uint16_t>(i.What)];               \
    } while (false)
#define RA r[i.A]
#define RB r[i.B]
#define RC r[i.C]
#define SAVE() frame->Next = pc
#define OP(Name, ...) \
    L_##Name : {      \
        __VA_ARGS__;  \
    }                 \
    NEXT;
#define JUMP_IF(Condition) \
    if (Condition) pc += i.ShortC()
#define RELOAD()             \
    frame = &mFrames.back(); \
    fn = frame->F;           \
    r = frame->Base;         \
    pc = frame->Next

    NEXT;

    OP(LoadInt, RA.I = i.Wide())
    OP(LoadConst, RA = mProgram.Constants[static_cast<uint32_t>(i.Wide())])
    OP(LoadText, SAVE(); Text* text = ProgramText(static_cast<uint32_t>(i.Wide())); Memory::Retain(text);
       Put(RA, text))
    OP(
        LoadNull, if (RA.H) {
            SAVE();
            Put(RA, nullptr);
        })
    OP(Move, RA = RB)
    OP(MoveRef, SAVE(); Memory::Retain(RB.H); Put(RA, RB.H))
    OP(
        Take, SAVE(); script::Heap* taken = RB.H; if (i.A != i.B) {
            RB.H = nullptr;
            Put(RA, taken);
        })
    OP(ArgRef, Memory::Retain(RB.H); RA.H = RB.H)
    OP(ArgTake, RA.H = RB.H; RB.H = nullptr)
    OP(CopyStruct, SAVE(); CopyStructure(RA, RB.O))
    OP(GetTop, RA = mStack.get()[i.Wide()])
    OP(GetTopRef, SAVE(); script::Heap* held = mStack.get()[i.Wide()].H; Memory::Retain(held); Put(RA, held))
    OP(SetTop, mStack.get()[i.Wide()] = RA)
    OP(SetTopRef, SAVE(); Memory::Retain(RA.H); Put(mStack.get()[i.Wide()], RA.H))

    OP(AddI, RA.I = Wrap(RB.U + RC.U))
    OP(SubI, RA.I = Wrap(RB.U - RC.U))
    OP(MulI, RA.I = Wrap(RB.U * RC.U))
    OP(DivI, SAVE(); if (RC.I == 0) FailDivision(); RA.I = RC.I == -1 ? Wrap(0 - RB.U) : RB.I / RC.I)
    OP(ModI, SAVE(); if (RC.I == 0) FailDivision(); RA.I = RC.I == -1 ? 0 : RB.I % RC.I)
    OP(DivU, SAVE(); if (RC.U == 0) FailDivision(); RA.U = RB.U / RC.U)
    OP(ModU, SAVE(); if (RC.U == 0) FailDivision(); RA.U = RB.U % RC.U)
    OP(AndI, RA.U = RB.U & RC.U)
    OP(OrI, RA.U = RB.U | RC.U)
    OP(XorI, RA.U = RB.U ^ RC.U)
    OP(AddK, RA.I = Wrap(RB.U + static_cast<uint64_t>(int64_t{i.ShortC()})))
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

    OP(Jump, pc += i.Wide())
    OP(JumpIf, if (RA.I) pc += i.Wide())
    OP(JumpUnless, if (!RA.I) pc += i.Wide())
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
    OP(JEqK, JUMP_IF(RA.I == i.ShortB()))
    OP(JNeK, JUMP_IF(RA.I != i.ShortB()))
    OP(JLtK, JUMP_IF(RA.I < i.ShortB()))
    OP(JLeK, JUMP_IF(RA.I <= i.ShortB()))
    OP(JGtK, JUMP_IF(RA.I > i.ShortB()))
    OP(JGeK, JUMP_IF(RA.I >= i.ShortB()))
    OP(ForUp, const bool more = RA.I < RB.I; RA.I = Wrap(RA.U + 1); JUMP_IF(more))
    OP(ForDown, const bool more = RA.I > RB.I; RA.I = Wrap(RA.U - 1); JUMP_IF(more))

L_ForStep : {
    // The jump that follows belongs to this operation: it is taken here, or stepped over.
    int64_t next = 0;
    const bool over = __builtin_add_overflow(RA.I, RC.I, &next);
    RA.I = next;
    const bool more = !over && (RC.I >= 0 ? next <= RB.I : next >= RB.I);
    pc += more ? pc->Wide() + 1 : 1;
}
    NEXT;
L_Call : {
    SAVE();
    Enter(mProgram.Functions[static_cast<uint32_t>(i.Wide())], r + fn->Registers, i.A);
    RELOAD();
}
    NEXT;
L_CallVirtual : {
    SAVE();
    Slot* window = r + fn->Registers;
    Enter(mProgram.Functions[window->O->Class->Virtual[i.B]], window, i.A);
    RELOAD();
}
    NEXT;
L_CallInterface : {
    SAVE();
    Slot* window = r + fn->Registers;
    Enter(FunctionOf(window->O, i.B), window, i.A);
    RELOAD();
}
    NEXT;
L_CallDelegate : {
    SAVE();
    Slot* window = r + fn->Registers;
    const Delegate& delegate = *RB.G;
    if (delegate.HasTarget) {
        Memory::Retain(delegate.Target);
        window->O = delegate.Target;
    } else {
        ++window;
    }
    Enter(mProgram.Functions[delegate.Function], window, i.A);
    RELOAD();
}
    NEXT;
    OP(CallNative, SAVE(); Slot* window = r + fn->Registers;
       NativeAt(static_cast<uint32_t>(i.Wide())).Run(*this, window); RA = *window)
    OP(CallNativeRef, SAVE(); Slot* window = r + fn->Registers;
       NativeAt(static_cast<uint32_t>(i.Wide())).Run(*this, window); Put(RA, window->H))
    OP(CallHost, SAVE(); Slot* window = r + fn->Registers; CallHost(static_cast<uint32_t>(i.Wide()), window);
       RA = *window)
    OP(CallHostRef, SAVE(); Slot* window = r + fn->Registers;
       CallHost(static_cast<uint32_t>(i.Wide()), window); Put(RA, window->H))
    OP(TakeOut, SAVE(); Put(RA, RB.H))

L_ReturnTake : {
    result = RA;
    RA.H = nullptr;
    goto leave;
}
L_Return : {
    result.I = 0;
    goto leave;
}
L_ReturnValue : { result = RA; }
leave : {
    SAVE();
    const Code how = i.What;
    const uint16_t place = mFrames.back().Result;
    if (!fn->References.empty()) ReleaseFrame(mFrames.back());
    mFrames.pop_back();
    if (mFrames.size() == depth) {
        mResult = result;
        return;
    }
    RELOAD();
    if (how == Code::ReturnValue)
        r[place] = result;
    else if (how != Code::Return)
        Put(r[place], result.H);
}
    NEXT;

    OP(New, SAVE(); Put(RA, mMemory.NewObject(mProgram.Classes[static_cast<uint32_t>(i.Wide())])))
    OP(GetField, SAVE(); RA = FieldOf(RB, i.C))
    OP(GetFieldRef, SAVE(); script::Heap* field = FieldOf(RB, i.C).H; Memory::Retain(field); Put(RA, field))
L_GetFieldStruct : {
    SAVE();
    Slot& field = FieldOf(RB, i.C);
    if (!field.O) field.O = mMemory.NewObject(*RB.O->Class->StructureField[i.C]);
    Memory::Retain(field.H);
    Put(RA, field.H);
}
    NEXT;
    OP(SetField, SAVE(); FieldOf(RA, i.C) = RB)
    OP(SetFieldRef, SAVE(); Slot& field = FieldOf(RA, i.C); Memory::Retain(RB.H); Put(field, RB.H))
    OP(SetFieldTake, SAVE(); Slot& field = FieldOf(RA, i.C); script::Heap* value = RB.H; RB.H = nullptr;
       Put(field, value))
    OP(CheckNil, SAVE();
       if (!RA.H || (RA.H->What == HeapKind::Delegate && RA.G->HasTarget && !RA.G->Target)) FailNil())
    OP(IsA, RA.I = RB.O && RB.O->Class->Is(i.C))
L_Cast : {
    SAVE();
    Object* object = RB.O;
    if (object && !object->Class->Is(i.C))
        throw Failure{"IllegalCastException", "An object is not of the class that it is cast to."};
    Memory::Retain(object);
    Put(RA, object);
}
    NEXT;
    OP(NewArray, SAVE(); NewArray(RA, &RB, mProgram.Arrays[i.C]))
    OP(ReDim, SAVE(); ReDim(RA.A, &RB, i.C))
    OP(FlatIndex, SAVE(); RA.I = FlatIndex(RB.A, &RC))
    OP(GetI8, SAVE(); RA.I = Element<int8_t>(RB, RC))
    OP(GetU8, SAVE(); RA.I = Element<uint8_t>(RB, RC))
    OP(GetI16, SAVE(); RA.I = Element<int16_t>(RB, RC))
    OP(GetU16, SAVE(); RA.I = Element<uint16_t>(RB, RC))
    OP(GetI32, SAVE(); RA.I = Element<int32_t>(RB, RC))
    OP(GetU32, SAVE(); RA.I = Element<uint32_t>(RB, RC))
    OP(Get64, SAVE(); RA = Element<Slot>(RB, RC))
    OP(GetF32, SAVE(); RA.D = static_cast<double>(Element<float>(RB, RC)))
    OP(GetElement, SAVE(); script::Heap* element = Element<script::Heap*>(RB, RC); Memory::Retain(element);
       Put(RA, element))
L_GetElementStruct : {
    SAVE();
    auto& element = Element<Object*>(RB, RC);
    if (!element) element = mMemory.NewObject(*RB.A->Structure);
    Memory::Retain(element);
    Put(RA, element);
}
    NEXT;
    OP(Set8, SAVE(); Element<uint8_t>(RA, RB) = static_cast<uint8_t>(RC.U))
    OP(Set16, SAVE(); Element<uint16_t>(RA, RB) = static_cast<uint16_t>(RC.U))
    OP(Set32, SAVE(); Element<uint32_t>(RA, RB) = static_cast<uint32_t>(RC.U))
    OP(Set64, SAVE(); Element<Slot>(RA, RB) = RC)
    OP(SetF32, SAVE(); Element<float>(RA, RB) = static_cast<float>(RC.D))
    OP(SetElement, SAVE(); Slot& element = Element<Slot>(RA, RB); Memory::Retain(RC.H); Put(element, RC.H))
    OP(SetElementTake, SAVE(); Slot& element = Element<Slot>(RA, RB); script::Heap* value = RC.H;
       RC.H = nullptr; Put(element, value))
    OP(Concat, SAVE(); AppendText(mMemory, RA, RB, RC))
    OP(Length, RA.I = CountCharacters(RB.T))
L_Box : {
    SAVE();
    script::Heap* box = mMemory.NewBox(mProgram.BoxTypes[i.C], RB);
    Put(RA, box);
}
    NEXT;
L_Unbox : {
    SAVE();
    const Type& type = *mProgram.BoxTypes[i.C];
    const Slot value = Unbox(*this, RB.V, type);
    if (type.IsReference())
        Put(RA, value.H);
    else
        RA = value;
}
    NEXT;
    OP(MakeDelegate, SAVE(); MakeDelegate(RA, RB.O, mProgram.Delegates[i.C]))
L_Raise : {
    SAVE();
    if (!RA.O) FailNil();
    Memory::Retain(RA.O);
    RaiseObject(RA.O);
}
    OP(GetCaught, SAVE(); Object* caught = mCaught; mCaught = nullptr; Put(RA, caught))
    OP(GoSub, RA.I = pc - fn->Code.data(); pc += i.Wide())
    OP(ReturnSub, pc = fn->Code.data() + RA.I)
#undef NEXT
#undef RA
#undef RB
#undef RC
#undef SAVE
#undef OP
#undef JUMP_IF
#undef RELOAD
}

template void Machine::Loop<false>(size_t depth);
template void Machine::Loop<true>(size_t depth);

}  // namespace sorbel::script
