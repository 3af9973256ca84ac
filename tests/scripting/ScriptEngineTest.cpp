#include "scripting/ScriptEngine.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "platform/Clock.h"
#include "platform/FileContents.h"
#include "platform/SpecialFolder.h"
#include "scripting/EscapeWatch.h"
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

TEST(ScriptsMenu, MakesItsFolderAlsoInDocumentsThatAreNotThereYet) {
    const TemporaryFolder home;
    SpecialFolder::SetDocuments(home / "new/Documents");
    FakeBackend desktop;
    Application app(desktop);
    MenuItem menu("ScriptsMenu", "Scripts");
    RebuildMenu(menu, app);
    std::filesystem::remove_all(home / "new");  // as a user may while the program runs
    for (int refresh = 0; refresh < 3; ++refresh)
        RebuildMenu(menu, app);
    EXPECT_EQ(menu.Count(), 1u);
    EXPECT_TRUE(FolderItem(home / "new/Documents/Kestrum/Sorbel/Scripts/Samples").Exists());
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

/// Captions, keys and states, as they stand after a refresh of all menus.
String Seen(const MenuItem& menu) {
    String seen;
    for (size_t index = 0; index < menu.Count(); ++index) {
        const auto* script = dynamic_cast<const ScriptMenuItem*>(&menu.Item(index));
        const String file = script && script->Tag() ? script->Tag()->Name() : "";
        seen += menu.Item(index).Text() + "|" + menu.Item(index).Shortcut + "|" + file +
                (menu.Item(index).Enabled ? "|on\n" : "|off\n");
    }
    return seen;
}

TEST(ScriptsMenu, FollowsTheFolderAsIfMadeAnew) {
    const TemporaryFolder documents;
    SpecialFolder::SetDocuments(documents.Path());
    FakeBackend desktop;
    Application app(desktop);
    app.MenuBar = std::make_unique<MenuBar>();
    MenuItem& menu = app.MenuBar->Append(std::make_unique<MenuItem>("ScriptsMenu", "Scripts"));
    const auto folder = ScriptsFolder();
    const auto write = [&](StringView name) {
        WriteContents(*folder->Child(name), "");
    };
    const auto path = [&](StringView name) {
        return folder->Child(name)->NativePath();
    };
    const std::function<void()> edits[] = {
        [] {},
        [&] { write("m.sorbel_script"); },
        [] {},
        [&] { write("z.SORBEL_SCRIPT"), write("a.b.sorbel_script"), write("sorbel_script"), write("x.bak"); },
        [&] { std::filesystem::rename(path("m.sorbel_script"), path("y.sorbel_script")); },
        [&] { std::filesystem::remove(path("z.SORBEL_SCRIPT")); },
        [&] { std::filesystem::remove(path("a.b.sorbel_script")), write("q.sorbel_script"); },
    };
    for (const auto& edit : edits) {
        edit();
        app.EnableMenuItems();
        RebuildMenu(menu, app);
        MenuItem anew("ScriptsMenu", "Scripts");
        RebuildMenu(anew, app);
        EXPECT_EQ(Seen(menu), Seen(anew));
    }
    EXPECT_EQ(Seen(menu),
              "q|CMD + 1|q.sorbel_script|on\nsorbel_script|CMD + 2|sorbel_script|on\n"
              "y|CMD + 3|y.sorbel_script|on\n-|||on\nShow Scripts Folder|||on\n");
    const MenuItem* first = &menu.Item(0);
    std::filesystem::remove(folder->Child("Samples")->Child("Sample.sorbel_script")->NativePath());
    RebuildMenu(menu, app);
    EXPECT_EQ(&menu.Item(0), first) << "nothing has changed";
    EXPECT_TRUE(folder->Child("Samples")->Child("Sample.sorbel_script")->Exists());
}

TEST(EscapeWatch, IsBusyOnlyWithAScriptThatTakesLong) {
    FakeBackend desktop;
    script::Attention attention;
    EscapeWatch watch(desktop);
    watch.Begin(attention);
    watch.End();
    EXPECT_EQ(desktop.BusyTimes, 0);
    watch.Begin(attention);
    EXPECT_FALSE(watch.Stops());
    EXPECT_EQ(desktop.Busy, 1);
    desktop.EscapePressed = true;
    EXPECT_TRUE(watch.Stops());
    desktop.EscapePressed = true;  // too late
    watch.End();
    EXPECT_FALSE(desktop.EscapePressed);
    EXPECT_EQ(desktop.Busy, 0);
    EXPECT_EQ(desktop.BusyTimes, 1);
}

/// How many of five dialogs in a row come up when each is left `pause` ticks after it came.
size_t DialogsShown(bool byEscape, int64_t pause) {
    ManualClock time;
    Clock::Install(&time);
    FakeBackend desktop;
    Application app(desktop);
    desktop.EscapeLeaves = byEscape;
    desktop.WhileAsking = [&time, pause] {
        time.Advance(pause);
    };
    desktop.Buttons.resize(5, FakeBackend::Button::Action);
    RunScript(app, "For i As Integer = 1 To 5\nCall ShowDialog(\"Go on?\", \"\", \"OK\", \"\")\nNext");
    if (!desktop.Messages.empty()) {
        EXPECT_EQ(desktop.Messages, std::vector<String>{"The script was stopped.\nLine 2"});
        desktop.Buttons.clear();
    }
    Clock::Install(nullptr);
    return desktop.MessageDialogs.size();
}

TEST(RunScript, IsStoppedByEscapeTwiceWithinASecond) {
    EXPECT_EQ(DialogsShown(true, 0), 2u);
    EXPECT_EQ(DialogsShown(true, 60), 2u);
    EXPECT_EQ(DialogsShown(true, 61), 5u);
    EXPECT_EQ(DialogsShown(false, 0), 5u);
}

}  // namespace
}  // namespace sorbel::Scripting
