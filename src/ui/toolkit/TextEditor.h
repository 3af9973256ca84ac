#pragma once

#include <vector>

#include "ui/toolkit/Control.h"

namespace sorbel {

/// What `TextField` and `TextArea` have in common: an editable text.
class TextEditor : public Control {
  public:
    using Control::Control;

    [[nodiscard]] const String& Text() const { return mText; }
    /// Raises `TextChange` whether or not the text differs. All runs take the present `TextColor`.
    void SetText(StringView text);

    /// What it is the text of, by a name that the owner chooses. A view shows the text of another subject
    /// from its start, and takes no edit that was made to the text of another.
    [[nodiscard]] const String& Subject() const { return mSubject; }
    void SetSubject(String subject);

    /// The text changed, whoever changed it.
    std::function<void()> TextChange;
    /// A user's edit to this whole text; nothing happens if it is the present one or the text is read-only.
    void UserSetText(StringView text);

    // Fixed at design time.
    bool ReadOnly = false;

  protected:
    void StoreText(StringView text);
    virtual void TextReplaced() {}

    String mText;

  private:
    String mSubject;
};

/// One line.
class TextField : public TextEditor {
  public:
    using TextEditor::TextEditor;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    /// The user is done with it and wants to go on to what it is for.
    std::function<void()> GoOn;
    void UserGoOn() {
        ByUser([this] { Raise(GoOn); });
    }
};

/// What a stretch of a text is beside another version of the text.
enum class RunKind { Common, Added, Removed };

/// Several lines, in one colour or in runs of colour.
class TextArea : public TextEditor {
  public:
    using TextEditor::TextEditor;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    struct Run {
        size_t Length;  ///< bytes of the text
        sorbel::Color Color;
        RunKind Kind = RunKind::Common;
    };

    [[nodiscard]] Color TextColor() const { return mTextColor; }
    /// Colours the whole text and what is assigned later.
    void SetTextColor(Color color);
    /// The text in order, adjacent runs of one colour and kind joined; empty for the empty text.
    [[nodiscard]] const std::vector<Run>& Runs() const { return mRuns; }
    /// The colour of what `SetSelText` inserts next.
    void SetSelTextColor(Color color) { mSelTextColor = color; }
    /// What `SetSelText` inserts next is, for those who cannot tell by its colour.
    void SetSelKind(RunKind kind) { mSelKind = kind; }
    /// Inserts behind the text written so far, and raises `TextChange`. The insertion point of an assigned
    /// text is its end.
    void SetSelText(StringView text);

    /// The language whose words a text with `SpellChecking` is checked by, as a code such as "de".
    [[nodiscard]] const String& SpellingLanguage() const { return mSpellingLanguage; }
    void SetSpellingLanguage(StringView code);

    // Fixed at design time.
    bool StyledText = false;
    bool AllowTabs = false;
    bool SpellChecking = false;

  protected:
    void TextReplaced() override;

  private:
    Color mTextColor;
    Color mSelTextColor;
    RunKind mSelKind = RunKind::Common;
    String mSpellingLanguage;
    std::vector<Run> mRuns;
};

}  // namespace sorbel
