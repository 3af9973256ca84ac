#include "qt/ShownText.h"

#include "qt/TextSplice.h"

namespace sorbel {

void ShownText::Update() {
    mText = mControl.Text();
    mSubject = mControl.Subject();
}

/// While the control takes the edit, what was shown before counts as shown: it may ask for that first.
bool ShownText::Take(QStringView edited) {
    if (!IsPresent()) {
        mText.reset();
        return false;
    }
    String text = SpliceEdit(*mText, edited);
    if (text == *mText) return true;
    mControl.UserSetText(text);
    if (text == mControl.Text())
        mText = std::move(text);
    else
        mText.reset();
    return mText.has_value();
}

}  // namespace sorbel
