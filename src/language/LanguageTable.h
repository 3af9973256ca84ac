#pragma once

#include "platform/Dictionary.h"
#include "platform/SharedText.h"
#include "platform/Text.h"

namespace sorbel {

/// English names of languages by code. All texts point into the program's own constant.
struct LanguageTable {
    using Names = Dictionary<SharedText, SharedText>;

    Names mISO639_1Language;  ///< by two-letter code, and the last name of all by the empty text
    Names mISO639_2Language;  ///< by three-letter code
};

namespace LocalizationSupport {

/// iso639-3.tsv as built into the program: rows between carriage returns, of four fields between tabs
/// (three-letter code, ISO 639-2 code, two-letter code, name).
[[nodiscard]] StringView LanguageText();

/// Parses the text at the first call; the same table each time.
const LanguageTable& InitializeTable();

}  // namespace LocalizationSupport

}  // namespace sorbel
