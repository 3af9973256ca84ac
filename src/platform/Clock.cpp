#include "platform/Clock.h"

#include <chrono>
#include <ctime>

namespace sorbel {

namespace {

class SystemClock : public Clock {
  public:
    [[nodiscard]] int64_t Ticks() const override {
        using Tick = std::chrono::duration<int64_t, std::ratio<1, 60>>;
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::floor<Tick>(now).count();
    }
    [[nodiscard]] int64_t LocalSeconds() const override {
        const std::time_t now = std::time(nullptr);
        std::tm local = {};
        localtime_r(&now, &local);
        return static_cast<int64_t>(now) + local.tm_gmtoff;
    }
};

const Clock* installed = nullptr;

}  // namespace

const Clock& Clock::Current() {
    static const SystemClock system;
    return installed ? *installed : system;
}

void Clock::Install(const Clock* clock) {
    installed = clock;
}

}  // namespace sorbel
