#include "ui/PlatformColors.h"

#include <map>

#include "ui/NamedColors.h"
#include "ui/toolkit/Backend.h"

namespace sorbel::Platform::Colors {

namespace {

/// The colours that the theme of the desktop has.
class DesktopColors : public NamedColorSource {
  public:
    explicit DesktopColors(const Backend& desktop) : mDesktop(desktop) {}
    bool Knows(StringView selector) override { return mDesktop.NamedColor(selector).has_value(); }
    std::optional<Color> Get(StringView selector, int64_t) override { return mDesktop.NamedColor(selector); }
    Color HighlightColor() override { return mDesktop.Theme(SystemColor::Highlight); }
    bool IsGraphite() override { return false; }

  private:
    const Backend& mDesktop;
};

const Backend* currentDesktop = nullptr;

/// Keys are exact: each spelling of a name is looked up for itself, so this is no `Dictionary`, which would
/// fold letter case at every paint of a row.
std::map<String, Color, std::less<>>& ColorCache() {
    static std::map<String, Color, std::less<>> cache;
    return cache;
}

}  // namespace

Color GetMacNamedColor(StringView name) {
    auto& cache = ColorCache();
    const auto known = cache.find(name);
    if (known != cache.end()) return known->second;
    Color color;
    if (currentDesktop) {
        DesktopColors colors(*currentDesktop);
        color = GetMacNamedColorInternal(colors, name);
    }
    cache.emplace(name, color);
    return color;
}

void ResetCache() {
    ColorCache().clear();
}

void UseDesktop(const Backend* desktop) {
    currentDesktop = desktop;
    ResetCache();
}

Color ControlBackgroundColor() {
    return GetMacNamedColor("ControlBackgroundColor");
}

Color ControlBorderColor() {
    return SecondaryLabelColorDisabled();
}

Color DefaultHighlightTextColor() {
    return GetMacNamedColor("selectedTextColor");
}

Color PrimaryLabelColorDisabled() {
    return GetMacNamedColor("tertiaryLabelColor");
}

Color SecondaryLabelColor() {
    return GetMacNamedColor("secondaryLabelColor");
}

Color SecondaryLabelColorDisabled() {
    return GetMacNamedColor("quaternaryLabelColor");
}

Color TextColor() {
    return currentDesktop ? currentDesktop->Theme(SystemColor::Text) : Color();
}

}  // namespace sorbel::Platform::Colors
