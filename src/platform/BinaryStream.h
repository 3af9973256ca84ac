#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/Exceptions.h"
#include "platform/FileContents.h"
#include "platform/Text.h"

namespace sorbel {

/// Bytes that grow as a `BinaryStream` writes them.
struct MemoryBlock {
    String Bytes;
};

/// Reads bytes from memory or writes them to a `MemoryBlock`; files are read and written whole
/// (FileContents.h). `Position` always lies from 0 to `Length`; a read or a move beyond fails with
/// OutOfBoundsException and leaves the position where it was.
class BinaryStream {
  public:
    /// For reading; the bytes must outlive the stream and what it gave out.
    explicit BinaryStream(StringView bytes) : mBytes(bytes) {}
    /// For writing, from the block's start. Bytes that are there already are overwritten.
    explicit BinaryStream(MemoryBlock& block) : mBlock(&block) {}

    bool LittleEndian = false;

    [[nodiscard]] int64_t Length() const { return LenB(Contents()); }
    [[nodiscard]] int64_t Position() const { return static_cast<int64_t>(mPosition); }
    void SetPosition(int64_t position) {
        if (position < 0 || position > Length()) throw OutOfBoundsException("Moved outside the stream.");
        mPosition = static_cast<size_t>(position);
    }
    [[nodiscard]] bool EndOfFile() const { return mPosition >= Contents().size(); }

    /// The next `count` bytes, in place.
    StringView Read(int64_t count) {
        const StringView all = Contents();
        if (count < 0 || count > LenB(all) - Position())
            throw OutOfBoundsException("Read past the end of the stream.");
        const StringView bytes(all.data() + mPosition, static_cast<size_t>(count));
        mPosition += bytes.size();
        return bytes;
    }
    int32_t ReadInt32() { return ReadInt32s<1>()[0]; }
    /// Several numbers, all or none.
    template <size_t Count>
    std::array<int32_t, Count> ReadInt32s() {
        std::array<uint32_t, Count> read;
        std::memcpy(read.data(), Read(sizeof read).data(), sizeof read);
        std::array<int32_t, Count> values;
        for (size_t i = 0; i < Count; ++i)
            values[i] = static_cast<int32_t>(InOrder(read[i]));
        return values;
    }

    void Write(StringView bytes) {
        if (mBlock && bytes.size() <= mBlock->Bytes.size() - mPosition)
            bytes.copy(mBlock->Bytes.data() + mPosition, bytes.size());
        else
            Grow(bytes);
        mPosition += bytes.size();
    }
    void WriteInt32(int32_t value) { WriteInt32s(std::array{value}); }
    template <size_t Count>
    void WriteInt32s(const std::array<int32_t, Count>& values) {
        std::array<uint32_t, Count> ordered;
        for (size_t i = 0; i < Count; ++i)
            ordered[i] = InOrder(static_cast<uint32_t>(values[i]));
        Write({reinterpret_cast<const char*>(ordered.data()), sizeof ordered});
    }
    void WriteUInt8(uint8_t value) { Write({reinterpret_cast<const char*>(&value), 1}); }

  private:
    /// Puts in bytes that reach beyond the end of the block.
    void Grow(StringView bytes);
    [[nodiscard]] StringView Contents() const { return mBlock ? StringView(mBlock->Bytes) : mBytes; }
    [[nodiscard]] uint32_t InOrder(uint32_t value) const {
        const bool nativeLittle = std::endian::native == std::endian::little;
        return LittleEndian == nativeLittle ? value : __builtin_bswap32(value);
    }

    StringView mBytes;
    MemoryBlock* mBlock = nullptr;
    size_t mPosition = 0;
};

}  // namespace sorbel
