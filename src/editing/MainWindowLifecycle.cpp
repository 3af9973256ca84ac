#include "editing/MainWindow.h"
#include "journal/Journal.h"
#include "journal/LeftJournal.h"
#include "language/LocalizationSupport.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

std::shared_ptr<MainWindow> MainWindow::Create(Application& app, const std::shared_ptr<FolderItem>& f) {
    const Busy busy(app.Desktop());
    auto window = std::make_shared<MainWindow>(app);
    window->Constructor(f);
    return window;
}

MainWindow::~MainWindow() {
    // A window whose file could not be read was never opened, so never closed.
    if (StringSet) Notifications::RemoveObserver(StringSet.get(), *this);
}

void MainWindow::Constructor(const std::shared_ptr<FolderItem>& f) {
    StringSet = std::make_shared<LocalizedStringSet>();
    Notifications::AddObserver(StringSet.get(), *this);
    const bool completed = CompleteInterruptedSave(*f);
    if (!StringSet->ReadFile(*f)) throw RuntimeException("The file is not a valid locale file.");
    ShowAllStrings();
    mDiskFile = f;
    SetTitle(f->DisplayName());
    undoManager = std::make_unique<UndoManager>([this] { App().EnableMenuItems(); });
    UpdateProxyIcon();
    UpdateLanguage();
    RebuildHistoryPopup();
    StartJournal();
    if (completed)
        App().Desktop().Notify("“" + f->DisplayName() + "” was repaired",
                               "Its last save had been interrupted and is now complete.");
}

void MainWindow::SaveFile() {
    WriteDocument();
    undoManager->MarkSave();
    IsDirty = false;
    UpdateProxyIcon();
}

void MainWindow::WriteDocument() {
    const Busy busy(App().Desktop());
    StringSet->WriteFile(*mDiskFile, [this](const FolderItem&, StringView bytes) { SaveSafely(bytes); });
}

/// For a pass over all strings: from this number on it may be felt, below it a sign of it would only flicker.
Busy MainWindow::BusyIfLarge() const {
    constexpr int64_t large = 100000;
    return Busy(App().Desktop(), StringSet->Entries.Count() >= large);
}

void MainWindow::UpdateProxyIcon() {
    SetRepresentedFile(mDiskFile);
    SetContentsChanged(IsDirty);
}

void MainWindow::UpdateLanguage() {
    const String language = LocalizationSupport::ISOCodeToLangauge(StringSet->Language);
    TranslationText.SetText(language.empty() ? "&Translation:" : language + " &Translation:");
    LocalizedValueField.SetSpellingLanguage(StringSet->Language);
}

void MainWindow::BringDirtyInStep() {
    if (undoManager->HasChangedSinceSave() == IsDirty) return;
    IsDirty = !IsDirty;
    UpdateProxyIcon();
}

bool MainWindow::Event_CancelClose(bool /*appQuitting*/) {
    if (!IsDirty) return false;
    MessageDialog dialog;
    dialog.Message = "Do you want to save changes?";
    dialog.ActionButton.Caption = "&Save";
    dialog.CancelButton.Visible = true;
    dialog.AlternateActionButton.Caption = "&Don't Save";
    dialog.AlternateActionButton.Visible = true;
    const MessageDialogButton* pressed = dialog.ShowModalWithin(*this);
    if (pressed == &dialog.CancelButton) return true;
    if (pressed == &dialog.ActionButton) WriteDocument();
    if (pressed == &dialog.AlternateActionButton && mJournal) mJournal->Discard();
    return false;
}

void MainWindow::Event_Close() {
    Notifications::RemoveObserver(StringSet.get(), *this);
    mJournal.reset();
}

}  // namespace sorbel
