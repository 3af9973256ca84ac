#include "scripting/EscapeWatch.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>

namespace sorbel::Scripting {

namespace {

constexpr std::chrono::milliseconds FirstPause{1000};
constexpr std::chrono::milliseconds Pause{50};

void Remind(const std::stop_token& ended, script::Attention& attention) {
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    const auto isEnded = [&ended] {
        return ended.stop_requested();
    };
    for (auto pause = FirstPause; !wake.wait_for(lock, ended, pause, isEnded); pause = Pause)
        attention.Ask();
}

}  // namespace

void EscapeWatch::Begin(script::Attention& attention) {
    mAttention = &attention;
    try {
        mReminder = std::jthread([&attention](const std::stop_token& ended) { Remind(ended, attention); });
    } catch (const std::system_error&) {
        return;  // where there can be no more threads, a script runs all the same
    }
}

bool EscapeWatch::Stops() {
    mAttention->Rest();
    if (!mBusy) mBusy.emplace(mDesktop);
    return mDesktop.LookForEscape();
}

void EscapeWatch::End() {
    mReminder = {};
    if (!mBusy) return;
    (void)mDesktop.LookForEscape();  // drops what was done since the last time
    mBusy.reset();
}

}  // namespace sorbel::Scripting
