#pragma once

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The string table of a Mac application ("Localizable.strings"): UTF-16BE with a byte-order mark, a line
/// `"identifier" = "value";` for each string that has a translation for it. Values carry backslash escapes
/// and LF line ends; identifiers go in as they are.
[[nodiscard]] String ToStringFile(const LocalizedStringSet& set);

}  // namespace sorbel
