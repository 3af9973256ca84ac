#include "qt/PlainTextEdit.h"

#include <QContextMenuEvent>
#include <QMimeData>

#include "qt/QtWindow.h"

namespace sorbel {

PlainTextEdit::PlainTextEdit(QtWindow& window) : QTextEdit(&window.Content()), mWindow(window) {
    setAcceptRichText(false);
    setUndoRedoEnabled(false);
    document()->setDocumentMargin(3);
}

/// A file dropped here is meant for the window.
bool PlainTextEdit::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText() && !source->hasUrls();
}

/// The toolkit's own plain text would lose no-break spaces.
QMimeData* PlainTextEdit::createMimeDataFromSelection() const {
    auto* copied = new QMimeData;
    copied->setText(textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n'));
    return copied;
}

/// Where Tab is a character, Shift+Tab still leaves the field.
bool PlainTextEdit::focusNextPrevChild(bool next) {
    return next ? QTextEdit::focusNextPrevChild(true) : QAbstractScrollArea::focusNextPrevChild(false);
}

void PlainTextEdit::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier) {
        QAbstractScrollArea::focusNextPrevChild(true);
    } else if (event->key() == Qt::Key_Backtab) {
        QAbstractScrollArea::focusNextPrevChild(false);
    } else if (enter && event->modifiers().testFlag(Qt::ShiftModifier) && !isReadOnly()) {
        textCursor().insertBlock();  // not the line separator that the toolkit puts in
        ensureCursorVisible();
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

void PlainTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    mWindow.PopUpEditMenu(event->globalPos());
}

}  // namespace sorbel
