#pragma once

#include "ui/toolkit/Control.h"

namespace sorbel {

enum class TextAlignment { Left, Center };

/// A text that cannot be edited. "&" in it marks the mnemonic letter, "&&" is an ampersand.
class Label : public Control {
  public:
    using Control::Control;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    [[nodiscard]] const String& Text() const { return mText; }
    void SetText(StringView text);
    [[nodiscard]] bool Italic() const { return mItalic; }
    void SetItalic(bool italic);
    [[nodiscard]] Color TextColor() const { return mTextColor; }
    void SetTextColor(Color color);

    // Fixed at design time.
    bool Selectable = false;
    bool Multiline = false;
    bool Transparent = true;
    bool Mnemonic = true;  ///< false: "&" is an ordinary character, for texts that are data
    TextAlignment Alignment = TextAlignment::Left;
    String SecondKey;                   ///< does what the mnemonic does, such as "Cmd+F"; not shown
    const Control* Labelled = nullptr;  ///< the control that the text names, or null; of the same window

    /// The mnemonic was pressed.
    std::function<void()> AcceleratorKey;
    void UserAccelerator() {
        ByUser([this] { Raise(AcceleratorKey); });
    }

  private:
    String mText;
    bool mItalic = false;
    Color mTextColor;
};

}  // namespace sorbel
