#include "platform/LargePages.h"

#include <sys/mman.h>

#include <cstdint>

namespace sorbel {

namespace {

constexpr size_t PageSize = size_t{2} << 20;

}  // namespace

void PreferLargePages(void* memory, size_t size) {
    if (size < 2 * PageSize) return;
    auto* const start = static_cast<char*>(memory);
    const size_t before = -reinterpret_cast<uintptr_t>(start) % PageSize;
    const size_t inside = (size - before) / PageSize * PageSize;
    // A system without large pages refuses, and the memory stays as it is.
    [[maybe_unused]] const int ignored = madvise(start + before, inside, MADV_HUGEPAGE);
}

}  // namespace sorbel
