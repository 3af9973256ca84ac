#pragma once

#include <cstdint>
#include <memory>

#include "editing/undo/Action.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// One edit of the translated value of one string on one platform. Edits of the same value within half a
/// second of each other join into one.
class StringSetChange : public Action {
  public:
    /// Reads the set and changes nothing. An empty `originalValue` takes the default value from the set: that
    /// of the platform, or else that of the Any platform. `place` is where the identifier stands in the set's
    /// entries, as far as the caller knows.
    StringSetChange(std::shared_ptr<LocalizedStringSet> set, StringView identifier, int64_t platform,
                    StringView newValue, StringView originalValue, int64_t place = -1);

  protected:
    bool CombineWith(const Action& other) override;
    void Execute() override;
    void Unexecute() override;

  private:
    void ReadSet(const EntryDictionary::Item& entry);
    void Store(const SharedText& value);

    // Texts are owned or the set's own, so that an import of all strings need not copy them at each undo.
    SharedText mIdentifier;
    SharedText mNewValue;
    SharedText mOldValue;
    SharedText mOriginalValue;
    int64_t mPlace;  // of the identifier in the set, -1 if it was not there
    int64_t mPlatform;
    std::shared_ptr<LocalizedStringSet> mSet;
    int64_t mTime;  // ticks of the latest keystroke in this change
};

}  // namespace sorbel
