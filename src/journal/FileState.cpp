#include "journal/FileState.h"

#include <xxhash.h>

#include <memory>
#include <new>

namespace sorbel {

FileState FileState::Of(StringView bytes) {
    const XXH128_hash_t hash = XXH3_128bits(bytes.data(), bytes.size());
    return {bytes.size(), hash.low64, hash.high64};
}

uint64_t Hash64(StringView bytes, StringView more) {
    if (more.empty()) return XXH3_64bits(bytes.data(), bytes.size());
    const std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state(XXH3_createState(),
                                                                                XXH3_freeState);
    if (!state) throw std::bad_alloc();
    XXH3_64bits_reset(state.get());
    for (const StringView part : {bytes, more})
        XXH3_64bits_update(state.get(), part.data(), part.size());
    return XXH3_64bits_digest(state.get());
}

}  // namespace sorbel
