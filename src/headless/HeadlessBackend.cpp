#include "headless/HeadlessBackend.h"

#include "headless/Describe.h"
#include "ui/toolkit/Dialogs.h"
#include "ui/toolkit/MenuItem.h"

namespace sorbel::headless {

namespace {

constexpr StringView ButtonNames[] = {"action", "cancel", "alternate"};

Json Caption(const MessageDialogButton& button) {
    return button.Visible ? Json(button.Caption) : Json();
}

Json PathOrNull(const std::shared_ptr<FolderItem>& f) {
    return f ? Json(f->NativePath()) : Json();
}

}  // namespace

bool HeadlessBackend::QueueButton(StringView name) {
    for (const Button button : {Button::Action, Button::Cancel, Button::Alternate}) {
        if (name != ButtonNames[static_cast<size_t>(button)]) continue;
        mButtons.push_back(button);
        return true;
    }
    return false;
}

void HeadlessBackend::StartRecord() {
    mShown = Json::array();
    mLaunched = Json::array();
    mNotices = Json::array();
    mBeeps = 0;
}

void HeadlessBackend::AddRecordTo(Json& reply) const {
    reply["shown"] = mShown;
    reply["launched"] = mLaunched;
    reply["beeps"] = mBeeps;
    reply["notices"] = mNotices;
}

void HeadlessBackend::MsgBox(StringView text) {
    mShown.push_back({{"kind", "MsgBox"}, {"text", text}});
}

HeadlessBackend::Button HeadlessBackend::NextButton(const MessageDialog& dialog) {
    if (mButtons.empty()) return dialog.CancelButton.Visible ? Button::Cancel : Button::Action;
    const Button button = mButtons.front();
    mButtons.pop_front();
    return button;
}

const MessageDialogButton* HeadlessBackend::Show(const MessageDialog& dialog, Window* within) {
    const Button button = NextButton(dialog);
    const MessageDialogButton* buttons[] = {&dialog.ActionButton, &dialog.CancelButton,
                                            &dialog.AlternateActionButton};
    const MessageDialogButton* pressed = buttons[static_cast<size_t>(button)];
    // Nobody can press a button that is not there: the dialog goes away without one.
    if (!pressed->Visible) pressed = nullptr;
    mShown.push_back({{"kind", "MessageDialog"},
                      {"message", dialog.Message},
                      {"explanation", dialog.Explanation},
                      {"action", Caption(dialog.ActionButton)},
                      {"cancel", Caption(dialog.CancelButton)},
                      {"alternate", Caption(dialog.AlternateActionButton)},
                      {"within", within != nullptr},
                      {"pressed", pressed ? Json(ButtonNames[static_cast<size_t>(button)]) : Json()}});
    return pressed;
}

std::shared_ptr<FolderItem> HeadlessBackend::NextFile() {
    if (mFiles.empty()) return nullptr;
    std::shared_ptr<FolderItem> f = mFiles.front();
    mFiles.pop_front();
    return f;
}

std::shared_ptr<FolderItem> HeadlessBackend::Show(const OpenDialog& dialog, Window* within) {
    std::shared_ptr<FolderItem> chosen = NextFile();
    mShown.push_back({{"kind", "OpenDialog"},
                      {"filter", dialog.Filter},
                      {"prompt", dialog.PromptText},
                      {"within", within != nullptr},
                      {"chosen", PathOrNull(chosen)}});
    return chosen;
}

std::shared_ptr<FolderItem> HeadlessBackend::AskSaveFile(StringView filter, StringView defaultName) {
    std::shared_ptr<FolderItem> chosen = NextFile();
    mShown.push_back({{"kind", "SaveDialog"},
                      {"filter", filter},
                      {"defaultName", defaultName},
                      {"chosen", PathOrNull(chosen)}});
    return chosen;
}

MenuItem* HeadlessBackend::PopUp(MenuItem& menu, int x, int y) {
    mPopUp = PopUpRecord{Json::array(), x, y};
    MenuItem* chosen = nullptr;
    for (size_t index = 0; index < menu.Count(); ++index) {
        MenuItem& item = menu.Item(index);
        mPopUp->Items.push_back({{"text", item.Text()}, {"checked", item.Checked}});
        if (mPopUpChoice && item.Text() == *mPopUpChoice) chosen = &item;
    }
    return chosen;
}

Color HeadlessBackend::Theme(SystemColor color) const {
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

std::optional<Color> HeadlessBackend::NamedColor(StringView name) const {
    static constexpr std::pair<StringView, Color> Named[] = {
        {"selectedTextColor", {0xFEFEFE}},      {"secondaryLabelColor", {0x555555}},
        {"tertiaryLabelColor", {0xAAAAAA}},     {"quaternaryLabelColor", {0xCCCCCC}},
        {"controlBackgroundColor", {0xFAFAFA}},
    };
    for (const auto& [known, color] : Named)
        if (Equal(name, known)) return color;
    return std::nullopt;
}

}  // namespace sorbel::headless
