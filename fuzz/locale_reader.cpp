// Any bytes as a locale file: what is read is what a second reader reads, the memory stays within a multiple
// of the file, and what is written is read again as the same document and written as the same bytes.
#include <algorithm>

#include "CountedMemory.h"
#include "PlainLocale.h"
#include "Target.h"

namespace sorbel::fuzz {

namespace {

// Memory for opening and saving, per byte of the file. A nested version of 32 bytes, with one entry of 8, is
// the dearest: a set object, its lists of one element each, its place in the list around it, its frames while
// it is read and written and the 187 bytes that it is saved as come to some 950 bytes, so 30 for each of its
// own. A third more is left for other libraries' rounding.
constexpr int64_t MemoryBound = 40;
constexpr size_t SmallFile = 4096;  // below this size the memory counts as if it were for so many bytes

struct Opened {
    std::shared_ptr<LocalizedStringSet> Set = std::make_shared<LocalizedStringSet>();
    bool Valid = false;
    bool Failed = false;
};

Opened Open(StringView bytes) {
    Opened file;
    try {
        file.Valid = file.Set->ReadBytes(Buffer(bytes));
    } catch (const UnsupportedFormatException&) {  // of a date; nothing else may come through
        file.Failed = true;
    }
    return file;
}

bool Same(const LocalizedStringSet& a, const LocalizedStringSet& b) {
    std::vector<std::pair<const LocalizedStringSet*, const LocalizedStringSet*>> pairs = {{&a, &b}};
    while (!pairs.empty()) {
        const auto [x, y] = pairs.back();
        pairs.pop_back();
        if (PlainDocument(*x) != PlainDocument(*y) || x->Language != y->Language) return false;
        if (x->DateGenerated != y->DateGenerated || x->NorvaneVersion != y->NorvaneVersion) return false;
        if (!x->EditedApplication != !y->EditedApplication) return false;
        if (x->EditedApplication && *x->EditedApplication != *y->EditedApplication) return false;
        if (x->History.size() != y->History.size()) return false;
        for (size_t i = 0; i < x->History.size(); ++i)
            pairs.emplace_back(x->History[i].get(), y->History[i].get());
    }
    return true;
}

void CheckSecondReader(StringView bytes, const Opened& file, StringView saved) {
    std::optional<PlainLocale> plain = ReadPlainly(bytes);
    if (!plain || file.Failed) return;
    Require(plain->Valid == file.Valid, "both readers call the file valid, or neither");
    Require(Same(*plain, *file.Set), "both readers read the same");
    std::optional<PlainLocale> again = ReadPlainly(saved);
    Require(again.has_value(), "what was saved is plain");
    std::vector<PlainLocale*> versions = {&*plain};
    while (!versions.empty()) {
        PlainLocale& version = *versions.back();
        versions.pop_back();
        version.FileVersion = 0;  // as every file is saved
        version.Valid = true;
        for (PlainLocale& older : version.History)
            versions.push_back(&older);
    }
    Require(*again == *plain, "what was saved holds what the file held, application bytes included");
}

void CheckUntouched(const LocalizedStringSet& set) {
    const bool empty = set.Entries.Count() == 0 && set.History.empty() && set.Language.empty() &&
                       set.NorvaneVersion.empty() && !set.EditedApplication && set.FileVersion == 0;
    Require(empty, "bytes that do not begin as a locale file leave the set as it was");
}

}  // namespace

void CheckInput(StringView input) {
    const int64_t before = CountedMemory::StartPeak();
    Opened file = Open(input);
    String saved = file.Set->ToBytes();
    const int64_t used = CountedMemory::Peak() - before;
    Require(used <= MemoryBound * static_cast<int64_t>(std::max(input.size(), SmallFile)),
            "the memory stays within a small multiple of the file");

    if (!input.starts_with("nvlocale")) CheckUntouched(*file.Set);
    CheckSecondReader(input, file, saved);
    const Opened again = Open(saved);
    Require(again.Valid, "what was saved is a valid file");
    Require(Same(*file.Set, *again.Set), "what was saved is read as the same document");
    Require(again.Set->ToBytes() == saved, "a second save has the bytes of the first");

    const std::shared_ptr<LocalizedStringSet> copy = file.Set->Clone();
    Require(copy->History.empty() && copy->FileVersion == file.Set->FileVersion, "a copy has no history");
    file.Set.reset();  // a copy outlives what it was made from
    again.Set->History.clear();
    Require(copy->ToBytes() == again.Set->ToBytes(), "a copy has the strings and labels of its source");
}

}  // namespace sorbel::fuzz
