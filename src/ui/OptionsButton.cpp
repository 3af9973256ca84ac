#include "ui/OptionsButton.h"

#include "ui/Icons.h"
#include "ui/PlatformColors.h"

namespace sorbel {

void OptionsButton::Event_Paint(Graphics& g) {
    g.SetForeColor(Platform::Colors::ControlBackgroundColor());
    g.FillRect(0, 0, g.Width(), g.Height());
    if (Icon) {
        const int x = static_cast<int>((g.Width() - Icon->Width()) / 2.0);
        const int y = static_cast<int>((g.Height() - Icon->Height()) / 2.0);
        const Color tint = Platform::Colors::TextColor();
        g.DrawPicture(*Icons::CreateImageFromMaskWithTint(*Icon, tint, 1.0), x, y);
    }
    g.SetForeColor(Platform::Colors::ControlBorderColor());
    g.DrawRect(0, 0, g.Width(), g.Height());
}

}  // namespace sorbel
