#pragma once

#include "qt/ControlView.h"
#include "qt/ShownText.h"

class QTextEdit;

namespace sorbel {

class SpellHighlighter;

class QtTextArea : public ControlView {
  public:
    QtTextArea(TextArea& control, QtWindow& window);
    ~QtTextArea() override;

    [[nodiscard]] bool YieldsMenuKeys() const override { return true; }
    void Edit(EditCommand command) override;

  protected:
    void Show(Aspects changed) override;

  private:
    void TakeEdit();
    void ShowText();
    void ShowDifference(const QString& before, const QString& after);
    void ShowTop();
    void ShowRuns();
    [[nodiscard]] qsizetype LongestHead(const QString& before, const QString& after) const;
    [[nodiscard]] QString TextOfWidget() const;
    [[nodiscard]] QColor Shown(Color color) const;

    TextArea& mControl;
    QTextEdit& mEdit;
    ShownText mShown;
    std::unique_ptr<SpellHighlighter> mSpelling;
};

}  // namespace sorbel
