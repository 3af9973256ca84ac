#include "interchange/MoFile.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "interchange/ValueChoice.h"
#include "platform/BinaryStream.h"

namespace sorbel {

namespace {

constexpr int32_t Magic = static_cast<int32_t>(0x950412DE);
constexpr int32_t HeaderSize = 28;

using Pair = std::pair<StringView, String>;  // identifier, value

std::vector<Pair> ExportedPairs(const LocalizedStringSet& set) {
    std::vector<Pair> pairs;
    for (const auto& [identifier, entry] : set.Entries) {
        const StringView value = ExportedValue(entry, PlatformWindows);
        if (!value.empty()) pairs.emplace_back(identifier, ReplaceLineEndings(value, "\r\n"));
    }
    std::sort(pairs.begin(), pairs.end(),
              [](const Pair& a, const Pair& b) { return StrComp(a.first, b.first, 0) < 0; });
    return pairs;
}

/// Length and place of a string; `offset` moves behind it and its closing zero.
void WriteTableRow(BinaryStream& s, StringView text, int32_t& offset) {
    s.WriteInt32(static_cast<int32_t>(text.size()));
    s.WriteInt32(offset);
    offset += static_cast<int32_t>(text.size()) + 1;
}

void WriteText(BinaryStream& s, StringView text) {
    s.Write(text);
    s.WriteUInt8(0);
}

}  // namespace

String ToMoFile(const LocalizedStringSet& set) {
    const std::vector<Pair> pairs = ExportedPairs(set);
    const auto count = static_cast<int32_t>(pairs.size());
    MemoryBlock block;
    BinaryStream s(block);
    s.LittleEndian = true;
    for (const int32_t value : {Magic, 0, count, HeaderSize, HeaderSize + 8 * count, 0, 0})
        s.WriteInt32(value);
    int32_t offset = HeaderSize + 16 * count;
    for (const auto& [identifier, value] : pairs)
        WriteTableRow(s, identifier, offset);
    for (const auto& [identifier, value] : pairs)
        WriteTableRow(s, value, offset);
    for (const auto& [identifier, value] : pairs)
        WriteText(s, identifier);
    for (const auto& [identifier, value] : pairs)
        WriteText(s, value);
    return std::move(block.Bytes);
}

}  // namespace sorbel
