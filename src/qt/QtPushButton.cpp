#include "qt/QtPushButton.h"

#include "qt/QtWindow.h"
#include "qt/Text.h"

namespace sorbel {

QtPushButton::QtPushButton(PushButton& control, QtWindow& window)
    : ControlView(control, window, *new QPushButton(&window.Content())),
      mControl(control),
      mButton(static_cast<QPushButton&>(Widget())) {
    mButton.setAutoDefault(false);
    QObject::connect(&mButton, &QPushButton::clicked, [this] { mControl.UserPress(); });
}

void QtPushButton::Show(Aspects changed) {
    if (changed.Has(Aspect::Text)) mButton.setText(ToQt(mControl.Caption));
}

}  // namespace sorbel
