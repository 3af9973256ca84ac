#include <gtest/gtest.h>

#include <vector>

#include "checks/RowRules.h"

namespace sorbel::checks {
namespace {

struct Case {
    StringView Default, Translation;
    bool IsFound;
};

void Expect(Rule rule, const std::vector<Case>& cases, double longest = 0) {
    for (const Case& one : cases) {
        const std::optional<String> message = Check(rule, {"id", 0, one.Default, one.Translation}, longest);
        EXPECT_EQ(message.has_value(), one.IsFound) << NameOf(rule) << ": " << one.Default << " / "
                                                    << one.Translation << ": " << message.value_or("");
    }
}

String MessageOf(Rule rule, StringView defaultText, StringView translation) {
    return Check(rule, {"id", 0, defaultText, translation}, 2).value_or("(none)");
}

TEST(RowRules, LeaveRowsWithoutATranslationToOneRule) {
    for (size_t number = 0; number < RuleCount; ++number) {
        const Rule rule = static_cast<Rule>(number);
        EXPECT_EQ(Check(rule, {"id", 0, " &A %1  b.\n", ""}, 1).has_value(), rule == Rule::Untranslated);
        EXPECT_FALSE(Check(rule, {"id", 0, "", ""}, 1)) << NameOf(rule);
    }
}

TEST(RowRules, MnemonicsAreCounted) {
    Expect(Rule::Mnemonic, {{"&File", "&Datei", false},
                            {"&File", "Datei", true},
                            {"File", "&Datei", true},
                            {"&File", "&Da&tei", true},
                            {"&Open...", "開く(&O)...", false},
                            {"&Été", "&Юг", false},
                            {"&Help", "&?", false},
                            {"&1 item", "&1 Eintrag", false},
                            // Ampersands that mark nothing.
                            {"Cut && paste", "Ausschneiden und einsetzen", false},
                            {"Cut & paste", "Ausschneiden und einsetzen", false},
                            {"Cut &\u00A0paste", "Ausschneiden", false},
                            {"the '&' key", "die Taste für das Und", false},
                            {"the “&” (&)", "das Und", false},
                            {"A &", "A", false},
                            {"&&", "x", false},
                            // Pairs are taken from the left.
                            {"&&&Cut", "&Ausschneiden", false},
                            {"&&&&Cut", "&Ausschneiden", true}});
}

TEST(RowRules, PlaceholdersAreComparedAsAMultiset) {
    Expect(Rule::Placeholder, {{"%1 of %2", "%2 von %1", false},
                               {"%1 of %2", "%2 von %2", true},
                               {"%1", "%1 %1", true},
                               {"%1", "%10", true},
                               {"%10", "%10", false},
                               {"%1s left", "noch %1 s", false},
                               {"%1%", "%1 %", false},
                               {"%1%2", "%2%1", false},
                               {"Page %L1", "Seite", true},
                               {"%n files", "Dateien", true},
                               {"Open “%@”", "Öffnen", true},
                               {"%d", "%s", true},
                               {"%dpx", "%d Punkte", false},
                               {"%ld bytes", "%d Byte", true},
                               {"%lld", "%lld", false},
                               {"%.2f MB", "%.1f MB", true},
                               {"%02d:%02d", "%02d.%02d", false},
                               {"%5.1f", "viel", true},
                               {"%-10s|", "|", true},
                               {"<0>Read</0> on", "<0>Weiter</0>", false},
                               {"<0>Read</0> on", "<0>Weiter<0>", true},
                               {"<br/> <1/>", "<1/>", false},
                               {"{0} and {name}", "{name} und {0}", false},
                               {"{0:N2}", "{0}", true},
                               {"{name}", "{Name}", true}});
}

TEST(RowRules, PositionsCountWhereBothTextsTellThem) {
    Expect(Rule::Placeholder, {{"%s in %d", "%2$d mit %1$s", false},
                               {"%1$@ %2$@", "%2$@ %1$@", false},
                               {"%1$@ %2$@", "%1$@ %1$@", true},
                               {"%s in %s", "%1$s", true},
                               {"costs %1$", "kostet %1 $", false}});
}

TEST(RowRules, PercentSignsAreNoPlaceholders) {
    Expect(Rule::Placeholder, {{"100% safe", "100%ige Sicherheit", false},
                               {"100% safe", "100 % sicher", false},
                               {"100%% of %1", "100 %% von %1", false},
                               {"5% discount", "5%-os kedvezmény", false},
                               {"50% off", "%50 indirim", false},
                               {"50 % off", "%50 indirim", false},
                               {"50% off", "%40 indirim", true},
                               {"CPU %", "% CPU", false},
                               {"% done", "%-ige", false},
                               {"%free", "% frei", false},
                               {"%", "%%", false},
                               {"<none> <b>x</b>", "<keine> x", false},
                               {"{ }", "{} {", false},
                               {"{see below}", "{siehe unten}", false}});
}

TEST(RowRules, EdgesKnowAllWhiteSpace) {
    Expect(Rule::Edges, {{" x ", " y ", false},
                         {"x ", "y", true},
                         {"x", "\ty", true},
                         {"x", "y\u3000", true},
                         {"x", "\u2003y", true},
                         {"x", "y\u00A0", true},
                         {"x", "\u200By", false},  // of no width, and no white space
                         {" x", " \u00A0y", true},
                         {"x\r\n", "y\n", false},
                         {"x\n\n", "y\n", true},
                         {" ", " ", false},
                         {" ", "y", true},
                         // The blank of a French mark.
                         {": %1", "\u00A0: %1", false},
                         {"?", "\u202F?", false},
                         {" : %1", " \u00A0: %1", false},
                         {"x", "\u00A0y", true},
                         {"\xFF x", "\xFF", false}});
}

TEST(RowRules, EndingsHaveCounterparts) {
    Expect(Rule::Ending, {{"Save", "Sichern", false},
                          {"Save.", "Sichern", true},
                          {"Save", "Sichern!", true},
                          {"Done.", "完了。", false},
                          {"Done.", "完了．", false},
                          {"Done.", "पूर्ण।", false},
                          {"Name:", "名前：", false},
                          {"Name:", "Nom\u00A0:", false},
                          {"Name: ", "Name:", false},
                          {"Really?", "هل أنت متأكد؟", false},
                          {"one,", "واحد،", false},
                          {"one,", "一、", false},
                          {"one;", "واحد؛", false},
                          {"one,", "一。", true},
                          {"Stop!", "停止！", false},
                          {"What?!", "Was!?", false},
                          {"Loading...", "Laden …", false},
                          {"Loading...", "加载……", false},
                          {"Loading...", "Laden..", true},
                          {"Loading...", "Laden.", true},
                          {"Loading....", "Laden…", false},
                          {"Loading...:", "Laden:", true},
                          {"Open...", "開く...(&O)", false},
                          {"Name:", "名前：（&N）", false},
                          {"Sure?", "Σίγουρα;", false},
                          {"Sure?", "Σίγουρα\u037E", false},
                          {"Sure?", "Sicher;", true},
                          {"one;", "ένα\u0387", false},
                          {"one;", "ένα\u037E", true},
                          {"Can't open “%1.”", "„%1“ geht nicht auf.", false},
                          {"\"Yes!\"", "« Oui\u00A0! »", false},
                          {"Use \":\"", "„:“ verwenden", false},
                          {"Done.", "Fertig\xFF", true},
                          {"...", "…", false}});
}

TEST(RowRules, BlanksAndLines) {
    Expect(Rule::DoubledBlank, {{"a b", "c  d", true},
                                {"a b", "c \u00A0d", true},
                                {"a b", "c\u202F d", true},
                                {"a  b", "c  d", false},
                                {"a b", "c\u00A0d e", false},
                                {"a b", "c\t\td", false},
                                {"a b", "\xC2\xE2 \xC2", false}});
    Expect(Rule::Newline, {{"a\nb", "c\r\nd", false},
                           {"a\nb", "c\rd", false},
                           {"a\nb", "c d", true},
                           {"a\nb", "c\n\rd", true},
                           {"a\r\n\r\nb", "c\n\nd", false}});
}

TEST(RowRules, SameAndLength) {
    Expect(Rule::Same, {{"OK", "OK", true}, {"OK", "ok", false}});
    Expect(Rule::Length,
           {{"abcd", "ÄÖÜÄÖÜ", false},
            {"abcd", "ÄÖÜÄÖÜß", true},
            {"", "long", false},
            {"ab", "\xFF\xFF\xFF", false}},
           1.5);
}

TEST(RowRules, MessagesNameWhatDiffers) {
    EXPECT_EQ(MessageOf(Rule::Mnemonic, "&File", "Datei"),
              "the default text has 1 mnemonic, the translation has no mnemonic");
    EXPECT_EQ(MessageOf(Rule::Placeholder, "%1 of %2", "%2 von %2"),
              "the translation lacks %1 and has %2 too often");
    EXPECT_EQ(MessageOf(Rule::Edges, " a\n", "  b\u3000"),
              "at the start the default text has a blank, the translation has 2 blanks; at the end the "
              "default text has "
              "a line break, the translation has a U+3000");
    EXPECT_EQ(MessageOf(Rule::Ending, "Print...", "Drucken"),
              "at the end the default text has \"…\", the translation has no punctuation");
    EXPECT_EQ(MessageOf(Rule::DoubledBlank, "a b", "ü  b"),
              "two blanks in a row at character 2 of the translation");
    EXPECT_EQ(MessageOf(Rule::Length, "a", "üüü"), "the default text has 1 character, the translation has 3");
}

TEST(Rules, HaveNames) {
    EXPECT_EQ(RuleNamed("untranslated"), Rule::Untranslated);
    EXPECT_EQ(RuleNamed("duplicate-mnemonic"), Rule::DuplicateMnemonic);
    EXPECT_EQ(RuleNamed("length"), Rule::Length);
    EXPECT_FALSE(RuleNamed("Edges"));
    EXPECT_FALSE(RuleNamed(""));
}

}  // namespace
}  // namespace sorbel::checks
