#include "ui/NamedColors.h"

#include <array>

namespace sorbel::Platform::Colors {

namespace {

constexpr Color Black;

// --- Rules: how a colour is got from the source ---

/// For names that every supported system has.
Color Always(NamedColorSource& source, StringView name) {
    return source.Get(name).value_or(Black);
}

Color IfKnown(NamedColorSource& source, StringView name) {
    return source.Knows(name) ? Always(source, name) : Black;
}

Color Separator(NamedColorSource& source, StringView name) {
    return source.Knows(name) ? Always(source, name) : Color::FromRGB(0x99, 0x99, 0x99);
}

Color FindHighlight(NamedColorSource& source, StringView name) {
    return source.Knows(name) ? Always(source, name) : source.HighlightColor();
}

Color ControlAccent(NamedColorSource& source, StringView name) {
    if (source.Knows(name)) return Always(source, name);
    return Always(source, source.IsGraphite() ? "systemGrayColor" : "systemBlueColor");
}

Color UnemphasizedContent(NamedColorSource& source, StringView name) {
    return Always(source, source.Knows(name) ? name : "secondarySelectedControlColor");
}

/// The backgrounds of list rows exist as an array only, whose name has changed.
Color RowBackground(NamedColorSource& source, int64_t index, Color otherwise) {
    for (const StringView name :
         {"controlAlternatingRowBackgroundColors", "alternatingContentBackgroundColors"})
        if (source.Knows(name)) return source.Get(name, index).value_or(Black);
    return otherwise;
}

Color PrimaryContent(NamedColorSource& source, StringView) {
    return RowBackground(source, 0, Color::FromRGB(0xFF, 0xFF, 0xFF));
}

Color SecondaryContent(NamedColorSource& source, StringView) {
    return RowBackground(source, 1, Color::FromRGB(0xF5, 0xF5, 0xF5));
}

struct NamedRule {
    StringView Name;
    Color (*Rule)(NamedColorSource& source, StringView name);
};

constexpr std::array<NamedRule, 59> Rules{{
    {"labelColor", IfKnown},
    {"secondaryLabelColor", IfKnown},
    {"tertiaryLabelColor", IfKnown},
    {"quaternaryLabelColor", IfKnown},
    {"textColor", Always},
    {"placeholderTextColor", IfKnown},
    {"selectedTextColor", Always},
    {"textBackgroundColor", Always},
    {"selectedTextBackgroundColor", Always},
    {"keyboardFocusIndicatorColor", Always},
    {"unemphasizedSelectedTextColor", IfKnown},
    {"unemphasizedSelectedTextBackgroundColor", IfKnown},
    {"linkColor", IfKnown},
    {"separatorColor", Separator},
    {"selectedContentBackgroundColor", IfKnown},
    {"unemphasizedSelectedContentBackgroundColor", UnemphasizedContent},
    {"selectedMenuItemTextColor", Always},
    {"gridColor", Always},
    {"headerTextColor", Always},
    {"primaryContentBackgroundColor", PrimaryContent},
    {"secondaryContentBackgroundColor", SecondaryContent},
    {"controlAccentColor", ControlAccent},
    {"controlColor", Always},
    {"selectedControlColor", Always},
    {"controlBackgroundColor", Always},
    {"controlTextColor", Always},
    {"disabledControlTextColor", Always},
    {"selectedControlTextColor", Always},
    {"alternateSelectedControlTextColor", Always},
    {"windowBackgroundColor", Always},
    {"windowFrameTextColor", Always},
    {"underPageBackgroundColor", Always},
    {"findHighlightColor", FindHighlight},
    {"highlightColor", Always},
    {"shadowColor", Always},
    {"systemBlueColor", IfKnown},
    {"systemBrownColor", IfKnown},
    {"systemGrayColor", IfKnown},
    {"systemGreenColor", IfKnown},
    {"systemOrangeColor", IfKnown},
    {"systemPinkColor", IfKnown},
    {"systemPurpleColor", IfKnown},
    {"systemRedColor", IfKnown},
    {"systemYellowColor", IfKnown},
    {"clearColor", IfKnown},
    {"blackColor", IfKnown},
    {"blueColor", IfKnown},
    {"brownColor", IfKnown},
    {"cyanColor", IfKnown},
    {"darkGrayColor", IfKnown},
    {"grayColor", IfKnown},
    {"greenColor", IfKnown},
    {"lightGrayColor", IfKnown},
    {"magentaColor", IfKnown},
    {"orangeColor", IfKnown},
    {"purpleColor", IfKnown},
    {"redColor", IfKnown},
    {"whiteColor", IfKnown},
    {"yellowColor", IfKnown},
}};

}  // namespace

Color GetMacNamedColorInternal(NamedColorSource& source, StringView name) {
    for (const NamedRule& known : Rules)
        if (Equal(name, known.Name)) return known.Rule(source, known.Name);
    return Black;
}

}  // namespace sorbel::Platform::Colors
