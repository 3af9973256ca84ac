#include "editing/InternalChange.h"
#include "editing/MainWindow.h"
#include "editing/PlatformIcons.h"
#include "editing/rules/Matching.h"
#include "editing/rules/RowText.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

/// The identifiers whose folders are open in the list as it stands.
Dictionary<SharedText, bool> OpenFolders(const Listbox& list) {
    Dictionary<SharedText, bool> open;
    for (const int64_t row : list.ExpandedRows())
        open.FindOrAdd(list.TextTag(row), [&] { return list.TextTag(row); }) = true;
    return open;
}

}  // namespace

void MainWindow::ShowAllStrings() {
    const Dictionary<SharedText, bool> open = OpenFolders(ListBox1);
    const bool onlyNonlocalized = OnlyNonlocalized();
    ListBox1.DeleteAllRows();
    size_t place = 0;
    for (const auto& [identifier, entry] : StringSet->Entries) {
        if (!IsShown(place++)) continue;
        if (onlyNonlocalized && !IsUntranslated(entry)) continue;
        ListBox1.AddFolder({}, PlatformAny, identifier);
        if (open.HasKey(identifier) && !mHiddenMeanwhile.HasKey(identifier))
            ListBox1.SetExpanded(ListBox1.LastIndex(), true);
    }
    ListBox1.SetScrollPosition(LastScrollPosition);
}

void MainWindow::ListBox1_ExpandRow(int64_t row) {
    const SharedText identifier = ListBox1.TextTag(row);
    for (const int64_t platform : {PlatformMacOS, PlatformWindows, PlatformLinux})
        ListBox1.AddRow({}, platform, identifier, PlatformIcon(platform, SystemTextColor()));
}

/// A string that has been translated leaves the reduced list here, not while typing. The list selects by row
/// number afterwards: meant, although the click then lands on whatever the rebuilt list has there.
bool MainWindow::ListBox1_CellClick(int64_t row) {
    lastSelectedItem = row < 0 ? String() : ListBox1.Cell(row);
    LastScrollPosition = ListBox1.ScrollPosition();
    if (OnlyNonlocalized()) FilterStrings();
    return false;
}

void MainWindow::ListBox1_Change() {
    mChosenSinceSearch = true;
    if (ListBox1.ListIndex() < 0)
        ShowNoSelection();
    else
        ShowSelectedRow(ListBox1.ListIndex());
}

void MainWindow::ShowNoSelection() {
    const InternalChange guard(IsInternalChange);
    for (TextArea* field : {&DefaultValueFieldLong, &HistoryDefaultValueFieldLong, &LocalizedValueField})
        field->SetEnabled(false);
    for (TextArea* field : {&DefaultValueFieldLong, &HistoryDefaultValueFieldLong}) {
        field->SetText("(No selection)");
        field->SetTextColor(SystemTextColor());
    }
    NameField.SetText("(No Selection)");
    NameField.SetItalic(true);
    NameField.SetTextColor(DisabledTextColor());
    LocalizedValueField.SetSubject({});
    LocalizedValueField.SetText({});
}

void MainWindow::ShowSelectedRow(int64_t row) {
    const SharedText identifier = ListBox1.TextTag(row);
    const RowValues values = ValuesOfRow(StringSet->Entries.Find(identifier), ListBox1.NumberTag(row));
    ShowDefaultValue();
    {
        const InternalChange guard(IsInternalChange);
        for (TextArea* field : {&DefaultValueFieldLong, &HistoryDefaultValueFieldLong, &LocalizedValueField})
            field->SetEnabled(true);
        LocalizedValueField.SetSubject(std::to_string(ListBox1.NumberTag(row)) + " " + String(identifier));
        LocalizedValueField.SetText(values.Translated);
    }
    NameField.SetText(identifier);
    NameField.SetItalic(false);
    NameField.SetTextColor(SystemTextColor());
}

bool MainWindow::_LocalizationNextItem_Action() {
    if (ListBox1.ListIndex() < ListBox1.ListCount() - 1) ListBox1.SetListIndex(ListBox1.ListIndex() + 1);
    return true;
}

bool MainWindow::_LocalizationPreviousSring_Action() {
    if (ListBox1.ListIndex() > 0) ListBox1.SetListIndex(ListBox1.ListIndex() - 1);
    return true;
}

}  // namespace sorbel
