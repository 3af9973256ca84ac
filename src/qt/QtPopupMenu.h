#pragma once

#include <QComboBox>

#include "qt/ControlView.h"
#include "ui/toolkit/PopupMenu.h"

namespace sorbel {

class QtPopupMenu : public ControlView {
  public:
    QtPopupMenu(PopupMenu& control, QtWindow& window);

  protected:
    void Show(Aspects changed) override;

  private:
    PopupMenu& mControl;
    QComboBox& mBox;
};

}  // namespace sorbel
