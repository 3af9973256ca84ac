#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/Exceptions.h"
#include "platform/SharedText.h"
#include "platform/Text.h"

namespace sorbel {

/// How a `Dictionary` looks its keys up: the type to ask with, a hash and an equality.
template <typename Key>
struct DictionaryKey {
    using View = Key;
    static uint32_t Hash(const Key& key) {
        return static_cast<uint32_t>((Number(key) * 0x9E3779B97F4A7C15u) >> 32);
    }
    static bool Same(const Key& a, const Key& b) { return a == b; }

  private:
    static uint64_t Number(const Key& key) {
        if constexpr (std::is_pointer_v<Key>)
            return static_cast<uint64_t>(reinterpret_cast<uintptr_t>(key));
        else
            return static_cast<uint64_t>(key);
    }
};

/// Text keys compare by plain equality, so letter case is ignored.
template <>
struct DictionaryKey<String> {
    using View = StringView;
    static uint32_t Hash(StringView key) { return FoldedHash(key); }
    static bool Same(StringView a, StringView b) { return Equal(a, b); }
};
template <>
struct DictionaryKey<SharedText> : DictionaryKey<String> {};

/// Keys with values in the order in which the keys were first stored. Replacing a value keeps the key's place
/// and its first spelling. Contiguous storage with an index beside it.
template <typename Key, typename Value>
class Dictionary {
  public:
    using Traits = DictionaryKey<Key>;
    using View = typename Traits::View;

    struct Item {
        explicit Item(Key key) : First(std::move(key)) {}

        Key First;
        Value Second{};
    };

    [[nodiscard]] int64_t Count() const { return static_cast<int64_t>(mItems.size()); }
    [[nodiscard]] bool HasKey(View key) const { return Find(key) != nullptr; }
    /// The key at a place in the order, from 0.
    [[nodiscard]] const Key& KeyAt(int64_t index) const { return mItems[CheckedIndex(index)].First; }
    [[nodiscard]] const Value& ValueAt(int64_t index) const { return mItems[CheckedIndex(index)].Second; }
    [[nodiscard]] const Item& ItemAt(int64_t index) const { return mItems[CheckedIndex(index)]; }
    /// A copy of all keys, in order.
    [[nodiscard]] std::vector<Key> Keys() const;

    /// The value of a key, or null.
    [[nodiscard]] const Value* Find(View key) const;
    [[nodiscard]] Value* Find(View key) { return const_cast<Value*>(std::as_const(*this).Find(key)); }
    [[nodiscard]] Value Lookup(View key, Value fallback) const;
    /// Fails with KeyNotFoundException.
    [[nodiscard]] const Value& At(View key) const;

    /// The place of a key, -1 if it is not there. A good `guess` saves the search: whoever walks through keys
    /// that mostly follow each other here too guesses the place behind the last.
    [[nodiscard]] int64_t PlaceOf(View key, int64_t guess) const;

    /// Stores a value; an existing key keeps its place and spelling.
    void Set(View key, Value value);
    /// The value of a key, which is added with a default value if it is new; `makeKey()` gives the key to
    /// store. `guess` is that of `PlaceOf`.
    template <typename MakeKey>
    Value& FindOrAdd(View key, MakeKey makeKey, int64_t guess = -1) {
        if (IsAt(key, guess)) return mItems[static_cast<size_t>(guess)].Second;
        return FindOrAdd(key, Traits::Hash(key), makeKey);
    }
    /// The same with the key's hash, for which memory was made ready by `Prefetch` a little earlier.
    template <typename MakeKey>
    Value& FindOrAdd(View key, uint32_t hash, MakeKey makeKey);
    void Prefetch(uint32_t hash) const {
        if (!mSlots.empty()) __builtin_prefetch(&mSlots[hash & (mSlots.size() - 1)], 1);
    }

    bool Remove(View key);
    void Clear();
    void Reserve(size_t count);

    auto begin() const { return mItems.begin(); }
    auto end() const { return mItems.end(); }

  private:
    struct Slot {
        uint32_t Index = Free;
        uint32_t Hash = 0;
    };
    static constexpr uint32_t Free = UINT32_MAX;

    size_t CheckedIndex(int64_t index) const {
        if (index < 0 || index >= Count()) throw OutOfBoundsException("No such place in the dictionary.");
        return static_cast<size_t>(index);
    }
    [[nodiscard]] bool IsAt(View key, int64_t place) const {
        return place >= 0 && place < Count() && Traits::Same(mItems[static_cast<size_t>(place)].First, key);
    }
    [[nodiscard]] uint32_t Locate(View key, uint32_t hash) const;
    void Link(uint32_t hash, uint32_t index);
    void Rebuild(size_t slots);

