#include "interchange/MoFile.h"

#include <array>
#include <utility>
#include <vector>

#include "interchange/ByteOrder.h"
#include "interchange/ValueChoice.h"
#include "platform/BinaryStream.h"

namespace sorbel {

namespace {

constexpr int32_t Magic = static_cast<int32_t>(0x950412DE);
constexpr int32_t HeaderSize = 28;
constexpr size_t PerString = 2 * 8 + 2 + 2;  // a row in each table, closing zeros, line ends that grow

/// What goes into the file, in the order of the document.
struct Exported {
    std::vector<StringView> Identifiers, Values;
    size_t Size = 0;  // that the texts and tables will probably take
};

Exported Collect(const LocalizedStringSet& set) {
    Exported all;
    all.Identifiers.reserve(static_cast<size_t>(set.Entries.Count()));
    all.Values.reserve(static_cast<size_t>(set.Entries.Count()));
    for (const auto& [identifier, entry] : set.Entries) {
        const StringView value = ExportedValue(entry, PlatformWindows);
        if (value.empty()) continue;
        all.Identifiers.push_back(identifier);
        all.Values.push_back(value);
        all.Size += PerString + identifier.View().size() + value.size();
    }
    return all;
}

/// Appends the texts to the file, each with a closing zero, and puts their lengths and places into the table
/// that the stream stands at.
template <typename Append>
void WriteTexts(BinaryStream& s, String& file, const std::vector<StringView>& texts,
                const std::vector<uint32_t>& order, Append append) {
    constexpr size_t ahead = 8;
    for (size_t i = 0; i < order.size(); ++i) {
        // The texts lie in the order of the document.
        if (i + 2 * ahead < order.size()) __builtin_prefetch(&texts[order[i + 2 * ahead]]);
        if (i + ahead < order.size()) __builtin_prefetch(texts[order[i + ahead]].data());
        const size_t start = file.size();
        append(texts[order[i]]);
        s.WriteInt32s(std::array{static_cast<int32_t>(file.size() - start), static_cast<int32_t>(start)});
        file += '\0';
    }
}

}  // namespace

String ToMoFile(const LocalizedStringSet& set) {
    const Exported all = Collect(set);
    const std::vector<uint32_t> order = ByteOrder(all.Identifiers);
    const auto count = static_cast<int32_t>(order.size());
    MemoryBlock block;
    String& file = block.Bytes;
    file.reserve(HeaderSize + all.Size);
    BinaryStream s(block);
    s.LittleEndian = true;
    s.WriteInt32s(std::array{Magic, 0, count, HeaderSize, HeaderSize + 8 * count, 0, 0});
    file.resize(HeaderSize + 16 * order.size());
    WriteTexts(s, file, all.Identifiers, order, [&](StringView text) { file += text; });
    WriteTexts(s, file, all.Values, order, [&](StringView text) { ReplaceLineEndings(text, "\r\n", file); });
    return std::move(file);
}

}  // namespace sorbel
