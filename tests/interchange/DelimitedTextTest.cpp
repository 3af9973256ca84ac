#include "interchange/DelimitedText.h"

#include <gtest/gtest.h>

#include "interchange/Escapes.h"
#include "support/TemporaryFolder.h"

namespace sorbel {
namespace {

std::shared_ptr<LocalizedStringSet> Document() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->AddEntry(PlatformAny, "a", "A", "old");
    set->AddEntry(PlatformWindows, "a", "A (win)", "");
    set->AddEntry(7, "b", "B", "seven");
    return set;
}

class DelimitedTextTest : public testing::Test {
  protected:
    std::unique_ptr<ImportChange> Read(StringView text) {
        const FolderItem f(Folder / "rows");
        WriteContents(f, text);
        return ChangesFromDelimitedText(Set, f);
    }
    /// The "Any" translation of "a" after the import of rows, in a document of its own.
    String Imported(StringView rows) {
        Set = Document();
        const auto change = Read(rows);
        if (!change) return "(not imported)";
        change->Perform();
        return String(Set->Entries.Find("a")->Find(PlatformAny)->Localized.View());
    }

    TemporaryFolder Folder;
    std::shared_ptr<LocalizedStringSet> Set = Document();
};

TEST(Escapes, AreFiveOneWayAndAnyTheOther) {
    EXPECT_EQ(EscapeCStyle("\"\\\r\n\tü'𝄞/"), "\\\"\\\\\\r\\n\\tü'𝄞/");
    EXPECT_EQ(EscapeCStyle(""), "");
    const StringView low("\0\x0B\x0C\b\x0E#[]\x8A\xA2\xDC", 11);
    EXPECT_EQ(EscapeCStyle(low), low) << "look like what is escaped";
    String appended = "\n";
    EscapeCStyle("\"", appended);
    EXPECT_EQ(appended, "\n\\\"");
    EXPECT_EQ(DecodeCStyleEscapes("\\q\\\"\\\\n\\r\\t\\n"), "q\"\\n\r\t\n");
    EXPECT_EQ(DecodeCStyleEscapes("\\N\\R\\T"), "\n\r\t") << "letters are compared without their case";
    EXPECT_EQ(DecodeCStyleEscapes("end\\"), "end");
    EXPECT_EQ(DecodeCStyleEscapes("\\𝄞\\ü"), "𝄞ü") << "the first byte is taken, the rest follows";
    const String bytes("\\n\0\xFF\xC3\r\n", 7);
    EXPECT_EQ(DecodeCStyleEscapes(EscapeCStyle(bytes)), bytes);
}

TEST_F(DelimitedTextTest, TheFirstLineDecidesTheDelimiter) {
    const struct {
        const char* First;
        const char* Result;
    } table[] = {{"", "(not imported)"}, {"x", "(not imported)"}, {"x\ty", "tab"},         {"x\ty,z", "tab"},
                 {"x,y\tz", "comma"},    {"x,y", "tab"},          {"\xFF,\xC3\t", "comma"}};
    for (const auto& [first, result] : table) {
        EXPECT_EQ(Imported(String(first) + "\na\tAny\t\ttab\na,Any,,comma"), result) << first;
        EXPECT_EQ(Imported(String(first) + "\r\na\tAny\t\ttab\r\na,Any,,comma\r\n"), result) << first;
    }
    const String mark = "\xEF\xBB\xBF";
    EXPECT_EQ(Imported(mark + "a\tAny\t\tfirst"), "first") << "behind the mark of UTF-8";
    EXPECT_EQ(Imported("\na\tAny\t\ttab"), "(not imported)") << "later lines do not count";
    EXPECT_EQ(Imported("a,Any,,cut,\there"), "cut") << "the first line is data, too";
    EXPECT_EQ(Read("x,y")->Changes.size(), 0U);
    EXPECT_FALSE(ChangesFromDelimitedText(Set, FolderItem(Folder / "missing")));
    EXPECT_FALSE(ChangesFromDelimitedText(Set, FolderItem(Folder.Path())));
}

TEST_F(DelimitedTextTest, SkipsRowsThatDoNotFit) {
    for (const char* row : {"a\tAny\tthree", "a\tAny", "a", "", "c\tAny\t\tx", "a\tBeOS\t\tx", "a\t\t\tx",
                            " a\tAny\t\tx", "a\tAny \t\tx", "a\\\tAny\t\tx"})
        EXPECT_EQ(Imported(String("\t\n") + row + "\n"), "old") << row;
    EXPECT_EQ(Imported("a\tAny\td\tnew\tmore\tfields"), "new");
    EXPECT_EQ(Imported("A\taNY\td\tnew"), "new") << "case does not count";
    EXPECT_EQ(Imported("a\tAny\td\t"), "") << "an empty field erases";
    EXPECT_EQ(Imported("a\tAny\t\t1\ra\tAny\t\t2\n\r\na\tAny\t\t\\\"3\\n"), "\"3\n");
}

TEST_F(DelimitedTextTest, MakesMissingPlatformsAndLeavesTheHistoryAlone) {
    const auto change = Read("a\tLinux\tignored\tTux\na\tWindows\tignored\tWin\nb\tMac OS\tignored\tMac\n");
    EXPECT_EQ(change->Changes.size(), 3U);
    EXPECT_TRUE(change->Histories.empty());
    EXPECT_FALSE(change->StringSet);
    EXPECT_EQ(ToDelimitedText(*Set), ToDelimitedText(*Document())) << "nothing is applied yet";
    change->Perform();
    EXPECT_EQ(ToDelimitedText(*Set),
              "a\tAny\tA\told\na\tWindows\tA (win)\tWin\na\tLinux\tA\tTux\n"
              "b\t\tB\tseven\nb\tMac OS\t\tMac\n");
}

TEST_F(DelimitedTextTest, BringsBackWhatItWrote) {
    const String text = "\\n\t\"quoted\"\r\nü 𝄞\u200B\\";
    Set->AddEntry(PlatformMacOS, "a", "tab\there", text);
    const String rows = ToDelimitedText(*Set);
    EXPECT_EQ(rows,
              "a\tAny\tA\told\na\tWindows\tA (win)\t\n"
              "a\tMac OS\ttab\\there\t\\\\n\\t\\\"quoted\\\"\\r\\nü 𝄞\u200B\\\\\nb\t\tB\tseven\n");
    Set->AddEntry(PlatformMacOS, "a", "tab\there", "other");
    Read(rows)->Perform();
    EXPECT_EQ(ToDelimitedText(*Set), rows);
    EXPECT_EQ(ToDelimitedText(LocalizedStringSet()), "");
}

}  // namespace
}  // namespace sorbel
