#include "exchange/TranslationImport.h"

#include "interchange/Escapes.h"

namespace sorbel {

namespace {

bool IsSame(StringView text, StringView imported, TextForm form) {
    if (text == imported) return true;
    if (!form.LosesLineEnds || text.find('\r') == StringView::npos) return false;
    return ReplaceLineEndings(text, "\n") == imported || ReplaceAll(text, "\r", "") == imported;
}

}  // namespace

void TranslationImport::Take(const ImportedRow& row, TextForm form) {
    const std::optional<KeyedRow> keyed = RowOfKey(row.Key, mRoom);
    if (!keyed) return TakeUnknown(row.Key);
    Take(keyed->Identifier, keyed->Platform, row, form);
}

void TranslationImport::Take(StringView identifier, std::optional<int64_t> platform, const ImportedRow& row,
                             TextForm form) {
    const std::optional<Found> found = platform ? Find(identifier, *platform) : std::nullopt;
    if (!found) return TakeUnknown(row.Key);
    TakeInto(*found, *platform, row, form);
}

/// The first row of an identifier follows the identifier before, the others its own first one.
std::optional<TranslationImport::Found> TranslationImport::Find(StringView identifier, int64_t platform) {
    const int64_t guess = platform == PlatformAny ? mLast + 1 : mLast;
    const int64_t place = mDocument->Entries.PlaceOf(identifier, guess);
    if (place < 0) return std::nullopt;
    mLast = place;
    const EntryValue* const value = mDocument->Entries.ValueAt(place).Find(platform);
    if (!value) return std::nullopt;
    return Found{place, *value};
}

void TranslationImport::TakeInto(const Found& found, int64_t platform, const ImportedRow& row,
                                 TextForm form) {
    const StringView original = found.Value.Original;
    const StringView expected = original.empty() && form.EmptyDefaultIsKey ? row.Key : original;
    if (!IsSame(expected, row.Default, form)) {
        Remark(row.Key, "default text differs");
        if (mStrict) return Skip();
    }
    if (IsSame(found.Value.Localized, row.Translation, form)) {
        ++mUnchanged;
        return;
    }
    ++mChanged;
    const SharedText identifier = mDocument->Entries.KeyAt(found.Place);
    const SharedText unchanged = found.Value.Original;
    mDocument->StoreEntry(platform, identifier, unchanged, SharedText(row.Translation), found.Place);
}

void TranslationImport::TakeUnknown(StringView key) {
    ++mUnknown;
    Remark(key, "unknown");
}

/// A key stays on its line.
void TranslationImport::Remark(StringView key, StringView what) {
    constexpr StringView breaks = "\t\r\n";
    mRemarks += key.find_first_of(breaks) == StringView::npos ? String(key) : EscapeCStyle(key);
    mRemarks.append(": ").append(what).append("\n");
}

String TranslationImport::Report() const {
    return std::to_string(mChanged) + " changed, " + std::to_string(mUnchanged) + " unchanged, " +
           std::to_string(mUnknown) + " unknown, " + std::to_string(mSkipped) + " skipped\n";
}

}  // namespace sorbel
