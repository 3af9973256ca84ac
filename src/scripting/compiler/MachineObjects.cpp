#include <algorithm>
#include <cstring>

#include "scripting/compiler/Machine.h"

namespace sorbel::script {

namespace {

// Gives an array exactly so many places.
void SetCapacity(Memory& memory, Array& array, int64_t room) {
    const size_t size = ElementSize(array.Element);
    if (room > static_cast<int64_t>(Memory::Limit / size)) FailMemory();
    const auto before = static_cast<size_t>(array.Capacity) * size, after = static_cast<size_t>(room) * size;
    if (!array.Data) {
        array.Data = static_cast<char*>(memory.Allocate(after));
    } else if (room == 0) {
        memory.Free(array.Data, before);
        array.Data = nullptr;
    } else {
        array.Data = static_cast<char*>(memory.Resize(array.Data, before, after));
    }
    array.Capacity = room;
}

// Moves the elements to the beginning of their block.
void TakeSkipped(Array& array) {
    const size_t size = ElementSize(array.Element);
    char* first = array.Data - static_cast<size_t>(array.Skipped) * size;
    std::memmove(first, array.Data, static_cast<size_t>(array.Count) * size);
    array.Data = first;
    array.Capacity += array.Skipped;
    array.Skipped = 0;
}

}  // namespace

// What grows again and again gets twice as many places each time; what shrinks to a quarter gives them back.
void ResizeArray(Memory& memory, Array& array, int64_t count) {
    const size_t size = ElementSize(array.Element);
    const bool moved = array.Skipped > 0 && (count > array.Capacity || count < array.Count);
    if (moved) TakeSkipped(array);
    // Moving the elements has to pay: there must be room for some time.
    const int64_t wanted = moved && count > array.Count ? count + count / 2 : count;
    if (wanted > array.Capacity) {
        const int64_t room = array.Count == 0 ? count : std::max(wanted, array.Capacity * 2);
        const bool fits = static_cast<size_t>(room - array.Capacity) * size <= memory.Left();
        SetCapacity(memory, array, fits ? room : count);
    }
    if (count < array.Count && count <= array.Capacity / 4) SetCapacity(memory, array, count);
    if (count > array.Count)
        std::memset(array.Data + static_cast<size_t>(array.Count) * size, 0,
                    static_cast<size_t>(count - array.Count) * size);
    array.Count = count;
}

namespace {

/// The number of elements that bounds ask for; sizes of each dimension go to `sizes`.
int64_t CountOf(const Slot* bounds, uint32_t rank, std::vector<int64_t>& sizes) {
    int64_t count = 1;
    for (uint32_t place = 0; place < rank; ++place) {
        const int64_t bound = bounds[place].I;
        if (bound < -1) FailOutOfBounds();
        if (bound >= static_cast<int64_t>(Memory::Limit)) FailMemory();
        sizes.push_back(bound + 1);
        if (count > 0 && bound + 1 > static_cast<int64_t>(Memory::Limit) / count) FailMemory();
        count *= bound + 1;
    }
    return count;
}

}  // namespace

void Machine::NewArray(Slot& to, const Slot* bounds, const ArrayShape& shape) {
    std::vector<int64_t> sizes;
    const int64_t count = CountOf(bounds, shape.Rank, sizes);
    Array* array = mMemory.NewArray(shape.T, shape.Element, shape.Rank, shape.Structure);
    Put(to, array);
    ResizeArray(mMemory, *array, count);
    if (shape.Rank > 1) array->Sizes = std::move(sizes);
}

// An array of one dimension keeps what still has a place; others keep the elements with the same indices.
void Machine::ReDim(Array* array, const Slot* bounds, uint32_t rank) {
    if (!array) FailNil();
    if (array->Fixed) FailFixed();
    std::vector<int64_t> sizes;
    const int64_t count = CountOf(bounds, rank, sizes);
    // If only the first dimension changes, the elements stay where they are.
    const bool inOrder = rank == 1 || (array->Sizes.size() == rank &&
                                       std::equal(sizes.begin() + 1, sizes.end(), array->Sizes.begin() + 1));
    Array* old = mMemory.NewArray(array->T, array->Element, rank, array->Structure);
    Slot holder;  // lets the old elements go at the end
    holder.A = old;
    try {
        if (inOrder)
            ResizeInOrder(*array, count, *old);
        else
            Rearrange(*array, count, sizes, *old);
    } catch (...) {
        Put(holder, nullptr);
        throw;
    }
    if (rank > 1) array->Sizes = std::move(sizes);
    Put(holder, nullptr);
}

// What has no place any more comes to `gone`. The smaller part of the elements moves.
void Machine::ResizeInOrder(Array& array, int64_t count, Array& gone) {
    const int64_t over = array.Count - count;
    const size_t size = ElementSize(array.Element);
    const auto bytes = [size](int64_t elements) {
        return static_cast<size_t>(elements) * size;
    };
    if (over <= 0 || array.Element != ElementKind::Reference) return ResizeArray(mMemory, array, count);
    if (over <= count) {
        ResizeArray(mMemory, gone, over);
        std::memcpy(gone.Data, array.Data + bytes(count), bytes(over));
        std::memset(array.Data + bytes(count), 0, bytes(over));
        return ResizeArray(mMemory, array, count);
    }
    gone.SwapElements(array);
    ResizeArray(mMemory, array, count);
    if (count == 0) return;
    std::memcpy(array.Data, gone.Data, bytes(count));
    std::memset(gone.Data, 0, bytes(count));
}

// Elements keep their indices in all dimensions.
void Machine::Rearrange(Array& array, int64_t count, const std::vector<int64_t>& sizes, Array& gone) {
    const size_t size = ElementSize(array.Element);
    Array* old = &gone;
    old->SwapElements(array);
    std::swap(old->Sizes, array.Sizes);
    ResizeArray(mMemory, array, count);
    if (old->Sizes.size() != sizes.size()) old->Sizes.assign(sizes.size(), 0);
    for (int64_t from = 0; from < old->Count; ++from) {
        int64_t rest = from, place = 0, scale = 1;
        bool fits = true;
        for (size_t dimension = sizes.size(); dimension-- > 0;) {
            const int64_t index = old->Sizes[dimension] ? rest % old->Sizes[dimension] : 0;
            rest = old->Sizes[dimension] ? rest / old->Sizes[dimension] : rest;
            fits &= index < sizes[dimension];
            place += index * scale;
            scale *= sizes[dimension];
        }
        if (!fits) continue;
        char* source = old->Data + static_cast<size_t>(from) * size;
        std::memcpy(array.Data + static_cast<size_t>(place) * size, source, size);
        std::memset(source, 0, size);
    }
}

int64_t Machine::FlatIndex(const Array* array, const Slot* indices) {
    if (!array) FailOutOfBounds();
    int64_t flat = 0;
    for (size_t place = 0; place < array->Sizes.size(); ++place) {
        const int64_t index = indices[place].I;
        if (index < 0 || index >= array->Sizes[place]) FailOutOfBounds();
        flat = flat * array->Sizes[place] + index;
    }
    return flat;
}

void Machine::MakeDelegate(Slot& to, Object* target, const DelegateShape& shape) {
    using How = DelegateShape::How;
    if (shape.Calls != How::Static && !target) FailNil();
    uint32_t function = shape.Index;
    if (shape.Calls == How::Virtual) function = target->Class->Virtual[shape.Index];
    if (shape.Calls == How::Interface) function = target->Class->BySelector.at(static_cast<int>(shape.Index));
    Delegate* delegate = mMemory.NewDelegate();
    delegate->T = shape.T;
    delegate->Function = function;
    if (shape.Calls != How::Static) {
        delegate->HasTarget = true;
        if (shape.Weak) {
            mMemory.SetWeakTarget(*delegate, *target);
        } else {
            delegate->Target = target;
            Memory::Retain(target);
        }
    }
    Put(to, delegate);
}

// The array of a structure has its elements with it.
void Machine::CopyElements(Array& to, const Array& from) {
    std::memcpy(to.Data, from.Data, static_cast<size_t>(from.Count) * ElementSize(from.Element));
    if (!from.Structure) return;
    // Nothing is shared, even if there is no memory for all.
    for (int64_t at = 0; at < from.Count; ++at)
        to.As<Slot>()[at].O = nullptr;
    for (int64_t at = 0; at < from.Count; ++at)
        if (const Object* element = const_cast<Array&>(from).As<Slot>()[at].O)
            to.As<Slot>()[at].O = Clone(*element);
}

Object* Machine::Clone(const Object& from) {
    Object* copy = mMemory.NewObject(*from.Class);
    for (uint32_t index = 0; index < from.Count; ++index) {
        const Slot field = const_cast<Object&>(from).Fields()[index];
        Slot& to = copy->Fields()[index];
        if (from.Class->StructureField[index])
            to.O = field.O ? Clone(*field.O) : nullptr;
        else if (from.Class->ReferenceField[index])
            CopyElements(*to.A, *field.A);
        else
            to = field;
    }
    return copy;
}

void Machine::CopyStructure(Slot& to, Object* from) {
    if (!from) FailNil();
    Put(to, Clone(*from));
}

}  // namespace sorbel::script
