#pragma once

#include <cstdint>

#include "platform/Text.h"

// The marks of the locale file: big-endian chunks of a tag, a length and a payload behind a magic. Internal
// to this folder.
namespace sorbel::LocaleFormat {

inline constexpr StringView Magic = "nvlocale";

/// Four letters as the integer that a file holds.
constexpr int32_t Mark(const char (&letters)[5]) {
    uint32_t mark = 0;
    for (int i = 0; i < 4; ++i)
        mark = mark << 8 | static_cast<uint8_t>(letters[i]);
    return static_cast<int32_t>(mark);
}

// Chunks of the file, and of each earlier version in it.
inline constexpr int32_t VersionTag = Mark("vers");
inline constexpr int32_t DateTag = Mark("date");
inline constexpr int32_t NorvaneVersionTag = Mark("nvvs");
inline constexpr int32_t LanguageTag = Mark("lang");
inline constexpr int32_t ApplicationTag = Mark("appl");
inline constexpr int32_t EntryTag = Mark("enty");
inline constexpr int32_t HistoryTag = Mark("hist");

// Chunks of an entry.
inline constexpr int32_t IdentifierTag = Mark("idnt");
inline constexpr int32_t OriginalTag = Mark("oval");
inline constexpr int32_t LocalizedTag = Mark("tval");
inline constexpr int32_t PlatformTag = Mark("plat");
inline constexpr int32_t ChangedTag = Mark("chng");

// Types of the value in a chunk.
inline constexpr int32_t IntegerType = Mark("long");
inline constexpr int32_t StringType = Mark("strn");
inline constexpr int32_t DataType = Mark("bind");

inline constexpr int64_t ChunkHeaderSize = 8;  ///< tag and length
inline constexpr int64_t ValueHeaderSize =
    16;  ///< of a chunk that holds one value: with the value's type and length

}  // namespace sorbel::LocaleFormat
