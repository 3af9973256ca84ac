#pragma once

#include "platform/Text.h"

namespace sorbel::coding {

/// The place in some bytes of the one that texts hold least often; `besides`: a place that does not count.
[[nodiscard]] size_t RarestPlace(StringView what, size_t besides = StringView::npos);

/// Looks for a few bytes in a long text, many places at a time. Both views must outlive it.
class ByteScan {
  public:
    /// `what` has at least one byte.
    ByteScan(StringView text, StringView what);

    /// The first place at or behind `from`, `npos` if there is none. From place to place through the whole
    /// text takes linear time.
    [[nodiscard]] size_t Find(size_t from);

  private:
    [[nodiscard]] size_t FindInBlock(size_t at);

    StringView mText, mWhat;
    size_t mRarest, mSecond;  // places in `mWhat` of the two bytes that are looked for first
    int64_t mPatience;        // for texts so repetitive that comparing at every place would take too long
};

}  // namespace sorbel::coding
