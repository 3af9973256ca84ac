#include "qt/QtLabel.h"

#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QStyle>

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

/// The text as it reads, without the marks of mnemonics.
QString WithoutMarks(const QString& text) {
    QString plain;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == u'&' && at + 1 < text.size()) ++at;
        plain += text[at];
    }
    return plain;
}

/// A label whose text underlines its mnemonic without another widget to take the focus.
class MnemonicLabel : public QLabel {
  public:
    using QLabel::QLabel;
    [[nodiscard]] bool IsElided() const {
        return !wordWrap() && fontMetrics().horizontalAdvance(mPlain) > contentsRect().width();
    }
    [[nodiscard]] const QString& Plain() const { return mPlain; }
    void SetMarkedText(const QString& marked) {
        mMarked = marked;
        // With a widget that it names the toolkit looks for marks, too. It shall find none: the key is not
        // its affair.
        mPlain = WithoutMarks(marked);
        setText(buddy() ? QString(mPlain).replace(QStringLiteral("&"), QStringLiteral("&&")) : mPlain);
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const int flags = static_cast<int>(alignment().toInt()) | Qt::TextShowMnemonic |
                          (wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine);
        const QString shown = IsElided() ? Elided() : mMarked;
        style()->drawItemText(&painter, contentsRect(), flags, palette(), isEnabled(), shown,
                              foregroundRole());
        if (hasFocus()) DrawFocusFrame(painter, *this);
    }
    void focusInEvent(QFocusEvent*) override { update(); }
    void focusOutEvent(QFocusEvent*) override { update(); }

  private:
    [[nodiscard]] QString Elided() const {
        return fontMetrics().elidedText(mMarked, Qt::ElideRight, contentsRect().width(),
                                        Qt::TextShowMnemonic);
    }

    QString mMarked, mPlain;
};

class QtLabel : public ControlView {
  public:
    QtLabel(Label& control, QtWindow& window)
        : ControlView(control, window, *new MnemonicLabel(&window.Content())),
          mControl(control),
          mLabel(static_cast<MnemonicLabel&>(Widget())),
          mShortcut(*new QShortcut(&mLabel)) {
        mLabel.setTextFormat(Qt::PlainText);
        mLabel.setWordWrap(control.Multiline);
        mLabel.setAutoFillBackground(!control.Transparent);
        mLabel.setAlignment((control.Alignment == TextAlignment::Center ? Qt::AlignHCenter : Qt::AlignLeft) |
                            (control.Multiline ? Qt::AlignTop : Qt::AlignVCenter));
        const auto pressed = [this] {
            mControl.UserAccelerator();
        };
        QObject::connect(&mShortcut, &QShortcut::activated, pressed);
        QObject::connect(&mShortcut, &QShortcut::activatedAmbiguously, pressed);
    }

    [[nodiscard]] PlacedTip TipAt(const QPoint& at) const override {
        PlacedTip tip = ControlView::TipAt(at);
        if (tip.Text.isEmpty() && mLabel.IsElided()) tip.Text = mLabel.Plain();
        return tip;
    }

    void MeetOthers() override {
        if (mControl.Labelled) mLabel.setBuddy(&Owner().ViewOf(*mControl.Labelled)->Widget());
    }

  protected:
    void Show(Aspects changed) override {
        if (changed.Has(Aspect::Text)) {
            QString text = ToQt(ReplaceLineEndings(mControl.Text(), "\n"));
            if (!mControl.Mnemonic) text.replace(QStringLiteral("&"), QStringLiteral("&&"));
            mLabel.SetMarkedText(text);
            mShortcut.setKeys({QKeySequence::mnemonic(text), ShortcutKeys(mControl.SecondKey)});
        }
        if (!changed.Has(Aspect::Style)) return;
        QFont font = mLabel.font();
        font.setItalic(mControl.Italic());
        mLabel.setFont(font);
        SetTextColor(mLabel, QPalette::WindowText, Owner().Theme().Shown(mControl.TextColor()));
    }

  private:
    Label& mControl;
    MnemonicLabel& mLabel;
    QShortcut& mShortcut;
};

/// Looks like a label, but the focus can be on it.
class SelectableText : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;

  protected:
    void paintEvent(QPaintEvent* event) override {
        QLineEdit::paintEvent(event);
        if (!hasFocus()) return;
        QPainter painter(this);
        DrawFocusFrame(painter, *this);
    }
};

class QtSelectableLabel : public ControlView {
  public:
    QtSelectableLabel(Label& control, QtWindow& window)
        : ControlView(control, window, *new SelectableText(&window.Content())),
          mControl(control),
          mEdit(static_cast<QLineEdit&>(Widget())) {
        mEdit.setReadOnly(true);
        mEdit.setFrame(false);
        mEdit.setContextMenuPolicy(Qt::NoContextMenu);
        mEdit.setTextMargins(-2, 0, 0, 0);  // in line with other labels
        QPalette palette = mEdit.palette();
        palette.setColor(QPalette::Base, Qt::transparent);
        mEdit.setPalette(palette);
    }

    [[nodiscard]] PlacedTip TipAt(const QPoint& at) const override {
        PlacedTip tip = ControlView::TipAt(at);
        const bool cut = mEdit.fontMetrics().horizontalAdvance(mEdit.text()) > mEdit.width();
        if (tip.Text.isEmpty() && cut) tip.Text = mEdit.text();
        return tip;
    }

  protected:
    void Show(Aspects changed) override {
        if (changed.Has(Aspect::Text) && mEdit.text() != ToQt(mControl.Text())) {
            mEdit.setText(ToQt(mControl.Text()));
            mEdit.setCursorPosition(0);
        }
        if (!changed.Has(Aspect::Style)) return;
        QFont font = mEdit.font();
        font.setItalic(mControl.Italic());
        mEdit.setFont(font);
        SetTextColor(mEdit, QPalette::Text, Owner().Theme().Shown(mControl.TextColor()));
    }

  private:
    Label& mControl;
    QLineEdit& mEdit;
};

}  // namespace

std::unique_ptr<ControlView> MakeLabelView(Label& control, QtWindow& window) {
    if (control.Selectable) return std::make_unique<QtSelectableLabel>(control, window);
    return std::make_unique<QtLabel>(control, window);
}

}  // namespace sorbel
