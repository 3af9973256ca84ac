#include <algorithm>
#include <cstring>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

Array& HeldArray(const Slot& slot) {
    if (!slot.A) FailNil();
    return *slot.A;
}

Array& FlatArray(const Slot& slot) {
    Array& array = HeldArray(slot);
    if (array.Rank != 1) throw Failure{"InvalidArgumentException", "This needs an array of one dimension."};
    return array;
}

Slot ReadElement(const Array& array, int64_t index) {
    Slot slot;
    Array& a = const_cast<Array&>(array);
    switch (array.Element) {
        case ElementKind::I8:
            slot.I = a.As<int8_t>()[index];
            break;
        case ElementKind::U8:
            slot.I = a.As<uint8_t>()[index];
            break;
        case ElementKind::I16:
            slot.I = a.As<int16_t>()[index];
            break;
        case ElementKind::U16:
            slot.I = a.As<uint16_t>()[index];
            break;
        case ElementKind::I32:
            slot.I = a.As<int32_t>()[index];
            break;
        case ElementKind::U32:
            slot.I = a.As<uint32_t>()[index];
            break;
        case ElementKind::F32:
            slot.D = static_cast<double>(a.As<float>()[index]);
            break;
        default:
            slot = a.As<Slot>()[index];
            break;
    }
    return slot;
}

// Puts a value in a place that holds nothing yet.
void WriteElement(Array& array, int64_t index, Slot value) {
    switch (array.Element) {
        case ElementKind::I8:
        case ElementKind::U8:
            array.As<uint8_t>()[index] = static_cast<uint8_t>(value.U);
            break;
        case ElementKind::I16:
        case ElementKind::U16:
            array.As<uint16_t>()[index] = static_cast<uint16_t>(value.U);
            break;
        case ElementKind::I32:
        case ElementKind::U32:
            array.As<uint32_t>()[index] = static_cast<uint32_t>(value.U);
            break;
        case ElementKind::F32:
            array.As<float>()[index] = static_cast<float>(value.D);
            break;
        case ElementKind::Reference:
            Memory::Retain(value.H);
            [[fallthrough]];
        default:
            array.As<Slot>()[index] = value;
            break;
    }
}

