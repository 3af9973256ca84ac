#pragma once

#include <QTextEdit>

#include "qt/QtMenus.h"

class QTextLine;

namespace sorbel {

class QtWindow;
class SpellHighlighter;

/// A text field of several lines that takes and gives plain text only and keeps no undo of its own.
class PlainTextEdit : public QTextEdit {
  public:
    explicit PlainTextEdit(QtWindow& window);

    /// Offers suggestions for the words that it marks.
    void SetSpelling(SpellHighlighter& spelling) { mSpelling = &spelling; }

  protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QMimeData* createMimeDataFromSelection() const override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] MenuChoices SuggestionsAt(int position);
    /// Marks what cannot be seen of a block. False: it lies below what is shown.
    bool PaintMarks(QPainter& painter, const QTextBlock& block) const;
    void PaintLineBreak(QPainter& painter, const QTextBlock& block, const QPointF& origin) const;
    void PaintMarksOfLine(QPainter& painter, const QTextBlock& block, const QTextLine& line,
                          const QPointF& origin) const;

    QtWindow& mWindow;
    SpellHighlighter* mSpelling = nullptr;
    bool mEnterHeldOver = false;  ///< Enter has not been let go since it led here
};

}  // namespace sorbel
