#pragma once

#include "platform/Text.h"

namespace sorbel {

/// The texts that a desktop framework shows by itself, as a string table for a Mac application, byte for byte
/// from the program's data folder. Empty for a language without one. Each file is tried once while the
/// program runs.
[[nodiscard]] String LocalizedMacFrameworkStrings(StringView language);

}  // namespace sorbel
