#pragma once

#include "ui/toolkit/Control.h"

namespace sorbel {

class PushButton : public Control {
  public:
    using Control::Control;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    String Caption;  // fixed at design time

    std::function<void()> Action;
    void UserPress() {
        ByUser([this] { Raise(Action); });
    }
};

}  // namespace sorbel
