#include <gtest/gtest.h>

#include "checks/Checker.h"
#include "checks/Statistics.h"
#include "stringset/PlatformTable.h"

namespace sorbel::checks {
namespace {

/// "row:rule" of each finding, and messages for those that name another row.
std::vector<String> Findings(const Rules& rules, const std::vector<Row>& rows) {
    std::vector<String> findings;
    const auto naming = [](const Row& row) {
        return String(row.Identifier);
    };
    const auto report = [&](const Row& row, Rule rule, const String& message) {
        const bool isOfOthers = rule == Rule::Inconsistent || rule == Rule::DuplicateMnemonic;
        findings.push_back(String(row.Identifier) + ":" + String(NameOf(rule)) +
                           (isOfOthers ? ": " + message : ""));
    };
    Checker checker(rules, 1, naming, report);
    for (const Row& row : rows)
        checker.Add(row);
    return findings;
}

Rules Only(Rule rule) {
    Rules rules;
    rules.Set(rule);
    return rules;
}

TEST(Checker, UsuallyLeavesOutWhatIsOftenRight) {
    const std::vector<Row> rows = {{"a", 0, "&OK", "&OK"}, {"b", 0, "&Yes", "&OK"}, {"c", 0, "a", "long"}};
    EXPECT_EQ(Findings(Rules::Usual(), rows), std::vector<String>{});
    Rules all = Rules::Usual();
    for (const Rule rule : {Rule::DuplicateMnemonic, Rule::Same, Rule::Length})
        all.Set(rule);
    EXPECT_EQ(
        Findings(all, rows),
        (std::vector<String>{"a:same", "b:duplicate-mnemonic: the mnemonic is also that of a", "c:length"}));
}

TEST(Checker, TellsEachRulesFindingsOfARow) {
    EXPECT_EQ(Findings(Rules::Usual(), {{"a", 0, "&Copy %1 now.", " Kopiere  es"}, {"b", 0, "x", ""}}),
              (std::vector<String>{"a:mnemonic", "a:placeholder", "a:edges", "a:ending", "a:doubled-blank",
                                   "b:untranslated"}));
}

TEST(Checker, FindsTextsTranslatedInDifferentWays) {
    const std::vector<Row> rows = {{"a", PlatformAny, "Save", ""},
                                   {"b", PlatformAny, "Save", "Sichern"},
                                   {"c", PlatformAny, "Save", "Speichern"},
                                   {"d", PlatformAny, "save", "speichern"},
                                   {"d", PlatformWindows, "Save", "Speichern"},
                                   {"e", PlatformAny, "Save", "Sichern"},
                                   {"f", PlatformAny, "", "eins"},
                                   {"g", PlatformAny, "", "zwei"}};
    EXPECT_EQ(Findings(Only(Rule::Inconsistent), rows),
              std::vector<String>{"c:inconsistent: the default text is translated as \"Sichern\" at b"});
}

TEST(Checker, FindsMnemonicsTwice) {
    const auto duplicates = [](const std::vector<Row>& rows) {
        std::vector<String> found;
        for (const String& finding : Findings(Only(Rule::DuplicateMnemonic), rows))
            found.push_back(finding.substr(0, 1) + finding.back());
        return found;
    };
    using List = std::vector<String>;
    EXPECT_EQ(duplicates({{"a", 0, "&File", "&Datei"}, {"b", 0, "&Print", "&drucken"}}), List{"ba"});
    // The default texts share a letter already.
    EXPECT_EQ(duplicates({{"a", 0, "&File", "&Datei"}, {"b", 0, "&Find", "&Da"}}), List{});
    // The first with that letter shares it, the second does not.
    EXPECT_EQ(duplicates({{"a", 0, "&File", "&D"}, {"b", 0, "&Print", "&D"}, {"c", 0, "&Find", "&D"}}),
              (List{"ba", "cb"}));
    // Rows of one string, and of platforms that never meet.
    EXPECT_EQ(
        duplicates({{"a", PlatformAny, "&Quit", "&Beenden"}, {"a", PlatformWindows, "E&xit", "&Beenden"}}),
        List{});
    EXPECT_EQ(duplicates({{"a", PlatformMacOS, "&Quit", "&B"}, {"b", PlatformWindows, "&Edit", "&B"}}),
              List{});
    EXPECT_EQ(duplicates({{"a", PlatformMacOS, "&Quit", "&B"}, {"b", PlatformAny, "&Edit", "&B"}}),
              List{"ba"});
    EXPECT_EQ(duplicates({{"a", PlatformAny, "&Quit", "&B"}, {"b", 9, "&Edit", "&B"}}), List{"ba"});
    EXPECT_EQ(duplicates({{"a", 0, "Quit", "&B"}, {"b", 0, "&Edit", "&B"}}), List{});
}

TEST(Statistics, CountsStringsRowsAndWords) {
    StatisticsCounter counter;
    EXPECT_EQ(counter.Counted().Percent(), 100);
    for (const Row& row : std::vector<Row>{{"a", 0, "Quit the program", "Beenden"},
                                           {"a", 2, "Exit now", ""},
                                           {"b", 0, "Don't ask, 3.5 times", "Nicht"}})
        counter.Add(row);
    const Statistics& counted = counter.Counted();
    EXPECT_EQ(std::tuple(counted.Strings, counted.Rows, counted.Translated, counted.Words, counted.WordsToDo),
              std::tuple(2, 3, 2, 9, 2));
    EXPECT_EQ(counted.Percent(), 66);
}

}  // namespace
}  // namespace sorbel::checks
