#include <gtest/gtest.h>

#include "exchange/Documents.h"
#include "exchange/ExchangeError.h"

namespace sorbel {
namespace {

Document Two() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->Language = "de";
    set->DateGenerated->SetSQLDateTime("2001-02-03 04:05:06");
    set->AddEntry(PlatformAny, "one", "One", "Eins");
    set->AddEntry(PlatformLinux, "two", "", "");
    return set;
}

TEST(Po, IsLaidOutAsGettextDoes) {
    EXPECT_EQ(
        ToPo(*Two()),
        "msgid \"\"\nmsgstr \"\"\n"
        "\"Project-Id-Version: test\\n\"\n\"PO-Revision-Date: 2001-02-03 04:05+0000\\n\"\n"
        "\"Last-Translator: \\n\"\n\"Language-Team: \\n\"\n\"Language: de\\n\"\n\"MIME-Version: 1.0\\n\"\n"
        "\"Content-Type: text/plain; charset=UTF-8\\n\"\n\"Content-Transfer-Encoding: 8bit\\n\"\n"
        "\"X-Generator: sorbel-exchange\\n\"\n\n"
        "#. Platform: Any\nmsgctxt \"one\"\nmsgid \"One\"\nmsgstr \"Eins\"\n\n"
        "#. Platform: Linux\n#. (empty default text)\nmsgctxt \"two|Linux\"\nmsgid \"two|Linux\"\n"
        "msgstr \"\"\n");
    const Document lines = std::make_shared<LocalizedStringSet>();
    lines->AddEntry(PlatformAny, "x", "a\nb\n", "c\n");
    EXPECT_NE(ToPo(*lines, true).find("msgid \"\"\n\"a\\n\"\n\"b\\n\"\nmsgstr \"\"\n"), String::npos);
    EXPECT_NE(ToPo(*lines).find("\nmsgstr \"c\\n\"\n"), String::npos);
}

TEST(Po, TakesWhatOtherToolsWrite) {
    const Document set = Two();
    const Imported imported = ImportText(
        set, ReadPo,
        "\xEF\xBB\xBF# translator\r\nmsgid \"\"\r\nmsgstr \"Content-Type: text/plain; "
        "charset=utf-8\\n\"\r\n\r\n"
        "#: file.c:3\r\n#, c-format\r\n#| msgid \"Old\"\r\n  msgctxt\t\"o\"\r\n\"ne\"\r\n\r\nmsgid \"\"\r\n"
        "\"One\"\r\nmsgstr \"\"\r\n\"tab\\t\"\r\n# inside\r\n"
        "msgctxt \"two|Linux\"\nmsgid \"two|Linux\"\nmsgstr\"\\x41\\102\\\\\\\"\"");
    EXPECT_EQ(imported.Report, "2 changed, 0 unchanged, 0 unknown, 0 skipped\n");
    EXPECT_EQ(Translation(set, "two", PlatformLinux), "AB\\\"");
    EXPECT_EQ(Translation(set, "one"), "tab\t");
}

TEST(Po, PassesOverWhatIsNoTranslation) {
    const Document set = Two();
    const Imported imported = ImportText(
        set, ReadPo,
        "#, fuzzy\nmsgctxt \"one\"\nmsgid \"One\"\nmsgstr \"fuzzy\"\n\n"
        "#~ msgctxt \"one\"\n#~ msgid \"One\"\n#~ msgstr \"obsolete\"\n\n"
        "msgctxt \"one\"\nmsgid \"One\"\nmsgid_plural \"Ones\"\nmsgstr[0] \"p\"\nmsgstr[1] \"\"\n\"q\"\n\n"
        "msgctxt \"one\"\nmsgid \"One\"\nmsgstr \"\"\n\n"
        "msgctxt \"two|Linux\"\nmsgid \"else\"\nmsgstr \"zwei\"\n"
        "msgctxt \"two\"\nmsgid \"two\"\nmsgstr \"zwei\"\nmsgid \"without\"\nmsgstr \"context\"\n");
    EXPECT_EQ(imported.Report, "1 changed, 0 unchanged, 2 unknown, 4 skipped\n");
    EXPECT_EQ(imported.Remarks, "two|Linux: default text differs\ntwo: unknown\nwithout: unknown\n");
    EXPECT_EQ(Translation(set, "one"), "Eins");
    EXPECT_EQ(Translation(set, "two", PlatformLinux), "zwei");
    const Document other = Two();
    EXPECT_EQ(ImportText(other, ReadPo, "msgctxt \"one\"\nmsgid \"else\"\nmsgstr \"x\"\n", true).Report,
              "0 changed, 0 unchanged, 0 unknown, 1 skipped\n");
    EXPECT_EQ(Translation(other, "one"), "Eins");
}

TEST(Po, TellsTheLineOfAMistake) {
    const std::pair<StringView, int64_t> texts[] = {
        {"msgid \"a\"\nmsgstr \"b", 2},
        {"msgid \"a\"\nmsgstr \"b\\", 2},
        {"\n\nfoo \"a\"\n", 3},
        {"\"a\"\n", 1},
        {"msgid \"a\"\nmsgid \"b\"\n", 2},
        {"msgid \"a\" x\n", 1},
        {"msgid \"a\"\nmsgstr \"\\q\"\n", 2},
        {"msgid \"a\"\nmsgstr[0] \"b\"\n", 2},
        {"msgid \"a\"\n", 1},
        {"msgctxt \"a\"\nmsgstr \"b\"\n", 2},
        {"# c\nmsgctxt \"one\"\nmsgid \"One\"\nmsgstr \"\xFF\"\n", 3},
        {"msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=ISO-8859-1\\n\"\n", 1}};
    for (const auto& [text, line] : texts) {
        try {
            ImportText(Two(), ReadPo, text);
            ADD_FAILURE() << "took " << text;
        } catch (const FormatError& error) {
            EXPECT_EQ(error.Line(), line) << text << error.Message();
        }
    }
}

}  // namespace
}  // namespace sorbel
