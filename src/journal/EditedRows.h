#pragma once

#include <optional>
#include <vector>

#include "platform/Dictionary.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

/// The rows that were edited one by one, and how many of them differ from what they were at first.
class EditedRows {
  public:
    /// A row goes from `before`, null for none, to `after`.
    void Set(const SharedText& identifier, int64_t platform, const EntryValue* before,
             const EntryValue& after);
    [[nodiscard]] bool AnyDiffers() const { return mDiffering > 0; }
    [[nodiscard]] bool Empty() const { return mRows.Count() == 0; }
    void Clear();

  private:
    struct Row {
        int64_t Platform;
        std::optional<EntryValue> First;
        bool Differs = false;
    };
    Row& Find(const SharedText& identifier, int64_t platform, const EntryValue* before);

    Dictionary<SharedText, std::vector<Row>> mRows;
    int64_t mDiffering = 0;
};

}  // namespace sorbel
