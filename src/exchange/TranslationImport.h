#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "exchange/RowKey.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// A row as a file has it. Texts need to live only for the call.
struct ImportedRow {
    StringView Key;
    StringView Default, Translation;
};

/// What becomes of texts in a format.
struct TextForm {
    bool EmptyDefaultIsKey = false;
    /// Tools that work with it are known to make every line end an LF, or to drop the CRs, so that such a
    /// text is no other one.
    bool LosesLineEnds = false;
};

/// Takes translations over into a document: those of rows that exist, nothing else. Only texts that differ
/// are changed.
class TranslationImport {
  public:
    /// `strict` leaves out rows whose default text is not the document's.
    TranslationImport(std::shared_ptr<LocalizedStringSet> document, bool strict)
        : mDocument(std::move(document)), mStrict(strict) {}

    void Take(const ImportedRow& row, TextForm form);
    /// The same for a format with the identifier and the platform in fields of their own. No platform: none
    /// that there is.
    void Take(StringView identifier, std::optional<int64_t> platform, const ImportedRow& row, TextForm form);
    /// A row that cannot be one of the document's; `key` is what to call it.
    void TakeUnknown(StringView key);
    /// An entry that brings nothing.
    void Skip() { ++mSkipped; }

    [[nodiscard]] bool HasChanges() const { return mChanged > 0; }
    /// "N changed, N unchanged, N unknown, N skipped" in a line.
    [[nodiscard]] String Report() const;
    /// A line for each row that is unknown or has another default text.
    [[nodiscard]] const String& Remarks() const { return mRemarks; }

  private:
    struct Found {
        int64_t Place;
        const EntryValue& Value;
    };
    [[nodiscard]] std::optional<Found> Find(StringView identifier, int64_t platform);
    void TakeInto(const Found& found, int64_t platform, const ImportedRow& row, TextForm form);
    void Remark(StringView key, StringView what);

    std::shared_ptr<LocalizedStringSet> mDocument;
    bool mStrict;
    int64_t mLast = -1;  // place of the last row that was found, since rows mostly follow each other
    int64_t mChanged = 0, mUnchanged = 0, mUnknown = 0, mSkipped = 0;
    String mRemarks;
    String mRoom;
};

}  // namespace sorbel
