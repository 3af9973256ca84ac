#pragma once

#include <optional>
#include <vector>

#include "journal/BeforeSave.h"
#include "journal/FileState.h"
#include "platform/Text.h"

namespace sorbel {

/// What a file that is overwritten in place looks like before and after: enough to tell how far the writing
/// came, and to complete it.
class SaveRecord {
  public:
    /// What a journal keeps: this and, behind it, the new bytes from `before.Offset()` on. `after` is the
    /// state that they make.
    [[nodiscard]] static String Make(const BeforeSave& before, const FileState& after);
    /// Refers to `bytes`, as kept; fails with OutOfBoundsException for others.
    explicit SaveRecord(StringView bytes);

    enum class Found {
        Before,  ///< the writing has not begun
        After,   ///< it is complete
        HalfWritten,
        Foreign  ///< others have written to the file since
    };
    [[nodiscard]] Found Compare(StringView file) const;
    /// The whole new file, from one that was found half written.
    [[nodiscard]] String After(StringView file) const;
    [[nodiscard]] const FileState& StateAfter() const { return mStateAfter; }

  private:
    [[nodiscard]] bool IsKnownBlock(StringView file, size_t index) const;
    [[nodiscard]] uint64_t BlockHash(size_t index) const;

    FileState mStateAfter;  // of the whole file
    uint64_t mOffset = 0;
    // From the offset on.
    uint64_t mSizeBefore = 0;
    StringView mBlocksBefore;  // hashes
    StringView mMixedBefore;   // the old bytes of the block in which the new ones end
    StringView mAfter;
};

}  // namespace sorbel
