// What a document is exported as, read back: delimited text, a Mac string table, a catalogue for Windows.
// The input is a locale file.

#include <algorithm>

#include "CodePoints.h"
#include "PlainText.h"
#include "Target.h"
#include "TextFile.h"
#include "interchange/DelimitedText.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"

namespace sorbel::fuzz {

namespace {

/// Takes what is expected off the head of an exported file.
class Exported {
  public:
    explicit Exported(StringView file) : mRest(file) {}
    void Take(StringView expected, const char* property) {
        Require(mRest.starts_with(expected), property);
        mRest.remove_prefix(expected.size());
    }
    StringView TakeUpTo(size_t size) {
        Require(size <= mRest.size(), "the file is complete");
        const StringView taken = mRest.substr(0, size);
        mRest.remove_prefix(size);
        return taken;
    }
    /// A field that ends with `end`, which is taken too.
    StringView TakeField(char end) {
        const StringView field = TakeUpTo(std::min(mRest.find(end), mRest.size()));
        TakeUpTo(1);
        return field;
    }
    [[nodiscard]] bool Empty() const { return mRest.empty(); }

  private:
    StringView mRest;
};

// --- Delimited text ---

void CheckRows(const PlainDocument& document, StringView text) {
    Exported rows(text);
    for (const PlainDocument::Entry& entry : document.Entries)
        for (const PlainDocument::Value& value : entry.Values) {
            rows.Take(entry.Identifier + "\t" + String(PlatformText(value.Platform)) + "\t",
                      "a row begins with its identifier and platform");
            Require(PlainUnescaped(rows.TakeField('\t')) == value.Default, "its third field is the default");
            Require(PlainUnescaped(rows.TakeField('\n')) == value.Translated, "its fourth the translation");
        }
    Require(rows.Empty(), "there is a row for each value and no more");
}

/// An identifier that breaks its row, or one that the import takes for something else.
bool Survives(const PlainDocument::Entry& entry) {
    return entry.Identifier.find_first_of("\t\r\n") == String::npos;
}

bool SurvivesAtHead(const PlainDocument::Entry& entry) {
    return entry.Identifier.find(',') == String::npos && !entry.Identifier.starts_with("\xEF\xBB\xBF");
}

bool IsKnown(const PlainDocument::Value& value) {
    return value.Platform >= PlatformAny && value.Platform <= PlatformLinux;
}

void CheckImportedBack(const std::shared_ptr<LocalizedStringSet>& set, const PlainDocument& document,
                       StringView text) {
    if (text.empty() || !std::ranges::all_of(document.Entries, Survives)) return;
    const auto first =
        std::ranges::find_if(document.Entries, [](const auto& entry) { return !entry.Values.empty(); });
    if (!SurvivesAtHead(*first)) return;
    const std::shared_ptr<LocalizedStringSet> emptied = set->Clone();
    PlainDocument expected = document;
    for (PlainDocument::Entry& entry : expected.Entries)
        for (PlainDocument::Value& value : entry.Values) {
            emptied->AddEntry(value.Platform, entry.Identifier, value.Default, "");
            if (!IsKnown(value)) value.Translated.clear();
        }
    const auto import = ChangesFromDelimitedText(emptied, FileWith("export.txt", text));
    Require(import != nullptr, "exported text is text to import");
    import->Perform();
    Require(PlainDocument(*emptied) == expected, "exported translations come back");
}

// --- What an application gets ---

/// The translation for a platform: its own, or else that of the Any platform.
String Chosen(const PlainDocument::Entry& entry, int64_t platform) {
    const PlainDocument::Value* const own = entry.Find(platform);
    if (own && !own->Translated.empty()) return own->Translated;
    const PlainDocument::Value* const any = entry.Find(PlatformAny);
    return any ? any->Translated : String();
}

String WithLineEnds(StringView text, StringView end) {
    String result;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isEnd = text[at] == '\r' || text[at] == '\n';
        if (text.substr(at, 2) == "\r\n") ++at;
        if (isEnd)
            result += end;
        else
            result += text[at];
    }
    return result;
}

// --- String table ---

void AppendUnit(String& to, uint32_t unit) {
    to += static_cast<char>(unit >> 8);
    to += static_cast<char>(unit & 0xFF);
}

/// Each stray byte is a character of its own.
String Utf16(StringView text) {
    String units;
    const auto size = static_cast<int32_t>(text.size());
    for (int32_t at = 0; at < size;) {
        const int32_t c = NextCodePoint(text, at);
        const auto code = static_cast<uint32_t>(c < 0 ? 0xFFFD : c);
        if (code >= 0x10000) AppendUnit(units, 0xD7C0 + (code >> 10));
        AppendUnit(units, code >= 0x10000 ? 0xDC00 + (code & 0x3FF) : code);
    }
    return units;
}

bool IsAmong(StringView unit, StringView ascii) {
    return unit[0] == 0 && ascii.find(unit[1]) != StringView::npos;
}

/// A quoted value behind its opening quotation mark, up to the closing one; escapes undone.
String TakeValue(Exported& table) {
    String value;
    for (;;) {
        StringView unit = table.TakeUpTo(2);
        if (unit == StringView("\0\"", 2)) return value;
        if (unit == StringView("\0\\", 2)) {
            unit = table.TakeUpTo(2);
            Require(IsAmong(unit, "rnt\"\\"), "the escapes are those of the format");
            value += Utf16(PlainUnescaped("\\" + String(unit.substr(1))));
        } else {
            Require(!IsAmong(unit, "\r\n\t"), "a value stays on its line");
            value += unit;
        }
    }
}

void CheckStringTable(const PlainDocument& document, StringView file) {
    Exported table(file);
    table.Take("\xFE\xFF", "a string table begins with its byte-order mark");
    for (const PlainDocument::Entry& entry : document.Entries) {
        const String value = Chosen(entry, PlatformMacOS);
        if (value.empty()) continue;
        table.Take(Utf16("\"" + entry.Identifier + "\" = \""), "a line begins with its identifier");
        Require(TakeValue(table) == Utf16(WithLineEnds(value, "\n")), "the value is the translation");
        table.Take(Utf16(";\n"), "a line ends behind its value");
    }
    Require(table.Empty(), "there is a line for each translation and no more");
}

// --- Catalogue ---

class Catalogue {
  public:
    explicit Catalogue(StringView file) : mFile(file) {
        Require(At(0) == 0x950412DE && At(4) == 0 && At(12) == 28, "the header is that of a catalogue");
        Require(At(16) == 28 + 8 * Count() && At(20) == 0 && At(24) == 0, "the tables follow the header");
        mNext = 28 + 16 * Count();
    }
    [[nodiscard]] uint32_t Count() const { return At(8); }
    [[nodiscard]] bool AtEnd() const { return mNext == mFile.size(); }
    /// The texts lie one behind the other in the order of the tables.
    StringView TakeText(size_t table, size_t index) {
        const uint32_t size = At(At(table) + 8 * index), start = At(At(table) + 8 * index + 4);
        Require(start == mNext && start < mFile.size() && size < mFile.size() - start, "no gap, no overlap");
        mNext = start + size + 1;
        Require(mFile[start + size] == 0, "a zero closes each text");
        return mFile.substr(start, size);
    }