namespace {

/// An array of one dimension that may get more or less elements.
Array& Growing(const Slot& slot) {
    Array& array = FlatArray(slot);
    if (array.Fixed) FailFixed();
    return array;
}

// Makes as much room before the elements as they take, so that inserting there takes no longer than at the
// end.
void MakeRoomInFront(Memory& memory, Array& array) {
    const size_t size = ElementSize(array.Element);
    const int64_t room = array.Count;
    if (array.Capacity + room > static_cast<int64_t>(Memory::Limit / size)) FailMemory();
    array.Data = static_cast<char*>(memory.Resize(array.Data, static_cast<size_t>(array.Capacity) * size,
                                                  static_cast<size_t>(array.Capacity + room) * size));
    std::memmove(array.Data + static_cast<size_t>(room) * size, array.Data,
                 static_cast<size_t>(array.Count) * size);
    array.Data += static_cast<size_t>(room) * size;
    array.Skipped = room;
}

// The elements on the shorter side move.
void Insert(Machine& machine, Array& array, int64_t index, Slot value) {
    if (index < 0 || index > array.Count) FailOutOfBounds();
    const size_t size = ElementSize(array.Element);
    const int64_t behind = array.Count - index;
    if (index < behind) {
        if (array.Skipped == 0) MakeRoomInFront(machine.Store(), array);
        std::memmove(array.Data - size, array.Data, static_cast<size_t>(index) * size);
        array.Data -= size;
        --array.Skipped;
        ++array.Capacity;
        ++array.Count;
    } else {
        ResizeArray(machine.Store(), array, array.Count + 1);
        char* place = array.Data + static_cast<size_t>(index) * size;
        std::memmove(place + size, place, static_cast<size_t>(behind) * size);
    }
    std::memset(array.Data + static_cast<size_t>(index) * size, 0, size);
    WriteElement(array, index, value);
}

void Append(Machine& machine, Slot* a) {
    Array& array = Growing(a[0]);
    if (array.Count < array.Capacity)
        ++array.Count;
    else
        ResizeArray(machine.Store(), array, array.Count + 1);
    WriteElement(array, array.Count - 1, a[1]);
}

// Takes an element out, with its reference.
Slot TakeOut(Array& array, int64_t index) {
    if (index < 0 || index >= array.Count) FailOutOfBounds();
    const Slot value = ReadElement(array, index);
    const size_t size = ElementSize(array.Element);
    const int64_t behind = array.Count - index - 1;
    --array.Count;
    if (index < behind) {
        std::memmove(array.Data + size, array.Data, static_cast<size_t>(index) * size);
        array.Data += size;
        ++array.Skipped;
        --array.Capacity;
    } else {
        char* place = array.Data + static_cast<size_t>(index) * size;
        std::memmove(place, place + size, static_cast<size_t>(behind) * size);
    }
    return value;
}

void Remove(Machine& machine, Slot* a) {
    Array& array = Growing(a[0]);
    const Slot value = TakeOut(array, a[1].I);
    // The element may be the last that holds the array itself, so the array is not touched any more.
    if (array.Element == ElementKind::Reference) machine.Store().Release(value.H);
}

void RemoveAll(Machine& machine, Slot* a) {
    Array& array = HeldArray(a[0]);
    if (array.Fixed) FailFixed();
    Array* gone = machine.Store().NewArray(array.T, array.Element, array.Rank, array.Structure);
    gone->SwapElements(array);
    std::fill(array.Sizes.begin(), array.Sizes.end(), 0);
    machine.Store().Release(gone);
}

void Pop(Machine&, Slot* a) {
    Array& array = Growing(a[0]);
    a[0] = TakeOut(array, array.Count - 1);
}

void Upper(Machine&, Slot* a) {
    if (!a[0].A) {
        a[0].I = -1;
        return;
    }
    const Array& array = *a[0].A;
    const int64_t dimension = Given(a[1].I, 1);
    if (dimension < 1 || dimension > array.Rank) FailOutOfBounds();
    a[0].I = (array.Rank == 1 ? array.Count : array.Sizes[static_cast<size_t>(dimension - 1)]) - 1;
}

bool Same(const Array& array, Slot a, Slot b) {
    if (array.Element == ElementKind::F32 || array.T->Element->Is(Kind::Double)) return a.D == b.D;
    if (array.T->Element->Is(Kind::String)) return SameText(a.T, b.T);
    if (array.T->Element->Is(Kind::Variant)) return SameValue(a.V, b.V);
    return a.U == b.U;
}

void IndexOf(Machine&, Slot* a) {
    const Array& array = FlatArray(a[0]);
    for (int64_t at = std::max<int64_t>(Given(a[2].I, 0), 0); at < array.Count; ++at)
        if (Same(array, ReadElement(array, at), a[1])) {
            a[0].I = at;
            return;
        }
    a[0].I = -1;
}

void Shuffle(Machine& machine, Slot* a) {
    Array& array = FlatArray(a[0]);
    const size_t size = ElementSize(array.Element);
    char swap[8];
    for (int64_t at = array.Count; at > 1; --at) {
        char* one = array.Data + static_cast<size_t>(at - 1) * size;
        char* other = array.Data + machine.Random() % static_cast<uint64_t>(at) * size;
        std::memcpy(swap, one, size);
        std::memmove(one, other, size);
        std::memcpy(other, swap, size);
    }
}

const NativeFunction table[] = {
    {"Ubound", "array A | dimension I", "I", Upper, true},
    {"LastIndex", "array A | dimension I", "I", Upper, true},
    {"Count", "array A", "I", [](Machine&, Slot* a) { a->I = HeldArray(*a).Count; }, true},
    // For Each asks with this one; nothing is an empty array there.
    {".Count", "array A", "I", [](Machine&, Slot* a) { a->I = a->A ? a->A->Count : 0; }, false},
    {"Append", "array A value E", "", Append, true},
    {"Add", "array A value E", "", Append, true},
    {"Insert", "array A index I value E", "",
     [](Machine& m, Slot* a) { Insert(m, Growing(a[0]), a[1].I, a[2]); }, true},
    {"AddAt", "array A index I value E", "",
     [](Machine& m, Slot* a) { Insert(m, Growing(a[0]), a[1].I, a[2]); }, true},
    {"Remove", "array A index I", "", Remove, true},
    {"RemoveAt", "array A index I", "", Remove, true},
    {"RemoveAll", "array A", "", RemoveAll, true},
    {"Pop", "array A", "E", Pop, true},
    {"Shuffle", "array A", "", Shuffle, true},
    {"IndexOf", "array A value E | start I", "I", IndexOf, true},
};

}  // namespace

std::span<const NativeFunction> ArrayFunctions() {
    return table;
}

}  // namespace sorbel::script
