#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Text.h"

namespace sorbel::headless {

/// What the command line asks for; an empty text for what it does not name.
struct Arguments {
    String Documents;
    String Resources;
    String State;
    std::optional<int64_t> Now;  ///< local seconds
    String Locale;
};

extern const char* const Usage;

/// Nothing if the arguments, without the program's name, are not as `Usage` says.
[[nodiscard]] std::optional<Arguments> ParseArguments(const std::vector<String>& words);

/// The folder of the icons, which lies beside that of the program, installed or only built.
[[nodiscard]] String DefaultResources();

}  // namespace sorbel::headless
