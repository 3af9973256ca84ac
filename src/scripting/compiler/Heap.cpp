#include "scripting/compiler/Heap.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include "scripting/compiler/Program.h"

namespace sorbel::script {

void FailOutOfBounds() {
    throw Failure{"OutOfBoundsException", "An index is out of bounds."};
}
void FailNil() {
    throw Failure{"NilObjectException", "An object is needed where there is none."};
}
void FailFixed() {
    throw Failure{"InvalidArgumentException", "The array of a structure keeps its size."};
}
void FailType(const std::string& message) {
    throw Failure{"TypeMismatchException", message};
}

void FailMemory() {
    throw Failure{OutOfMemory, OutOfMemoryMessage};
}

size_t ElementSize(ElementKind kind) {
    switch (kind) {
        case ElementKind::I8:
        case ElementKind::U8:
            return 1;
        case ElementKind::I16:
        case ElementKind::U16:
            return 2;
        case ElementKind::I32:
        case ElementKind::U32:
        case ElementKind::F32:
            return 4;
        default:
            return 8;
    }
}

void Array::SwapElements(Array& other) {
    std::swap(Data, other.Data);
    std::swap(Count, other.Count);
    std::swap(Capacity, other.Capacity);
    std::swap(Skipped, other.Skipped);
}

namespace {

size_t ObjectSize(const ClassInfo& cls) {
    return sizeof(Object) + cls.ReferenceField.size() * sizeof(Slot);
}

bool HoldsReference(const Box& box) {
    return box.T->IsReference();
}

bool IsLinked(const Linked& thing) {
    return thing.What != HeapKind::Box || HoldsReference(static_cast<const Box&>(thing));
}

bool HasDestructor(const Linked& thing) {
    return thing.What == HeapKind::Object && !thing.Dying &&
           static_cast<const Object&>(thing).Class->Destructor >= 0;
}

}  // namespace

Memory::~Memory() {
    FreeAll();
}

void* Memory::Allocate(size_t bytes) {
    void* block = nullptr;
    if (bytes <= Left()) block = Take(bytes);
    if (!block) FailMemory();
    mInUse += bytes;
    return block;
}

void Memory::Expect(size_t bytes) {
    if (bytes > Left() || !mRoom.MayGrowBriefly(bytes)) FailMemory();
}

void* Memory::Take(size_t bytes) {
    if (IsSmall(bytes)) return mSmall.Take(bytes);
    return mRoom.MayGrow(bytes) ? std::malloc(bytes) : nullptr;
}

void* Memory::Resize(void* block, size_t before, size_t after) {
    void* moved = nullptr;
    if (after <= before || after - before <= Left()) moved = Move(block, before, after);
    if (!moved) FailMemory();
    mInUse += after - before;
    return moved;
}

// Another block of the given size with the same beginning; null if there is none.
void* Memory::Move(void* block, size_t before, size_t after) {
    if (!IsSmall(before) && !IsSmall(after)) {
        if (after > before && !mRoom.MayGrow(after - before)) return nullptr;
        return std::realloc(block, after);
    }
    void* moved = Take(after);
    if (!moved) return nullptr;
    std::memcpy(moved, block, std::min(before, after));
    if (IsSmall(before))
        mSmall.GiveBack(block, before);
    else
        std::free(block);
    return moved;
}

Text* Memory::NewTextOf(size_t capacity) {
    if (capacity >= Limit) FailMemory();
    const size_t bytes = Room(sizeof(Text) + capacity);
    Text* text = new (Allocate(bytes)) Text;
    text->Capacity = static_cast<uint32_t>(bytes - sizeof(Text));
    return text;
}

Text* Memory::NewText(std::string_view bytes) {
    Text* text = NewTextOf(bytes.size());
    if (!bytes.empty()) std::memcpy(text->Bytes(), bytes.data(), bytes.size());
    text->Size = static_cast<uint32_t>(bytes.size());
    return text;
}

void Memory::DropIndex(Text& text) {
    if (!text.Index) return;
    Free(text.Index, std::bit_ceil(text.Marks) * sizeof(uint32_t));
    text.Index = nullptr;
    text.Marks = 0;
}

void Memory::ExtendIndex(Text& text, uint32_t marks) {
    const size_t before = text.Index ? std::bit_ceil(text.Marks) * sizeof(uint32_t) : 0;
    const size_t after = std::bit_ceil(marks) * sizeof(uint32_t);
    if (!text.Index)
        text.Index = static_cast<uint32_t*>(Allocate(after));
    else if (after > before)
        text.Index = static_cast<uint32_t*>(Resize(text.Index, before, after));
    text.Marks = marks;
}

Box* Memory::NewBox(const Type* type, Slot value) {
    Box* box = new (Allocate(sizeof(Box))) Box;
    box->What = HeapKind::Box;
    box->T = type;
    box->Value = value;
    if (HoldsReference(*box)) {
        Retain(value.H);
        Link(box);
    }
    return box;
}

Array* Memory::NewArray(const Type* type, ElementKind element, uint32_t rank, const ClassInfo* structure) {
    Array* array = new (Allocate(sizeof(Array))) Array;
    array->What = HeapKind::Array;
    array->T = type;
    array->Element = element;
    array->Rank = rank;
    array->Structure = structure;
    Link(array);
    return array;
}

Object* Memory::NewObject(const ClassInfo& cls) {
    Object* object = new (Allocate(ObjectSize(cls))) Object;
    object->What = HeapKind::Object;
    object->Class = &cls;
    object->Count = static_cast<uint32_t>(cls.ReferenceField.size());
    for (uint32_t index = 0; index < object->Count; ++index)
        new (&object->Fields()[index]) Slot;
    Link(object);
    if (!cls.FixedArrays.empty()) MakeArrays(*object);
    return object;
}

void Memory::MakeArrays(Object& structure) {
    for (const auto& [field, shape, last] : structure.Class->FixedArrays) {
        Array* array = NewArray(shape.T, shape.Element, 1, shape.Structure);
        array->Fixed = true;
        structure.Fields()[field].A = array;
        if (last >= static_cast<int64_t>(Limit / ElementSize(shape.Element))) FailMemory();
        const int64_t count = last + 1;
        const size_t size = static_cast<size_t>(count) * ElementSize(shape.Element);
        array->Data = static_cast<char*>(Allocate(size));
        std::memset(array->Data, 0, size);
        array->Count = array->Capacity = count;
    }
}

Delegate* Memory::NewDelegate() {
    Delegate* delegate = new (Allocate(sizeof(Delegate))) Delegate;
    delegate->What = HeapKind::Delegate;
    Link(delegate);
    return delegate;
}

Table* Memory::NewTable() {
    Table* table = new (Allocate(sizeof(Table))) Table;
    table->What = HeapKind::Table;
    Link(table);
    return table;
}

void Memory::FreeEntries(Table& table) {
    if (table.Entries) Free(table.Entries, table.Room * sizeof(Table::Entry));
    if (table.Places) Free(table.Places, size_t{table.Room} * Table::PlacesPerEntry * sizeof(uint32_t));
}

void Memory::Rebuild(Table& table, uint32_t room) {
    const uint32_t placeCount = room * Table::PlacesPerEntry;
    auto* entries = static_cast<Table::Entry*>(Allocate(size_t{room} * sizeof(Table::Entry)));
    uint32_t* places = nullptr;
    try {
        places = static_cast<uint32_t*>(Allocate(size_t{placeCount} * sizeof(uint32_t)));
    } catch (...) {
        Free(entries, size_t{room} * sizeof(Table::Entry));
        throw;
    }
    std::memset(places, 0, size_t{placeCount} * sizeof(uint32_t));
    uint32_t used = 0;
    for (uint32_t at = 0; at < table.Used; ++at) {
        const Table::Entry& entry = table.Entries[at];
        if (entry.Gone) continue;
        entries[used++] = entry;
        uint32_t place = entry.Hash & (placeCount - 1);
        while (places[place] != 0)
            place = (place + 1) & (placeCount - 1);
        places[place] = used;
    }
    FreeEntries(table);
    table.Entries = entries;
    table.Places = places;
    table.Used = used;
    table.Room = room;
}

void Memory::Link(Linked* thing) {
    thing->Next = mFirst;
    if (mFirst) mFirst->Previous = thing;
    mFirst = thing;
}

void Memory::Unlink(Linked* thing) {
    if (thing->Next) thing->Next->Previous = thing->Previous;
    if (thing->Previous)
        thing->Previous->Next = thing->Next;
    else if (mFirst == thing)
        mFirst = thing->Next;
}

// A chain of objects that go with one another is worked off from a list, so that its length needs no stack.
void Memory::Drop(Heap* thing) {
    if (thing->What == HeapKind::Text) return FreeOne(thing);
    // What waits to go must not be called, or it would go twice.
    if (thing->Watched) ForgetTarget(thing);
    AddDead(static_cast<Linked*>(thing));
    if (mDropping) return;
    mDropping = true;
    while (mDead) {
        Linked* dead = TakeDead();
        if (mDestroyer && HasDestructor(*dead) && Survives(static_cast<Object&>(*dead))) continue;
        ReleaseParts(dead);
        FreeOne(dead);
    }
    mDropping = false;
}

// Runs the destructor. True if that keeps the object alive.
bool Memory::Survives(Object& object) {
    object.Dying = true;
    object.References = 1;
    Link(&object);
    // What the destructor lets go of goes at once, unless that already is a long chain.
    mDropping = ++mDestructors > 50;
    mDestroyer->Destroy(object);
    --mDestructors;
    mDropping = true;
    if (--object.References > 0) return true;
    if (object.Watched) ForgetTarget(&object);
    Unlink(&object);
    return false;
}

// The chain of what is alive serves for what waits to go too, so that this needs no memory.
void Memory::AddDead(Linked* thing) {
    if (IsLinked(*thing)) Unlink(thing);
    thing->Next = std::exchange(mDead, thing);
}

Linked* Memory::TakeDead() {
    Linked* thing = std::exchange(mDead, mDead->Next);
    thing->Next = thing->Previous = nullptr;
    return thing;
}

void Memory::ReleaseParts(Heap* thing) {
    switch (thing->What) {
        case HeapKind::Text:
            break;
        case HeapKind::Box: {
            auto& box = static_cast<Box&>(*thing);
            if (HoldsReference(box)) Release(box.Value.H);
            break;
        }
        case HeapKind::Array: {
            auto& array = static_cast<Array&>(*thing);
            if (array.Element != ElementKind::Reference) break;
            for (int64_t index = 0; index < array.Count; ++index)
                Release(array.As<Heap*>()[index]);
            array.Count = 0;
            break;
        }
        case HeapKind::Object: {
            auto& object = static_cast<Object&>(*thing);
            for (uint32_t index = 0; index < object.Count; ++index)
                if (object.Class->ReferenceField[index]) Release(object.Fields()[index].H);
            object.Count = 0;
            break;
        }
        case HeapKind::Delegate: {
            auto& delegate = static_cast<Delegate&>(*thing);
            if (!delegate.Weak) Release(delegate.Target);
            break;
        }
        case HeapKind::Table: {
            auto& table = static_cast<Table&>(*thing);
            for (uint32_t at = 0; at < table.Used; ++at) {
                Release(table.Entries[at].Key);
                Release(table.Entries[at].Value);
            }
            table.Used = 0;
            break;
        }
    }
}

void Memory::FreeOne(Heap* thing) {
    switch (thing->What) {
        case HeapKind::Text: {
            auto* text = static_cast<Text*>(thing);
            if (text->Index) DropIndex(*text);
            if (text->Watched) mFields.Forget(text);
            return Free(text, sizeof(Text) + text->Capacity);
        }
        case HeapKind::Box: {
            auto* box = static_cast<Box*>(thing);
            return Free(box, sizeof(Box));
        }
        case HeapKind::Array: {
            auto* array = static_cast<Array*>(thing);
            if (array->Data) {
                const size_t size = ElementSize(array->Element);
                Free(array->Data - static_cast<size_t>(array->Skipped) * size,
                     static_cast<size_t>(array->Skipped + array->Capacity) * size);
            }
            array->~Array();
            return Free(array, sizeof(Array));
        }
        case HeapKind::Object: {
            auto* object = static_cast<Object*>(thing);
            return Free(object, ObjectSize(*object->Class));
        }
        case HeapKind::Delegate: {
            auto* delegate = static_cast<Delegate*>(thing);
            if (delegate->Weak && delegate->Target) UnlinkWeak(*delegate);
            return Free(delegate, sizeof(Delegate));
        }
        case HeapKind::Table:
            FreeEntries(static_cast<Table&>(*thing));
            return Free(thing, sizeof(Table));
    }
}

void Memory::SetWeakTarget(Delegate& delegate, Object& target) {
    Delegate*& first = mWeak[&target];
    delegate.Weak = true;
    delegate.Target = &target;
    delegate.WeakAfter = first;
    if (first) first->WeakBefore = &delegate;
    first = &delegate;
    target.Watched = true;
}

void Memory::UnlinkWeak(Delegate& delegate) {
    if (delegate.WeakAfter) delegate.WeakAfter->WeakBefore = delegate.WeakBefore;
    if (delegate.WeakBefore)
        delegate.WeakBefore->WeakAfter = delegate.WeakAfter;
    else if (delegate.WeakAfter)
        mWeak[delegate.Target] = delegate.WeakAfter;
    else
        mWeak.erase(delegate.Target);
}

void Memory::ForgetTarget(Heap* object) {
    object->Watched = false;
    const auto found = mWeak.find(static_cast<const Object*>(object));
    if (found == mWeak.end()) return;
    for (Delegate* delegate = found->second; delegate; delegate = delegate->WeakAfter)
        delegate->Target = nullptr;
    mWeak.erase(found);
}

// Every circle is opened while all of its members are held, then each member goes by itself.
void Memory::FreeAll() {
    mDestroyer = nullptr;
    mDropping = false;
    mWeak.clear();
    // What waits when a script is stopped goes with the rest.
    while (mDead) {
        Linked* thing = TakeDead();
        if (IsLinked(*thing))
            Link(thing);
        else
            FreeOne(thing);
    }
    for (Linked* thing = mFirst; thing; thing = thing->Next)
        thing->References = 1u << 31;
    for (Linked* thing = mFirst; thing; thing = thing->Next) {
        ReleaseParts(thing);
        if (thing->What == HeapKind::Box) static_cast<Box*>(thing)->Value.H = nullptr;
        if (thing->What == HeapKind::Delegate) static_cast<Delegate*>(thing)->Target = nullptr;
    }
    while (mFirst) {
        mFirst->References = 1;
        Release(mFirst);
    }
}

}  // namespace sorbel::script
