#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// A row of a document: a string on one platform.
struct Row {
    StringView Identifier;
    int64_t Platform;
    const EntryValue& Value;
};

/// What a format can hold. Rows with other characters stay out, or are an error.
enum class Holds {
    AnyBytes,      ///< whatever there is
    Characters,    ///< those of XML 1.0 (its production 2, "Char") in valid UTF-8
    DelimitedText  ///< any bytes, but no tab and no line end in an identifier
};

/// Whether a text is valid UTF-8 and made of characters that XML 1.0 can hold.
[[nodiscard]] bool IsXmlText(StringView text);

/// The rows of a document that go into a file, in its order; the platforms of each identifier by their code,
/// Any first, but in delimited text as the document has them.
class Rows {
  public:
    /// `lossy`: rows that the format cannot hold are left out. Otherwise the first one is a failure,
    /// IOException with its identifier.
    Rows(const LocalizedStringSet& set, Holds holds, bool lossy);

    [[nodiscard]] const LocalizedStringSet& Set() const { return mSet; }
    /// How many were left out.
    [[nodiscard]] int64_t LeftOut() const { return mLeftOut; }

    template <typename Visit>
    void ForEach(Visit visit) const {
        std::vector<const PlatformTable::Item*> items;
        for (const auto& [identifier, entry] : mSet.Entries) {
            CollectItems(entry, items);
            for (const PlatformTable::Item* item : items) {
                const Row row{identifier, item->Platform, item->Value};
                if (mLeftOut == 0 || CanHold(row)) visit(row);
            }
        }
    }

  private:
    [[nodiscard]] bool CanHold(const Row& row) const;
    void CollectItems(const PlatformTable& entry, std::vector<const PlatformTable::Item*>& items) const;

    const LocalizedStringSet& mSet;
    Holds mHolds;
    int64_t mLeftOut = 0;
};

}  // namespace sorbel
