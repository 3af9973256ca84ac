#pragma once

#include "platform/Text.h"

namespace sorbel {

/// Backslash escapes for quotation mark, backslash, CR, LF and tab; everything else passes through.
[[nodiscard]] String EscapeCStyle(StringView s);
/// The same, appended to `to`.
void EscapeCStyle(StringView s, String& to);

/// Undoes them. An unknown escape loses its backslash, as does one at the end.
[[nodiscard]] String DecodeCStyleEscapes(StringView s);

}  // namespace sorbel
