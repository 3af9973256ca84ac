#pragma once

#include <cstdint>
#include <vector>

#include "platform/TermScan.h"
#include "platform/Text.h"

namespace sorbel {

/// Whether texts hold a term, ignoring letter case: `InStr` above 0 for many texts. Made for a pass over a
/// whole document, whose texts lie one after the other in the bytes of its file, apart from some: those bytes
/// are searched in one sweep, across whatever lies between the texts, and most texts are answered without a
/// look.
class Finder {
  public:
    /// `blocks` are bytes that many of the texts may lie in. They must stay as they are while this exists.
    explicit Finder(StringView term, std::vector<StringView> blocks = {});
    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;

    [[nodiscard]] bool IsIn(StringView text) const {
        if (mFolded.empty()) return true;
        return !text.empty() && !(Seen(text.data()) && Seen(text.data() + text.size())) && LookAt(text);
    }

  private:
    [[nodiscard]] bool LookAt(StringView text) const;
    [[nodiscard]] bool IsInForm(StringView text) const;
    [[nodiscard]] const char* SweepTo(const char* from, const char* end) const;
    [[nodiscard]] bool EnterBlock(StringView text) const;
    /// Whether a pointer leads into the bytes without a match that the sweep has left behind, or to their
    /// end.
    [[nodiscard]] bool Seen(const char* at) const {
        return Address(at) - Address(mSeen) <= Address(mSeenEnd) - Address(mSeen);
    }
    static uintptr_t Address(const char* at) { return reinterpret_cast<uintptr_t>(at); }

    const String mFolded;
    const coding::TermScan mScan;
    const std::vector<StringView> mBlocks;

    // Where the sweep is. It changes no answer.
    mutable StringView mBlock;
    mutable const char* mSeen = nullptr;
    mutable const char* mSeenEnd = nullptr;
    mutable ptrdiff_t mAhead = 0;  // how far to look beyond a text
    mutable String mForm;          // a folded text, kept so that many texts allocate once
};

}  // namespace sorbel
