#include "platform/SharedText.h"

#include <cstring>
#include <new>

#include "platform/Exceptions.h"

namespace sorbel {

SharedText::SharedText(std::string_view text) {
    const uint32_t size = CheckedSize(text);
    if (size == 0) return;
    void* const block = ::operator new(sizeof(uint32_t) + text.size());
    char* const bytes = static_cast<char*>(block) + sizeof(uint32_t);
    new (block) uint32_t(1);
    std::memcpy(bytes, text.data(), text.size());
    mData = bytes;
    mSize = size;
    mOwned = true;
}

void SharedText::FailTooLong() {
    throw OutOfBoundsException("The text is too long.");
}

void SharedText::FreeBlock() noexcept {
    ::operator delete(&Count());
}

}  // namespace sorbel
