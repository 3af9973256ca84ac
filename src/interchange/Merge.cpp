#include "interchange/Merge.h"

#include "editing/changes/StringSetChange.h"
#include "shell/FileTypes1.h"

namespace sorbel {

std::shared_ptr<LocalizedStringSet> LocaleForImport(const FolderItem& f) {
    // Text never makes a valid set, so none is made of it, but its short lines are failures all the same.
    if (f.Type() == FileTypes1::TabDelimited().Name) {
        LocalizedStringSet::CheckTextFile(f);
        return nullptr;
    }
    auto locale = std::make_shared<LocalizedStringSet>();
    return locale->ReadFile(f) ? locale : nullptr;
}

std::unique_ptr<ImportChange> ChangesFromLocale(const std::shared_ptr<LocalizedStringSet>& document,
                                                const LocalizedStringSet& imported) {
    auto change = std::make_unique<ImportChange>();
    change->Document = change->StringSet = document;
    int64_t next = 0;
    for (const auto& [identifier, entry] : imported.Entries) {
        const int64_t place = document->Entries.PlaceOf(identifier, next);
        if (place < 0) continue;
        next = place + 1;
        for (int64_t index = 0; index < entry.Count(); ++index) {
            const PlatformTable::Item& item = entry.ItemAt(index);
            change->Changes.push_back(std::make_unique<StringSetChange>(
                document, identifier, item.Platform, item.Value.Localized, item.Value.Original, place));
        }
    }
    change->Histories.push_back(document->Clone());
    return change;
}

}  // namespace sorbel
