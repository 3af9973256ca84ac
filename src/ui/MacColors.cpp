#include "ui/MacColors.h"

#include <algorithm>

#include "platform/Exceptions.h"

namespace sorbel::Platform::Colors {

namespace {

constexpr StringView ColorClass = "NSColor";
constexpr MacRuntime::Word ComponentBased = 0;  // the type of colours that have red, green and blue
constexpr MacRuntime::Word GraphiteTint = 6;

unsigned Byte(double value) {
    return static_cast<unsigned>(std::clamp(value, 0.0, 255.0));
}

}  // namespace

bool MacColors::RespondsToSelector(Object object, StringView selector) {
    return mRuntime.Send(object, "respondsToSelector:", {mRuntime.Selector(selector)}) != 0;
}

bool MacColors::NSIsKindOfClass(Object object, StringView className) {
    return mRuntime.Send(object, "isKindOfClass:", {mRuntime.Class(className)}) != 0;
}

MacColors::Object MacColors::GetNSArrayObj(Object array, int64_t index) {
    if (index < 0 || !RespondsToSelector(array, "count")) return 0;
    const auto place = static_cast<MacRuntime::Word>(index);
    return place < mRuntime.Send(array, "count") ? mRuntime.Send(array, "objectAtIndex:", {place}) : 0;
}

bool MacColors::MacIsGraphite() {
    return mRuntime.Send(mRuntime.Class(ColorClass), "currentControlTint") == GraphiteTint;
}

bool MacColors::Knows(StringView selector) {
    return RespondsToSelector(mRuntime.Class(ColorClass), selector);
}

std::optional<Color> MacColors::Get(StringView selector, int64_t index) {
    Object object = mRuntime.Send(mRuntime.Class(ColorClass), selector);
    if (NSIsKindOfClass(object, "NSArray")) object = GetNSArrayObj(object, index);
    if (!object) return std::nullopt;
    return NSColorToColor(object);
}

Color MacColors::NSColorToColor(Object object) {
    if (!object) return {};
    if (NSIsKindOfClass(object, "NSArray")) object = GetNSArrayObj(object, 0);
    MacRuntime::Word type = ComponentBased;
    if (RespondsToSelector(object, "type")) {
        type = mRuntime.Send(object, "type");
        if (type >= 1 && RespondsToSelector(object, "colorUsingType:")) {
            if (const Object converted = mRuntime.Send(object, "colorUsingType:", {ComponentBased})) {
                object = converted;
                type = mRuntime.Send(object, "type");
            }
        }
    }
    const Object components = type == ComponentBased ? InGenericRGB(object) : 0;
    return components ? FromComponents(components) : FromDrawing(object);
}

MacColors::Object MacColors::InGenericRGB(Object color) {
    if (!mGenericRGB) mGenericRGB = mRuntime.Send(mRuntime.Class("NSColorSpace"), "genericRGBColorSpace");
    if (!RespondsToSelector(color, "colorUsingColorSpace:")) return 0;
    return mRuntime.Send(color, "colorUsingColorSpace:", {mGenericRGB});
}

Color MacColors::FromComponents(Object color) {
    try {
        const double red = mRuntime.SendForNumber(color, "redComponent");
        const double green = mRuntime.SendForNumber(color, "greenComponent");
        const double blue = mRuntime.SendForNumber(color, "blueComponent");
        const double opacity = mRuntime.SendForNumber(color, "alphaComponent");
        return Color::FromRGB(Byte(red * 255.0), Byte(green * 255.0), Byte(blue * 255.0),
                              Byte((1.0 - opacity) * 255.0));
    } catch (const RuntimeException&) {
        return {};
    }
}

/// Patterns and the like have no components; what they look like is found by drawing.
Color MacColors::FromDrawing(Object color) {
    const bool begun = BeginNSDrawing();
    mRuntime.Send(color, "set");
    mRuntime.FillPicture();
    if (begun) mRuntime.Send(mRuntime.Class("NSGraphicsContext"), "restoreGraphicsState");
    return mRuntime.PicturePixel(5, 5);
}

/// Directs drawing to the picture. True: the graphics state was saved and must be restored.
bool MacColors::BeginNSDrawing() {
    const Object contexts = mRuntime.Class("NSGraphicsContext");
    const Object wanted = mRuntime.PictureContext();
    const Object current = mRuntime.Send(contexts, "currentContext");
    if (current && mRuntime.Send(current, "CGContext") == wanted) return false;
    constexpr MacRuntime::Word NotFlipped = 0;
    const Object context =
        mRuntime.Send(contexts, "graphicsContextWithCGContext:flipped:", {wanted, NotFlipped});
    mRuntime.Send(contexts, "saveGraphicsState");
    mRuntime.Send(contexts, "setCurrentContext:", {context});
    return true;
}

}  // namespace sorbel::Platform::Colors
