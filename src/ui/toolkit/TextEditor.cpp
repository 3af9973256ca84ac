#include "ui/toolkit/TextEditor.h"

namespace sorbel {

void TextEditor::StoreText(StringView text) {
    mText = text;
    TextReplaced();
    Changed(Aspect::Text);
}

void TextEditor::SetText(StringView text) {
    StoreText(text);
    Raise(TextChange);
}

void TextEditor::SetSubject(String subject) {
    if (subject == mSubject) return;
    mSubject = std::move(subject);
    Changed(Aspect::Text);
}

void TextEditor::UserSetText(StringView text) {
    if (ReadOnly || text == mText) return;
    ByUser([&] { SetText(text); });
}

void TextArea::TextReplaced() {
    mRuns.clear();
    if (!mText.empty()) mRuns.push_back({mText.size(), mTextColor});
}

void TextArea::SetTextColor(Color color) {
    mTextColor = color;
    TextReplaced();
    Changed(Aspect::Text);
    Changed(Aspect::Style);
}

void TextArea::SetSpellingLanguage(StringView code) {
    mSpellingLanguage = code;
    Changed(Aspect::Style);
}

void TextArea::SetSelText(StringView text) {
    if (!text.empty()) {
        if (!mRuns.empty() && mRuns.back().Color == mSelTextColor && mRuns.back().Kind == mSelKind)
            mRuns.back().Length += text.size();
        else
            mRuns.push_back({text.size(), mSelTextColor, mSelKind});
        mText += text;
        Changed(Aspect::Text);
    }
    Raise(TextChange);
}

}  // namespace sorbel
