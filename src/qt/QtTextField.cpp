#include "qt/QtTextField.h"

#include <QContextMenuEvent>
#include <QLineEdit>

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

class LineEdit : public QLineEdit {
  public:
    LineEdit(TextField& control, QtWindow& window)
        : QLineEdit(&window.Content()), mControl(control), mWindow(window) {}

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
        if (plain && event->key() == Qt::Key_Escape && !text().isEmpty() && !isReadOnly())
            clear();
        else if (plain && mControl.GoOn && LeadsOn(event->key()))
            mControl.UserGoOn();
        else
            QLineEdit::keyPressEvent(event);
    }
    void contextMenuEvent(QContextMenuEvent* event) override { mWindow.PopUpEditMenu(event->globalPos()); }

  private:
    static bool LeadsOn(int key) {
        return key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
    }

    TextField& mControl;
    QtWindow& mWindow;
};

}  // namespace

QtTextField::QtTextField(TextField& control, QtWindow& window)
    : ControlView(control, window, *new LineEdit(control, window)),
      mControl(control),
      mEdit(static_cast<QLineEdit&>(Widget())),
      mShown(control) {
    mEdit.setReadOnly(control.ReadOnly);
    QObject::connect(&mEdit, &QLineEdit::textChanged, [this](const QString& text) {
        if (!mShown.Take(text)) Changed(Aspect::Text);
    });
}

void QtTextField::Show(Aspects changed) {
    if (!changed.Has(Aspect::Text) || mShown.IsPresent()) return;
    const QString text = ToEditable(mControl.Text());
    if (mEdit.text() != text) mEdit.setText(text);
    mShown.Update();
}

void QtTextField::Edit(EditCommand command) {
    switch (command) {
        case EditCommand::Cut:
            return mEdit.cut();
        case EditCommand::Copy:
            return mEdit.copy();
        case EditCommand::Paste:
            return mEdit.paste();
        case EditCommand::Clear:
            if (mEdit.hasSelectedText() && !mEdit.isReadOnly()) mEdit.del();
            return;
        case EditCommand::SelectAll:
            return mEdit.selectAll();
        case EditCommand::None:
            return;
    }
}

}  // namespace sorbel
