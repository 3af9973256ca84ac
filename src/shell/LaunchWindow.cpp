#include "shell/LaunchWindow.h"

#include "shell/App.h"
#include "ui/Icons.h"
#include "ui/PlatformColors.h"

namespace sorbel {

namespace {

constexpr StringView Explanation =
    "Sorbel is an assistant designed to help translators localize applications. To use this application, "
    "open the "
    "Sorbel file that the developer needs localized. The list to the left will display all the strings the "
    "developer "
    "has chosen to localize. Selecting one will allow localization of that value.\r\r"
    "By expanding a value in the list, it is possible to add platform-specific localizations as needed. For "
    "example, "
    "on Windows and Linux the menu to quit the application is named \"E&&xit\" but on the Macintosh it is "
    "\"Quit.\"";

}  // namespace

LaunchWindow::LaunchWindow(sorbel::App& app)
    : Window(app, "Welcome to Sorbel", {480, 282}),
      Canvas1(*this, "Canvas1", {0, 0, 132, 282}),
      StaticText1(*this, "StaticText1", {16, 152, 100, 90}),
      StaticText2(*this, "StaticText2", {144, 14, 316, 223}, {}, 0),
      PushButton1(*this, "PushButton1", {368, 242, 92, 20}, {}, 1),
      mOwner(app) {
    HasMinimizeButton = false;
    Centred = true;
    Canvas1.SetAccessibleName("Sorbel");
    Canvas1.Paint = [this](Graphics& g) {
        Canvas1_Paint(g);
    };
    StaticText1.SetText("Open a Sorbel file to begin localizing.");
    StaticText1.Alignment = TextAlignment::Center;
    StaticText2.SetText(Explanation);
    for (Label* label : {&StaticText1, &StaticText2}) {
        label->Multiline = true;
        label->SetTextColor(app.Desktop().Theme(SystemColor::Text));
    }
    PushButton1.Caption = "Open...";
    PushButton1.Action = [this] {
        PushButton1_Action();
    };
    AddMenuHandler("FileClose", [this] { return _FileClose_Action(); });
}

void LaunchWindow::Canvas1_Paint(Graphics& g) {
    g.SetForeColor(Platform::Colors::ControlBackgroundColor());
    g.FillRect(0, 0, g.Width(), g.Height());
    g.SetForeColor(Platform::Colors::SecondaryLabelColor());
    g.DrawLine(g.Width() - 1, 0, g.Width() - 1, g.Height());
    g.DrawPicture(*Icons::GetIcon("SorbelIcon"), 0, 10);
    g.SetForeColor(Platform::Colors::TextColor());
}

void LaunchWindow::PushButton1_Action() {
    if (mOwner.OpenADocument(this)) Close();
    if (ShouldClose) Close();  // a document came by another way while the dialog was up
}

bool LaunchWindow::_FileClose_Action() {
    Close();
    return true;
}

}  // namespace sorbel
