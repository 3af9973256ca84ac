#include "qt/QtTheme.h"

#include <QGuiApplication>
#include <QPalette>
#include <array>

namespace sorbel {

namespace {

/// A colour of the palette, or the text colour with less opacity laid over the base.
struct NamedRole {
    StringView Name;
    QPalette::ColorRole Role;
    double Opacity = 1.0;
};

constexpr std::array Names = {
    NamedRole{"labelColor", QPalette::WindowText},
    NamedRole{"secondaryLabelColor", QPalette::Text, 0.55},
    NamedRole{"tertiaryLabelColor", QPalette::Text, 0.26},
    NamedRole{"quaternaryLabelColor", QPalette::Text, 0.15},
    NamedRole{"textColor", QPalette::Text},
    NamedRole{"placeholderTextColor", QPalette::PlaceholderText},
    NamedRole{"selectedTextColor", QPalette::HighlightedText},
    NamedRole{"textBackgroundColor", QPalette::Base},
    NamedRole{"selectedTextBackgroundColor", QPalette::Highlight},
    NamedRole{"keyboardFocusIndicatorColor", QPalette::Highlight},
    NamedRole{"linkColor", QPalette::Link},
    NamedRole{"selectedContentBackgroundColor", QPalette::Highlight},
    NamedRole{"selectedMenuItemTextColor", QPalette::HighlightedText},
    NamedRole{"gridColor", QPalette::Mid},
    NamedRole{"headerTextColor", QPalette::ButtonText},
    NamedRole{"controlAccentColor", QPalette::Highlight},
    NamedRole{"controlColor", QPalette::Button},
    NamedRole{"selectedControlColor", QPalette::Highlight},
    NamedRole{"controlBackgroundColor", QPalette::Base},
    NamedRole{"controlTextColor", QPalette::ButtonText},
    NamedRole{"disabledControlTextColor", QPalette::Text, 0.55},
    NamedRole{"selectedControlTextColor", QPalette::HighlightedText},
    NamedRole{"alternateSelectedControlTextColor", QPalette::HighlightedText},
    NamedRole{"windowBackgroundColor", QPalette::Window},
    NamedRole{"windowFrameTextColor", QPalette::WindowText},
    NamedRole{"highlightColor", QPalette::Highlight},
    NamedRole{"shadowColor", QPalette::Shadow},
};

QColor Role(QPalette::ColorRole role, double opacity = 1.0) {
    const QColor color = QGuiApplication::palette().color(QPalette::Active, role);
    const QColor base = QGuiApplication::palette().color(QPalette::Active, QPalette::Base);
    const auto mix = [opacity](int over, int under) {
        return static_cast<int>(over * opacity + under * (1 - opacity) + 0.5);
    };
    return {mix(color.red(), base.red()), mix(color.green(), base.green()), mix(color.blue(), base.blue())};
}

}  // namespace

QColor ToQColor(Color color) {
    return QColor(static_cast<int>(color.Red()), static_cast<int>(color.Green()),
                  static_cast<int>(color.Blue()), 255 - static_cast<int>(color.Alpha()));
}

Color FromQColor(const QColor& color) {
    const auto byte = [](int value) {
        return static_cast<unsigned>(value);
    };
    return Color::FromRGB(byte(color.red()), byte(color.green()), byte(color.blue()),
                          byte(255 - color.alpha()));
}

Color QtTheme::System(SystemColor color) const {
    switch (color) {
        case SystemColor::Highlight:
            return FromQColor(Role(QPalette::Highlight));
        case SystemColor::Fill:
            return FromQColor(Role(QPalette::Window));
        case SystemColor::Text:
        case SystemColor::DisabledText:
            break;
    }
    const Color told = FromQColor(Role(QPalette::Text, color == SystemColor::Text ? 1.0 : 0.55));
    mTold.insert_or_assign(told.Value, color);
    return told;
}

std::optional<Color> QtTheme::Named(StringView name) {
    for (const NamedRole& known : Names)
        if (Equal(known.Name, name)) return FromQColor(Role(known.Role, known.Opacity));
    return std::nullopt;
}

Color QtTheme::Present(Color color) const {
    const auto told = mTold.find(color.Value);
    return told == mTold.end() ? color : System(told->second);
}

}  // namespace sorbel
