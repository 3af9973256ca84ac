#pragma once

#include <QStringView>
#include <optional>

#include "ui/toolkit/TextEditor.h"

namespace sorbel {

/// What the widget of a text shows of it. A user edits what is shown, so an edit is written only if that is
/// still the text, and of the same subject.
class ShownText {
  public:
    explicit ShownText(TextEditor& control) : mControl(control) {}

    /// The widget shows what the control holds.
    [[nodiscard]] bool IsPresent() const { return mText == mControl.Text() && IsOfSubject(); }
    [[nodiscard]] bool IsOfSubject() const { return mSubject == mControl.Subject(); }
    /// The widget has been brought in line.
    void Update();
    /// The widget's whole text after an edit goes to the control. False: the widget has to be brought in
    /// line, since it does not show what the control holds now, or did not before.
    [[nodiscard]] bool Take(QStringView edited);

  private:
    TextEditor& mControl;
    std::optional<String> mText;  ///< nothing if it is not known what the widget shows
    String mSubject;
};

}  // namespace sorbel
