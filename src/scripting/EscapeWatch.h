#pragma once

#include <optional>
#include <thread>

#include "scripting/compiler/Watch.h"
#include "ui/toolkit/Busy.h"

namespace sorbel::Scripting {

/// Lets the user stop a script with Escape. A script that has run for a second shows that it is busy; from
/// then on the desktop is looked after several times a second.
class EscapeWatch final : public script::Watch {
  public:
    explicit EscapeWatch(Backend& desktop) : mDesktop(desktop) {}

    void Begin(script::Attention& attention) override;
    [[nodiscard]] bool Stops() override;
    void End() override;

  private:
    Backend& mDesktop;
    script::Attention* mAttention = nullptr;
    std::jthread mReminder;
    std::optional<Busy> mBusy;
};

}  // namespace sorbel::Scripting
