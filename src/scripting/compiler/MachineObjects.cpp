#include <algorithm>
#include <cstring>

#include "scripting/compiler/Machine.h"

namespace sorbel::script {

void ResizeArray(Memory& memory, Array& array, int64_t count) {
    const size_t size = ElementSize(array.Element);
    if (count > array.Capacity) {
        if (count > static_cast<int64_t>(Memory::Limit / size)) FailMemory();
        const int64_t room = array.Count == 0 ? count : std::max(count, array.Capacity * 2);
        const auto before = static_cast<size_t>(array.Capacity) * size;
        const auto after = static_cast<size_t>(room) * size;
        array.Data = static_cast<char*>(array.Data ? memory.Resize(array.Data, before, after)
                                                   : memory.Allocate(after));
        array.Capacity = room;
    }
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
    const size_t size = ElementSize(array->Element);
    Array* old = mMemory.NewArray(array->T, array->Element, rank, array->Structure);
    Slot holder;  // lets the old elements go at the end
    holder.A = old;
    std::swap(old->Data, array->Data);
    std::swap(old->Count, array->Count);
    std::swap(old->Capacity, array->Capacity);
    std::swap(old->Sizes, array->Sizes);
    try {
        ResizeArray(mMemory, *array, count);
    } catch (...) {
        Put(holder, nullptr);
        throw;
    }
    if (rank > 1) array->Sizes = sizes;
    if (rank == 1) old->Sizes = {old->Count};
    if (rank == 1) sizes = {count};
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
        std::memcpy(array->Data + static_cast<size_t>(place) * size, source, size);
        std::memset(source, 0, size);
    }
    Put(holder, nullptr);
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
        delegate->Target = target;
        delegate->Weak = shape.Weak;
        if (shape.Weak)
            target->Watched = true;
        else
            Memory::Retain(target);
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
