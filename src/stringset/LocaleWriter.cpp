#include "stringset/LocaleWriter.h"

#include <utility>

#include "platform/LargePages.h"
#include "stringset/LocaleFormat.h"

namespace sorbel {

using namespace LocaleFormat;

namespace {

void PutInt32(char* at, int64_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        *at++ = static_cast<char>(value >> shift);
}

int64_t WriteChunk(String& out, int32_t tag, int32_t type, StringView value) {
    char header[ValueHeaderSize];
    PutInt32(header, tag);
    PutInt32(header + 4, LenB(value) + 8);
    PutInt32(header + 8, type);
    PutInt32(header + 12, LenB(value));
    out.append(header, sizeof header).append(value);
    return LenB(value) + ValueHeaderSize;
}

// Begins a chunk whose length is not known yet.
void WriteChunkHeader(String& out, int32_t tag) {
    char header[ChunkHeaderSize] = {};
    PutInt32(header, tag);
    out.append(header, sizeof header);
}

// Room for the whole file; an upper bound, exact for the texts.
size_t SizeOf(const LocalizedStringSet& outermost) {
    constexpr size_t PerSet = 128, PerEntry = 76;
    size_t size = 0;
    std::vector<const LocalizedStringSet*> sets = {&outermost};
    while (!sets.empty()) {
        const LocalizedStringSet& set = *sets.back();
        sets.pop_back();
        size += PerSet + set.NorvaneVersion.size() + set.Language.size();
        for (const auto& [identifier, platforms] : set.Entries)
            for (int64_t i = 0; i < platforms.Count(); ++i) {
                const EntryValue& value = platforms.ItemAt(i).Value;
                size += PerEntry + identifier.View().size() + value.Original.View().size() +
                        value.Localized.View().size();
            }
        for (const auto& version : set.History)
            sets.push_back(version.get());
    }
    return size;
}

}  // namespace

int64_t WriteTaggedInteger(String& out, int32_t tag, int64_t value) {
    char bytes[4];
    PutInt32(bytes, value);
    return WriteChunk(out, tag, IntegerType, {bytes, sizeof bytes});
}

int64_t WriteTaggedBoolean(String& out, int32_t tag, bool value) {
    return WriteTaggedInteger(out, tag, value ? 1 : 0);
}

int64_t WriteTaggedString(String& out, int32_t tag, StringView value) {
    return WriteChunk(out, tag, StringType, value);
}

int64_t WriteTaggedData(String& out, int32_t tag, StringView value) {
    return WriteChunk(out, tag, DataType, value);
}

String LocaleWriter::WriteData(const LocalizedStringSet& set) {
    mOut.reserve(SizeOf(set));
    WishLargePages(mOut.data(), mOut.capacity());
    Enter(set);
    while (!mFrames.empty()) {
        Frame& frame = mFrames.back();
        if (frame.NextVersion < frame.Set.History.size())
            Enter(*frame.Set.History[frame.NextVersion++]);
        else
            Leave();
    }
    return std::move(mOut);
}

// An earlier version is a whole file in a chunk of data, which is built in place.
void LocaleWriter::Enter(const LocalizedStringSet& set) {
    const size_t chunk = mOut.size();
    if (!mFrames.empty()) WriteTaggedData(mOut, HistoryTag, "");
    mFrames.push_back({set, chunk});
    WriteHead(set);
    WriteEntries(set);
}

void LocaleWriter::Leave() {
    char* const chunk = mOut.data() + mFrames.back().Chunk;
    mFrames.pop_back();
    if (mFrames.empty()) return;
    const int64_t length = mOut.data() + mOut.size() - chunk - ValueHeaderSize;
    PutInt32(chunk + 4, length + 8);
    PutInt32(chunk + 12, length);
}

void LocaleWriter::WriteHead(const LocalizedStringSet& set) {
    mOut.append(Magic);
    WriteTaggedInteger(mOut, VersionTag, 0);
    if (set.DateGenerated) WriteTaggedString(mOut, DateTag, set.DateGenerated->SQLDateTime());
    WriteTaggedString(mOut, NorvaneVersionTag, set.NorvaneVersion);
    WriteTaggedString(mOut, LanguageTag, set.Language);
    if (set.EditedApplication)
        WriteTaggedData(mOut, ApplicationTag, set.EditedApplication->GetSaveInfo());
    else if (set.mForeignApplication)
        WriteTaggedData(mOut, ApplicationTag, *set.mForeignApplication);
}

void LocaleWriter::WriteEntries(const LocalizedStringSet& set) {
    for (const auto& [identifier, platforms] : set.Entries)
        for (int64_t i = 0; i < platforms.Count(); ++i)
            WriteEntry(identifier, platforms.ItemAt(i));
}

void LocaleWriter::WriteEntry(StringView identifier, const PlatformTable::Item& item) {
    const size_t chunk = mOut.size();
    WriteChunkHeader(mOut, EntryTag);
    int64_t length = WriteTaggedString(mOut, IdentifierTag, identifier);
    length += WriteTaggedString(mOut, OriginalTag, item.Value.Original);
    length += WriteTaggedString(mOut, LocalizedTag, item.Value.Localized);
    length += WriteTaggedInteger(mOut, PlatformTag, item.Platform);
    PutInt32(mOut.data() + chunk + 4, length);
}

}  // namespace sorbel
