#include "editing/rules/RowText.h"

namespace sorbel {

RowValues ValuesOfRow(const PlatformTable* entry, int64_t platform) {
    RowValues values;
    if (!entry) return values;
    if (const EntryValue* own = entry->Find(platform)) return {own->Original, own->Localized, true};
    if (const EntryValue* any = entry->Find(PlatformAny)) values.Default = any->Original;
    return values;
}

RowState StateOfRow(const PlatformTable* entry, StringView identifier, int64_t platform) {
    if (!entry) return {};
    const RowValues values = ValuesOfRow(entry, platform);
    if (platform != PlatformAny && !values.Own)
        return {RowKind::NoPlatformValue, "(No platform-specific value)"};
    if (IsTranslation(values.Translated)) return {RowKind::Translated, String(values.Translated)};
    if (!values.Default.empty()) return {RowKind::Untranslated, String(values.Default)};
    return {RowKind::Nameless, "(" + String(identifier) + ")"};
}

}  // namespace sorbel
