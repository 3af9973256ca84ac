#include "qt/TextReader.h"

#include <QAccessibleWidget>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <algorithm>
#include <vector>

#include "ui/toolkit/TextEditor.h"

namespace sorbel {

namespace {

/// A text to read and to select in. It has no editable side, so nothing can be put in or taken out.
class TextReader : public QAccessibleWidget, public QAccessibleTextInterface {
  public:
    explicit TextReader(QWidget& field) : QAccessibleWidget(&field, QAccessible::EditableText) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = state.selectableText = true;
        return state;
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? Whole() : QAccessibleWidget::text(kind);
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QString text(int start, int end) const override {
        return Whole().mid(start, end < 0 ? -1 : end - start);
    }
    [[nodiscard]] int characterCount() const override { return static_cast<int>(Whole().size()); }
    [[nodiscard]] int selectionCount() const override {
        int start = 0, end = 0;
        selection(0, &start, &end);
        return start < end ? 1 : 0;
    }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int /*number*/) override { setCursorPosition(cursorPosition()); }
    void setCursorPosition(int position) override { setSelection(0, position, position); }
    [[nodiscard]] QString attributes(int /*offset*/, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

  protected:
    [[nodiscard]] virtual QString Whole() const = 0;
    [[nodiscard]] int Within(int offset) const { return std::clamp(offset, 0, characterCount()); }
};

class LineReader : public TextReader {
  public:
    explicit LineReader(QLineEdit& line) : TextReader(line), mLine(line) {}

    void selection(int /*number*/, int* start, int* end) const override {
        *start = std::max(mLine.selectionStart(), 0);
        *end = *start + mLine.selectionLength();
    }
    void setSelection(int /*number*/, int start, int end) override {
        mLine.setCursorPosition(Within(start));
        mLine.cursorForward(true, Within(end) - Within(start));
    }
    [[nodiscard]] int cursorPosition() const override { return mLine.cursorPosition(); }
    [[nodiscard]] QRect characterRect(int offset) const override {
        const QFontMetrics metrics = mLine.fontMetrics();
        const int left = metrics.horizontalAdvance(Whole(), Within(offset));
        const int right = metrics.horizontalAdvance(Whole(), Within(offset + 1));
        return {mLine.mapToGlobal(QPoint(left, 0)), QSize(right - left, mLine.height())};
    }
    [[nodiscard]] int offsetAtPoint(const QPoint& at) const override {
        return mLine.cursorPositionAt(mLine.mapFromGlobal(at));
    }
    void scrollToSubstring(int start, int /*end*/) override { mLine.setCursorPosition(Within(start)); }

  protected:
    [[nodiscard]] QString Whole() const override { return mLine.text(); }

  private:
    QLineEdit& mLine;
};

class AreaReader : public TextReader {
  public:
    explicit AreaReader(QTextEdit& area) : TextReader(area), mArea(area) {}

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = TextReader::state();
        state.multiLine = true;
        return state;
    }
    /// What has been added and removed is told ahead, and at its place.
    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        const QString told = TextReader::text(kind);
        return kind == QAccessible::Description && told.isEmpty() ? Differences() : told;
    }
    using TextReader::text;
    [[nodiscard]] QString attributes(int offset, int* start, int* end) const override;

