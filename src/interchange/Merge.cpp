#include "interchange/Merge.h"

#include "editing/changes/StringSetChange.h"

namespace sorbel {

std::unique_ptr<ImportChange> ChangesFromLocale(const std::shared_ptr<LocalizedStringSet>& document,
                                                const LocalizedStringSet& imported) {
    auto change = std::make_unique<ImportChange>();
    change->StringSet = document;
    for (const auto& [identifier, entry] : imported.Entries) {
        if (!document->Entries.HasKey(identifier)) continue;
        for (int64_t index = 0; index < entry.Count(); ++index) {
            const PlatformTable::Item& item = entry.ItemAt(index);
            change->Changes.push_back(std::make_unique<StringSetChange>(
                document, identifier, item.Platform, item.Value.Localized, item.Value.Original));
        }
    }
    change->Histories.push_back(document->Clone());
    return change;
}

}  // namespace sorbel
