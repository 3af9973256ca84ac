#pragma once

#include <cstdint>
#include <vector>

#include "platform/FileDescriptor.h"
#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

/// A file as it is before it is overwritten, told by how it differs from the new bytes. A save seldom changes
/// more than a stretch of a file, so that this takes one pass over the file and next to no memory.
class BeforeSave {
  public:
    /// Blocks in which a system writes to a file; each is the old one or the new one.
    static constexpr size_t BlockSize = 4096;

    /// `after` must live as long as this. A file that does not exist is an empty one. Fails with IOException.
    BeforeSave(const FolderItem& file, StringView after);

    [[nodiscard]] uint64_t Size() const { return mSize; }
    /// The beginning of the first block that differs.
    [[nodiscard]] size_t Offset() const { return mOffset; }
    /// Of each block from there on.
    [[nodiscard]] const std::vector<uint64_t>& BlockHashes() const { return mHashes; }
    /// The block in which the new bytes end; empty if there is none.
    [[nodiscard]] const String& MixedBlock() const { return mMixedBlock; }
    /// All of the file.
    [[nodiscard]] String Bytes() const;

  private:
    void Read(const FileDescriptor& file);
    void Compare(StringView piece, size_t start);
    void TakeLastBlock(StringView block);
    [[nodiscard]] size_t EndOfDifference(StringView piece, size_t start) const;

    StringView mAfter;
    size_t mSize = 0;
    bool mDiffers = false;  // as far as it has been read
    size_t mOffset = 0;
    size_t mTail = 0;  // from here to the end it is as the end of the new bytes
    String mStretch;   // from the offset to the tail
    std::vector<uint64_t> mHashes;
    String mMixedBlock;
};

}  // namespace sorbel
