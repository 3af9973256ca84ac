#pragma once

#include "ui/toolkit/Backend.h"

namespace sorbel {

/// Shows for as long as it lives, and so on every way out, that the program works and cannot answer. May
/// nest.
class Busy {
  public:
    /// `shown`: false for work that turns out to be short.
    explicit Busy(Backend& desktop, bool shown = true) : mDesktop(desktop), mShown(shown) {
        if (mShown) mDesktop.SetBusy(true);
    }
    ~Busy() {
        if (mShown) mDesktop.SetBusy(false);
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

  private:
    Backend& mDesktop;
    bool mShown;
};

}  // namespace sorbel
