#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>

namespace sorbel {

/// Asks for large pages for memory that was just taken and not touched yet. For tens of megabytes that are
/// written once, being given small pages takes longer than writing them. A wish: nothing depends on it.
inline void WishLargePages(void* memory, size_t size) {
    constexpr uintptr_t Page = uintptr_t{1} << 21;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(memory) + Page - 1) / Page * Page;
    const uintptr_t end = (reinterpret_cast<uintptr_t>(memory) + size) / Page * Page;
    if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

}  // namespace sorbel
