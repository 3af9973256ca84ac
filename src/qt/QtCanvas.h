#pragma once

#include "qt/ControlView.h"
#include "ui/toolkit/Canvas.h"

namespace sorbel {

class QtCanvas : public ControlView {
  public:
    QtCanvas(Canvas& control, QtWindow& window);

  protected:
    void Show(Aspects changed) override;
};

}  // namespace sorbel