  private:
    [[nodiscard]] uint32_t At(size_t place) const {
        Require(place + 4 <= mFile.size(), "the tables lie within the file");
        uint32_t number = 0;
        for (size_t i = 4; i-- > 0;)
            number = number << 8 | static_cast<unsigned char>(mFile[place + i]);
        return number;
    }

    StringView mFile;
    size_t mNext;
};

void CheckCatalogue(const PlainDocument& document, StringView file) {
    Catalogue catalogue(file);
    std::vector<std::pair<String, String>> expected;
    for (const PlainDocument::Entry& entry : document.Entries)
        if (const String value = Chosen(entry, PlatformWindows); !value.empty())
            expected.emplace_back(entry.Identifier, WithLineEnds(value, "\r\n"));
    std::ranges::sort(expected);  // by bytes, since readers bisect
    Require(catalogue.Count() == expected.size(), "the catalogue has each translation and no more");
    for (size_t i = 0; i < expected.size(); ++i)
        Require(catalogue.TakeText(12, i) == expected[i].first, "identifiers ascend by their bytes");
    for (size_t i = 0; i < expected.size(); ++i)
        Require(catalogue.TakeText(16, i) == expected[i].second, "each has its own translation");
    Require(catalogue.AtEnd(), "nothing follows the texts");
}

}  // namespace

void CheckInput(StringView input) {
    const std::shared_ptr<LocalizedStringSet> set = ReadDocument(input);
    if (!set) return;
    const PlainDocument document(*set);
    const String text = ToDelimitedText(*set);
    CheckRows(document, text);
    CheckImportedBack(set, document, text);
    CheckStringTable(document, ToStringFile(*set));
    CheckCatalogue(document, ToMoFile(*set));
}

}  // namespace sorbel::fuzz
