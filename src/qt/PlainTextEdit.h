#pragma once

#include <QTextEdit>

namespace sorbel {

class QtWindow;

/// A text field of several lines that takes and gives plain text only and keeps no undo of its own.
class PlainTextEdit : public QTextEdit {
  public:
    explicit PlainTextEdit(QtWindow& window);

  protected:
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QMimeData* createMimeDataFromSelection() const override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    QtWindow& mWindow;
};

}  // namespace sorbel
