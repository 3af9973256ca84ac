#include "shell/App.h"

#include "editing/MainWindow.h"
#include "journal/LeftJournal.h"
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
    RemoveForgottenJournals();
    if (MenuItem* menu = MenuBar->FindByName("LocalizationMenu")) RemoveItem(*menu, "LocalizationLanguage");
}

void App::Event_NewDocument() {
    if (!OfferUnsavedDocuments() && WindowCount() == 0) ShowLaunchWindow();
}

/// True: the user wants them opened, and each window asks by itself.
bool App::OfferUnsavedDocuments() {
    const auto files = FilesWithUnsavedChanges();
    if (files.empty()) return false;
    MessageDialog dialog;
    dialog.Message = "There are changes that were not saved.";
    dialog.Explanation = "They can be restored in " + std::to_string(files.size()) +
                         (files.size() == 1 ? " document." : " documents.");
    dialog.ActionButton.Caption = "Open";
    dialog.CancelButton.Caption = "Not Now";
    dialog.CancelButton.Visible = true;
    if (dialog.ShowModal(*this) != &dialog.ActionButton) return false;
    for (const auto& file : files)
        OpenDocument(file);
    return true;
}

void App::Event_OpenDocument(const std::shared_ptr<FolderItem>& item) {
    std::shared_ptr<MainWindow> window;
    try {
        CloseLaunchWindow();
        window = MainWindow::Create(*this, item);
        window->Show();
    } catch (const RuntimeException&) {
        Desktop().MsgBox("The file could not be opened.");
        return;
    }
    window->OfferRestore();
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
    dialog.OnlyTypes = true;
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
