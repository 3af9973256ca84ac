#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scripting/compiler/Blocks.h"
#include "scripting/compiler/FieldPlaces.h"

namespace sorbel::script {

struct Type;
struct ClassInfo;
struct Heap;
struct Text;
struct Box;
struct Array;
struct Object;
struct Delegate;
struct Table;

/// One register, field or element of full size. What it holds is known by the code that uses it.
union Slot {
    int64_t I = 0;
    uint64_t U;
    double D;
    Heap* H;
    Text* T;
    Box* V;
    Array* A;
    Object* O;
    Delegate* G;
    Table* B;
};
static_assert(sizeof(Slot) == 8);

/// A failure of a running script that is not yet an object of it. `ClassName` names a class of exceptions.
struct Failure {
    std::string ClassName;
    std::string Message;
};
[[noreturn]] void FailOutOfBounds();
[[noreturn]] void FailNil();
[[noreturn]] void FailFixed();
inline constexpr const char* OutOfMemory = "OutOfMemoryException";
inline constexpr const char* OutOfMemoryMessage = "The script needs more than its memory.";
[[noreturn]] void FailMemory();
[[noreturn]] void FailType(const std::string& message);

enum class HeapKind : uint8_t { Text, Box, Array, Object, Delegate, Table };

/// What all counted things begin with.
struct Heap {
    uint32_t References = 1;
    HeapKind What = HeapKind::Text;
    bool Dying = false;    // its destructor runs or has run
    bool Watched = false;  // a weak delegate calls it, or fields of this text are remembered
    bool Ascii = false;    // of a text whose characters are counted
};

/// A text. It is changed in place only while a single register knows of it.
struct Text : Heap {
    static constexpr uint32_t IndexStep = 16;
    static constexpr uint32_t Unknown = UINT32_MAX;
    uint32_t Size = 0;
    uint32_t Capacity = 0;
    uint32_t Characters = Unknown;
    uint32_t Marks = 0;         // in the index
    uint32_t* Index = nullptr;  // where every 16th character begins, once it was needed
    char* Bytes() { return reinterpret_cast<char*>(this + 1); }
    [[nodiscard]] std::string_view View() { return {Bytes(), Size}; }
};

/// What can be part of a circle, and is found through this chain when the script ends. What waits to go is in
/// another one.
struct Linked : Heap {
    Linked* Previous = nullptr;
    Linked* Next = nullptr;
};

/// A Variant that is not Nil.
struct Box : Linked {
    const Type* T = nullptr;
    Slot Value;
};

enum class ElementKind : uint8_t { I8, U8, I16, U16, I32, U32, I64, F32, Reference };
[[nodiscard]] size_t ElementSize(ElementKind kind);

struct Array : Linked {
    const Type* T = nullptr;
    const ClassInfo* Structure = nullptr;  // of the elements
    ElementKind Element = ElementKind::I64;
    bool Fixed = false;  // it is part of a structure
    uint32_t Rank = 1;
    int64_t Count = 0;           // elements in all dimensions together
    int64_t Capacity = 0;        // places from the first element on
    int64_t Skipped = 0;         // free places before it, where elements were removed or will be inserted
    char* Data = nullptr;        // the first element
    std::vector<int64_t> Sizes;  // of each dimension, when there are several
    template <typename E>
    E* As() {
        return reinterpret_cast<E*>(Data);
    }
    /// Gives what it holds for what another array of the same type holds.
    void SwapElements(Array& other);
};

/// An object of a class, or a structure.
struct Object : Linked {
    const ClassInfo* Class = nullptr;
    uint32_t Count = 0;
    Slot* Fields() { return reinterpret_cast<Slot*>(this + 1); }
};

struct Delegate : Linked {
    const Type* T = nullptr;
    uint32_t Function = 0;
    bool HasTarget = false;
    bool Weak = false;  // does not keep its target alive, and has none when that is gone
    Object* Target = nullptr;
    Delegate *WeakBefore = nullptr, *WeakAfter = nullptr;  // others that are weak and have the same target
};

/// The entries of a Dictionary in the order in which they came, and where to look for the hash of a key.
struct Table : Linked {
    struct Entry {
        Box* Key;
        Box* Value;
        uint32_t Hash;
        bool Gone;
    };
    static constexpr uint32_t PlacesPerEntry = 2;
    uint32_t Used = 0;  // with those that are gone
    uint32_t Live = 0;
    uint32_t Room = 0;  // a power of 2
    Entry* Entries = nullptr;
    uint32_t* Places = nullptr;  // numbers of entries from 1; 0 where none is
};

/// A script's memory: counts what is in use, fails with OutOfMemoryException beyond the limit, and knows
/// everything that could be part of a circle.
class Memory {
  public:
    static constexpr size_t Limit = Footprint::Limit;

