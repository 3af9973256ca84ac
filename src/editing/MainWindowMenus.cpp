#include "editing/MainWindow.h"
#include "scripting/Scripting.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

void MainWindow::AddMenuHandlers() {
    AddMenuHandler("EditRedo", [this] { return _EditRedo_Action(); });
    AddMenuHandler("EditUndo", [this] { return _EditUndo_Action(); });
    AddMenuHandler("ExportExportandRun", [this] { return _ExportExportandRun_Action(); });
    AddMenuHandler("ExportExportTabDelimited", [this] { return _ExportExportTabDelimited_Action(); });
    AddMenuHandler("ExportExporttoApplication", [this] { return _ExportExporttoApplication_Action(); });
    AddMenuHandler("FileClose", [this] { return _FileClose_Action(); });
    AddMenuHandler("FileImportExistingFile", [this] { return _FileImportExistingFile_Action(); });
    AddMenuHandler("FileSave", [this] { return _FileSave_Action(); });
    AddMenuHandler("LocalizationNextItem", [this] { return _LocalizationNextItem_Action(); });
    AddMenuHandler("LocalizationOnlyShowNonlocalizedStrings",
                   [this] { return _LocalizationOnlyShowNonlocalizedStrings_Action(); });
    AddMenuHandler("LocalizationPreviousSring", [this] { return _LocalizationPreviousSring_Action(); });
}

void MainWindow::Event_EnableMenuItems() {
    EnableItem("EditUndo", undoManager->HasUndo());
    EnableItem("EditRedo", undoManager->HasRedo());
    EnableItem("FileSave", IsDirty);
    EnableItem("ExportExportandRun", StringSet->EditedApplication != nullptr);
    RebuildScriptsMenu();
}

/// Undo refreshes the menus once more in the operation that began with that. Nobody has seen them in between,
/// so one look at the folder is enough.
void MainWindow::RebuildScriptsMenu() {
    const std::optional<uint64_t> operation = App().Operation();
    if (operation && operation == mScriptsShownIn) return;
    MenuItem* const scripts = Item("ScriptsMenu");
    if (scripts && Scripting::RebuildMenu(*scripts, App())) mScriptsShownIn = operation;
}

bool MainWindow::_EditRedo_Action() {
    const Busy busy = BusyIfLarge();
    undoManager->Redo();
    BringDirtyInStep();
    return true;
}

bool MainWindow::_EditUndo_Action() {
    const Busy busy = BusyIfLarge();
    undoManager->Undo();
    BringDirtyInStep();
    return true;
}

bool MainWindow::_FileClose_Action() {
    Close();
    return true;
}

bool MainWindow::_FileSave_Action() {
    SaveFile();
    return false;
}

MenuItem* MainWindow::Item(StringView name) const {
    return MenuBar() ? MenuBar()->FindByName(name) : nullptr;
}

void MainWindow::EnableItem(StringView name, bool enabled) const {
    if (MenuItem* item = Item(name)) item->Enabled = enabled;
}

}  // namespace sorbel
