#pragma once

#include <cstdint>
#include <optional>

#include "platform/Text.h"

namespace sorbel {

/// "Any", "Mac OS", "Windows", "Linux", or the number of another platform.
[[nodiscard]] String PlatformWord(int64_t platform);
/// Undoes it. Words count in either case; nothing for a text that is no such word.
[[nodiscard]] std::optional<int64_t> PlatformOf(StringView word);

/// The name of a row in an exchanged file: the identifier, and for a platform other than Any a vertical bar
/// and the platform's word. Bars and backslashes in the identifier have a backslash in front.
[[nodiscard]] String RowKey(StringView identifier, int64_t platform);
/// The same in place of what is in `to`.
void RowKey(StringView identifier, int64_t platform, String& to);

/// What a key stands for.
struct KeyedRow {
    StringView Identifier;
    int64_t Platform;
};
/// Undoes `RowKey`; nothing for a text that it never makes. The identifier lies in `key`, or in `room` if it
/// has backslashes.
[[nodiscard]] std::optional<KeyedRow> RowOfKey(StringView key, String& room);

}  // namespace sorbel
