#include "editing/MainWindow.h"
#include "editing/rules/ChangedStrings.h"

namespace sorbel {

void MainWindow::RebuildHistoryPopup() {
    const auto versions = VersionsByDate(StringSet->History);
    std::shared_ptr<void> chosen;
    if (HistoryFilter.ListIndex() >= 0) chosen = HistoryFilter.RowTag(HistoryFilter.ListIndex());
    HistoryFilter.DeleteAllRows();
    HistoryFilter.AddRow("All Strings");
    for (const auto& version : versions) {
        HistoryFilter.AddRow(version->DateGenerated->LongDate());
        HistoryFilter.SetRowTag(HistoryFilter.ListCount() - 1, version);
        if (version == chosen) HistoryFilter.SetListIndex(HistoryFilter.ListCount() - 1);
    }
    if (HistoryFilter.ListIndex() < 0) HistoryFilter.SetListIndex(0);
    HistoryFilter.SetEnabled(HistoryFilter.ListCount() >= 2);
}

void MainWindow::HistoryFilter_Change() {
    const Busy busy = BusyIfLarge();
    const int64_t row = HistoryFilter.ListIndex();
    DetermineChangedStrings(
        row < 0 ? nullptr : std::static_pointer_cast<LocalizedStringSet>(HistoryFilter.RowTag(row)));
    FilterStrings();
}

void MainWindow::DetermineChangedStrings(std::shared_ptr<LocalizedStringSet> older) {
    HistoryFilterShouldShow.clear();
    ActiveHistory = std::move(older);
    RepositionDefaultValueFields();
    if (!ActiveHistory) return;
    HistoryDefaultValueLabel.SetText(ActiveHistory->DateGenerated->LongDate() + " Value:");
    HistoryFilterShouldShow = NewOrChangedStrings(*StringSet, *ActiveHistory);
}

}  // namespace sorbel
