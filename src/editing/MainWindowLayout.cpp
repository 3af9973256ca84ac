#include "editing/MainWindow.h"
#include "editing/rules/PaneLayout.h"

namespace sorbel {

void MainWindow::RepositionDefaultValueFields() {
    const struct {
        Control& Shown;
        Bounds PaneLayout::*Place;
    } panes[] = {
        {ListBox1, &PaneLayout::ListBox1},
        {LocalizedValueField, &PaneLayout::LocalizedValueField},
        {DefaultValueFieldLong, &PaneLayout::DefaultValueFieldLong},
        {DefaultValueLabel, &PaneLayout::DefaultValueLabel},
        {TranslationText, &PaneLayout::TranslationText},
        {SimpleSplitter1, &PaneLayout::SimpleSplitter1},
        {SimpleSplitter2, &PaneLayout::SimpleSplitter2},
        {SearchField, &PaneLayout::SearchField},
        {StaticText4, &PaneLayout::StaticText4},
        {NameField, &PaneLayout::NameField},
        {HistoryFilter, &PaneLayout::HistoryFilter},
        {HistoryDefaultValueFieldLong, &PaneLayout::HistoryDefaultValueFieldLong},
        {HistoryDefaultValueLabel, &PaneLayout::HistoryDefaultValueLabel},
        {SearchOptionsMenu, &PaneLayout::SearchOptionsMenu},
    };
    PaneLayout layout;
    for (const auto& pane : panes)
        layout.*pane.Place = pane.Shown.Place();
    const bool comparing = ActiveHistory != nullptr;
    layout = RepositionPanes(layout, Width(), Height(), comparing);
    for (const auto& pane : panes)
        pane.Shown.SetPlace(layout.*pane.Place);
    HistoryDefaultValueFieldLong.SetVisible(comparing);
    HistoryDefaultValueLabel.SetVisible(comparing);
}

void MainWindow::SimpleSplitter1_Moved() {
    SimpleSplitter1.SetLeft(SimpleSplitter1.Limit(SimpleSplitter1.Left()));
    RepositionDefaultValueFields();
}

void MainWindow::SimpleSplitter2_Moved() {
    SimpleSplitter2.SetTop(SimpleSplitter2.Limit(SimpleSplitter2.Top()));
    RepositionDefaultValueFields();
}

}  // namespace sorbel
