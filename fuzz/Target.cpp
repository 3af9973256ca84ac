#include "Target.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/Clock.h"
#include "platform/Date.h"
#include "shell/FileTypes1.h"

namespace sorbel::fuzz {

namespace {

/// The same moment and the same language on every machine, so that a finding can be repeated.
bool SetUp() {
    StopTime();
    Date::SetLocale("en_US");
    _InitFileTypes();
    return true;
}

}  // namespace

void Require(bool holds, const char* property) {
    if (holds) return;
    std::fprintf(stderr, "This does not hold: %s\n", property);
    std::abort();
}

void StopTime() {
    static const ManualClock clock;
    Clock::Install(&clock);
}

Pair SplitInput(StringView input, StringView separator) {
    const size_t at = input.find(separator);
    if (at == StringView::npos) return {input, input};
    return {input.substr(0, at), input.substr(at + separator.size())};
}

}  // namespace sorbel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace sorbel::fuzz;
    [[maybe_unused]] static const bool ready = SetUp();
    CheckInput({reinterpret_cast<const char*>(data), size});
    return 0;
}
