#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "editing/MainWindow.h"
#include "platform/Clock.h"
#include "support/FakeBackend.h"
#include "support/TemporaryFolder.h"
#include "ui/PlatformColors.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

/// A document window on a file of the test's, in a program with just the menu items that the window asks for.
class WindowUnderTest {
  public:
    explicit WindowUnderTest(LocalizedStringSet& document) {
        Clock::Install(&Time);
        Platform::Colors::UseDesktop(&Desktop);
        App.MenuBar = std::make_unique<MenuBar>();
        for (const char* name : {"EditUndo", "EditRedo", "FileSave"})
            App.MenuBar->Append(std::make_unique<MenuItem>(name, name, "", false));
        for (const char* name : {"FileClose", "LocalizationOnlyShowNonlocalizedStrings",
                                 "LocalizationNextItem", "LocalizationPreviousSring"})
            App.MenuBar->Append(std::make_unique<MenuItem>(name, name));
        document.WriteFile(*File);
        App.Perform([&] {
            Window = MainWindow::Create(App, File);
            Window->Show();
        });
    }
    ~WindowUnderTest() {
        Platform::Colors::UseDesktop(nullptr);
        Clock::Install(nullptr);
    }

    /// A command by its menu item; whether it was enabled.
    bool Choose(StringView name) { return App.Choose(*App.MenuBar->FindByName(name)).Enabled; }

    ManualClock Time;
    TemporaryFolder Folder;
    std::shared_ptr<FolderItem> File = std::make_shared<FolderItem>(Folder / "document.kestrum_locale");
    FakeBackend Desktop;
    Application App{Desktop};
    std::shared_ptr<MainWindow> Window;
};

}  // namespace sorbel
