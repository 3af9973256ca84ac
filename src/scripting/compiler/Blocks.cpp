#include "scripting/compiler/Blocks.h"

#include <algorithm>
#include <new>

namespace sorbel::script {

// The rest of a piece that is too small for a block is not used again: it is less than one block.
void* SmallBlocks::Cut(size_t room) {
    if (mLeft < room) {
        if (!mRoom.MayGrow(mPiece)) return nullptr;
        std::unique_ptr<std::byte[]> piece(new (std::nothrow) std::byte[mPiece]);
        if (!piece) return nullptr;
        mNext = piece.get();
        mLeft = mPiece;
        mPieces.push_back(std::move(piece));
        mPiece = std::min(mPiece * 2, LargestPiece);
    }
    void* block = mNext;
    mNext += room;
    mLeft -= room;
    return block;
}

}  // namespace sorbel::script
