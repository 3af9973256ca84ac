#include "interchange/DelimitedText.h"

#include <optional>
#include <vector>

#include "editing/changes/StringSetChange.h"
#include "interchange/Escapes.h"
#include "platform/TextStreams.h"

namespace sorbel {

namespace {

/// A first line with commas and no tab is meant to count as tab-delimited: the absent tab stands at 0, before
/// them.
std::optional<char> DelimiterOf(StringView firstLine) {
    const size_t tab = firstLine.find('\t') + 1;  // from 1; 0 if absent
    const size_t comma = firstLine.find(',') + 1;
    if (tab < comma || (tab > 0 && comma == 0)) return '\t';
    if (comma > 0) return ',';
    return std::nullopt;
}

std::optional<int64_t> PlatformOfWord(StringView word) {
    for (const int64_t platform : {PlatformAny, PlatformMacOS, PlatformWindows, PlatformLinux})
        if (Equal(word, PlatformText(platform))) return platform;
    return std::nullopt;
}

/// The first fields of a line, at most four.
size_t SplitFields(StringView line, char delimiter, StringView (&fields)[4]) {
    size_t count = 0;
    for (size_t start = 0; count < 4;) {
        const size_t end = line.find(delimiter, start);
        fields[count++] = line.substr(start, end == StringView::npos ? end : end - start);
        if (end == StringView::npos) break;
        start = end + 1;
    }
    return count;
}

/// `next` is the place of the entry that follows the last one found, which most rows are about.
std::unique_ptr<StringSetChange> ChangeOfRow(const std::shared_ptr<LocalizedStringSet>& document,
                                             StringView line, char delimiter, int64_t& next) {
    StringView fields[4];
    const size_t count = SplitFields(line, delimiter, fields);
    if (count < 4) return nullptr;
    const std::optional<int64_t> platform = PlatformOfWord(fields[1]);
    if (!platform) return nullptr;
    const int64_t place = document->Entries.PlaceOf(fields[0], next);
    if (place < 0) return nullptr;
    next = place + 1;
    return std::make_unique<StringSetChange>(document, fields[0], *platform, DecodeCStyleEscapes(fields[3]),
                                             StringView(), place);
}

std::optional<TextInputStream> OpenAsTextFile(const FolderItem& f) {
    try {
        return TextInputStream::Open(f);
    } catch (const IOException&) {
        return std::nullopt;
    }
}

/// Room for the text, unless it has more than a few escapes.
size_t SizeOf(const LocalizedStringSet& set) {
    constexpr size_t PerRow = 12;
    size_t size = 0;
    for (const auto& [identifier, entry] : set.Entries)
        for (int64_t index = 0; index < entry.Count(); ++index) {
            const EntryValue& value = entry.ItemAt(index).Value;
            size += PerRow + identifier.View().size() + value.Original.View().size() +
                    value.Localized.View().size();
        }
    return size;
}

}  // namespace

String ToDelimitedText(const LocalizedStringSet& set) {
    String text;
    text.reserve(SizeOf(set));
    for (const auto& [identifier, entry] : set.Entries) {
        for (int64_t index = 0; index < entry.Count(); ++index) {
            const PlatformTable::Item& item = entry.ItemAt(index);
            text.append(identifier).append("\t").append(PlatformText(item.Platform)).append("\t");
            EscapeCStyle(item.Value.Original, text);
            text += '\t';
            EscapeCStyle(item.Value.Localized, text);
            text += EndOfLine;
        }
    }
    return text;
}

std::unique_ptr<ImportChange> ChangesFromDelimitedText(const std::shared_ptr<LocalizedStringSet>& document,
                                                       const FolderItem& f) {
    std::optional<TextInputStream> stream = OpenAsTextFile(f);
    if (!stream) return nullptr;
    StringView line = stream->ReadLine();
    const std::optional<char> delimiter = DelimiterOf(line);
    if (!delimiter) return nullptr;
    auto change = std::make_unique<ImportChange>();
    change->Document = document;
    int64_t next = 0;
    for (;; line = stream->ReadLine()) {
        if (auto single = ChangeOfRow(document, line, *delimiter, next))
            change->Changes.push_back(std::move(single));
        if (stream->EndOfFile()) return change;
    }
}

}  // namespace sorbel
