#pragma once

#include <cstdint>

namespace sorbel {

/// Where time comes from. The program asks the installed clock only, so tests move time by hand.
class Clock {
  public:
    virtual ~Clock() = default;
    /// Counts up 60 times a second from an arbitrary moment.
    [[nodiscard]] virtual int64_t Ticks() const = 0;
    /// Seconds since 1970-01-01 00:00:00 in local time, without a time zone.
    [[nodiscard]] virtual int64_t LocalSeconds() const = 0;

    /// The clock in use; the system's until another is installed.
    static const Clock& Current();
    /// Null goes back to the system's clock. The caller keeps the clock alive.
    static void Install(const Clock* clock);
};

/// A clock that stands still until it is moved.
class ManualClock : public Clock {
  public:
    [[nodiscard]] int64_t Ticks() const override { return mTicks; }
    [[nodiscard]] int64_t LocalSeconds() const override { return mSeconds; }
    void Advance(int64_t ticks) { mTicks += ticks; }
    void SetLocalSeconds(int64_t seconds) { mSeconds = seconds; }

  private:
    int64_t mTicks = 0;
    int64_t mSeconds = 0;
};

[[nodiscard]] inline int64_t Ticks() {
    return Clock::Current().Ticks();
}

}  // namespace sorbel
