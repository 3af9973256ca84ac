// Room for the entries of a file, made before they are read, so that nothing is moved while they are.
#include <algorithm>
#include <cstdint>

#include "stringset/LocaleFormat.h"
#include "stringset/LocaleReader.h"

namespace sorbel {

using namespace LocaleFormat;

namespace {

bool HoldsOneValue(int32_t tag) {
    static constexpr int32_t Tags[] = {VersionTag,  DateTag,        NorvaneVersionTag,
                                       LanguageTag, ApplicationTag, HistoryTag};
    return std::find(std::begin(Tags), std::end(Tags), tag) != std::end(Tags);
}

// Walks over the chunks in the steps of the reader; with steps of its own it could walk the inside of nested
// versions again for each version around them. A wrong length just ends it.
size_t CountEntries(StringView bytes) {
    BinaryStream s(bytes);
    s.SetPosition(LenB(Magic));
    size_t count = 0;
    while (s.Length() - s.Position() >= ChunkHeaderSize) {
        auto [tag, length] = s.ReadInt32s<2>();
        if (HoldsOneValue(tag) && s.Length() - s.Position() >= ChunkHeaderSize) {
            s.ReadInt32();
            length = s.ReadInt32();
        }
        if (length < 0 || length > s.Length() - s.Position()) break;
        if (tag == EntryTag) ++count;
        s.SetPosition(s.Position() + length);
    }
    return count;
}

}  // namespace

void LocaleReader::ReserveEntries(LocalizedStringSet& set, StringView bytes) {
    const size_t count = CountEntries(bytes);
    if (count == 0) return;
    // Entries without an identifier all have the same one, so these many bytes may name a string each.
    const size_t named = std::min(count, bytes.size() / (ChunkHeaderSize + ValueHeaderSize + 1) + 1);
    set.Entries.Reserve(static_cast<size_t>(set.Entries.Count()) + named);
}

}  // namespace sorbel
