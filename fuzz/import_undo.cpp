// A locale file merged into another, undone and redone.
//   DOCUMENT|import|IMPORTED
#include "PlainDocument.h"
#include "Target.h"
#include "editing/undo/UndoManager.h"
#include "interchange/Merge.h"

namespace sorbel::fuzz {

namespace {

/// What an undo has to bring back: the translations of all entries that were there.
void RequireTranslations(const PlainDocument& before, const PlainDocument& now) {
    Require(before.Entries.size() == now.Entries.size(), "an import adds no string");
    for (size_t i = 0; i < before.Entries.size(); ++i) {
        Require(before.Entries[i].Identifier == now.Entries[i].Identifier, "identifiers stay as they are");
        for (size_t j = 0; j < now.Entries[i].Values.size(); ++j) {
            const auto& values = before.Entries[i].Values;
            const String old = j < values.size() ? values[j].Translated : String();
            Require(now.Entries[i].Values[j].Translated == old,
                    "undo restores translations, and empties those of new platforms");
        }
    }
}

class Import {
  public:
    Import(std::shared_ptr<LocalizedStringSet> document, const LocalizedStringSet& imported)
        : mSet(std::move(document)),
          mBefore(*mSet),
          mHistory(mSet->History),
          mChanges(PlainMerge(mBefore, PlainDocument(imported))) {
        const String snapshot = mSet->Clone()->ToBytes();
        mUndo.Add(Changes(imported), true);
        mAfter = mBefore;
        for (const PlainChange& change : mChanges)
            change.Perform(mAfter);
        RequireDone();
        Require(mSet->History.back()->ToBytes() == snapshot, "the version added is the document before");
    }

    void Undo() {
        mUndo.Undo();
        PlainDocument expected = mAfter;
        for (const PlainChange& change : mChanges)
            change.Undo(expected);
        const PlainDocument now(*mSet);
        Require(now == expected, "undo leaves default values and new platforms, and nothing else");
        RequireTranslations(mBefore, now);
        Require(mSet->History == mHistory, "undo takes the version out");
        Require(!mUndo.HasUndo() && mUndo.HasRedo() && !mUndo.HasChangedSinceSave(), "the step was undone");
    }
    void Redo() {
        mUndo.Redo();
        RequireDone();
    }

  private:
    std::unique_ptr<Action> Changes(const LocalizedStringSet& imported) {
        auto changes = ChangesFromLocale(mSet, imported);
        Require(PlainDocument(*mSet) == mBefore, "changes that are not applied change nothing");
        Require(changes->Changes.size() == mChanges.size(), "each value of a known string is a change");
        return changes;
    }
    void RequireDone() {
        Require(PlainDocument(*mSet) == mAfter, "the imported values win");
        Require(mSet->History.size() == mHistory.size() + 1, "an import adds one version");
        Require(mUndo.HasUndo() && !mUndo.HasRedo() && mUndo.HasChangedSinceSave(), "it is one step");
    }

    std::shared_ptr<LocalizedStringSet> mSet;
    PlainDocument mBefore, mAfter;
    std::vector<std::shared_ptr<LocalizedStringSet>> mHistory;
    std::vector<PlainChange> mChanges;
    UndoManager mUndo;
};

}  // namespace

void CheckInput(StringView input) {
    const Pair files = SplitInput(input, "|import|");
    const std::shared_ptr<LocalizedStringSet> document = ReadDocument(files.First);
    std::shared_ptr<LocalizedStringSet> imported = ReadDocument(files.Second);
    if (!document || !imported) return;
    const String language = document->Language;
    Import import(document, *imported);
    imported.reset();  // what was imported does not live in it
    for (int round = 0; round < 2; ++round) {
        import.Undo();
        import.Redo();
    }
    Require(document->Language == language, "a merge leaves the language");
    const auto again = ReadDocument(document->ToBytes());
    Require(again && PlainDocument(*again) == PlainDocument(*document), "what was imported is saved");
}

}  // namespace sorbel::fuzz
