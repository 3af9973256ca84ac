// A document that comes while a dialog is up, so while the command that asked for the dialog still runs.
#include <gtest/gtest.h>

#include "shell/AboutWindow.h"
#include "shell/App.h"
#include "shell/FileTypes1.h"
#include "shell/LaunchWindow.h"
#include "stringset/LocalizedStringSet.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"
#include "ui/PlatformColors.h"

namespace sorbel {
namespace {

class Nested : public testing::Test {
  protected:
    Nested() {
        _InitFileTypes();
        Platform::Colors::UseDesktop(&Desktop);
        LocalizedStringSet document;
        document.AddEntry(PlatformAny, "kQuit", "Quit", "");
        document.WriteFile(*File);
        Program.Start({});
        Launch = std::dynamic_pointer_cast<LaunchWindow>(Program.FrontWindow()->shared_from_this());
    }
    ~Nested() override { Platform::Colors::UseDesktop(nullptr); }

    /// The document comes, and the launch window outlives that for as long as the dialog is up.
    void HandOver() {
        Program.OpenDocument(File);
        EXPECT_EQ(Program.FrontWindow()->Title(), "document.kestrum_locale");
        EXPECT_FALSE(Launch.expired());
    }
    void ExpectOnlyTheDocument() {
        Program.Perform([] {});
        EXPECT_TRUE(Launch.expired());
        EXPECT_EQ(Program.WindowCount(), 1);
        EXPECT_EQ(Program.TakeUnhandled(), "");
    }
    void Choose(StringView name) { EXPECT_TRUE(Program.Choose(*Program.MenuBar->FindByName(name)).Handled); }

    TemporaryFolder Folder;
    std::shared_ptr<FolderItem> File = std::make_shared<FolderItem>(Folder / "document.kestrum_locale");
    FakeBackend Desktop;
    App Program{Desktop};
    std::weak_ptr<LaunchWindow> Launch;
};

TEST_F(Nested, WhileTheOpenCommandAsks) {
    Desktop.WhileAsking = [this] {
        HandOver();
    };
    Desktop.Files = {std::nullopt};
    Choose("FileOpen");
    ExpectOnlyTheDocument();
    EXPECT_TRUE(Desktop.OpenDialogs.back().OnlyTypes);  // other files could not be opened
}

TEST_F(Nested, WhileTheLaunchWindowsButtonAsks) {
    Desktop.WhileAsking = [this] {
        HandOver();
    };
    Desktop.Files = {std::nullopt};
    Launch.lock()->PushButton1.UserPress();
    ExpectOnlyTheDocument();
}

/// Asked by nobody's command, so nothing but the dialog itself holds the window.
TEST_F(Nested, WhileASheetIsUp) {
    Desktop.WhileAsking = [this] {
        HandOver();
    };
    Desktop.Files = {std::nullopt};
    LaunchWindow* const launch = Launch.lock().get();
    EXPECT_FALSE(Program.OpenADocument(launch));
    ExpectOnlyTheDocument();
}

TEST_F(Nested, WhileAboutIsUp) {
    Desktop.WhileModal = [this](Window& about) {
        HandOver();
        about.UserKeyDown("x");
        EXPECT_FALSE(about.IsOpen());
    };
    Choose("AboutSorbel");
    ExpectOnlyTheDocument();
}

}  // namespace
}  // namespace sorbel
