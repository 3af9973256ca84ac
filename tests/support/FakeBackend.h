#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Exceptions.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Backend.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel {

/// A desktop for tests: dialogs take queued answers, everything shown or handed over is kept for the test to
/// look at. A question without a queued answer fails the test, and so does an answer that nobody asked for.
class FakeBackend : public Backend {
  public:
    enum class Button { Action, Cancel, Alternate };

    ~FakeBackend() override {
        EXPECT_EQ(Busy, 0) << "Work that has begun has not ended.";
        if (!Buttons.empty() || !Files.empty() || !MenuChoices.empty())
            ADD_FAILURE() << "An answer was not used.";
    }

    // --- Answers, each taken by the next dialog of its sort ---
    std::deque<Button> Buttons;
    std::deque<std::optional<String>> Files;  ///< paths; nothing cancels
    std::deque<String> MenuChoices;           ///< the caption of the item to choose; empty for none
    /// What goes on while a modal window is up.
    std::function<void(Window&)> WhileModal;
    /// What goes on while a dialog is up.
    std::function<void()> WhileAsking;
    /// The screen is to be brought up to date.
    std::function<void()> WhenShowing;
    bool LaunchFails = false;
    bool EscapeLeaves = false;   ///< message dialogs
    bool EscapePressed = false;  ///< while long work goes on

    // --- What happened ---
    struct SaveQuestion {
        String Filter, DefaultName;
    };
    struct PoppedItem {
        String Text;
        bool Checked;
    };
    struct Popped {
        std::vector<PoppedItem> Items;
        int X, Y;
    };
    std::vector<String> Messages;  ///< texts of MsgBox
    std::vector<MessageDialog> MessageDialogs;
    std::vector<OpenDialog> OpenDialogs;
    std::vector<SaveQuestion> SaveQuestions;
    std::vector<Popped> PopUps;
    std::vector<String> Launched;                    ///< paths
    std::vector<std::pair<String, String>> Notices;  ///< titles and texts
    std::vector<EditCommand> Edits;
    std::vector<Window*> Attached;  ///< windows on screen, in the order in which they were shown
    Window* LastParent = nullptr;   ///< whose sheet the last dialog was
    int Beeps = 0;
    int Busy = 0;       ///< how many pieces of long work go on
    int BusyTimes = 0;  ///< how often one has begun
    int MenuChanges = 0;

    void WindowShown(Window& window) override { Attached.push_back(&window); }
    void WindowClosed(Window& window) override { std::erase(Attached, &window); }
    void RunModal(Window& window) override {
        if (WhileModal) WhileModal(window);
    }
    void MenusChanged() override { ++MenuChanges; }
    void ShowWaiting() override {
        if (WhenShowing) WhenShowing();
    }

    void MsgBox(StringView text) override { Messages.emplace_back(text); }
    const MessageDialogButton* Show(const MessageDialog& dialog, Window* within) override {
        MessageDialogs.push_back(dialog);
        LastParent = within;
        if (WhileAsking) WhileAsking();
        const std::optional<Button> pressed = Next(Buttons, dialog.Message);
        if (!pressed) return nullptr;
        const MessageDialogButton& button = *pressed == Button::Action   ? dialog.ActionButton
                                            : *pressed == Button::Cancel ? dialog.CancelButton
                                                                         : dialog.AlternateActionButton;
        EXPECT_TRUE(button.Visible) << "The button that is to be pressed cannot be seen.";
        return &button;
    }
    [[nodiscard]] bool LeftByEscape() const override { return EscapeLeaves; }
    std::shared_ptr<FolderItem> Show(const OpenDialog& dialog, Window* within) override {
        OpenDialogs.push_back(dialog);
        LastParent = within;
        if (WhileAsking) WhileAsking();
        return NextFile(dialog.PromptText);
    }
    std::shared_ptr<FolderItem> AskSaveFile(StringView filter, StringView defaultName) override {
        SaveQuestions.push_back({String(filter), String(defaultName)});
        return NextFile(defaultName);
    }
    MenuItem* PopUp(MenuItem& menu, int x, int y) override {
        Popped& popped = PopUps.emplace_back(Popped{{}, x, y});
        const String choice = Next(MenuChoices, "a menu").value_or(String());
        MenuItem* chosen = nullptr;
        for (size_t index = 0; index < menu.Count(); ++index) {
            MenuItem& item = menu.Item(index);
            popped.Items.push_back({item.Text(), item.Checked});
            if (item.Text() == choice) chosen = &item;
        }
        if (!chosen && !choice.empty()) ADD_FAILURE() << "No item \"" << choice << "\" in the menu.";
        return chosen;
    }

    void SetBusy(bool busy) override {
        Busy += busy ? 1 : -1;
        BusyTimes += busy ? 1 : 0;
    }
    [[nodiscard]] bool LookForEscape() override { return std::exchange(EscapePressed, false); }
    void Beep() override { ++Beeps; }
    void Notify(StringView title, StringView text) override { Notices.emplace_back(title, text); }
    void Launch(const FolderItem& item) override {
        if (LaunchFails) throw IOException("It cannot be launched.");
        Launched.push_back(item.NativePath());
    }
    [[nodiscard]] Color Theme(SystemColor color) const override {
        switch (color) {
            case SystemColor::Text:
                return {0x111111};
            case SystemColor::DisabledText:
                return {0x777777};
            case SystemColor::Highlight:
                return {0x3366FF};
            case SystemColor::Fill:
                return {0xEEEEEE};
        }
        return {};
    }
    [[nodiscard]] std::optional<Color> NamedColor(StringView name) const override {
        static constexpr std::pair<StringView, uint32_t> colors[] = {{"selectedTextColor", 0xFEFEFE},
                                                                     {"secondaryLabelColor", 0x555555},
                                                                     {"tertiaryLabelColor", 0xAAAAAA},
                                                                     {"quaternaryLabelColor", 0xCCCCCC},
                                                                     {"controlBackgroundColor", 0xFAFAFA}};
        for (const auto& [known, value] : colors)
            if (Equal(known, name)) return Color{value};
        return std::nullopt;
    }
    void Edit(TextEditor&, EditCommand command) override { Edits.push_back(command); }

  private:
    template <typename Answer>
    static std::optional<Answer> Next(std::deque<Answer>& answers, StringView question) {
        if (answers.empty()) {
            ADD_FAILURE() << "Nobody queued an answer for \"" << question << "\".";
            return std::nullopt;
        }
        Answer answer = std::move(answers.front());
        answers.pop_front();
        return answer;
    }
    std::shared_ptr<FolderItem> NextFile(StringView question) {
        const std::optional<String> path = Next(Files, question).value_or(std::nullopt);
        return path ? std::make_shared<FolderItem>(*path) : nullptr;
    }
};

}  // namespace sorbel
