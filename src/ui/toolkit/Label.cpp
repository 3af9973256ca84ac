#include "ui/toolkit/Label.h"

namespace sorbel {

void Label::SetText(StringView text) {
    if (text == mText) return;
    mText = text;
    Changed(Aspect::Text);
}

void Label::SetItalic(bool italic) {
    if (italic == mItalic) return;
    mItalic = italic;
    Changed(Aspect::Style);
}

void Label::SetTextColor(Color color) {
    if (color == mTextColor) return;
    mTextColor = color;
    Changed(Aspect::Style);
}

}  // namespace sorbel
