#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel::checks {

/// The place, from 1 and in characters, of the first two blanks in a row; 0 if there are none. No-break
/// spaces are blanks too, since one beside a blank is easily overlooked.
[[nodiscard]] int64_t FindDoubledBlank(StringView text);

/// How many line breaks a text has: CR LF, CR or LF.
[[nodiscard]] int64_t CountLineBreaks(StringView text);

}  // namespace sorbel::checks
