#include <gtest/gtest.h>

#include <algorithm>

#include "exchange/CommandLine.h"
#include "exchange/Documents.h"
#include "exchange/ExchangeError.h"

namespace sorbel {
namespace {

Document Three() {
    auto set = std::make_shared<LocalizedStringSet>();
    set->AddEntry(PlatformAny, "a", "A", "x");
    set->AddEntry(PlatformLinux, "a", "AL", "xl");
    set->AddEntry(PlatformAny, "b", "B", "y");
    return set;
}

const String Header = "identifier,platform,default,translation\n";

TEST(Csv, TakesWhatSpreadsheetsWrite) {
    const Document set = Three();
    const Imported imported = ImportText(
        set, ReadCsv,
        "\xEF\xBB\xBF\"identifier\",platform,default,translation\r\n\r\n"
        "a,Any,A,\"two\r\nlines, \"\"quoted\"\"\"\r\n\"a\",\"linux\",\"AL\",\n\nc,Any,,\nb,BeOS,B,n");
    EXPECT_EQ(imported.Report, "2 changed, 0 unchanged, 2 unknown, 0 skipped\n");
    EXPECT_EQ(imported.Remarks, "c: unknown\nb|BeOS: unknown\n");
    EXPECT_EQ(Translation(set, "a"), "two\r\nlines, \"quoted\"");
    EXPECT_EQ(Translation(set, "a", PlatformLinux), "") << "an empty translation is one";
    EXPECT_EQ(Translation(set, "b"), "y");
}

TEST(Csv, TellsTheLineOfAMistake) {
    const std::pair<String, int64_t> texts[] = {{"", 1},
                                                {"a,b,c,d\n", 1},
                                                {"identifier;platform;default;translation\n", 1},
                                                {Header + "a,Any,A\n", 2},
                                                {Header + "a,Any,A,x,y,z\n", 2},
                                                {Header + "a,Any,\"A\nA\",\"x\n\n", 3},
                                                {Header + "a,Any,\"A\"A,x\n", 2},
                                                {Header + "a,Any,A\"A,x\n", 2},
                                                {Header + "a,Any,A,\xFF\n", 2}};
    for (const auto& [text, line] : texts) {
        try {
            ImportText(Three(), ReadCsv, text);
            ADD_FAILURE() << "took " << text;
        } catch (const FormatError& error) {
            EXPECT_EQ(error.Line(), line) << text;
        }
    }
}

TEST(Tsv, NeverAddsRowsAndPassesOverOtherLines) {
    const Document set = Three();
    const Imported imported = ImportText(set, ReadTsv,
                                         "\xEF\xBB\xBF"
                                         "a\tany\tA\tnew\\n\\q\n\r\na,Any,A,x\nb\tWindows\t\tx\nb\t\tB\tx\r"
                                         "nobody\tAny\t\t\nb\tAny\tother\t\tmore\n");
    EXPECT_EQ(imported.Report, "2 changed, 0 unchanged, 2 unknown, 3 skipped\n");
    EXPECT_EQ(imported.Remarks, "b|Windows: unknown\nnobody: unknown\nb: default text differs\n");
    EXPECT_EQ(Translation(set, "a"), "new\nq");
    EXPECT_EQ(Translation(set, "b"), "");
    EXPECT_EQ(Translation(set, "b", PlatformWindows), "(no such row)");
}

/// Line ends may be cut by the pieces in which a file is read, and a line may be longer than they are.
TEST(Lines, AreTheSameHoweverTheyAreRead) {
    const String text =
        "one\r\ntwo\r\rthree\n" + String(700000, 'x') + "\r\n" + String(262143, 'y') + "\r\nend";
    for (const size_t step : {size_t{1}, size_t{3}, size_t{1} << 20}) {
        size_t at = 0;
        const StringView part = step == 1 ? StringView(text).substr(0, 20) : StringView(text);
        Input slow = Input::By([&](char* to, size_t size) {
            const size_t count = std::min({size, step, part.size() - at});
            part.copy(to, count, at);
            at += count;
            return count;
        });
        Lines lines(slow);
        String joined;
        int64_t count = 0;
        while (lines.Next()) {
            EXPECT_EQ(lines.Text().find_first_of("\r\n"), StringView::npos);
            joined.append(lines.Text()).append(lines.End());
            EXPECT_EQ(lines.Number(), ++count);
        }
        EXPECT_EQ(joined, part);
        EXPECT_EQ(count, step == 1 ? 5 : 7);
    }
}

TEST(CommandLine, TellsOptionsFromOperands) {
    const std::vector<Option> options = {{"output", true, 'o'}, {"strict"}, {"rule", true}};
    const Arguments arguments(
        {"import", "a", "--strict", "-o", "out", "-", "--rule=x", "--rule", "y", "--", "-b"}, options);
    EXPECT_EQ(arguments.Operands(), (std::vector<String>{"a", "-", "-b"}));
    EXPECT_TRUE(arguments.Has("strict"));
    EXPECT_EQ(arguments.Value("output"), "out");
    EXPECT_EQ(arguments.Values("rule"), (std::vector<String>{"x", "y"}));
    for (const char* bad : {"--what", "-x", "--output", "-o", "--strict=1"})
        EXPECT_THROW(Arguments({"import", bad}, options), WrongUse) << bad;
}

}  // namespace
}  // namespace sorbel
