#pragma once

#include <optional>

#include "checks/Row.h"
#include "checks/Rules.h"

namespace sorbel::checks {

/// What a rule finds in a row without a look at other rows: a short message that names what differs, or
/// nothing. Nothing for the rules that look at other rows. All rules but `Untranslated` leave rows without a
/// translation alone. `longest`: so many times the characters of the default text a translation may have;
/// one of an empty text may have any length.
[[nodiscard]] std::optional<String> Check(Rule rule, const Row& row, double longest = 0);

}  // namespace sorbel::checks
