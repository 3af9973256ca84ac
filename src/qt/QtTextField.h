#pragma once

#include "qt/ControlView.h"
#include "qt/ShownText.h"

class QLineEdit;

namespace sorbel {

class QtTextField : public ControlView {
  public:
    QtTextField(TextField& control, QtWindow& window);

    [[nodiscard]] bool YieldsMenuKeys() const override { return true; }
    void Edit(EditCommand command) override;

  protected:
    void Show(Aspects changed) override;

  private:
    TextField& mControl;
    QLineEdit& mEdit;
    ShownText mShown;
};

}  // namespace sorbel
