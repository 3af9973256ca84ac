#include "qt/QtPopupMenu.h"

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

QtPopupMenu::QtPopupMenu(PopupMenu& control, QtWindow& window)
    : ControlView(control, window, *new QComboBox(&window.Content())),
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
