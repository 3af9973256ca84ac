#include "editing/InternalChange.h"
#include "editing/MainWindow.h"
#include "editing/changes/StringSetChange.h"
#include "editing/rules/RowText.h"
#include "editing/rules/WordComparison.h"

namespace sorbel {

namespace {

constexpr Color OnlyInCurrent{0x00AA00};
constexpr Color OnlyInOlder{0xAA0000};

void WriteRuns(TextArea& field, const std::vector<WordRun>& runs, Color common, Color unique, RunKind kind) {
    field.SetText({});
    for (const WordRun& run : runs) {
        field.SetSelTextColor(run.Common ? common : unique);
        field.SetSelKind(run.Common ? RunKind::Common : kind);
        field.SetSelText(run.Text);
    }
}

}  // namespace

void MainWindow::ShowDefaultValue() {
    const StringView identifier = ListBox1.TextTag(ListBox1.ListIndex());
    const int64_t platform = ListBox1.NumberTag(ListBox1.ListIndex());
    const StringView current = ValuesOfRow(StringSet->Entries.Find(identifier), platform).Default;
    if (!ActiveHistory) {
        DefaultValueFieldLong.SetText(current);
        DefaultValueFieldLong.SetTextColor(SystemTextColor());
        return;
    }
    const StringView older = ValuesOfRow(ActiveHistory->Entries.Find(identifier), platform).Default;
    const WordComparison words = CompareWords(current, older);
    WriteRuns(DefaultValueFieldLong, words.Current, SystemTextColor(), OnlyInCurrent, RunKind::Added);
    WriteRuns(HistoryDefaultValueFieldLong, words.Older, SystemTextColor(), OnlyInOlder, RunKind::Removed);
}

void MainWindow::LocalizedValueField_TextChange() {
    if (IsInternalChange >= 1) return;
    const InternalChange guard(IsInternalChange);
    const int64_t row = ListBox1.ListIndex();
    auto change = std::make_unique<StringSetChange>(StringSet, ListBox1.TextTag(row), ListBox1.NumberTag(row),
                                                    LocalizedValueField.Text(), StringView());
    undoManager->Add(std::move(change), true);
}

/// Typing arrives here with the counter raised and leaves list, panes and popup alone; undo and redo do not.
void MainWindow::ValueChanged(StringView identifier) {
    if (IsInternalChange == 0) {
        if (mReactedInBatch)
            PutOffReaction(identifier);
        else
            ReactToChange(identifier);
        mReactedInBatch = Notifications::InBatch();
    }
    BringDirtyInStep();
}

void MainWindow::ReactToChange(StringView identifier) {
    const int64_t selected = ListBox1.ListIndex();
    if (selected >= 0 && Equal(ListBox1.TextTag(selected), identifier)) {
        const InternalChange guard(IsInternalChange);
        ListBox1.SetListIndex(selected);  // fills the panes again
    }
    RebuildHistoryPopup();  // rebuilds the list too, so no row need be painted anew before
}

}  // namespace sorbel
