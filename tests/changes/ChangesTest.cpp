#include <gtest/gtest.h>

#include "editing/changes/ImportChange.h"
#include "editing/changes/StringSetChange.h"
#include "editing/undo/UndoManager.h"
#include "notifications/Notifications.h"
#include "platform/Clock.h"

namespace sorbel {
namespace {

class ChangesTest : public testing::Test, public Listener {
  protected:
    ChangesTest() {
        Clock::Install(&mClock);
        Notifications::AddObserver(mSet.get(), *this);
    }
    ~ChangesTest() override {
        Notifications::RemoveObserver(mSet.get(), *this);
        Clock::Install(nullptr);
    }
    void ValueChanged(StringView identifier) override { mHeard.emplace_back(identifier); }

    std::unique_ptr<Action> Change(StringView identifier, int64_t platform, StringView value,
                                   StringView original = {}) {
        return std::make_unique<StringSetChange>(mSet, identifier, platform, value, original);
    }
    void Type(StringView identifier, int64_t platform, StringView value, StringView original = {}) {
        mManager.Add(Change(identifier, platform, value, original), true);
    }
    [[nodiscard]] size_t Steps() const { return mManager.UndoStack().size(); }
    /// "default=translation", or "none".
    [[nodiscard]] String Entry(StringView identifier, int64_t platform) const {
        const PlatformTable* platforms = mSet->Entries.Find(identifier);
        const EntryValue* value = platforms ? platforms->Find(platform) : nullptr;
        return value ? String(value->Original) + "=" + String(value->Localized) : "none";
    }

    ManualClock mClock;
    std::shared_ptr<LocalizedStringSet> mSet = std::make_shared<LocalizedStringSet>();
    UndoManager mManager;
    std::vector<String> mHeard;
};

TEST_F(ChangesTest, KeystrokesWithinHalfASecondAreOneStep) {
    mSet->AddEntry(PlatformAny, "Greeting", "Hello", "old");
    Type("Greeting", PlatformAny, "S");
    for (const char* text : {"Sa", "Sal", "Salu", "Salut"}) {
        mClock.Advance(29);
        Type("greeting", PlatformAny, text);
    }
    EXPECT_EQ(Steps(), 1U) << "the window slides, and letter case does not matter";
    mManager.Undo();
    EXPECT_EQ(Entry("Greeting", PlatformAny), "Hello=old");
    mManager.Redo();
    EXPECT_EQ(Entry("Greeting", PlatformAny), "Hello=Salut");

    mClock.Advance(30);
    Type("Greeting", PlatformAny, "Salut!");
    EXPECT_EQ(Steps(), 2U);
    Type("Other", PlatformAny, "x");
    Type("Other", PlatformMacOS, "x");
    EXPECT_EQ(Steps(), 4U) << "another string, another platform";

    const auto twin = mSet->Clone();
    mManager.Add(std::make_unique<StringSetChange>(twin, "Other", PlatformMacOS, "x", ""), true);
    EXPECT_EQ(Steps(), 5U) << "another set";
    mManager.Add(std::make_unique<StringSetChange>(twin, "Other", PlatformMacOS, "y", ""), true);
    EXPECT_EQ(Steps(), 5U);
}

TEST_F(ChangesTest, WhereTheDefaultValueComesFrom) {
    mSet->AddEntry(PlatformAny, "a", "Any default", "Any translation");
    mSet->AddEntry(PlatformLinux, "b", "Linux default", "Linux translation");
    struct {
        const char *Identifier, *Original, *Done, *Undone;
        int64_t Platform;
    } const cases[] = {
        {"a", "", "Any default=neu", "Any default=", PlatformWindows},
        {"a", "", "Any default=neu", "Any default=Any translation", PlatformAny},
        {"b", "", "=neu", "=", PlatformWindows},
        {"b", "given", "given=neu", "given=Linux translation", PlatformLinux},
        {"new", "", "=neu", "=", PlatformAny},
        {"also new", "given", "given=neu", "given=", PlatformMacOS},
    };
    for (const auto& c : cases) {
        const String before = Entry(c.Identifier, c.Platform);
        auto change = Change(c.Identifier, c.Platform, "neu", c.Original);
        EXPECT_EQ(Entry(c.Identifier, c.Platform), before) << "making a change changes nothing";
        change->Perform();
        EXPECT_EQ(Entry(c.Identifier, c.Platform), c.Done);
        change->Undo();
        EXPECT_EQ(Entry(c.Identifier, c.Platform), c.Undone);
        EXPECT_EQ(mHeard, (std::vector<String>{c.Identifier, c.Identifier}));
        mHeard.clear();
    }
}

class ImportTest : public ChangesTest {
  protected:
    /// Two edits of one value and a third, with a snapshot if asked for.
    std::unique_ptr<ImportChange> MakeImport(bool withHistory) {
        auto import = std::make_unique<ImportChange>();
        import->Changes.push_back(Change("a", PlatformAny, "first"));
        import->Changes.push_back(Change("a", PlatformAny, "second"));
        import->Changes.push_back(Change("b", PlatformAny, "third", "B"));
        if (withHistory) {
            import->StringSet = mSet;
            import->Histories.push_back(mSet->Clone());
        }
        return import;
    }
};

TEST_F(ImportTest, IsOneStepWithItsSnapshots) {
    mSet->AddEntry(PlatformAny, "a", "A", "before");
    const auto older = mSet->Clone();
    const auto later = mSet->Clone();
    mSet->History = {older};
    auto made = MakeImport(true);
    const auto snapshot = made->Histories[0];
    EXPECT_EQ(made->Description(), "Import");

    mManager.Add(std::move(made), true);
    EXPECT_EQ(mHeard, (std::vector<String>{"a", "a", "b"})) << "a notice for each change and no other";
    EXPECT_EQ(Entry("a", PlatformAny), "A=second");
    EXPECT_EQ(mSet->History, (std::vector{older, snapshot}));

    mSet->History.push_back(later);
    mManager.Undo();
    EXPECT_EQ(mHeard.size(), 6U);
    EXPECT_EQ(Entry("a", PlatformAny), "A=before");
    EXPECT_EQ(Entry("b", PlatformAny), "B=");
    EXPECT_EQ(mSet->History, (std::vector{older, later}));
    mManager.Redo();
    EXPECT_EQ(mSet->History, (std::vector{older, later, snapshot})) << "back at the end";
}

TEST_F(ImportTest, NeverMergesAndMayGoWithoutASet) {
    Type("a", PlatformAny, "typed");
    auto import = MakeImport(false);
    import->Histories.push_back(mSet->Clone());
    mManager.Add(std::move(import), true);
    mManager.Add(MakeImport(false), true);
    Type("a", PlatformAny, "typed");
    EXPECT_EQ(Steps(), 4U);
    EXPECT_EQ(Entry("a", PlatformAny), "=typed");
    for (int step = 0; step < 3; ++step)
        mManager.Undo();
    EXPECT_EQ(Entry("a", PlatformAny), "=typed");
    EXPECT_TRUE(mSet->History.empty());
}

}  // namespace
}  // namespace sorbel
