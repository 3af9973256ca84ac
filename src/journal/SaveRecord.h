#pragma once

#include <optional>
#include <vector>

#include "journal/FileState.h"
#include "platform/Text.h"

namespace sorbel {

/// What a file that is overwritten in place looks like before and after: enough to tell how far the writing
/// came, and to complete it.
class SaveRecord {
  public:
    /// Blocks in which a system writes to a file; each is the old one or the new one.
    static constexpr size_t BlockSize = 4096;

    /// What a journal keeps; the bytes of `after` stand behind it.
    [[nodiscard]] static String Make(StringView before, StringView after);
    /// Refers to `bytes`, as kept; fails with OutOfBoundsException for others.
    explicit SaveRecord(StringView bytes);

    enum class Found {
        Before,  ///< the writing has not begun
        After,   ///< it is complete
        HalfWritten,
        Foreign  ///< others have written to the file since
    };
    [[nodiscard]] Found Compare(StringView file) const;
    [[nodiscard]] StringView After() const { return mAfter; }

  private:
    [[nodiscard]] bool IsKnownBlock(StringView file, size_t index) const;
    [[nodiscard]] uint64_t BlockHash(size_t index) const;

    uint64_t mSizeBefore = 0;
    StringView mBlocksBefore;  // hashes
    StringView mMixedBefore;   // the old bytes of the block in which the new ones end
    StringView mAfter;
};

}  // namespace sorbel
