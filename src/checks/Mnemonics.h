#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel::checks {

/// The letters that "&" marks in a caption. "&&" is an ampersand; so is one at the end or in front of white
/// space, a quotation mark or a closing bracket, as in "Cut & paste" and "the '&' key". Any other character
/// counts, since there are captions such as "&?" and "&1".
struct Mnemonics {
    int64_t Count = 0;
    int32_t Letter = -1;  ///< the first one, a code point in lower case; -1 if there is none
};
[[nodiscard]] Mnemonics FindMnemonics(StringView text);

/// The text without a last "(&X)", in which captions of writing systems without letters have their mnemonic;
/// full-width brackets count as well.
[[nodiscard]] StringView WithoutMnemonicInBrackets(StringView text);

}  // namespace sorbel::checks
