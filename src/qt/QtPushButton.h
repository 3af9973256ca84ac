#pragma once

#include <QPushButton>

#include "qt/ControlView.h"
#include "ui/toolkit/PushButton.h"

namespace sorbel {

class QtPushButton : public ControlView {
  public:
    QtPushButton(PushButton& control, QtWindow& window);

  protected:
    void Show(Aspects changed) override;

  private:
    PushButton& mControl;
    QPushButton& mButton;
};

}  // namespace sorbel
