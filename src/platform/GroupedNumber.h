#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel {

/// A number as people read it, in groups of digits as is usual in a locale such as "de_DE": "1.234.567". An
/// empty locale is that of the user.
[[nodiscard]] String GroupedNumber(int64_t number, StringView locale = {});

}  // namespace sorbel
