#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "scripting/compiler/Footprint.h"

#if defined(__SANITIZE_ADDRESS__)
#define SORBEL_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SORBEL_ADDRESS_SANITIZER
#endif
#endif

namespace sorbel::script {

/// Gives out small blocks, which are cut from large pieces. A block that comes back is kept for the next of
/// its size; the pieces go with this object.
class SmallBlocks {
  public:
    static constexpr size_t Step = 16;
#ifdef SORBEL_ADDRESS_SANITIZER
    static constexpr size_t Largest = 0;  // it watches over blocks of the system only
#else
    static constexpr size_t Largest = 256;
#endif
    explicit SmallBlocks(Footprint& room) : mRoom(room) {}
    /// What a block for so many bytes, at most `Largest`, really holds.
    [[nodiscard]] static constexpr size_t Room(size_t bytes) {
        return (bytes + Step - 1) / Step * Step;
    }

    /// Null if there is no memory.
    [[nodiscard]] void* Take(size_t bytes) {
        Spare*& first = mSpare[(bytes + Step - 1) / Step];
        if (!first) return Cut(Room(bytes));
        Spare* block = first;
        first = block->Next;
        return block;
    }
    void GiveBack(void* block, size_t bytes) {
        Spare*& first = mSpare[(bytes + Step - 1) / Step];
        first = new (block) Spare{first};
    }

  private:
    struct Spare {
        Spare* Next;
    };
    static constexpr size_t FirstPiece = size_t{1} << 14;
    static constexpr size_t LargestPiece = size_t{1} << 20;

    void* Cut(size_t room);

    Footprint& mRoom;
    Spare* mSpare[Largest / Step + 1] = {};
    std::vector<std::unique_ptr<std::byte[]>> mPieces;
    std::byte* mNext = nullptr;
    size_t mLeft = 0;
    size_t mPiece = FirstPiece;
};

}  // namespace sorbel::script
