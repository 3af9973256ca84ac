#include "platform/SharedText.h"

#include <cstring>
#include <new>

#include "platform/Exceptions.h"

namespace sorbel {

namespace {

uint32_t CheckedSize(std::string_view text) {
    if (text.size() > size_t{1} << 31) throw OutOfBoundsException("The text is too long.");
    return static_cast<uint32_t>(text.size());
}

}  // namespace

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

SharedText SharedText::Borrow(std::string_view text) {
    SharedText borrowed;
    borrowed.mSize = CheckedSize(text);
    if (!text.empty()) borrowed.mData = text.data();
    return borrowed;
}

void SharedText::FreeBlock() noexcept {
    ::operator delete(&Count());
}

}  // namespace sorbel
