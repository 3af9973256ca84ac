#include <algorithm>

#include "exchange/Tables.h"
#include "interchange/DelimitedText.h"
#include "interchange/Escapes.h"

namespace sorbel {

namespace {

/// The text of a document without the rows that cannot be held.
std::shared_ptr<LocalizedStringSet> Holdable(const Rows& rows) {
    auto set = std::make_shared<LocalizedStringSet>();
    rows.ForEach([&](const Row& row) {
        set->StoreEntry(row.Platform, SharedText::Borrow(row.Identifier), row.Value.Original,
                        row.Value.Localized);
    });
    return set;
}

struct FourFields {
    StringView Fields[4];
    bool AreThere;
};

FourFields SplitLine(StringView line) {
    FourFields split = {};
    size_t start = 0;
    for (StringView& field : split.Fields) {
        split.AreThere = start <= line.size();
        if (!split.AreThere) return split;
        const size_t end = std::min(line.find('\t', start), line.size());
        field = line.substr(start, end - start);
        start = end + 1;
    }
    return split;
}

/// A value as `DecodeCStyleEscapes` reads it, which is the text itself where nothing is escaped.
StringView Decoded(StringView value, String& room) {
    if (value.find('\\') == StringView::npos) return value;
    return room = DecodeCStyleEscapes(value);
}

}  // namespace

void WriteTsv(const Rows& rows, Output& output) {
    if (rows.LeftOut() > 0)
        output.Text() += ToDelimitedText(*Holdable(rows));
    else
        output.Text() += ToDelimitedText(rows.Set());
}

void ReadTsv(Input& input, TranslationImport& import) {
    Lines lines(input);
    String original, translation, key;
    while (lines.Next()) {
        const FourFields line = SplitLine(lines.Text());
        const StringView word = line.Fields[1];
        if (!line.AreThere || word.empty()) {
            import.Skip();
            continue;
        }
        const std::optional<int64_t> platform = PlatformOf(word);
        if (platform)
            RowKey(line.Fields[0], *platform, key);
        else
            key = String(line.Fields[0]) + "|" + String(word);
        import.Take(line.Fields[0], platform,
                    {key, Decoded(line.Fields[2], original), Decoded(line.Fields[3], translation)}, {});
    }
}

}  // namespace sorbel
