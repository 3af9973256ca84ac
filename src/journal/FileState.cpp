#include "journal/FileState.h"

#include <xxhash.h>

namespace sorbel {

FileState FileState::Of(StringView bytes) {
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return {bytes.size(), hash.low64, hash.high64};
}

uint64_t Hash64(StringView bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

}  // namespace sorbel
