#include "editing/rules/ChangedStrings.h"

#include <algorithm>

namespace sorbel {

bool IsNewOrChanged(const PlatformTable& current, const PlatformTable* previous) {
    if (!previous) return true;
    for (int64_t index = 0; index < current.Count(); ++index) {
        const PlatformTable::Item& item = current.ItemAt(index);
        const EntryValue* then = previous->Find(item.Platform);
        // A platform that the earlier version lacked is compared with nothing, not with its Any value.
        if (!Equal(item.Value.Original, then ? then->Original.View() : StringView())) return true;
    }
    return false;
}

std::vector<bool> NewOrChangedStrings(const LocalizedStringSet& current, const LocalizedStringSet& older) {
    std::vector<bool> changed;
    changed.reserve(static_cast<size_t>(current.Entries.Count()));
    int64_t next = 0;  // versions mostly hold the same strings in the same order
    for (const auto& [identifier, entry] : current.Entries) {
        const int64_t place = older.Entries.PlaceOf(identifier, next);
        if (place >= 0) next = place + 1;
        changed.push_back(IsNewOrChanged(entry, place < 0 ? nullptr : &older.Entries.ValueAt(place)));
    }
    return changed;
}

std::vector<std::shared_ptr<LocalizedStringSet>> VersionsByDate(
    const std::vector<std::shared_ptr<LocalizedStringSet>>& history) {
    std::vector<std::shared_ptr<LocalizedStringSet>> versions;
    for (const auto& version : history)
        if (version->DateGenerated) versions.push_back(version);
    std::stable_sort(versions.begin(), versions.end(),
                     [](const auto& a, const auto& b) { return *a->DateGenerated < *b->DateGenerated; });
    return versions;
}

}  // namespace sorbel
