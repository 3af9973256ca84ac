#include <array>

#include "exchange/ExchangeError.h"
#include "exchange/Tables.h"
#include "platform/TextCoding.h"

namespace sorbel {

namespace {

constexpr StringView RecordEnd = "\r\n";
constexpr std::array<StringView, 4> Header = {"identifier", "platform", "default", "translation"};

uint64_t MarkSpecial(uint64_t word) {
    using namespace coding;
    return MarkByte(word, '"') | MarkByte(word, ',') | MarkByte(word, '\r') | MarkByte(word, '\n');
}

void AppendField(StringView field, String& to) {
    if (coding::FindMarked(field, 0, MarkSpecial) == field.size()) {
        to += field;
        return;
    }
    to += '"';
    for (size_t start = 0;;) {
        const size_t quote = std::min(field.find('"', start), field.size());
        to.append(field, start, quote - start);
        if (quote == field.size()) break;
        to += "\"\"";
        start = quote + 1;
    }
    to += '"';
}

/// Takes a text apart into records.
class RecordReader {
  public:
    explicit RecordReader(Input& input) : mLines(input) {}

    /// Goes on to the next record that is not an empty line; false at the end.
    bool Next() {
        do
            if (!mLines.Next()) return false;
        while (mLines.Text().empty());
        mLine = mLines.Number();
        mCount = 0;
        for (StringView rest = mLines.Text(); ReadField(rest);)
            ;
        return true;
    }
    /// Where the record begins.
    [[nodiscard]] int64_t Line() const { return mLine; }
    [[nodiscard]] size_t Count() const { return mCount; }
    /// By number, from 0 to below `Count`; those behind the fourth are not kept.
    [[nodiscard]] StringView operator[](size_t field) const { return mFields[field]; }

  private:
    /// Takes a field off the head of `rest`, and the comma behind it; false if there is none.
    bool ReadField(StringView& rest) {
        String& to = mFields[std::min(mCount++, Header.size())];
        to.clear();
        if (rest.starts_with('"')) {
            ReadQuoted(rest, to);
        } else {
            to = rest.substr(0, rest.find(','));
            rest.remove_prefix(to.size());
            if (to.find('"') != String::npos)
                Fail("a quotation mark inside a field that does not begin with one");
        }
        if (rest.empty()) return false;
        if (rest[0] != ',') Fail("a field goes on behind its closing quotation mark");
        rest.remove_prefix(1);
        return true;
    }

    /// A field in quotation marks, which may take more lines.
    void ReadQuoted(StringView& rest, String& to) {
        const int64_t line = mLines.Number();
        for (rest.remove_prefix(1);;) {
            const size_t quote = rest.find('"');
            to += rest.substr(0, quote);
            if (quote == StringView::npos) {
                to += mLines.End();
                if (!mLines.Next()) throw FormatError("a quotation mark is not closed", line);
                rest = mLines.Text();
                continue;
            }
            rest.remove_prefix(quote + 1);
            if (!rest.starts_with('"')) return;
            to += '"';
            rest.remove_prefix(1);
        }
    }

    [[noreturn]] void Fail(StringView why) const { throw FormatError(why, mLines.Number()); }

    Lines mLines;
    int64_t mLine = 0;
    size_t mCount = 0;
    std::array<String, Header.size() + 1> mFields;  // the last one for all that are too many
};

void RequireHeader(const RecordReader& record) {
    bool isHeader = record.Count() == Header.size();
    for (size_t i = 0; isHeader && i < Header.size(); ++i)
        isHeader = Equal(Trimmed(record[i]), Header[i]);
    if (!isHeader)
        throw FormatError("the header has to be identifier,platform,default,translation", record.Line());
}

void TakeRecord(const RecordReader& record, String& key, TranslationImport& import) {
    if (record.Count() != Header.size())
        throw FormatError("a record with " + std::to_string(record.Count()) + " fields instead of 4",
                          record.Line());
    for (size_t i = 0; i < Header.size(); ++i)
        if (!IsXmlText(record[i]))
            throw FormatError("bytes that are not UTF-8, or a control character", record.Line());
    const std::optional<int64_t> platform = PlatformOf(record[1]);
    if (platform)
        RowKey(record[0], *platform, key);
    else
        key = String(record[0]) + "|" + String(record[1]);
    import.Take(record[0], platform, {key, record[2], record[3]}, {.LosesLineEnds = true});
}

}  // namespace

void WriteCsv(const Rows& rows, Output& output) {
    output.Text().append("identifier,platform,default,translation").append(RecordEnd);
    rows.ForEach([&](const Row& row) {
        String& text = output.Text();
        AppendField(row.Identifier, text);
        text.append(",").append(PlatformWord(row.Platform)).append(",");
        AppendField(row.Value.Original, text);
        text += ',';
        AppendField(row.Value.Localized, text);
        text += RecordEnd;
    });
}

void ReadCsv(Input& input, TranslationImport& import) {
    RecordReader record(input);
    if (!record.Next()) throw FormatError("there is no header", 1);
    RequireHeader(record);
    String key;
    while (record.Next())
        TakeRecord(record, key, import);
}

}  // namespace sorbel
