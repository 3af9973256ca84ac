#pragma once

#include <memory>
#include <vector>

#include "platform/Dictionary.h"
#include "platform/SharedText.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

/// All texts of some entries in folded form, one behind the other, so that a search goes through them at the
/// speed of memory. Entries that change are noted, and searched by themselves until a new copy is due.
class SearchText {
  public:
    explicit SearchText(const Dictionary<SharedText, PlatformTable>& entries);

    /// The entry at this place is new or has another value.
    void NoteChange(size_t place);
    /// So many have changed that a new copy is worth its while.
    [[nodiscard]] bool IsWorn() const { return mChanged.size() > mEnds.size() / 16 + 64; }
    /// The places of the entries that hold the term in one of their texts and of all that have changed, in
    /// order.
    [[nodiscard]] std::vector<size_t> Places(const Finder& term) const;

  private:
    [[nodiscard]] std::vector<size_t> PlacesInCopy(StringView folded) const;

    std::unique_ptr<char[]> mText;
    std::vector<size_t> mEnds;  ///< where the texts of each entry end
    std::vector<size_t> mChanged;
};

}  // namespace sorbel
