#include "qt/QtTextField.h"

#include <QContextMenuEvent>
#include <QLineEdit>

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

class LineEdit : public QLineEdit {
  public:
    explicit LineEdit(QtWindow& window) : QLineEdit(&window.Content()), mWindow(window) {}

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override { mWindow.PopUpEditMenu(event->globalPos()); }

  private:
    QtWindow& mWindow;
};

}  // namespace

QtTextField::QtTextField(TextField& control, QtWindow& window)
    : ControlView(control, window, *new LineEdit(window)),
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
