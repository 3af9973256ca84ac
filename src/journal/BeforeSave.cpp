#include "journal/BeforeSave.h"

#include <algorithm>

#include "journal/FileState.h"

namespace sorbel {

namespace {

constexpr size_t PieceSize = 256 * BeforeSave::BlockSize;

/// As many bytes as there are, at most those of the buffer.
StringView ReadAt(const FileDescriptor& file, String& buffer, size_t start) {
    size_t size = 0;
    while (size < buffer.size()) {
        const ssize_t count = Uninterrupted([&] {
            return pread(file.Number(), buffer.data() + size, buffer.size() - size,
                         static_cast<off_t>(start + size));
        });
        if (count < 0) ThrowSystemError(errno);
        if (count == 0) break;
        size += static_cast<size_t>(count);
    }
    return StringView(buffer).substr(0, size);
}

StringView Part(StringView bytes, size_t start, size_t count) {
    return start < bytes.size() ? bytes.substr(start, count) : StringView();
}

}  // namespace

BeforeSave::BeforeSave(const FolderItem& file, StringView after) : mAfter(after) {
    if (!file.Exists()) return;
    const FileDescriptor opened(file.NativePath(), O_RDONLY);
    const struct stat status = opened.Status();
    if (!S_ISREG(status.st_mode)) ThrowSystemError(EINVAL);
    mSize = static_cast<size_t>(status.st_size);
    Read(opened);
}

void BeforeSave::Read(const FileDescriptor& file) {
    String buffer(std::min(PieceSize, mSize), '\0');
    for (size_t start = 0; start < mSize; start += PieceSize) {
        const StringView piece = ReadAt(file, buffer, start).substr(0, mSize - start);
        if (piece.size() < std::min(PieceSize, mSize - start)) ThrowSystemError(ESTALE);  // others cut it
        Compare(piece, start);
    }
    if (!mDiffers) TakeLastBlock(ReadAt(file, buffer, mSize / BlockSize * BlockSize).substr(0, BlockSize));
    mTail = std::max(mTail, mOffset);
    mStretch.resize(mTail - mOffset);
    if (ReadAt(file, mStretch, mOffset).size() < mStretch.size()) ThrowSystemError(ESTALE);
}

/// The new bytes go on where the file ends, in the block that is written next.
void BeforeSave::TakeLastBlock(StringView block) {
    mOffset = mSize / BlockSize * BlockSize;
    mTail = mSize;
    if (!block.empty()) mHashes.push_back(Hash64(block));
}

void BeforeSave::Compare(StringView piece, size_t start) {
    const size_t mixed = mAfter.size() / BlockSize * BlockSize;
    if (mixed >= start) mMixedBlock += Part(piece, mixed - start, BlockSize);
    if (!mDiffers) {
        const StringView other = Part(mAfter, start, piece.size());
        if (piece == other) return;
        mDiffers = true;
        const auto same = static_cast<size_t>(std::ranges::mismatch(piece, other).in1 - piece.begin());
        mOffset = start + same / BlockSize * BlockSize;
    }
    const size_t first = std::max(mOffset, start) - start;
    for (size_t at = first; at < piece.size(); at += BlockSize)
        mHashes.push_back(Hash64(piece.substr(at, BlockSize)));
    mTail = std::max(mTail, EndOfDifference(piece.substr(first), start + first));
}

/// Behind the last byte of the piece that is another than the one as far from the end of the new bytes. What
/// those have before the offset does not count twice.
size_t BeforeSave::EndOfDifference(StringView piece, size_t start) const {
    const size_t fromEnd = mSize - start, comparable = mAfter.size() - std::min(mOffset, mAfter.size());
    const size_t alone = std::min(piece.size(), fromEnd - std::min(fromEnd, comparable));
    const StringView mine = piece.substr(alone);
    if (mine.empty()) return start + alone;
    const StringView other = mAfter.substr(mAfter.size() - (fromEnd - alone), mine.size());
    size_t end = mine.size();
    if (mine == other) end = 0;
    while (end > 0 && mine[end - 1] == other[end - 1])
        --end;
    return alone + end > 0 ? start + alone + end : 0;
}

String BeforeSave::Bytes() const {
    const size_t rest = mSize - std::min(mSize, mTail);
    return String(mAfter.substr(0, std::min(mOffset, mAfter.size()))) + mStretch +
           String(mAfter.substr(mAfter.size() - rest));
}

}  // namespace sorbel
