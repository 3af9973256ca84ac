#include <gtest/gtest.h>

#include "LocaleBytes.h"
#include "platform/Clock.h"

namespace sorbel::testing {

TEST(LocalizedStringSet, StartsEmptyAndDatedNow) {
    ManualClock clock;
    clock.SetLocalSeconds(981173106);
    Clock::Install(&clock);
    const LocalizedStringSet set;
    Clock::Install(nullptr);
    EXPECT_EQ(set.DateGenerated->SQLDateTime(), "2001-02-03 04:05:06");
    EXPECT_EQ(set.Entries.Count(), 0);
    EXPECT_EQ(set.EditedApplication, nullptr);
    EXPECT_EQ(set.Language, "");
    EXPECT_TRUE(set.History.empty());
}

TEST(LocalizedStringSet, AddEntryReplacesThePairAndKeepsTheRest) {
    LocalizedStringSet set;
    set.AddEntry(PlatformWindows, "kFirst", "x", "y");
    set.AddEntry(PlatformLinux, "kFirst", "x", "z");
    set.AddEntry(PlatformAny, "", "empty identifier", "");
    set.AddEntry(PlatformWindows, "KFIRST", "p", "q");
    EXPECT_EQ(set.Entries.Keys().size(), 2u);
    EXPECT_EQ(set.Entries.KeyAt(0).View(), "kFirst") << "the first spelling stays";
    EXPECT_EQ(Values(set, "kfirst", PlatformWindows), "p|q");
    EXPECT_EQ(Values(set, "kFirst", PlatformLinux), "x|z");
    EXPECT_EQ(Values(set, "kFirst", PlatformAny), "-");
    EXPECT_EQ(Values(set, ""), "empty identifier|");

    const PlatformTable& platforms = set.Entries.At("kFirst");
    ASSERT_EQ(platforms.Count(), 2);
    EXPECT_EQ(platforms.ItemAt(0).Platform, PlatformWindows) << "a replaced platform keeps its place";
    EXPECT_EQ(platforms.ItemAt(1).Platform, PlatformLinux);
    EXPECT_EQ(platforms.Find(PlatformWindows)->Value(ValueKeyLocalized), "q");
    EXPECT_EQ(platforms.Find(PlatformWindows)->Value(ValueKeyOriginal), "p");
}

TEST(LocalizedStringSet, ProgressFollowsWhatIsStoredAndRead) {
    auto set = Read(Magic + Entry("a", "A", "1") + Entry("a", "A", "", 3) + Entry("b", "B", "", 77)).Set;
    const auto told = [&set] {
        const LocalizedStringSet::Progress progress = set->TranslationProgress();
        return std::to_string(progress.Translated) + " of " + std::to_string(progress.Rows);
    };
    EXPECT_EQ(told(), "1 of 3");
    set->AddEntry(PlatformLinux, "A", "A", "2");
    EXPECT_EQ(told(), "2 of 3");
    set->AddEntry(PlatformLinux, "a", "A", "3");
    set->AddEntry(PlatformAny, "a", "A", "");
    EXPECT_EQ(told(), "1 of 3");
    set->AddEntry(PlatformAny, "new", "N", "n");
    EXPECT_EQ(told(), "2 of 4");
    set->ReadBytes(Buffer(Magic + Entry("c", "C", "1")));
    EXPECT_EQ(told(), "3 of 5");
}

TEST(LocalizedStringSet, CloneIsIndependent) {
    auto set =
        Read(Magic + Text("nvvs", "2.1") + Text("lang", "de") + Long("vers", 7) + Data("appl", "C:\\a.exe") +
             Entry("a", "A", "1") + Entry("a", "A", "2", 3) + Data("hist", Magic))
            .Set;
    set->DateGenerated->SetSQLDateTime("2001-02-03 04:05:06");
    const auto clone = set->Clone();
    EXPECT_TRUE(clone->History.empty());
    EXPECT_EQ(clone->Language + clone->NorvaneVersion + std::to_string(clone->FileVersion), "de2.17");

    clone->Entries.Find("a")->Set(PlatformAny, {SharedText("clone"), SharedText("clone")});
    set->AddEntry(PlatformLinux, "a", "source", "source");
    clone->DateGenerated->SetYear(1999);
    EXPECT_EQ(Values(*set, "a"), "A|1");
    EXPECT_EQ(Values(*clone, "a", PlatformLinux), "A|2");
    EXPECT_EQ(set->DateGenerated->Year(), 2001);

    set.reset();  // the texts of the clone lie in the file that the source was read from
    EXPECT_EQ(Values(*clone, "a", PlatformLinux), "A|2");
    EXPECT_NE(clone->ToBytes().find(Data("appl", "C:\\a.exe")), String::npos);
    clone->EditedApplication = std::make_shared<FolderItem>("/opt/b.exe");
    const auto shared = clone->Clone();
    EXPECT_EQ(shared->EditedApplication, clone->EditedApplication);
    shared->EditedApplication.reset();
    EXPECT_NE(clone->EditedApplication, nullptr);
}

TEST(LocalizedStringSet, PlatformNames) {
    EXPECT_EQ(
        String(PlatformText(0)) + PlatformText(1).data() + PlatformText(2).data() + PlatformText(3).data(),
        "AnyMac OSWindowsLinux");
    EXPECT_EQ(PlatformIconName(PlatformMacOS), "OS-Mac");
    EXPECT_EQ(PlatformIconName(PlatformAny), "");
    for (const int64_t unknown : {int64_t{-1}, int64_t{4}, INT64_MIN, INT64_MAX})
        EXPECT_EQ(PlatformText(unknown), "");
}

}  // namespace sorbel::testing
