#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

#include "headless/JsonText.h"
#include "ui/toolkit/Backend.h"

namespace sorbel::headless {

/// A desktop without a screen: dialogs take answers that were queued for them, and whatever the program shows
/// or hands over is kept for the reply to the operation that is going on.
class HeadlessBackend : public Backend {
  public:
    /// A menu that popped up at a point of the screen; null if none did.
    struct PopUpRecord {
        Json Items;
        int X = 0, Y = 0;
    };

    // --- Answers ---
    /// "action", "cancel" or "alternate"; false for another name.
    bool QueueButton(StringView name);
    /// Null gives no file.
    void QueueFile(std::shared_ptr<FolderItem> f) { mFiles.push_back(std::move(f)); }
    [[nodiscard]] size_t Queued() const { return mButtons.size() + mFiles.size(); }
    /// The caption chosen in the menus that pop up from now on; nothing chooses none.
    void SetPopUpChoice(std::optional<String> caption) { mPopUpChoice = std::move(caption); }
    /// The menu that popped up last since this was asked last.
    std::optional<PopUpRecord> TakePopUp() { return std::exchange(mPopUp, std::nullopt); }

    // --- What the operation showed ---
    void StartRecord();
    /// Adds "shown", "launched", "beeps" and "notices".
    void AddRecordTo(Json& reply) const;

    // --- Backend ---
    void WindowShown(Window&) override {}
    void WindowClosed(Window&) override {}
    void RunModal(Window&) override {}  // there is no one to wait for
    void MenusChanged() override {}
    void MsgBox(StringView text) override;
    const MessageDialogButton* Show(const MessageDialog& dialog, Window* within) override;
    std::shared_ptr<FolderItem> Show(const OpenDialog& dialog, Window* within) override;
    std::shared_ptr<FolderItem> AskSaveFile(StringView filter, StringView defaultName) override;
    MenuItem* PopUp(MenuItem& menu, int x, int y) override;
    void SetBusy(bool) override {}  // nobody waits for it
    void Beep() override { ++mBeeps; }
    void Notify(StringView title, StringView text) override {
        mNotices.push_back({{"title", title}, {"text", text}});
    }
    void Launch(const FolderItem& item) override { mLaunched.push_back(item.NativePath()); }
    [[nodiscard]] Color Theme(SystemColor color) const override;
    [[nodiscard]] std::optional<Color> NamedColor(StringView name) const override;
    void Edit(TextEditor&, EditCommand) override {}  // a text has neither a selection nor a clipboard here

  private:
    enum class Button { Action, Cancel, Alternate };

    [[nodiscard]] Button NextButton(const MessageDialog& dialog);
    [[nodiscard]] std::shared_ptr<FolderItem> NextFile();

    std::deque<Button> mButtons;
    std::deque<std::shared_ptr<FolderItem>> mFiles;
    std::optional<String> mPopUpChoice;
    std::optional<PopUpRecord> mPopUp;
    Json mShown = Json::array();
    Json mLaunched = Json::array();
    Json mNotices = Json::array();
    int64_t mBeeps = 0;
};

}  // namespace sorbel::headless
