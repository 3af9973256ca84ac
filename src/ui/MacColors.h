#pragma once

#include <initializer_list>

#include "ui/NamedColors.h"

namespace sorbel::Platform::Colors {

/// The Objective-C runtime, as far as colours need it. A `Word` is what a message takes and gives: an object,
/// a selector, a whole number or a truth value; 0 is nil.
class MacRuntime {
  public:
    using Word = std::uintptr_t;

    virtual ~MacRuntime() = default;
    /// NSClassFromString.
    virtual Word Class(StringView name) = 0;
    /// sel_registerName.
    virtual Word Selector(StringView name) = 0;
    /// objc_msgSend; nil to a nil receiver.
    virtual Word Send(Word receiver, StringView selector, std::initializer_list<Word> arguments = {}) = 0;
    /// The same for messages that give a floating-point number. Fails with RuntimeException.
    virtual double SendForNumber(Word receiver, StringView selector) = 0;

    // A picture of 10 by 10 pixels, made at first use and kept.
    virtual Word PictureContext() = 0;  ///< its CGContext
    virtual void FillPicture() = 0;     ///< NSRectFill of its whole area, in the current context
    virtual Color PicturePixel(int x, int y) = 0;

    virtual Color HighlightColor() = 0;
};

/// Asks the class NSColor by selector name, and tests first what the running system knows.
class MacColors : public NamedColorSource {
  public:
    using Object = MacRuntime::Word;

    explicit MacColors(MacRuntime& runtime) : mRuntime(runtime) {}

    [[nodiscard]] bool Knows(StringView selector) override;
    [[nodiscard]] std::optional<Color> Get(StringView selector, int64_t index = 0) override;
    [[nodiscard]] Color HighlightColor() override { return mRuntime.HighlightColor(); }
    [[nodiscard]] bool IsGraphite() override { return MacIsGraphite(); }

    /// An NSColor, or the first of an NSArray of them; black for nil.
    [[nodiscard]] Color NSColorToColor(Object object);
    [[nodiscard]] bool MacIsGraphite();
    [[nodiscard]] bool RespondsToSelector(Object object, StringView selector);
    [[nodiscard]] bool NSIsKindOfClass(Object object, StringView className);
    /// nil beyond the array's end, and if it is no array.
    [[nodiscard]] Object GetNSArrayObj(Object array, int64_t index);

  private:
    [[nodiscard]] Object InGenericRGB(Object color);
    [[nodiscard]] Color FromComponents(Object color);
    [[nodiscard]] Color FromDrawing(Object color);
    [[nodiscard]] bool BeginNSDrawing();

    MacRuntime& mRuntime;
    Object mGenericRGB = 0;
};

}  // namespace sorbel::Platform::Colors
