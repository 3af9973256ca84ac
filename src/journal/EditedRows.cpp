#include "journal/EditedRows.h"

#include <algorithm>

namespace sorbel {

void EditedRows::Set(const SharedText& identifier, int64_t platform, const EntryValue* before,
                     const EntryValue& after) {
    Row& row = Find(identifier, platform, before);
    const bool differs = !row.First || row.First->Localized.View() != after.Localized.View() ||
                         row.First->Original.View() != after.Original.View();
    mDiffering += int64_t{differs} - int64_t{row.Differs};
    row.Differs = differs;
}

EditedRows::Row& EditedRows::Find(const SharedText& identifier, int64_t platform, const EntryValue* before) {
    std::vector<Row>& rows = mRows.FindOrAdd(identifier, [&] { return SharedText(identifier.View()); });
    const auto found = std::ranges::find(rows, platform, &Row::Platform);
    if (found != rows.end()) return *found;
    return rows.emplace_back(Row{platform, before ? std::optional(*before) : std::nullopt, false});
}

void EditedRows::Clear() {
    mRows.Clear();
    mDiffering = 0;
}

}  // namespace sorbel