    std::vector<Item> mItems;
    std::vector<Slot> mSlots;  // open addressing; the size is a power of two, at most two thirds filled
};

// --- Implementation ---

template <typename Key, typename Value>
std::vector<Key> Dictionary<Key, Value>::Keys() const {
    std::vector<Key> keys;
    keys.reserve(mItems.size());
    for (const Item& item : mItems)
        keys.push_back(item.First);
    return keys;
}

template <typename Key, typename Value>
uint32_t Dictionary<Key, Value>::Locate(View key, uint32_t hash) const {
    if (mSlots.empty()) return Free;
    const size_t mask = mSlots.size() - 1;
    for (size_t at = hash & mask;; at = (at + 1) & mask) {
        const Slot& slot = mSlots[at];
        if (slot.Index == Free) return Free;
        if (slot.Hash == hash && Traits::Same(mItems[slot.Index].First, key)) return slot.Index;
    }
}

template <typename Key, typename Value>
const Value* Dictionary<Key, Value>::Find(View key) const {
    if (mItems.empty()) return nullptr;
    const uint32_t index = Locate(key, Traits::Hash(key));
    return index == Free ? nullptr : &mItems[index].Second;
}

template <typename Key, typename Value>
Value Dictionary<Key, Value>::Lookup(View key, Value fallback) const {
    const Value* found = Find(key);
    return found ? *found : fallback;
}

template <typename Key, typename Value>
const Value& Dictionary<Key, Value>::At(View key) const {
    const Value* found = Find(key);
    if (!found) throw KeyNotFoundException("The dictionary does not have this key.");
    return *found;
}

template <typename Key, typename Value>
int64_t Dictionary<Key, Value>::PlaceOf(View key, int64_t guess) const {
    if (IsAt(key, guess)) return guess;
    const uint32_t index = Locate(key, Traits::Hash(key));
    return index == Free ? -1 : int64_t{index};
}

template <typename Key, typename Value>
void Dictionary<Key, Value>::Set(View key, Value value) {
    FindOrAdd(key, [&] { return Key(key); }) = std::move(value);
}

template <typename Key, typename Value>
template <typename MakeKey>
Value& Dictionary<Key, Value>::FindOrAdd(View key, uint32_t hash, MakeKey makeKey) {
    const uint32_t found = Locate(key, hash);
    if (found != Free) return mItems[found].Second;
    mItems.emplace_back(makeKey());
    if (mItems.size() * 3 > mSlots.size() * 2) Rebuild(mSlots.empty() ? 8 : mSlots.size() * 2);
    Link(hash, static_cast<uint32_t>(mItems.size() - 1));
    return mItems.back().Second;
}

template <typename Key, typename Value>
bool Dictionary<Key, Value>::Remove(View key) {
    const uint32_t found = Locate(key, Traits::Hash(key));
    if (found == Free) return false;
    mItems.erase(mItems.begin() + found);
    for (Slot& slot : mSlots) {
        if (slot.Index == found)
            slot.Index = Free;
        else if (slot.Index != Free && slot.Index > found)
            --slot.Index;
    }
    Rebuild(mSlots.size());
    return true;
}

template <typename Key, typename Value>
void Dictionary<Key, Value>::Clear() {
    mItems.clear();
    mSlots.clear();
}

template <typename Key, typename Value>
void Dictionary<Key, Value>::Reserve(size_t count) {
    mItems.reserve(count);
    size_t slots = 8;
    while (slots * 2 < count * 3)
        slots *= 2;
    if (slots > mSlots.size()) Rebuild(slots);
}

template <typename Key, typename Value>
void Dictionary<Key, Value>::Link(uint32_t hash, uint32_t index) {
    const size_t mask = mSlots.size() - 1;
    size_t at = hash & mask;
    while (mSlots[at].Index != Free)
        at = (at + 1) & mask;
    mSlots[at] = {index, hash};
}

template <typename Key, typename Value>
void Dictionary<Key, Value>::Rebuild(size_t slots) {
    std::vector<Slot> larger(slots);
    for (const Slot& slot : std::exchange(mSlots, std::move(larger)))
        if (slot.Index != Free) Link(slot.Hash, slot.Index);
}

}  // namespace sorbel