    void selection(int /*number*/, int* start, int* end) const override {
        *start = mArea.textCursor().selectionStart();
        *end = mArea.textCursor().selectionEnd();
    }
    void setSelection(int /*number*/, int start, int end) override {
        QTextCursor cursor = CursorAt(start);
        cursor.setPosition(Within(end), QTextCursor::KeepAnchor);
        mArea.setTextCursor(cursor);
    }
    [[nodiscard]] int cursorPosition() const override { return mArea.textCursor().position(); }
    [[nodiscard]] QRect characterRect(int offset) const override {
        const QRect here = mArea.cursorRect(CursorAt(offset)), next = mArea.cursorRect(CursorAt(offset + 1));
        const int width = next.top() == here.top() ? next.left() - here.left() : here.width();
        return {mArea.viewport()->mapToGlobal(here.topLeft()), QSize(std::max(width, 1), here.height())};
    }
    [[nodiscard]] int offsetAtPoint(const QPoint& at) const override {
        return mArea.cursorForPosition(mArea.viewport()->mapFromGlobal(at)).position();
    }
    void scrollToSubstring(int start, int /*end*/) override {
        const QPoint scrolled(0, mArea.verticalScrollBar()->value());
        mArea.verticalScrollBar()->setValue((mArea.cursorRect(CursorAt(start)).topLeft() + scrolled).y());
    }
    /// Lines are those that are seen.
    [[nodiscard]] QString textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                                       int* end) const override;

    [[nodiscard]] int characterCount() const override { return mArea.document()->characterCount() - 1; }

  protected:
    /// `toPlainText` would turn no-break spaces into plain ones.
    [[nodiscard]] QString Whole() const override {
        return mArea.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
    }

  private:
    struct Run {
        RunKind Kind;
        int Start, End;
    };
    /// Those of the text in order. A line break has the kind of what stands before it.
    [[nodiscard]] std::vector<Run> Runs() const;
    [[nodiscard]] QString Differences() const;
    [[nodiscard]] QTextCursor CursorAt(int offset) const {
        QTextCursor cursor(mArea.document());
        cursor.setPosition(Within(offset));
        return cursor;
    }

    QTextEdit& mArea;
};

QString AreaReader::textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start, int* end) const {
    if (kind != QAccessible::LineBoundary)
        return QAccessibleTextInterface::textAtOffset(offset, kind, start, end);
    const QTextCursor at = CursorAt(offset < 0 ? cursorPosition() : offset);
    const int first = at.block().position();
    const QTextLine line = at.block().layout()->lineForTextPosition(at.position() - first);
    *start = first + (line.isValid() ? line.textStart() : 0);
    *end = line.isValid() ? *start + line.textLength() : first;
    if (*end == first + at.block().length() - 1) *end = Within(*end + 1);  // with the line break
    return text(*start, *end);
}

std::vector<AreaReader::Run> AreaReader::Runs() const {
    std::vector<Run> runs;
    for (QTextBlock block = mArea.document()->begin(); block.isValid(); block = block.next()) {
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            const QTextFragment part = at.fragment();
            const RunKind kind{part.charFormat().intProperty(RunKindProperty)};
            if (runs.empty() || runs.back().Kind != kind) runs.push_back({kind, part.position(), 0});
            runs.back().End = part.position() + part.length();
        }
        if (!runs.empty()) runs.back().End = Within(block.position() + block.length());
    }
    return runs;
}

QString AreaReader::Differences() const {
    QStringList told;
    for (const Run& run : Runs()) {
        if (run.Kind == RunKind::Common) continue;
        const QString what =
            run.Kind == RunKind::Added ? QStringLiteral("added: ") : QStringLiteral("removed: ");
        told += what + text(run.Start, run.End).simplified();
    }
    return told.join(QStringLiteral("; "));
}

/// In the words of the accessibility interfaces for tracked changes.
QString AreaReader::attributes(int offset, int* start, int* end) const {
    for (const Run& run : Runs()) {
        if (offset < run.Start || offset >= run.End) continue;
        *start = run.Start;
        *end = run.End;
        if (run.Kind == RunKind::Common) return {};
        return run.Kind == RunKind::Added ? QStringLiteral("text-tracked-change:insertion;")
                                          : QStringLiteral("text-tracked-change:deletion;");
    }
    return TextReader::attributes(offset, start, end);
}

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* const area = qobject_cast<QTextEdit*>(object);
    if (area && area->isReadOnly()) return new AreaReader(*area);
    auto* const line = qobject_cast<QLineEdit*>(object);
    if (line && line->isReadOnly()) return new LineReader(*line);
    return nullptr;
}

}  // namespace

void ReadTextsForReadingOnly() {
    static const bool installed = (QAccessible::installFactory(&MakeReader), true);
    (void)installed;
}

}  // namespace sorbel
