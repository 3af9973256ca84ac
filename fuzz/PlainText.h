#pragma once

#include <optional>
#include <vector>

#include "PlainDocument.h"

namespace sorbel::fuzz {

/// The lines of a text, ended by CR LF, LF or CR. A text that ends with a line's end has no empty line behind
/// it, and the empty text has none at all.
[[nodiscard]] std::vector<String> PlainLines(StringView text);
[[nodiscard]] std::vector<String> PlainFields(StringView line, char delimiter);

/// What a backslash and the byte behind it stand for, byte by byte.
[[nodiscard]] String PlainUnescaped(StringView text);

/// Adds the rows of tab-delimited text, up to the first with fewer than four fields. True: there was none.
bool AddTextLocale(StringView text, PlainDocument& document);

/// The changes that an import of delimited text makes; nothing if the first line tells no delimiter.
[[nodiscard]] std::optional<std::vector<PlainChange>> PlainImport(const PlainDocument& document,
                                                                  StringView text);

}  // namespace sorbel::fuzz
