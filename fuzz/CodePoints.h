#pragma once

#include <unicode/utf8.h>

#include <cstdint>

#include "platform/Text.h"

namespace sorbel::fuzz {

// The library's macro narrows numbers in our name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"

/// The code point at a place of UTF-8, read by another decoder than the program's, and the place behind it.
/// -1 for a stray byte, which is passed alone.
inline int32_t NextCodePoint(StringView text, int32_t& at) {
    const int32_t start = at;
    UChar32 c;
    U8_NEXT(text.data(), at, static_cast<int32_t>(text.size()), c);
    if (c < 0) at = start + 1;
    return c < 0 ? -1 : c;
}

#pragma GCC diagnostic pop

}  // namespace sorbel::fuzz
