#pragma once

#include <cstdint>

#include "platform/Text.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

/// What a row of the list stands for, worked out from its two tags each time it is needed.
enum class RowKind {
    Unknown,          ///< the identifier is not in the document
    NoPlatformValue,  ///< a platform row without a value of its own
    Translated,
    Untranslated,  ///< shows its default value
    Nameless,      ///< neither value: shows its identifier in brackets
};

/// The values that belong to a row. Texts borrow from the document.
struct RowValues {
    StringView Default;     ///< that of the Any platform where the row's platform has no value
    StringView Translated;  ///< never inherited
    bool Own = false;       ///< the row's platform has a value
};

/// `entry` may be null: all values are empty.
[[nodiscard]] RowValues ValuesOfRow(const PlatformTable* entry, int64_t platform);

struct RowState {
    RowKind Kind = RowKind::Unknown;
    String Text;
};

[[nodiscard]] RowState StateOfRow(const PlatformTable* entry, StringView identifier, int64_t platform);

}  // namespace sorbel
