#include "scripting/ScriptContext.h"

#include <algorithm>

#include "platform/Clock.h"
#include "scripting/FrontDocument.h"
#include "ui/toolkit/Application.h"
#include "ui/toolkit/Dialogs.h"

namespace sorbel::Scripting {

namespace {

using script::HostMember;
using script::HostParameter;
using script::HostType;
using script::HostValue;
using Form = HostMember::Form;

/// In the order of `Members()`.
enum Member {
    BeepCall,
    CurrentRowGet,
    CurrentRowSet,
    DefaultTextGet,
    FirstRowGet,
    LastRowGet,
    ShowDialog4,
    ShowDialog5,
    ShowDialog6,
    TranslatedtextGet,
    TranslatedtextSet
};

std::vector<HostParameter> DialogParameters(size_t count) {
    std::vector<HostParameter> parameters = {
        {"message", HostType::Text},          {"explanation", HostType::Text},
        {"actionCaption", HostType::Text},    {"cancelCaption", HostType::Text},
        {"alternateCaption", HostType::Text}, {"icon", HostType::Integer},
    };
    parameters.resize(count);
    return parameters;
}

String TextOf(const HostValue& value) {
    return std::get<String>(value);
}

bool IsBlank(StringView caption) {
    return Trim(caption).empty();
}

void ShowButton(MessageDialogButton& button, StringView caption) {
    if (IsBlank(caption)) return;
    button.Visible = true;
    button.Caption = caption;
}

}  // namespace

std::vector<HostMember> ScriptContext::Members() const {
    return {
        {Form::Method, "Beep", {}, HostType::Nothing},
        {Form::Get, "CurrentRow", {}, HostType::Integer},
        {Form::Set, "CurrentRow", {{"row", HostType::Integer}}, HostType::Nothing},
        {Form::Get, "DefaultText", {}, HostType::Text},
        {Form::Get, "FirstRow", {}, HostType::Integer},
        {Form::Get, "LastRow", {}, HostType::Integer},
        {Form::Method, "ShowDialog", DialogParameters(4), HostType::Text},
        {Form::Method, "ShowDialog", DialogParameters(5), HostType::Text},
        {Form::Method, "ShowDialog", DialogParameters(6), HostType::Text},
        {Form::Get, "Translatedtext", {}, HostType::Text},
        {Form::Set, "Translatedtext", {{"text", HostType::Text}}, HostType::Nothing},
    };
}

HostValue ScriptContext::Call(size_t index, std::span<const HostValue> arguments) {
    const auto text = [&](size_t at) {
        return at < arguments.size() ? TextOf(arguments[at]) : String();
    };
    switch (index) {
        case BeepCall:
            Beep();
            return {};
        case CurrentRowGet:
            return CurrentRow();
        case CurrentRowSet:
            SetCurrentRow(std::get<int64_t>(arguments[0]));
            return {};
        case DefaultTextGet:
            return DefaultText();
        case FirstRowGet:
            return FirstRow();
        case LastRowGet:
            return LastRow();
        case ShowDialog4:
        case ShowDialog5:
        case ShowDialog6:
            return ShowDialog(text(0), text(1), text(2), text(3), text(4));
        case TranslatedtextGet:
            return Translatedtext();
        case TranslatedtextSet:
            SetTranslatedtext(text(0));
            return {};
        default:
            throw OutOfBoundsException("The host has no such member.");
    }
}

FrontDocument* ScriptContext::GetFrontWindow() const {
    for (int64_t index = 0; index < mApp.WindowCount(); ++index)
        if (auto* document = dynamic_cast<FrontDocument*>(&mApp.WindowAt(index))) return document;
    return nullptr;
}

void ScriptContext::Beep() {
    mApp.Desktop().Beep();
}

int64_t ScriptContext::CurrentRow() const {
    const FrontDocument* front = GetFrontWindow();
    return front ? front->SelectedRow() + 1 : -1;
}

void ScriptContext::SetCurrentRow(int64_t row) {
    if (FrontDocument* front = GetFrontWindow())
        front->SelectRow(std::clamp<int64_t>(row, 0, front->RowCount()) - 1);
}

String ScriptContext::DefaultText() const {
    const FrontDocument* front = GetFrontWindow();
    return front && front->SelectedRow() >= 0 ? front->DefaultText() : String();
}

int64_t ScriptContext::FirstRow() const {
    const FrontDocument* front = GetFrontWindow();
    return front && front->RowCount() > 0 ? 1 : 0;
}

int64_t ScriptContext::LastRow() const {
    const FrontDocument* front = GetFrontWindow();
    return front ? front->RowCount() : 0;
}

String ScriptContext::Translatedtext() const {
    const FrontDocument* front = GetFrontWindow();
    return front && front->SelectedRow() >= 0 ? front->TranslatedText() : String();
}

void ScriptContext::SetTranslatedtext(StringView text) {
    FrontDocument* front = GetFrontWindow();
    if (front && front->SelectedRow() >= 0) front->SetTranslatedText(text);
}

String ScriptContext::ShowDialog(StringView message, StringView explanation, StringView actionCaption,
                                 StringView cancelCaption, StringView alternateCaption, int64_t /*icon*/) {
    MessageDialog dialog;
    dialog.Message = message;
    dialog.Explanation = explanation;
    ShowButton(dialog.ActionButton, actionCaption);
    if (!IsBlank(actionCaption)) dialog.ActionButton.Default = true;
    ShowButton(dialog.CancelButton, cancelCaption);
    if (!IsBlank(cancelCaption)) dialog.CancelButton.Cancel = true;
    ShowButton(dialog.AlternateActionButton, alternateCaption);
    FrontDocument* front = GetFrontWindow();
    const MessageDialogButton* pressed =
        front ? dialog.ShowModalWithin(front->DocumentWindow()) : dialog.ShowModal(mApp);
    if (mApp.Desktop().LeftByEscape()) StopAtSecondEscape();
    return pressed ? pressed->Caption : String();
}

/// A script may show dialogs without end.
void ScriptContext::StopAtSecondEscape() {
    constexpr int64_t Second = 60;
    const int64_t now = Ticks();
    if (mLastEscape && now - *mLastEscape <= Second) throw script::StopScript();
    mLastEscape = now;
}

}  // namespace sorbel::Scripting
