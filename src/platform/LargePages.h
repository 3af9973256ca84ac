#pragma once

#include <cstddef>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// Asks the system for large pages behind memory that is about to be filled, which takes less than half the
/// time. Memory of less than a few large pages, and their ragged ends, are left alone, so that none is
/// wasted.
void PreferLargePages(void* memory, size_t size);

/// Room for texts or items that will be filled to the end.
inline void ReserveLarge(String& text, size_t size) {
    text.reserve(size);
    PreferLargePages(text.data(), text.capacity());
}
template <typename Item>
void ReserveLarge(std::vector<Item>& items, size_t count) {
    items.reserve(count);
    PreferLargePages(items.data(), items.capacity() * sizeof(Item));
}

}  // namespace sorbel
