#include "editing/InternalChange.h"
#include "editing/MainWindow.h"
#include "interchange/DelimitedText.h"
#include "interchange/Merge.h"
#include "language/LocalizationSupport.h"
#include "shell/FileTypes1.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

namespace {

String NameAndCode(StringView code) {
    return LocalizationSupport::ISOCodeToLangauge(code) + " (" + String(code) + ")";
}

}  // namespace

bool MainWindow::_FileImportExistingFile_Action() {
    OpenDialog dialog;
    dialog.Filter = FileTypes1::NorvaneLocale() + FileTypes1::TabDelimited() + FileTypes1::KestrumLocale();
    const std::shared_ptr<FolderItem> f = dialog.ShowModalWithin(*this);
    const Busy busy(App().Desktop(), f != nullptr);
    if (f && ImportFile(*f) == Imported::Cancelled) return false;
    RefreshAfterImport();
    return false;
}

void MainWindow::RefreshAfterImport() {
    FilterStrings();
    RebuildHistoryPopup();
    BringDirtyInStep();
}

MainWindow::Imported MainWindow::ImportFile(const FolderItem& f) {
    if (const auto imported = LocaleForImport(f)) return MergeLocale(*imported);
    if (!DetectFileFormat(f)) {
        App().Desktop().MsgBox("The file \"" + f.DisplayName() + "\" could not be imported.\r\r" +
                               "The format of the file is not one that Sorbel can import.");
    }
    return Imported::Done;
}

MainWindow::Imported MainWindow::MergeLocale(const LocalizedStringSet& imported) {
    if (!Equal(imported.Language, StringSet->Language) && !AskLanguage(imported.Language))
        return Imported::Cancelled;
    auto change = ChangesFromLocale(StringSet, imported);
    const InternalChange guard(IsInternalChange);
    undoManager->Add(std::move(change), true);
    return Imported::Done;
}

/// The language is stored directly: undoing the import is meant to leave it, and the label keeps its text.
bool MainWindow::AskLanguage(StringView importedLanguage) {
    const String current = NameAndCode(StringSet->Language);
    const String imported = NameAndCode(importedLanguage);
    MessageDialog dialog;
    dialog.Type = MessageDialog::Kind::Caution;
    dialog.Message = "The file selected is not the same language as the current file.";
    dialog.Explanation = "The current file is " + current + " but the file being imported is " + imported +
                         ". Select which language to use, or click cancel to cancel the import.";
    dialog.ActionButton.Caption = current;
    dialog.AlternateActionButton.Caption = imported;
    dialog.AlternateActionButton.Visible = true;
    dialog.CancelButton.Visible = true;
    const MessageDialogButton* pressed = dialog.ShowModalWithin(*this);
    if (pressed == &dialog.CancelButton) return false;
    if (pressed == &dialog.AlternateActionButton) StringSet->Language = importedLanguage;
    return true;
}

bool MainWindow::DetectFileFormat(const FolderItem& f) {
    auto change = ChangesFromDelimitedText(StringSet, f);
    if (!change) return false;
    undoManager->Add(std::move(change), true);
    return true;
}

}  // namespace sorbel
