#pragma once

#include "platform/Dictionary.h"
#include "ui/toolkit/Application.h"

namespace sorbel::test {

/// A desktop with nothing on it but a theme.
class TestDesktop : public Backend {
  public:
    Dictionary<String, Color> Colors;
    mutable int Asked = 0;

    void WindowShown(Window&) override {}
    void WindowClosed(Window&) override {}
    void RunModal(Window&) override {}
    void MenusChanged() override {}
    void MsgBox(StringView) override {}
    const MessageDialogButton* Show(const MessageDialog&, Window*) override { return nullptr; }
    std::shared_ptr<FolderItem> Show(const OpenDialog&, Window*) override { return nullptr; }
    std::shared_ptr<FolderItem> AskSaveFile(StringView, StringView) override { return nullptr; }
    MenuItem* PopUp(MenuItem&, int, int) override { return nullptr; }
    void SetBusy(bool) override {}
    void Beep() override {}
    void Notify(StringView, StringView) override {}
    void Launch(const FolderItem&) override {}
    [[nodiscard]] Color Theme(SystemColor color) const override {
        return Color::FromRGB(7, static_cast<unsigned>(color), 7);
    }
    [[nodiscard]] std::optional<Color> NamedColor(StringView name) const override {
        ++Asked;
        const Color* color = Colors.Find(name);
        return color ? std::optional(*color) : std::nullopt;
    }
    void Edit(TextEditor&, EditCommand) override {}
};

}  // namespace sorbel::test
