#pragma once

#include "platform/Text.h"

namespace sorbel::checks {

/// The marks that a text ends with, each kind once: ".", ":", ";", "!", "?", ",", and "…" for three points.
/// Their counterparts in other scripts count as the same, such as "。", "：" or "؟". White space behind them
/// is passed over, so are closing quotation marks ("say %1.”") but not around the mark alone ("the “:”"), and
/// so is a mnemonic in brackets ("(&O)").
[[nodiscard]] String EndingOf(StringView text);

/// Whether both texts end alike. The ";" of a Greek text is also its question mark.
[[nodiscard]] bool SameEnding(StringView a, StringView b);

}  // namespace sorbel::checks
