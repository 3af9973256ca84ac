#pragma once

#include <memory>

#include "headless/HeadlessBackend.h"
#include "headless/HeadlessClock.h"
#include "ui/toolkit/Application.h"

namespace sorbel::headless {

/// One run of the program.
struct Session {
    explicit Session(HeadlessClock& time) : Time(time) {}

    /// The reply to one line of input, whatever that line holds.
    [[nodiscard]] String Answer(StringView line);

    HeadlessClock& Time;
    HeadlessBackend Desktop;
    std::unique_ptr<Application> App;  ///< null until the operation "start"

  private:
    void Perform(StringView line, Json& reply);
};

}  // namespace sorbel::headless
