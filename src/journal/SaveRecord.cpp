#include "journal/SaveRecord.h"

#include <algorithm>
#include <cstring>

#include "journal/Records.h"

namespace sorbel {

namespace {

constexpr size_t BlockSize = BeforeSave::BlockSize;

size_t BlockCount(uint64_t size) {
    return static_cast<size_t>((size + BlockSize - 1) / BlockSize);
}

StringView Block(StringView bytes, size_t index) {
    const size_t start = index * BlockSize;
    return start < bytes.size() ? bytes.substr(start, BlockSize) : StringView();
}

}  // namespace

String SaveRecord::Make(const BeforeSave& before, const FileState& after) {
    RecordWriter record;
    record.Put(after);
    record.Put(uint64_t{before.Offset()});
    record.Put(before.Size() - before.Offset());
    record.PutText({reinterpret_cast<const char*>(before.BlockHashes().data()),
                    before.BlockHashes().size() * sizeof(uint64_t)});
    record.PutText(before.MixedBlock());
    return record.Bytes();
}

SaveRecord::SaveRecord(StringView bytes) {
    RecordReader record(bytes);
    mStateAfter = record.Take<FileState>();
    mOffset = record.Take<uint64_t>();
    mSizeBefore = record.Take<uint64_t>();
    mBlocksBefore = record.TakeText();
    mMixedBefore = record.TakeText();
    mAfter = record.Rest();
    if (mBlocksBefore.size() != BlockCount(mSizeBefore) * sizeof(uint64_t) ||
        mStateAfter.Size != mOffset + mAfter.size())
        throw OutOfBoundsException("A save's record does not fit together.");
}

String SaveRecord::After(StringView file) const {
    return String(file.substr(0, static_cast<size_t>(mOffset))) + String(mAfter);
}

/// What lies before the offset is the same in the old file and in the new one, so the new one's hash covers
/// it.
SaveRecord::Found SaveRecord::Compare(StringView file) const {
    if (FileState::Of(file) == mStateAfter) return Found::After;
    if (file.size() < mOffset || FileState::Of(After(file)) != mStateAfter) return Found::Foreign;
    file.remove_prefix(static_cast<size_t>(mOffset));
    bool isBefore = file.size() == mSizeBefore;
    bool isKnown = file.size() <= std::max<size_t>(mSizeBefore, mAfter.size());
    for (size_t index = 0; isKnown && index < BlockCount(file.size()); ++index) {
        isBefore = isBefore && Hash64(Block(file, index)) == BlockHash(index);
        isKnown = isBefore || IsKnownBlock(file, index);
    }
    return !isKnown ? Found::Foreign : isBefore ? Found::Before : Found::HalfWritten;
}

/// The file ends inside a block where it was being made longer; and the block in which the new bytes end has
/// old ones behind them until the file is cut to its length.
bool SaveRecord::IsKnownBlock(StringView file, size_t index) const {
    const StringView block = Block(file, index), after = Block(mAfter, index);
    if (after.starts_with(block) && (block.size() == after.size() || index + 1 == BlockCount(file.size())))
        return true;
    const uint64_t sizeBefore =
        std::min<uint64_t>(BlockSize, mSizeBefore - std::min<uint64_t>(mSizeBefore, index * BlockSize));
    if (block.size() == sizeBefore && Hash64(block) == BlockHash(index)) return true;
    return index == mAfter.size() / BlockSize && block.size() == mMixedBefore.size() &&
           block.starts_with(after) && block.substr(after.size()) == mMixedBefore.substr(after.size());
}

uint64_t SaveRecord::BlockHash(size_t index) const {
    if ((index + 1) * sizeof(uint64_t) > mBlocksBefore.size()) return 0;
    uint64_t hash;
    std::memcpy(&hash, mBlocksBefore.data() + index * sizeof hash, sizeof hash);
    return hash;
}

}  // namespace sorbel
