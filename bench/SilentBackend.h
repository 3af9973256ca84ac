#pragma once

#include "ui/toolkit/Backend.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel::bench {

/// A desktop that shows nothing, presses the action button and opens the file it was given.
class SilentBackend : public Backend {
  public:
    std::shared_ptr<FolderItem> File;  ///< the answer to every file dialog
    int Messages = 0;                  ///< boxes that came up: an operation that is measured raises none

    void WindowShown(Window&) override {}
    void WindowClosed(Window&) override {}
    void RunModal(Window&) override {}
    void MenusChanged() override {}

    void MsgBox(StringView) override { ++Messages; }
    const MessageDialogButton* Show(const MessageDialog& dialog, Window*) override {
        ++Messages;
        return &dialog.ActionButton;
    }
    std::shared_ptr<FolderItem> Show(const OpenDialog&, Window*) override { return File; }
    std::shared_ptr<FolderItem> AskSaveFile(StringView, StringView) override { return File; }
    MenuItem* PopUp(MenuItem&, int, int) override { return nullptr; }

    void SetBusy(bool) override {}
    void Beep() override {}
    void Notify(StringView, StringView) override { ++Messages; }
    void Launch(const FolderItem&) override {}
    [[nodiscard]] Color Theme(SystemColor) const override { return {0x111111}; }
    [[nodiscard]] std::optional<Color> NamedColor(StringView) const override { return Color{0x777777}; }
    void Edit(TextEditor&, EditCommand) override {}
};

}  // namespace sorbel::bench
