#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

// Spreads the bits of a number, so that keys in even steps do not meet.
uint32_t Mixed(uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
    return static_cast<uint32_t>((bits ^ (bits >> 31)) >> 16);
}

uint32_t HashOfReal(double value) {
    if (value >= -0x1p63 && value < 0x1p63 && value == std::trunc(value))
        return Mixed(static_cast<uint64_t>(static_cast<int64_t>(value)));
    if (value >= 0x1p63 && value < 0x1p64) return Mixed(static_cast<uint64_t>(value));
    if (std::isnan(value)) return 1;
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return Mixed(bits);
}

// What is the same has the same hash.
uint32_t HashOf(const Box* key) {
    if (!key) return 0;
    if (key->T->Is(Kind::String)) return FoldedHash(ViewOf(key->Value.T));
    return key->T->IsReal() ? HashOfReal(key->Value.D) : Mixed(key->Value.U);
}

Slot& TableOf(const Slot& dictionary) {
    return dictionary.O->Fields()[0];  // the only field of the class Dictionary
}

Table::Entry* Find(const Table* table, const Box* key, uint32_t hash) {
    if (!table || table->Live == 0) return nullptr;
    const uint32_t last = table->Room * Table::PlacesPerEntry - 1;
    for (uint32_t place = hash & last; table->Places[place] != 0; place = (place + 1) & last) {
        Table::Entry& entry = table->Entries[table->Places[place] - 1];
        if (entry.Hash == hash && !entry.Gone && SameValue(entry.Key, key)) return &entry;
    }
    return nullptr;
}

Table::Entry* Find(const Slot* a) {
    return Find(TableOf(a[0]).B, a[1].V, HashOf(a[1].V));
}

[[noreturn]] void FailKey(Machine& machine, const Slot& key) {
    constexpr int64_t mostCharacters = 100;
    const Box* box = key.V;
    String name = box ? box->T->Name : "Nil";
    if (box && (box->T->IsNumber() || box->T->Is(Kind::String))) {
        const Slot text = Unbox(machine, key.V, *machine.KnownTypes().Of(Kind::String));
        name = "\"" + String(Left(ViewOf(text.T), mostCharacters)) + "\"";
        machine.Store().Release(text.H);
    }
    throw Failure{"KeyNotFoundException", "The dictionary has no key " + name + "."};
}

void Give(Slot& to, Box* value) {
    Memory::Retain(value);
    to.V = value;
}

void Value(Machine& machine, Slot* a) {
    const Table::Entry* entry = Find(a);
    if (!entry) FailKey(machine, a[1]);
    Give(a[0], entry->Value);
}

void Lookup(Machine&, Slot* a) {
    const Table::Entry* entry = Find(a);
    Give(a[0], entry ? entry->Value : a[2].V);
}

// With every second place empty a search ends soon. When half of the entries are gone, their places are used
// again.
void MakeRoom(Memory& memory, Table& table) {
    if (table.Used < table.Room) return;
    constexpr uint32_t least = 8;
    const uint32_t room = table.Live < table.Room / 2 ? table.Room : table.Room * 2;
    memory.Rebuild(table, std::max(room, least));
}

void Append(Memory& memory, Table& table, const Table::Entry& entry) {
    MakeRoom(memory, table);
    const uint32_t last = table.Room * Table::PlacesPerEntry - 1;
    uint32_t place = entry.Hash & last;
    while (table.Places[place] != 0)
        place = (place + 1) & last;
    table.Entries[table.Used] = entry;
    table.Places[place] = ++table.Used;
    ++table.Live;
    Memory::Retain(entry.Key);
    Memory::Retain(entry.Value);
}

// The old value goes last, since its destructor may do anything.
void Assign(Machine& machine, Slot* a) {
    Memory& memory = machine.Store();
    Slot& table = TableOf(a[0]);
    if (!table.B) table.B = memory.NewTable();
    const uint32_t hash = HashOf(a[1].V);
    Table::Entry* entry = Find(table.B, a[1].V, hash);
    if (!entry) return Append(memory, *table.B, {a[1].V, a[2].V, hash, false});
    Memory::Retain(a[2].V);
    memory.Release(std::exchange(entry->Value, a[2].V));
}

void Remove(Machine& machine, Slot* a) {
    Table::Entry* entry = Find(a);
    if (!entry) FailKey(machine, a[1]);
    Box *key = std::exchange(entry->Key, nullptr), *value = std::exchange(entry->Value, nullptr);
    entry->Gone = true;
    --TableOf(a[0]).B->Live;
    machine.Store().Release(key);
    machine.Store().Release(value);
}

template <Box* Table::Entry::*Part>
void List(Machine& machine, Slot* a) {
    const Table* table = TableOf(a[0]).B;
    const Types& types = machine.KnownTypes();
    const Type* type = const_cast<Types&>(types).ArrayOf(types.Of(Kind::Variant), 1);
    Array* list = machine.Store().NewArray(type, ElementKind::Reference, 1, nullptr);
    a[0].A = list;
    if (!table) return;
    ResizeArray(machine.Store(), *list, table->Live);
    Slot* to = list->As<Slot>();
    for (uint32_t at = 0; at < table->Used; ++at)
        if (!table->Entries[at].Gone) Give(*to++, table->Entries[at].*Part);
}

// The bodies of the methods of the class Dictionary.
const NativeFunction table[] = {
    {".DictionaryValue", "object V key V", "V", Value, false},
    {".DictionaryAssign", "object V key V value V", "", Assign, false},
    {".DictionaryHasKey", "object V key V", "B", [](Machine&, Slot* a) { a->I = Find(a) != nullptr; }, false},
    {".DictionaryLookup", "object V key V otherwise V", "V", Lookup, false},
    {".DictionaryRemove", "object V key V", "", Remove, false},
    {".DictionaryCount", "object V", "I",
     [](Machine&, Slot* a) {
         const Table* held = TableOf(a[0]).B;
         a->I = held ? held->Live : 0;
     },
     false},
    {".DictionaryKeys", "object V", "A", List<&Table::Entry::Key>, false},
    {".DictionaryValues", "object V", "A", List<&Table::Entry::Value>, false},
};

}  // namespace

std::span<const NativeFunction> DictionaryFunctions() {
    return table;
}

}  // namespace sorbel::script
