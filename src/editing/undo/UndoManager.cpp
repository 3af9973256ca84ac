#include "editing/undo/UndoManager.h"

#include <utility>

namespace sorbel {

namespace {

using Stack = std::vector<std::unique_ptr<Action>>;

Action& MoveTop(Stack& from, Stack& to) {
    to.push_back(std::move(from.back()));
    from.pop_back();
    return *to.back();
}

}  // namespace

void UndoManager::Add(std::unique_ptr<Action> action, bool perform) {
    Action& added = *action;
    const bool push = mUndoStack.empty() || !mUndoStack.back()->Combine(added);
    if (push) {
        mUndoStack.push_back(std::move(action));
        mRedoStack.clear();  // here only: what was absorbed leaves redo possible
    }
    // An absorbed action runs too, once: the older one took over its value but does not run again.
    if (perform) added.Perform();
}

void UndoManager::Undo() {
    if (!HasUndo()) return;
    MoveTop(mUndoStack, mRedoStack).Undo();
    if (mEnableMenuItems) mEnableMenuItems();
}

void UndoManager::Redo() {
    if (!HasRedo()) return;
    MoveTop(mRedoStack, mUndoStack).Perform();
    if (mEnableMenuItems) mEnableMenuItems();
}

}  // namespace sorbel
