#include "shell/App.h"

#include "editing/MainWindow.h"
#include "shell/AboutWindow.h"
#include "shell/FileTypes1.h"
#include "shell/LaunchWindow.h"
#include "shell/MenuBar1.h"
#include "ui/Icons.h"
#include "ui/PlatformColors.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

namespace {

/// The open instance of a window class that has at most one, made if there is none.
template <typename WindowClass>
std::shared_ptr<WindowClass> Instance(std::weak_ptr<WindowClass>& instance, App& app) {
    std::shared_ptr<WindowClass> window = instance.lock();
    if (window && window->IsOpen()) return window;
    window = std::make_shared<WindowClass>(app);
    instance = window;
    window->Show();
    return window;
}

void RemoveItem(MenuItem& menu, StringView name) {
    for (size_t index = 0; index < menu.Count(); ++index)
        if (menu.Item(index).Name() == name) return menu.Remove(index);
}

}  // namespace

App::App(Backend& backend) : Application(backend) {
    MenuBar = MakeMenuBar1();
    _ApplicationAddMenuHandlers();
}

String App::ShortVersion() {
    return SORBEL_VERSION;
}

void App::_ApplicationAddMenuHandlers() {
    AddMenuHandler("AboutSorbel", [this] { return _AboutSorbel_Action(); });
    AddMenuHandler("FileOpen", [this] { return _FileOpen_Action(); });
}

/// Nothing fills the language menu, so it is not shown.
void App::Event_Open() {
    if (MenuItem* menu = MenuBar->FindByName("LocalizationMenu")) RemoveItem(*menu, "LocalizationLanguage");
}

void App::Event_NewDocument() {
    ShowLaunchWindow();
}

void App::Event_OpenDocument(const std::shared_ptr<FolderItem>& item) {
    try {
        CloseLaunchWindow();
        MainWindow::Create(*this, item)->Show();
    } catch (const RuntimeException&) {
        Desktop().MsgBox("The file could not be opened.");
    }
}

void App::CloseLaunchWindow() {
    for (int64_t index = 0; index < WindowCount(); ++index) {
        auto* launch = dynamic_cast<LaunchWindow*>(&WindowAt(index));
        if (!launch) continue;
        launch->ShouldClose = true;
        launch->Close();
        return;
    }
}

bool App::OpenADocument(Window* parent) {
    OpenDialog dialog;
    dialog.Filter = FileTypes1::KestrumLocale() + FileTypes1::NorvaneLocale();
    const std::shared_ptr<FolderItem> f = parent ? dialog.ShowModalWithin(*parent) : dialog.ShowModal(*this);
    if (!f) return false;
    OpenDocument(f);
    return true;
}

bool App::Event_HandleAppleEvent(StringView eventClass, StringView eventID) {
    if (eventClass != "aevt" || eventID != "rapp") return false;
    if (WindowCount() == 0) ShowLaunchWindow();
    return true;
}

void App::Event_AppearanceChanged() {
    Icons::ResetCache();
    Platform::Colors::ResetCache();
}

bool App::_FileOpen_Action() {
    OpenADocument(nullptr);
    return true;
}

bool App::_AboutSorbel_Action() {
    ShowModal(TheAboutWindow());
    return true;
}

LaunchWindow& App::ShowLaunchWindow() {
    return *Instance(mLaunchWindow, *this);
}

AboutWindow& App::TheAboutWindow() {
    return *Instance(mAboutWindow, *this);
}

}  // namespace sorbel
