#pragma once

#include <optional>

#include "qt/ControlView.h"
#include "ui/toolkit/Canvas.h"

namespace sorbel {

class QtCanvas : public ControlView {
  public:
    QtCanvas(Canvas& control, QtWindow& window);

  protected:
    void Show(Aspects changed) override;

  private:
    void TellPosition();

    Canvas& mControl;
    std::optional<int> mShownPosition;
};

}  // namespace sorbel
