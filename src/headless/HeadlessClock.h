#pragma once

#include <optional>

#include "platform/Clock.h"

namespace sorbel::headless {

/// Ticks move by hand; the date is that of another clock unless it has been told to stand still.
class HeadlessClock : public Clock {
  public:
    explicit HeadlessClock(const Clock& dates) : mDates(dates) {}

    [[nodiscard]] int64_t Ticks() const override { return mTicks; }
    [[nodiscard]] int64_t LocalSeconds() const override { return mStopped.value_or(mDates.LocalSeconds()); }
    void Advance(int64_t ticks) { mTicks += ticks; }
    void StopAt(int64_t localSeconds) { mStopped = localSeconds; }

  private:
    const Clock& mDates;
    int64_t mTicks = 0;
    std::optional<int64_t> mStopped;
};

}  // namespace sorbel::headless
