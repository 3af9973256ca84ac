#include <algorithm>
#include <cstring>
#include <numeric>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

bool Before(const Array& array, Slot a, Slot b) {
    const Type& type = *array.T->Element;
    if (type.Is(Kind::String)) return CompareTexts(a.T, b.T) < 0;
    if (type.IsReal()) return a.D < b.D || (a.D == a.D && b.D != b.D);
    return type.Is(Kind::UInt64) ? a.U < b.U : a.I < b.I;
}

using Order = std::vector<int64_t>;

/// Sorts by merging. Equal elements keep their order, and whatever the comparison answers, each element
/// comes out once.
template <typename Less>
Order Sorted(int64_t count, Less less) {
    const auto size = static_cast<size_t>(count);
    Order order(size), merged(size);
    std::iota(order.begin(), order.end(), 0);
    for (size_t width = 1; width < size; width *= 2) {
        for (size_t start = 0; start < size; start += 2 * width) {
            const size_t middle = std::min(start + width, size), end = std::min(start + 2 * width, size);
            size_t left = start, right = middle;
            for (size_t at = start; at < end; ++at) {
                const bool second = left == middle || (right < end && less(order[right], order[left]));
                merged[at] = order[second ? right++ : left++];
            }
        }
        order.swap(merged);
    }
    return order;
}

// What sorting an array by an order needs meanwhile.
void ExpectOrder(Machine& machine, const Array& array) {
    machine.Store().Expect(static_cast<size_t>(array.Count) * 3 * sizeof(int64_t));
}

// The elements move as they are: how many references they have does not change.
void Arrange(Array& array, const Order& order) {
    const size_t size = ElementSize(array.Element);
    std::vector<char> moved(order.size() * size);
    for (size_t at = 0; at < order.size(); ++at)
        std::memcpy(moved.data() + at * size, array.Data + static_cast<size_t>(order[at]) * size, size);
    if (!moved.empty()) std::memcpy(array.Data, moved.data(), moved.size());
}

// The first eight bytes of a folded text as a number: most texts differ there, and need not be looked at.
uint64_t HeadOf(Text* text) {
    constexpr size_t most = 8;
    StringView rest = ViewOf(text);
    size_t end = 0;
    for (size_t count = 0; count < most && end < rest.size(); ++count)
        end += FirstCharacter(rest.substr(end)).Bytes.size();
    uint64_t head = 0;
    const String folded = Fold(rest.substr(0, end));
    for (size_t at = 0; at < most; ++at)
        head = head << 8 | (at < folded.size() ? static_cast<unsigned char>(folded[at]) : 0);
    return head;
}

void SortTexts(Array& array) {
    struct Headed {
        uint64_t Head;
        Text* Value;
    };
    std::vector<Headed> values;
    for (int64_t at = 0; at < array.Count; ++at)
        values.push_back({HeadOf(array.As<Text*>()[at]), array.As<Text*>()[at]});
    std::stable_sort(values.begin(), values.end(), [](const Headed& x, const Headed& y) {
        return x.Head != y.Head ? x.Head < y.Head : CompareTexts(x.Value, y.Value) < 0;
    });
    for (size_t at = 0; at < values.size(); ++at)
        array.As<Text*>()[at] = values[at].Value;
}

// The elements are taken out and put back; comparing does not change how many references they have.
void Sort(Machine& machine, Slot* a) {
    Array& array = FlatArray(a[0]);
    machine.Store().Expect(static_cast<size_t>(array.Count) * 2 * sizeof(Slot));
    if (array.T->Element->Is(Kind::String)) return SortTexts(array);
    std::vector<Slot> values;
    values.reserve(static_cast<size_t>(array.Count));
    for (int64_t at = 0; at < array.Count; ++at)
        values.push_back(ReadElement(array, at));
    std::stable_sort(values.begin(), values.end(), [&](Slot x, Slot y) { return Before(array, x, y); });
    const bool reference = array.Element == ElementKind::Reference;
    for (int64_t at = 0; at < array.Count; ++at) {
        if (reference)
            array.As<Slot>()[at] = values[static_cast<size_t>(at)];
        else
            WriteElement(array, at, values[static_cast<size_t>(at)]);
    }
}

// The same elements as another array, which the script cannot reach.
Array* CopyOf(Machine& machine, Array& from) {
    Memory& memory = machine.Store();
    Array* copy = memory.NewArray(from.T, from.Element, 1, from.Structure);
    ResizeArray(memory, *copy, from.Count);
    for (int64_t at = 0; at < from.Count; ++at) {
        if (from.Structure && !from.As<Slot>()[at].O)
            from.As<Slot>()[at].O = memory.NewObject(*from.Structure);
        WriteElement(*copy, at, ReadElement(from, at));
    }
    return copy;
}

int64_t Compared(Machine& machine, const Delegate& comparison, const Array& array, int64_t x, int64_t y) {
    Slot one = ReadElement(array, x), other = ReadElement(array, y);
    if (!array.Structure)
        return machine.Invoke(comparison, {one, other}, array.Element == ElementKind::Reference).I;
    // Each comparison has copies of its own.
    one.I = other.I = 0;
    machine.CopyStructure(one, ReadElement(array, x).O);
    machine.CopyStructure(other, ReadElement(array, y).O);
    return machine.Invoke(comparison, {one, other}, false).I;
}

// The script's comparison may do anything, also with the array: what is sorted is a copy, and in the end
// that takes the place of what the array holds by then.
void SortWithComparison(Machine& machine, Slot* a) {
    Slot array = a[0], comparison = a[1], copy;
    (void)FlatArray(array);
    if (!comparison.G) FailNil();
    Memory::Retain(array.H);
    Memory::Retain(comparison.H);
    const auto release = [&] {
        for (const Slot held : {copy, comparison, array})
            machine.Store().Release(held.H);
    };
    try {
        copy.A = CopyOf(machine, *array.A);
        ExpectOrder(machine, *copy.A);
        Arrange(*copy.A, Sorted(copy.A->Count, [&](int64_t x, int64_t y) {
            return Compared(machine, *comparison.G, *copy.A, x, y) < 0;
        }));
        array.A->SwapElements(*copy.A);
    } catch (...) {
        release();
        throw;
    }
    release();
}

// Sorts an array, and moves the elements of others in the same way.
void SortWith(Machine& machine, Slot* a) {
    const Array& first = FlatArray(a[0]);
    ExpectOrder(machine, first);
    constexpr size_t most = 5;
    for (size_t at = 1; at < most; ++at)
        if (a[at].A && FlatArray(a[at]).Count != first.Count)
            throw Failure{"InvalidArgumentException",
                          "Arrays are sorted together only if they are of one size."};
    const Order order = Sorted(first.Count, [&](int64_t x, int64_t y) {
        return Before(first, ReadElement(first, x), ReadElement(first, y));
    });
    for (size_t at = 0; at < most; ++at) {
        bool moved = false;
        for (size_t other = 0; other < at; ++other)
            moved |= a[other].A == a[at].A;
        if (a[at].A && !moved) Arrange(*a[at].A, order);
    }
}

const NativeFunction table[] = {
    {"Sort", "array A", "", Sort, true},
    {"Sort", "array A comparison F", "", SortWithComparison, true},
    {"SortWith", "array A second A | third A fourth A fifth A", "", SortWith, true},
};

}  // namespace

std::span<const NativeFunction> SortingFunctions() {
    return table;
}

}  // namespace sorbel::script
