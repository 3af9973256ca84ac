#include "shell/MenuBar1.h"

namespace sorbel {

namespace {

constexpr bool NotAutomatic = false;  // enabled by the front window only

MenuItem& Add(MenuItem& menu, const char* name, const char* text, const char* shortcut = "",
              bool automatic = true) {
    return menu.Append(std::make_unique<MenuItem>(name, text, shortcut, automatic));
}

void AddSeparator(MenuItem& menu, const char* name) {
    Add(menu, name, "-");
}

void FileExport(MenuItem& file) {
    MenuItem& menu = Add(file, "FileExport", "Export");
    Add(menu, "ExportExporttoApplication", "&To Application...", "Cmd+E");
    Add(menu, "ExportExportandRun", "To Application and &Run", "Cmd+R", NotAutomatic);
    AddSeparator(menu, "UntitledItem");
    Add(menu, "ExportExportTabDelimited", "&Tab Delimited...");
}

void FileMenu(MenuBar& bar) {
    MenuItem& menu = Add(bar, "FileMenu", "&File");
    Add(menu, "FileOpen", "Open", "Cmd+O");
    Add(menu, "FileClose", "Close", "Cmd+W");
    AddSeparator(menu, "File");
    Add(menu, "FileSave", "Save", "Cmd+S", NotAutomatic);
    AddSeparator(menu, "File2");
    Add(menu, "FileImportExistingFile", "Import Existing File...", "Cmd+I");
    FileExport(menu);
    AddSeparator(menu, "File1");
    Add(menu, "FileQuit", "Quit", "Cmd+Q").Role = MenuRole::Quit;
}

void EditMenu(MenuBar& bar) {
    MenuItem& menu = Add(bar, "EditMenu", "&Edit");
    Add(menu, "EditUndo", "&Undo", "Cmd+Z", NotAutomatic);
    Add(menu, "EditRedo", "Redo", "Cmd+Shift+Z", NotAutomatic);
    AddSeparator(menu, "UntitledMenu1");
    Add(menu, "EditCut", "Cu&t", "Cmd+X").Edit = EditCommand::Cut;
    Add(menu, "EditCopy", "&Copy", "Cmd+C").Edit = EditCommand::Copy;
    Add(menu, "EditPaste", "&Paste", "Cmd+V").Edit = EditCommand::Paste;
    Add(menu, "EditClear", "Clear").Edit = EditCommand::Clear;
    AddSeparator(menu, "UntitledMenu0");
    Add(menu, "EditSelectAll", "Select &All", "Cmd+A").Edit = EditCommand::SelectAll;
}

/// Its items are made from the user's scripts.
void ScriptsMenu(MenuBar& bar) {
    Add(bar, "ScriptsMenu", "Scripts");
}

void LocalizationMenu(MenuBar& bar) {
    MenuItem& menu = Add(bar, "LocalizationMenu", "Localization");
    Add(menu, "LocalizationOnlyShowNonlocalizedStrings", "Only Show Non-localized Strings", "Cmd+K")
        .Checkable = true;
    Add(Add(menu, "LocalizationLanguage", "Language"), "LanguageMenu", "Languages");
    Add(menu, "LocalizationNextItem", "Next String", "Cmd+]");
    Add(menu, "LocalizationPreviousSring", "Previous String", "Cmd+[");
    AddSeparator(menu, "UntitledSeparator");
    Add(menu, "AboutSorbel", "About Sorbel").Role = MenuRole::About;
}

}  // namespace

std::unique_ptr<MenuBar> MakeMenuBar1() {
    auto bar = std::make_unique<MenuBar>();
    FileMenu(*bar);
    EditMenu(*bar);
    ScriptsMenu(*bar);
    LocalizationMenu(*bar);
    return bar;
}

}  // namespace sorbel
