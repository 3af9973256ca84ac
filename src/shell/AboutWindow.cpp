#include "shell/AboutWindow.h"

#include "shell/App.h"
#include "ui/Icons.h"

namespace sorbel {

AboutWindow::AboutWindow(sorbel::App& app)
    : Window(app, "About Sorbel", {300, 202}),
      Canvas1(*this, "Canvas1", {86, 14, 128, 128}),
      StaticText1(*this, "StaticText1", {20, 162, 260, 20}) {
    Type = Kind::MovableModal;
    Canvas1.SetAccessibleName("Sorbel");
    Canvas1.Paint = [](Graphics& g) {
        g.DrawPicture(*Icons::GetIcon("SorbelIcon"), 0, 0);
    };
    StaticText1.Alignment = TextAlignment::Center;
    StaticText1.Transparent = false;
    StaticText1.SetText(sorbel::App::ShortVersion());
    StaticText1.SetTextColor(app.Desktop().Theme(SystemColor::Text));
}

bool AboutWindow::Event_KeyDown(StringView /*key*/) {
    Close();
    return false;
}

bool AboutWindow::Event_MouseDown(int /*x*/, int /*y*/) {
    Close();
    return false;
}

}  // namespace sorbel
