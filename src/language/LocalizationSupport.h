#pragma once

#include "platform/Text.h"

namespace sorbel::LocalizationSupport {

/// English name of a language by its two-letter (ISO 639-1) or three-letter (ISO 639-3) code, empty if
/// unknown. The empty code gives the table's last name.
[[nodiscard]] String ISOCodeToLangauge(StringView code);

}  // namespace sorbel::LocalizationSupport
