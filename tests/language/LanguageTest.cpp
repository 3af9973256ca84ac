#include <gtest/gtest.h>

#include "language/LanguageTable.h"
#include "language/LocalizationSupport.h"

namespace sorbel::LocalizationSupport {
namespace {

TEST(LanguageTest, TheTextIsWhole) {
    const StringView text = LanguageText();
    EXPECT_EQ(LenB(text), 125083);
    EXPECT_EQ(Len(text), 124594);
    const auto rows = Split(text, "\r");
    ASSERT_EQ(rows.size(), 7602U);
    EXPECT_EQ(rows.front(), "aaa\t\t\tGhotuo");
    EXPECT_EQ(rows.back(), "zyp\t\t\tZyphe");

    int second = 0, third = 0, trailingBlanks = 0;
    String previous;
    for (const String& row : rows) {
        const auto fields = Split(row, "\t");
        ASSERT_EQ(fields.size(), 4U) << row;
        ASSERT_LT(previous, fields[0]);
        ASSERT_EQ(fields[0].size(), 3U) << row;
        ASSERT_FALSE(fields[3].empty()) << row;
        ASSERT_TRUE(fields[1].empty() || fields[1] == fields[0]) << row;
        second += !fields[1].empty();
        third += !fields[2].empty();
        trailingBlanks += fields[3].ends_with(' ');
        previous = fields[0];
    }
    EXPECT_EQ(second, 406);
    EXPECT_EQ(third, 184);
    EXPECT_EQ(trailingBlanks, 154) << "the blanks belong to the names";
}

TEST(LanguageTest, LookupsLeaveTheTablesAsTheyAre) {
    const struct {
        const char *Code, *Name;
    } cases[] = {
        {"fr", "French"},
        {"fra", "French"},
        {"FR", "French"},
        {"aaa", "Ghotuo"},
        {"sh", "Serbo-Croatian"},
        {"hbs", "Serbo-Croatian"},
        {"mo", "Moldavian"},
        {"el", "Greek, Modern (1453-)"},
        {"nb", "Norwegian Bokmål"},
        {"ht", "Haitian; Haitian Creole"},
        {"cmn", "Chinese, Mandarin"},
        {"und", "Undetermined"},
        {"ger", ""},
        {"xx", ""},
        {"pt_BR", ""},
        {"zh_TW", ""},
        {"", "Zyphe"},
    };
    for (int round = 0; round < 2; ++round) {
        for (const auto& c : cases)
            EXPECT_EQ(ISOCodeToLangauge(c.Code), c.Name) << c.Code;
        const LanguageTable& table = InitializeTable();
        EXPECT_EQ(table.mISO639_1Language.Count(), 185);
        EXPECT_EQ(table.mISO639_2Language.Count(), 7602);
    }
}

}  // namespace
}  // namespace sorbel::LocalizationSupport
