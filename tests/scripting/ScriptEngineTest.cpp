#include "scripting/ScriptEngine.h"

#include <gtest/gtest.h>

#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"
#include "scripting/Scripting.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"

namespace sorbel::Scripting {
namespace {

TEST(Error2Text, AnswersWithTheFirstOfSeveralTexts) {
    EXPECT_EQ(Error2Text(48), "Array bounds must be integers.");
    EXPECT_EQ(Error2Text(142), "Assignment of an incompatible data type.");
    EXPECT_EQ(Error2Text(210),
              "Fixed-length string fields are no longer supported; use an array of Byte instead.");
    for (const int64_t none : {-1, 0, 10, 14, 30, 176, 177, 211})
        EXPECT_EQ(Error2Text(none), "") << none;
    int known = 0;
    for (int64_t error = 1; error <= 210; ++error)
        known += Error2Text(error).empty() ? 0 : 1;
    EXPECT_EQ(known, 205);
}

TEST(Printf, FillsPlaceholdersFromTheLastDown) {
    EXPECT_EQ(printf("%1-%10-%2", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}), "a-j-b");
    EXPECT_EQ(printf(Error2Text(202), {"integer", "string"}),
              "Expected (integer), but these arguments are (string).");
    EXPECT_EQ(printf(Error2Text(196), {"1", "2", "string", "text"}),
              "Not enough arguments: missing string value for parameter \"text\".");
    EXPECT_EQ(printf("%1 and %2", {}), "%1 and %2");
    EXPECT_EQ(printf("%1%1", {"%2"}), "%2%2") << "a value is not filled in turn by a later placeholder's";
}

/// With no folder for scripts the old items are never removed, so each refresh adds to them. Meant.
TEST(ScriptsMenu, GrowsWhileThereIsNoFolder) {
    FakeBackend desktop;
    Application app(desktop);
    MenuItem menu("ScriptsMenu", "Scripts");
    RebuildMenu(menu, app);
    EXPECT_EQ(menu.Count(), 1u);
    RebuildMenu(menu, app);
    EXPECT_EQ(menu.Count(), 3u);
    EXPECT_TRUE(menu.Item(1).IsSeparator());
    EXPECT_THROW(menu.Item(2).Event_Action(), NilObjectException);
}

TEST(ScriptsMenu, SurvivesAFolderThatCannotBeMade) {
    const TemporaryFolder folder;
    WriteContents(FolderItem(folder / "Kestrum"), "a file in the folder's place");
    SpecialFolder::SetDocuments(folder.Path());
    FakeBackend desktop;
    Application app(desktop);
    MenuItem menu("ScriptsMenu", "Scripts");
    RebuildMenu(menu, app);
    EXPECT_EQ(menu.Count(), 1u);
    EXPECT_EQ(ReadContents(FolderItem(folder / "Kestrum"))->View(), "a file in the folder's place");
}

}  // namespace
}  // namespace sorbel::Scripting
