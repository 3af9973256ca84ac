#include "editing/MainWindow.h"
#include "editing/rules/ChangedStrings.h"
#include "editing/rules/Matching.h"

namespace sorbel {

// The reaction to a change ends in a rebuild of the list, and of those in a batch each replaces the one
// before. One by one they would leave the same list as the first and the last, but with the folders closed
// that it lost in between, and the panes emptied if a selection got lost.

void MainWindow::PutOffReaction(StringView identifier) {
    if (!mPutOff) BeginPutOff();
    if (!ActiveHistory && !mPutOff->OnlyNonlocalized && !mPutOff->Term) return;  // every string is listed
    mPutOff->Deselected = mPutOff->Deselected || mPutOff->Selected;
    const PlatformTable* entry = StringSet->Entries.Find(identifier);
    if (!entry) return;
    const bool shown = !ActiveHistory || IsNewOrChanged(*entry, ActiveHistory->Entries.Find(identifier));
    if (!shown || (mPutOff->OnlyNonlocalized && !IsUntranslated(*entry)))
        mHiddenMeanwhile.Set(identifier, true);
    mPutOff->Selected = mPutOff->Selected || SearchSelects(identifier, *entry, shown);
}

void MainWindow::BeginPutOff() {
    const String term = Trim(SearchField.Text());
    mPutOff.emplace(OnlyNonlocalized());
    if (!term.empty()) mPutOff->Term.emplace(term);
}

/// Whether a search that finds this string, or that does not, assigns the selection because of that.
bool MainWindow::SearchSelects(StringView identifier, const PlatformTable& entry, bool shown) const {
    if (!mPutOff->Term) return false;
    const Finder& finder = *mPutOff->Term;
    const SearchScopes scopes{NameChecked, DefaultChecked, TranslatedChecked};
    if (shown && MatchesName(identifier, finder, scopes)) return Equal(identifier, lastSelectedItem);
    if (!lastSelectedItem.empty()) return false;
    for (int64_t index = 0; shown && index < entry.Count(); ++index)
        if (MatchesValue(entry.ItemAt(index).Value, finder, scopes)) return true;
    return Equal(StringSet->Entries.begin()->First, identifier);  // no row yet counts as the empty text
}

void MainWindow::BatchEnded() {
    if (mPutOff && mPutOff->Deselected) ShowNoSelection();
    if (mPutOff) RebuildHistoryPopup();
    mReactedInBatch = false;
    mPutOff.reset();
    mHiddenMeanwhile.Clear();
}

}  // namespace sorbel
