#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel {

/// What tells one state of a file from another: its size and a hash of its bytes (XXH3, 128 bits).
struct FileState {
    uint64_t Size = 0;
    uint64_t HashLow = 0, HashHigh = 0;

    static FileState Of(StringView bytes);
    bool operator==(const FileState&) const = default;
};

/// A hash of 64 bits (XXH3).
[[nodiscard]] uint64_t Hash64(StringView bytes);

}  // namespace sorbel
