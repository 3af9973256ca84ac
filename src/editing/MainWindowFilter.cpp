#include <optional>
#include <utility>

#include "editing/MainWindow.h"
#include "editing/PlatformIcons.h"
#include "editing/rules/Matching.h"
#include "ui/toolkit/Application.h"

namespace sorbel {

namespace {

constexpr StringView NameScope = "Name";
constexpr StringView DefaultScope = "Default Value";
constexpr StringView TranslatedScope = "Translated Value";

std::unique_ptr<MenuItem> MakeMenu(StringView text, bool checked) {
    auto item = std::make_unique<MenuItem>(String(), String(text));
    item->Checkable = true;
    item->Checked = checked;
    return item;
}

}  // namespace

bool MainWindow::OnlyNonlocalized() const {
    const MenuItem* item = Item("LocalizationOnlyShowNonlocalizedStrings");
    return item && item->Checked;
}

void MainWindow::FilterStrings() {
    const Busy busy = BusyIfLarge();
    const String term = Trim(SearchField.Text());
    if (term.empty()) {
        ShowAllStrings();
        return;
    }
    ListBox1.DeleteAllRows();
    const Finder finder(term, StringSet->FileBytes());
    std::optional<int64_t> selected, compared;
    size_t place = 0;
    for (const auto& [identifier, entry] : StringSet->Entries) {
        if (IsShown(place++)) AddMatches(identifier, entry, finder);
        // Meant: the selection is kept by comparing the text last clicked with the new row's text, which is
        // the identifier of a name match and empty for a value match. With no text clicked, every value match
        // is the one, and the last of them stays selected. Assigned once: each assignment replaces the one
        // before, and the same row once.
        if (std::exchange(compared, ListBox1.LastIndex()) == ListBox1.LastIndex()) continue;
        if (Equal(ListBox1.Cell(ListBox1.LastIndex()), lastSelectedItem)) selected = ListBox1.LastIndex();
    }
    if (selected) ListBox1.SetListIndex(*selected);
    ListBox1.SetScrollPosition(LastScrollPosition);
}

/// On to the first row in sight, unless the search was left before for the row that is selected.
void MainWindow::SearchField_GoOn() {
    if (ListBox1.ListCount() == 0) return;
    if (!mChosenSinceSearch || ListBox1.ListIndex() < 0) ListBox1.SetListIndex(ListBox1.ScrollPosition());
    ListBox1.SetFocus();
}

void MainWindow::AddMatches(const SharedText& identifier, const PlatformTable& entry, const Finder& term) {
    const SearchScopes scopes{NameChecked, DefaultChecked, TranslatedChecked};
    if (MatchesName(identifier, term, scopes)) {
        ListBox1.AddFolder(identifier, PlatformAny, identifier);
        return;
    }
    for (int64_t index = 0; index < entry.Count(); ++index) {
        const PlatformTable::Item& item = entry.ItemAt(index);
        if (!MatchesValue(item.Value, term, scopes)) continue;
        ListBox1.AddRow({}, item.Platform, identifier, PlatformIcon(item.Platform, SystemTextColor()));
    }
}

bool MainWindow::SearchOptionsMenu_MouseDown() {
    MenuItem root({}, {});
    root.Append(MakeMenu(NameScope, NameChecked));
    root.Append(MakeMenu(DefaultScope, DefaultChecked));
    root.Append(MakeMenu(TranslatedScope, TranslatedChecked));
    const MenuItem* chosen =
        App().Desktop().PopUp(root, Left() + SearchOptionsMenu.Left(),
                              Top() + SearchOptionsMenu.Top() + SearchOptionsMenu.Height());
    if (!chosen) return true;
    FlipScope(chosen->Text());
    // The text as it stands: one of blanks only rebuilds the whole list.
    if (!SearchField.Text().empty()) FilterStrings();
    return true;
}

String MainWindow::SearchOptionsMenu_Tip() const {
    String scopes;
    for (const auto& [scope, checked] : {std::pair(NameScope, NameChecked),
                                         {DefaultScope, DefaultChecked},
                                         {TranslatedScope, TranslatedChecked}})
        if (checked) scopes += (scopes.empty() ? "Searched: " : ", ") + String(scope);
    return scopes.empty() ? "Nothing is searched" : scopes;
}

void MainWindow::FlipScope(StringView caption) {
    if (caption == NameScope) NameChecked = !NameChecked;
    if (caption == DefaultScope) DefaultChecked = !DefaultChecked;
    if (caption == TranslatedScope) TranslatedChecked = !TranslatedChecked;
}

/// The check mark is a single state of the application; lists of other windows follow at their next rebuild.
bool MainWindow::_LocalizationOnlyShowNonlocalizedStrings_Action() {
    if (MenuItem* item = Item("LocalizationOnlyShowNonlocalizedStrings")) item->Checked = !item->Checked;
    FilterStrings();
    return true;
}

}  // namespace sorbel
