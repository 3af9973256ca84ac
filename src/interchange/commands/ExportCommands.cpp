#include "editing/MainWindow.h"
#include "interchange/DelimitedText.h"
#include "interchange/FrameworkStrings.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"
#include "platform/FileContents.h"
#include "shell/FileTypes1.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

namespace {

FolderItem ChildOf(const FolderItem& folder, StringView name) {
    const std::shared_ptr<FolderItem> child = folder.Child(name);
    if (!child) throw IOException("There is no place for \"" + String(name) + "\".");
    return *child;
}

/// Into the bundle's folder for the language. "Contents" and "Resources" must exist.
void UpdateMacApplication(const LocalizedStringSet& set) {
    const FolderItem resources = ChildOf(ChildOf(*set.EditedApplication, "Contents"), "Resources");
    const FolderItem folder = ChildOf(resources, set.Language + ".lproj");
    if (!folder.Exists()) folder.CreateAsFolder();
    WriteContents(ChildOf(folder, "Localizable.strings"), ToStringFile(set));
    const String framework = LocalizedMacFrameworkStrings(set.Language);
    if (!framework.empty()) WriteContents(ChildOf(folder, "NVFramework.strings"), framework);
}

/// Into the "Resources" folder beside the executable, which must exist.
void UpdateWindowsApplication(const LocalizedStringSet& set) {
    const std::shared_ptr<FolderItem> beside = set.EditedApplication->Parent();
    if (!beside) throw NilObjectException("The application has no parent folder.");
    WriteContents(ChildOf(ChildOf(*beside, "Resources"), set.Language + ".mo"), ToMoFile(set));
}

}  // namespace

bool MainWindow::_ExportExportTabDelimited_Action() {
    const std::shared_ptr<FolderItem> f =
        App().Desktop().AskSaveFile(FileTypes1::TabDelimited().Name, mDiskFile->DisplayName() + ".txt");
    if (!f) return true;
    const Busy busy(App().Desktop());
    WriteContents(*f, ToDelimitedText(*StringSet));
    return true;
}

bool MainWindow::_ExportExporttoApplication_Action() {
    OpenDialog dialog;
    dialog.Filter = FileTypes1::Application().Name;
    dialog.PromptText = "Select the application for this localization:";
    const std::shared_ptr<FolderItem> f = dialog.ShowModalWithin(*this);
    if (!f) return true;
    StringSet->EditedApplication = f;  // not an undo step; the next save writes it
    NoteUnsaved();
    ExportToApplication(false);
    return true;
}

bool MainWindow::_ExportExportandRun_Action() {
    ExportToApplication(true);
    return true;
}

void MainWindow::ExportToApplication(bool runAfterExport) {
    if (!StringSet->EditedApplication) return;
    const String ending = sorbel::Right(StringSet->EditedApplication->Name(), 4);
    if (Equal(ending, ".app") && StringSet->EditedApplication->Directory()) {
        UpdateApplication(UpdateMacApplication);
        if (runAfterExport) App().Desktop().Launch(*StringSet->EditedApplication);
    } else if (Equal(ending, ".exe")) {
        UpdateApplication(UpdateWindowsApplication);
    } else {
        App().Desktop().MsgBox(
            "Unable to export to application." + String(EndOfLine) + String(EndOfLine) +
            "Be sure to select a version of your application that was built with dynamic constants.");
    }
}

void MainWindow::UpdateApplication(void (*update)(const LocalizedStringSet& set)) {
    try {
        const Busy busy(App().Desktop());
        update(*StringSet);
    } catch (const std::exception&) {
        App().Desktop().MsgBox("Could not update application.");
    }
}

}  // namespace sorbel
