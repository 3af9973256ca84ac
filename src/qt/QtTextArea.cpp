#include "qt/QtTextArea.h"

#include <QScrollBar>
#include <QTextDocument>
#include <algorithm>

#include "qt/Contrast.h"
#include "qt/PlainTextEdit.h"
#include "qt/QtWindow.h"
#include "qt/SpellHighlighter.h"
#include "qt/Text.h"
#include "qt/TextReader.h"
#include "qt/TextSplice.h"

namespace sorbel {

QtTextArea::QtTextArea(TextArea& control, QtWindow& window)
    : ControlView(control, window, *new PlainTextEdit(window)),
      mControl(control),
      mEdit(static_cast<QTextEdit&>(Widget())),
      mShown(control) {
    mEdit.setTabChangesFocus(!control.AllowTabs);
    if (control.AllowTabs)
        mEdit.setToolTip(QStringLiteral("Tab types a tab. Ctrl+Tab and Shift+Tab lead out of this field."));
    mEdit.setReadOnly(control.ReadOnly);
    if (control.ReadOnly)
        mEdit.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QObject::connect(&mEdit, &QTextEdit::textChanged, [this] { TakeEdit(); });
    if (!control.SpellChecking) return;
    mSpelling = std::make_unique<SpellHighlighter>(*mEdit.document());
    static_cast<PlainTextEdit&>(mEdit).SetSpelling(*mSpelling);
}

QtTextArea::~QtTextArea() = default;

/// `toPlainText` would turn no-break spaces into plain ones.
QString QtTextArea::TextOfWidget() const {
    return mEdit.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

/// Also called for what is no edit, such as a step of a composition, which is not part of the text yet.
void QtTextArea::TakeEdit() {
    if (!mShown.Take(TextOfWidget())) Changed(Aspect::Text);
}

void QtTextArea::Show(Aspects changed) {
    if (changed.Has(Aspect::Style))
        SetTextColor(mEdit, QPalette::Text, Owner().Theme().Shown(mControl.TextColor()));
    if (changed.Has(Aspect::Text)) ShowText();
    if (mSpelling) mSpelling->SetLanguage(ToQt(mControl.SpellingLanguage()));
    if (mControl.StyledText && (changed.Has(Aspect::Text) || changed.Has(Aspect::Style))) ShowRuns();
}

/// Undo takes away what stands before the cursor and redo inserts at it, if that explains the difference.
qsizetype QtTextArea::LongestHead(const QString& before, const QString& after) const {
    const qsizetype removed = std::max<qsizetype>(before.size() - after.size(), 0);
    const qsizetype limit = std::max<qsizetype>(mEdit.textCursor().position() - removed, 0);
    const Difference limited = Compare(before, after, limit);
    return limited.Head + limited.Tail == std::min(before.size(), after.size()) ? limit : after.size();
}

void QtTextArea::ShowText() {
    if (mShown.IsPresent()) return;
    const QString before = TextOfWidget();
    const QString after = ToEditable(mControl.Text());
    const bool other = !mShown.IsOfSubject();
    if (before != after) ShowDifference(before, after);
    mShown.Update();
    if (other) ShowTop();
}

/// Replaces what differs. The cursor goes where an insertion or a removal took place, as undo and redo make
/// them, else to the end; a text that cannot be edited is shown from its start.
void QtTextArea::ShowDifference(const QString& before, const QString& after) {
    const Difference difference = Compare(before, after, LongestHead(before, after));
    QTextCursor cursor(mEdit.document());
    cursor.setPosition(static_cast<int>(difference.Head));
    cursor.setPosition(static_cast<int>(before.size() - difference.Tail), QTextCursor::KeepAnchor);
    cursor.insertText(after.mid(difference.Head, after.size() - difference.Head - difference.Tail));

    const qsizetype kept = difference.Head + difference.Tail;
    if (mControl.ReadOnly)
        cursor.movePosition(QTextCursor::Start);
    else if (kept == 0 || (kept != before.size() && kept != after.size()))
        cursor.movePosition(QTextCursor::End);
    mEdit.setTextCursor(cursor);
}

/// Wherever the cursor was in the text before.
void QtTextArea::ShowTop() {
    mEdit.setTextCursor(QTextCursor(mEdit.document()));
    mEdit.verticalScrollBar()->setValue(0);
}

QColor QtTextArea::Shown(Color color) const {
    return Legible(Owner().Theme().Shown(color), GroundOf(mEdit));
}

/// Runs in the control's own colour take that of the widget, which also has one for the disabled state.
void QtTextArea::ShowRuns() {
    EditableWalk walk(mControl.Text());
    size_t end = 0;
    for (const TextArea::Run& run : mControl.Runs()) {
        QTextCursor cursor(mEdit.document());
        cursor.setPosition(static_cast<int>(walk.Shown()));
        for (end += run.Length; walk.Bytes() < end;)
            walk.Step();
        cursor.setPosition(static_cast<int>(walk.Shown()), QTextCursor::KeepAnchor);
        QTextCharFormat format;
        if (run.Color != mControl.TextColor()) format.setForeground(Shown(run.Color));
        format.setProperty(RunKindProperty, static_cast<int>(run.Kind));
        cursor.setCharFormat(format);
    }
}

void QtTextArea::Edit(EditCommand command) {
    switch (command) {
        case EditCommand::Cut:
            return mEdit.cut();
        case EditCommand::Copy:
            return mEdit.copy();
        case EditCommand::Paste:
            return mEdit.paste();
        case EditCommand::Clear:
            if (!mEdit.isReadOnly()) mEdit.textCursor().removeSelectedText();
            return;
        case EditCommand::SelectAll:
            return mEdit.selectAll();
        case EditCommand::None:
            return;
    }
}

}  // namespace sorbel
