#pragma once

#include <cstdint>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// The places of texts in the order of their bytes, as `StrComp` has it.
[[nodiscard]] std::vector<uint32_t> ByteOrder(const std::vector<StringView>& texts);

}  // namespace sorbel
