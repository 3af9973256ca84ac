#include "qt/QtPopupMenu.h"

#include <QWheelEvent>

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

namespace {

/// The wheel is for it only after the user has gone to it: on the way past it, it would change the choice.
class ComboBox : public QComboBox {
  public:
    explicit ComboBox(QtWindow& window) : QComboBox(&window.Content()) { setFocusPolicy(Qt::StrongFocus); }

  protected:
    void wheelEvent(QWheelEvent* event) override {
        if (hasFocus())
            QComboBox::wheelEvent(event);
        else
            event->ignore();
    }
};

}  // namespace

QtPopupMenu::QtPopupMenu(PopupMenu& control, QtWindow& window)
    : ControlView(control, window, *new ComboBox(window)),
      mControl(control),
      mBox(static_cast<QComboBox&>(Widget())) {
    mBox.setAccessibleDescription(
        ToQt(control.AccessibleName()));  // the toolkit reads the choice as the name
    QObject::connect(&mBox, &QComboBox::activated, [this](int row) {
        mControl.UserChoose(row);
        Changed(Aspect::Selection);  // the box moved by itself; the control decides
    });
}

void QtPopupMenu::Show(Aspects changed) {
    if (changed.Has(Aspect::Rows)) {
        mBox.clear();
        for (int64_t row = 0; row < mControl.ListCount(); ++row)
            mBox.addItem(ToQt(mControl.RowText(row)));
    }
    if (changed.Has(Aspect::Rows) || changed.Has(Aspect::Selection))
        mBox.setCurrentIndex(static_cast<int>(mControl.ListIndex()));
}

}  // namespace sorbel
