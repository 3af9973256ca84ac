#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

namespace sorbel {

/// An immutable text in 16 bytes, for documents that hold millions of them. It either borrows bytes from a
/// buffer that its owner keeps alive (a file in memory), or owns a block that copies share by a count.
/// Used by one thread only.
class SharedText {
  public:
    SharedText() = default;
    /// Owns a copy of `text`. Either way a text of more than 2 GiB fails with OutOfBoundsException.
    explicit SharedText(std::string_view text);
    /// Refers to `text`, whose bytes must outlive this object and all its copies.
    static SharedText Borrow(std::string_view text) {
        SharedText borrowed;
        borrowed.mSize = CheckedSize(text);
        if (!text.empty()) borrowed.mData = text.data();
        return borrowed;
    }

    SharedText(const SharedText& other) noexcept
        : mData(other.mData), mSize(other.mSize), mOwned(other.mOwned) {
        if (mOwned) ++Count();
    }
    /// Leaves `other` empty.
    SharedText(SharedText&& other) noexcept : mData(other.mData), mSize(other.mSize), mOwned(other.mOwned) {
        other.mData = "";
        other.mSize = 0;
        other.mOwned = false;
    }
    SharedText& operator=(SharedText other) noexcept {
        Swap(other);
        return *this;
    }
    ~SharedText() {
        if (mOwned && --Count() == 0) FreeBlock();
    }

    [[nodiscard]] std::string_view View() const { return {mData, mSize}; }
    operator std::string_view() const { return View(); }  // NOLINT: a text is a text
    [[nodiscard]] bool Empty() const { return mSize == 0; }

  private:
    static uint32_t CheckedSize(std::string_view text) {
        if (text.size() > size_t{1} << 31) FailTooLong();
        return static_cast<uint32_t>(text.size());
    }
    [[noreturn]] static void FailTooLong();
    void Swap(SharedText& other) noexcept {
        std::swap(mData, other.mData);
        std::swap(mSize, other.mSize);
        std::swap(mOwned, other.mOwned);
    }
    /// The count of an owned text, which lies before its bytes.
    [[nodiscard]] uint32_t& Count() const {
        return *(reinterpret_cast<uint32_t*>(const_cast<char*>(mData)) - 1);
    }
    void FreeBlock() noexcept;

    const char* mData = "";
    uint32_t mSize = 0;
    bool mOwned = false;
};

static_assert(sizeof(SharedText) == 16);

}  // namespace sorbel
