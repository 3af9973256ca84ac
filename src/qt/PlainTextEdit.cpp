#include "qt/PlainTextEdit.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>
#include <array>

#include "qt/QtWindow.h"
#include "qt/SpellHighlighter.h"
#include "qt/TextMarks.h"

namespace sorbel {

namespace {

constexpr double LineBreakWidth = 12;

/// An arrow down and back, to be drawn behind the end of a line that runs to the right.
constexpr std::array<QPointF, 7> LineBreak = {{{11, -4}, {11, 1}, {4, 1}, {7, -2}, {4, 1}, {7, 4}, {4, 1}}};

/// The first line that reaches below a height in the layout.
int FirstLineBelow(const QTextLayout& layout, double y) {
    int first = 0, end = layout.lineCount();
    while (first < end) {
        const int middle = (first + end) / 2;
        if (layout.lineAt(middle).rect().bottom() < y)
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

}  // namespace

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
    if (!event->isAutoRepeat()) mEnterHeldOver = false;
    if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier) {
        QAbstractScrollArea::focusNextPrevChild(true);
    } else if (event->key() == Qt::Key_Backtab) {
        QAbstractScrollArea::focusNextPrevChild(false);
    } else if (enter && mEnterHeldOver && event->isAutoRepeat()) {
        event->accept();
    } else if (enter && event->modifiers().testFlag(Qt::ShiftModifier) && !isReadOnly()) {
        textCursor().insertBlock();  // not the line separator that the toolkit puts in
        ensureCursorVisible();
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

/// The toolkit would change the size of this text alone.
void PlainTextEdit::wheelEvent(QWheelEvent* event) {
    if (event->modifiers().testFlag(Qt::ControlModifier))
        event->ignore();
    else
        QTextEdit::wheelEvent(event);
}

void PlainTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    const bool mouse = event->reason() == QContextMenuEvent::Mouse;
    const QTextCursor at = mouse ? cursorForPosition(event->pos()) : textCursor();
    mWindow.PopUpEditMenu(event->globalPos(), SuggestionsAt(at.position()));
}

/// The toolkit repaints the cursor only, but the focus shows all around.
void PlainTextEdit::focusInEvent(QFocusEvent* event) {
    QTextEdit::focusInEvent(event);
    mEnterHeldOver = true;
    viewport()->update();
}

void PlainTextEdit::focusOutEvent(QFocusEvent* event) {
    QTextEdit::focusOutEvent(event);
    viewport()->update();
}

MenuChoices PlainTextEdit::SuggestionsAt(int position) {
    const auto word = mSpelling && !isReadOnly() ? mSpelling->MarkedWord(position) : std::nullopt;
    if (!word) return {};
    MenuChoices choices;
    for (const QString& suggestion : mSpelling->Suggestions(*word))
        choices.emplace_back(suggestion, [word = *word, suggestion, revision = document()->revision()] {
            if (word.document()->revision() == revision) QTextCursor(word).insertText(suggestion);
        });
    if (choices.empty()) choices.emplace_back(QStringLiteral("No Suggestions"), nullptr);
    return choices;
}

void PlainTextEdit::paintEvent(QPaintEvent* event) {
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    if (hasFocus()) DrawFocusFrame(painter, *viewport());  // a text for reading only may show no cursor
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    QTextBlock block = cursorForPosition({0, 0}).block();
    for (; block.isValid() && PaintMarks(painter, block); block = block.next()) {
    }
}

/// Of a long block only the lines are looked at that are in sight.
bool PlainTextEdit::PaintMarks(QPainter& painter, const QTextBlock& block) const {
    const QPoint scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    const QPointF origin = document()->documentLayout()->blockBoundingRect(block).topLeft() - scrolled;
    const QTextLayout& layout = *block.layout();
    if (origin.y() > viewport()->height() || layout.lineCount() == 0) return false;
    for (int at = FirstLineBelow(layout, -origin.y()); at < layout.lineCount(); ++at) {
        const QTextLine line = layout.lineAt(at);
        if (origin.y() + line.y() > viewport()->height()) return false;
        PaintMarksOfLine(painter, block, line, origin);
    }
    if (block.next().isValid()) PaintLineBreak(painter, block, origin);
    return true;
}

/// Where the layout leaves nothing but room, or not even that.
void PlainTextEdit::PaintMarksOfLine(QPainter& painter, const QTextBlock& block, const QTextLine& line,
                                     const QPointF& origin) const {
    const QString text = block.text();
    const double middle = origin.y() + line.y() + line.height() / 2;
    for (int at = line.textStart(); at < line.textStart() + line.textLength(); ++at) {
        if (!IsUnseen(text[at])) continue;
        const QPointF start(origin.x() + line.cursorToX(at), middle);
        const QPointF end(origin.x() + line.cursorToX(at + 1), middle);
        if (text[at] == u'\t')
            PaintTabMark(painter, start, end);
        else
            PaintControlMark(painter, text[at], start, end, palette());
    }
}

/// Marks the line break behind a block, which would look like those of the layout.
void PlainTextEdit::PaintLineBreak(QPainter& painter, const QTextBlock& block, const QPointF& origin) const {
    const QTextLine line = block.layout()->lineAt(block.layout()->lineCount() - 1);
    const bool leftward = block.textDirection() == Qt::RightToLeft;
    const double end = origin.x() + line.cursorToX(block.length() - 1);
    painter.save();
    painter.translate(
        leftward ? std::max(end, LineBreakWidth) : std::min(end, viewport()->width() - LineBreakWidth),
        origin.y() + line.y() + line.height() / 2);
    if (leftward) painter.scale(-1, 1);
    painter.drawPolyline(LineBreak.data(), static_cast<int>(LineBreak.size()));
    painter.restore();
}

}  // namespace sorbel
