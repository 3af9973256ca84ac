#include "editing/MainWindow.h"
#include "interchange/ApplicationExport.h"
#include "interchange/DelimitedText.h"
#include "platform/FileContents.h"
#include "shell/FileTypes1.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

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
    const ApplicationKind kind = KindOfApplication(*StringSet->EditedApplication);
    if (kind == ApplicationKind::Other) {
        App().Desktop().MsgBox(String(NoPlaceInApplication) + String(EndOfLine) + String(EndOfLine) +
                               String(AdviceOnApplications));
        return;
    }
    UpdateApplication();
    if (runAfterExport && kind == ApplicationKind::Mac) App().Desktop().Launch(*StringSet->EditedApplication);
}

void MainWindow::UpdateApplication() {
    try {
        const Busy busy(App().Desktop());
        ExportIntoApplication(*StringSet, *StringSet->EditedApplication);
    } catch (const std::exception&) {
        App().Desktop().MsgBox("Could not update application.");
    }
}

}  // namespace sorbel
