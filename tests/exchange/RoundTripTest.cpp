#include <gtest/gtest.h>

#include "exchange/Documents.h"
#include "exchange/RowKey.h"
#include "interchange/DelimitedText.h"

namespace sorbel {
namespace {

/// A document with the same rows and no translations.
Document WithoutTranslations(const Document& document, bool keepsEmpty) {
    auto bare = std::make_shared<LocalizedStringSet>();
    for (const auto& [identifier, entry] : document->Entries)
        for (int64_t i = 0; i < entry.Count(); ++i)
            bare->AddEntry(entry.ItemAt(i).Platform, identifier, entry.ItemAt(i).Value.Original,
                           keepsEmpty && entry.ItemAt(i).Value.Localized.Empty() ? "" : "?");
    return bare;
}

struct Form {
    const char* Name;
    String (*Write)(const LocalizedStringSet&);
    void (*Read)(Input&, TranslationImport&);
    bool BringsEmpty;  // an empty translation
};
const Form Forms[] = {
    {"PO", [](const LocalizedStringSet& set) { return ToPo(set); }, ReadPo, false},
    {"XLIFF", ToXliff, ReadXliff, false},
    {"CSV", ToCsv, ReadCsv, true},
};

TEST(ExchangeRoundTrip, BringsEveryTextBackByteForByte) {
    const Document document = Hard();
    for (const Form& form : Forms) {
        SCOPED_TRACE(form.Name);
        const String text = form.Write(*document);
        const Imported same = ImportText(document, form.Read, text);
        EXPECT_EQ(same.Remarks, "");
        EXPECT_EQ(same.Report, form.BringsEmpty ? "0 changed, 12 unchanged, 0 unknown, 0 skipped\n"
                                                : "0 changed, 11 unchanged, 0 unknown, 1 skipped\n");
        const Document bare = WithoutTranslations(document, !form.BringsEmpty);
        EXPECT_EQ(ImportText(bare, form.Read, text).Remarks, "");
        EXPECT_EQ(ToDelimitedText(*bare), ToDelimitedText(*document));
    }
}

TEST(ExchangeRoundTrip, LineEndsThatOtherToolsLoseAreNoChange) {
    const auto set = std::make_shared<LocalizedStringSet>();
    set->AddEntry(PlatformAny, "a", "one\r\ntwo", "eins\rzwei\n");
    const Imported same = ImportText(set, ReadXliff, ReplaceAll(ToXliff(*set), "&#13;", "\n"));
    EXPECT_EQ(same.Remarks, "a: default text differs\n") << "where a CR LF became two";
    const String lost = "identifier,platform,default,translation\na,Any,\"one\ntwo\",\"eins\nzwei\n\"\n";
    EXPECT_EQ(ImportText(set, ReadCsv, lost).Report, "0 changed, 1 unchanged, 0 unknown, 0 skipped\n");
    EXPECT_EQ(ImportText(set, ReadCsv, lost).Remarks, "");
    EXPECT_EQ(Translation(set, "a"), "eins\rzwei\n");
    const String text = ToTsv(*set);
    EXPECT_EQ(ImportText(set, ReadTsv, ReplaceAll(text, "\\r", "\\n")).Report,
              "1 changed, 0 unchanged, 0 unknown, 0 skipped\n")
        << "an escape is meant";
}

TEST(ExchangeRoundTrip, DelimitedTextIsTheProgramsOwnAndHoldsAnyBytes) {
    const auto set = std::make_shared<LocalizedStringSet>();
    set->AddEntry(PlatformLinux, "stray", "\xFF\t\x01", "\xC3\n\\");
    set->AddEntry(PlatformAny, "stray", "", "x\0y");
    const String text = ToTsv(*set);
    EXPECT_EQ(text, ToDelimitedText(*set));
    const Document bare = WithoutTranslations(set, false);
    EXPECT_EQ(ImportText(bare, ReadTsv, text).Report, "2 changed, 0 unchanged, 0 unknown, 0 skipped\n");
    EXPECT_EQ(ToDelimitedText(*bare), text);
}

TEST(ExchangeRoundTrip, RefusesWhatAFormatCannotHold) {
    for (const StringView bad : {"stray \xFF", "zero\001", "\xEF\xBF\xBF", "\xED\xA0\x80"}) {
        LocalizedStringSet set;
        set.AddEntry(PlatformAny, "good", "d", "t");
        set.AddEntry(PlatformLinux, "bad one", "d", bad);
        try {
            const Rows refused(set, Holds::Characters, false);
            ADD_FAILURE() << "held " << bad;
        } catch (const IOException& failure) {
            EXPECT_NE(failure.Message().find("\"bad one|Linux\""), String::npos) << failure.Message();
        }
        const Rows lossy(set, Holds::Characters, true);
        EXPECT_EQ(lossy.LeftOut(), 1);
        EXPECT_EQ(Written([&](Output& output) { WriteCsv(lossy, output); }),
                  "identifier,platform,default,translation\r\ngood,Any,d,t\r\n");
    }
    LocalizedStringSet set;
    set.AddEntry(PlatformAny, "a\tb", "d", "t");
    set.AddEntry(PlatformWindows, "c", "d", "w");
    set.AddEntry(PlatformAny, "c", "d", "t");
    EXPECT_THROW(Rows(set, Holds::DelimitedText, false), IOException);
    EXPECT_EQ(Written([&](Output& output) { WriteTsv(Rows(set, Holds::DelimitedText, true), output); }),
              "c\tWindows\td\tw\nc\tAny\td\tt\n");
}

TEST(ExchangeKeys, NameARowInOneWayOnly) {
    const std::pair<KeyedRow, StringView> keys[] = {{{"a", PlatformAny}, "a"},
                                                    {{"a", PlatformMacOS}, "a|Mac OS"},
                                                    {{"a", -5}, "a|-5"},
                                                    {{"", PlatformLinux}, "|Linux"},
                                                    {{"a|b\\c", 4}, "a\\|b\\\\c|4"},
                                                    {{"a\\", PlatformAny}, "a\\\\"},
                                                    {{"|", PlatformWindows}, "\\||Windows"}};
    String room;
    for (const auto& [row, key] : keys) {
        EXPECT_EQ(RowKey(row.Identifier, row.Platform), key);
        const std::optional<KeyedRow> back = RowOfKey(key, room);
        ASSERT_TRUE(back.has_value()) << key;
        EXPECT_EQ(back->Identifier, row.Identifier);
        EXPECT_EQ(back->Platform, row.Platform);
    }
    for (const StringView key : {"a|", "a|Any", "a|BeOS", "a|1", "a|07", "a|+7", "a|7 ", "a|b|Linux", "a\\",
                                 "a\\b", "a|99999999999999999999"})
        EXPECT_FALSE(RowOfKey(key, room).has_value()) << key;
}

TEST(ExchangeRows, ComeInTheDocumentsOrderAnyFirst) {
    String order;
    const Document document = Hard();
    Rows(*document, Holds::Characters, false).ForEach([&](const Row& row) {
        if (row.Identifier == "order") order += PlatformWord(row.Platform) + " ";
    });
    EXPECT_EQ(order, "Any -2 Windows 7 ");
}

}  // namespace
}  // namespace sorbel
