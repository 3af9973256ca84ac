#include <gtest/gtest.h>

#include "editing/rules/ChangedStrings.h"
#include "editing/rules/Matching.h"
#include "editing/rules/PaneLayout.h"
#include "editing/rules/RowText.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {
namespace {

RowState State(const LocalizedStringSet& set, StringView identifier, int64_t platform) {
    return StateOfRow(set.Entries.Find(identifier), identifier, platform);
}

TEST(RowText, IsChosenFromTheTagsAndTheDocument) {
    LocalizedStringSet set;
    set.AddEntry(PlatformAny, "both", "Quit", "Beenden");
    set.AddEntry(PlatformWindows, "both", "Exit", "");
    set.AddEntry(PlatformAny, "empty", "", "");
    set.AddEntry(PlatformMacOS, "mac only", "Hide", "Verbergen");

    EXPECT_EQ(State(set, "both", PlatformAny).Text, "Beenden");
    EXPECT_EQ(State(set, "both", PlatformWindows).Kind, RowKind::Untranslated);
    EXPECT_EQ(State(set, "both", PlatformWindows).Text, "Exit");
    EXPECT_EQ(State(set, "both", PlatformLinux).Kind, RowKind::NoPlatformValue);
    EXPECT_EQ(State(set, "empty", PlatformAny).Text, "(empty)");
    // A folder of a string without an Any value has nothing to show, whatever its platforms hold.
    EXPECT_EQ(State(set, "mac only", PlatformAny).Kind, RowKind::Nameless);
    EXPECT_EQ(State(set, "gone", PlatformAny).Kind, RowKind::Unknown);

    // The default value is inherited from Any, the translation is not.
    const RowValues linux = ValuesOfRow(set.Entries.Find("both"), PlatformLinux);
    EXPECT_EQ(linux.Default, "Quit");
    EXPECT_EQ(linux.Translated, "");
    EXPECT_FALSE(linux.Own);
}

TEST(Matching, UntranslatedLooksOnlyAtPlatformsThatHaveAValue) {
    LocalizedStringSet set;
    set.AddEntry(PlatformAny, "done", "x", "y");
    set.AddEntry(PlatformAny, "half", "x", "y");
    set.AddEntry(PlatformMacOS, "half", "x", "");
    set.AddEntry(PlatformAny, "odd", "x", "y");
    set.AddEntry(9, "odd", "x", "");
    EXPECT_FALSE(IsUntranslated(*set.Entries.Find("done")));
    EXPECT_TRUE(IsUntranslated(*set.Entries.Find("half")));
    EXPECT_FALSE(IsUntranslated(*set.Entries.Find("odd")));
}

TEST(ChangedStrings, ComparesDefaultValuesOfTheCurrentPlatforms) {
    LocalizedStringSet older, current;
    const auto add = [](LocalizedStringSet& set, StringView identifier, int64_t platform, StringView value) {
        set.AddEntry(platform, identifier, value, "egal");
    };
    add(older, "same", PlatformAny, "Save");
    add(current, "same", PlatformAny, "SAVE");
    add(older, "changed", PlatformAny, "Save");
    add(current, "changed", PlatformAny, "Save all");
    add(older, "platform new", PlatformAny, "Save");
    add(current, "platform new", PlatformAny, "Save");
    add(current, "platform new", PlatformLinux, "Save");
    add(older, "platform empty", PlatformAny, "Save");
    add(current, "platform empty", PlatformAny, "Save");
    add(current, "platform empty", PlatformLinux, "");
    add(older, "platform gone", PlatformAny, "Save");
    add(older, "platform gone", PlatformLinux, "Keep");
    add(current, "platform gone", PlatformAny, "Save");
    add(current, "new", PlatformAny, "");
    add(older, "removed", PlatformAny, "x");
    EXPECT_EQ(NewOrChangedStrings(current, older),
              (std::vector<bool>{false, true, true, false, false, true}));
}

TEST(ChangedStrings, VersionsComeByDateAndStayInOrderWithinAMoment) {
    const auto version = [](const char* date) {
        auto set = std::make_shared<LocalizedStringSet>();
        if (date)
            set->DateGenerated->SetSQLDateTime(date);
        else
            set->DateGenerated.reset();
        return set;
    };
    const auto late = version("2005-01-01 00:00:00"), early = version("2004-12-31 23:59:59"),
               undated = version(nullptr), twin = version("2004-12-31 23:59:59");
    EXPECT_EQ(VersionsByDate({late, undated, early, twin}),
              (std::vector<std::shared_ptr<LocalizedStringSet>>{early, twin, late}));
}

TEST(PaneLayout, SplittersKeepTheirLimits) {
    EXPECT_EQ(LimitVerticalSplitter(50, 8, 640), 104);
    EXPECT_EQ(LimitVerticalSplitter(600, 8, 640), 472);
    EXPECT_EQ(LimitVerticalSplitter(400, 8, 641), 400);
    EXPECT_EQ(LimitVerticalSplitter(300, 8, 101), 67) << "the limit on the right wins in a narrow window";
    EXPECT_EQ(LimitHorizontalSplitter(20, 8, 480), 100);
    EXPECT_EQ(LimitHorizontalSplitter(450, 8, 480), 412);
}

TEST(PaneLayout, ComparisonSharesTheWidth) {
    PaneLayout design;
    design.SimpleSplitter1 = {362, 0, 8, 480};
    design.SimpleSplitter2 = {372, 176, 248, 8};
    design.DefaultValueFieldLong = {372, 70, 248, 100};
    design.HistoryDefaultValueFieldLong = {663, 70, 248, 100};
    design.HistoryDefaultValueLabel = {663, 45, 248, 20};
    design.TranslationText = {372, 183, 248, 20};

    const PaneLayout alone = RepositionPanes(design, 641, 480, false);
    EXPECT_EQ(alone.DefaultValueFieldLong, (Bounds{372, 70, 249, 100}));
    EXPECT_EQ(alone.HistoryDefaultValueFieldLong, design.HistoryDefaultValueFieldLong);

    const PaneLayout shared = RepositionPanes(design, 641, 480, true);
    EXPECT_EQ(shared.DefaultValueFieldLong, (Bounds{372, 70, 117, 100}));
    EXPECT_EQ(shared.HistoryDefaultValueFieldLong, (Bounds{503, 70, 118, 100}));
    EXPECT_EQ(shared.HistoryDefaultValueLabel, (Bounds{503, 45, 118, 20}));
    EXPECT_EQ(shared.LocalizedValueField, (Bounds{372, 204, 249, 256}));
}

}  // namespace
}  // namespace sorbel