    explicit Memory(Footprint& room) : mRoom(room), mSmall(room), mInUse(room.Kept()) {}
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;
    ~Memory();

    void* Allocate(size_t bytes);
    void* Resize(void* block, size_t before, size_t after);
    void Free(void* block, size_t bytes) {
        mInUse -= bytes;
        if (IsSmall(bytes))
            mSmall.GiveBack(block, bytes);
        else
            std::free(block);
    }
    /// Fails if there would be no memory for so much more, which is needed for a moment only.
    void Expect(size_t bytes);
    [[nodiscard]] size_t Left() const { return Limit - mInUse; }

    Text* NewText(std::string_view bytes);
    /// What a block for so many bytes really holds.
    [[nodiscard]] static size_t Room(size_t bytes) {
        return IsSmall(bytes) ? SmallBlocks::Room(bytes) : bytes;
    }
    Text* NewTextOf(size_t capacity);  ///< empty, with room for at least so many bytes
    void DropIndex(Text& text);
    void ExtendIndex(Text& text, uint32_t marks);  ///< gives room for so many
    [[nodiscard]] FieldPlaces& Fields() { return mFields; }
    Box* NewBox(const Type* type, Slot value);
    Array* NewArray(const Type* type, ElementKind element, uint32_t rank, const ClassInfo* structure);
    Object* NewObject(const ClassInfo& cls);  ///< with the arrays of a structure
    Delegate* NewDelegate();
    void SetWeakTarget(Delegate& delegate, Object& target);
    Table* NewTable();
    /// Makes room for so many entries, a power of 2, and leaves out what is gone.
    void Rebuild(Table& table, uint32_t room);

    /// One reference less. What nothing refers to any more goes, without recursion however long a chain it
    /// is.
    void Release(Heap* thing) {
        if (thing && --thing->References == 0) Drop(thing);
    }
    static void Retain(Heap* thing) {
        if (thing) ++thing->References;
    }

    /// Runs a destructor; the machine sets it.
    class Destroyer {
      public:
        virtual ~Destroyer() = default;
        virtual void Destroy(Object& object) = 0;
    };
    void SetDestroyer(Destroyer* destroyer) { mDestroyer = destroyer; }

    /// Frees what is left when the script has ended: circles.
    void FreeAll();

  private:
    void MakeArrays(Object& structure);
    [[nodiscard]] static bool IsSmall(size_t bytes) { return bytes <= SmallBlocks::Largest; }
    void* Take(size_t bytes);
    void* Move(void* block, size_t before, size_t after);
    void Link(Linked* thing);
    void Unlink(Linked* thing);
    void Drop(Heap* thing);
    void FreeOne(Heap* thing);
    void ReleaseParts(Heap* thing);
    void FreeEntries(Table& table);
    void ForgetTarget(Heap* object);
    void UnlinkWeak(Delegate& delegate);
    bool Survives(Object& object);
    void AddDead(Linked* thing);
    Linked* TakeDead();

    Footprint& mRoom;
    SmallBlocks mSmall;
    FieldPlaces mFields;
    size_t mInUse;
    Linked* mFirst = nullptr;
    std::unordered_map<const Object*, Delegate*> mWeak;  // the first that is weak, by its target
    Linked* mDead = nullptr;                             // the first of what waits to go
    bool mDropping = false;
    int mDestructors = 0;  // that run one in another
    Destroyer* mDestroyer = nullptr;
};

}  // namespace sorbel::script
