#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "editing/undo/Action.h"

namespace sorbel {

/// Two unbounded stacks of actions and a save point. Knows nothing of what the actions do.
class UndoManager {
  public:
    /// `enableMenuItems` is called after each undo and redo that did something.
    explicit UndoManager(std::function<void()> enableMenuItems = {})
        : mEnableMenuItems(std::move(enableMenuItems)) {}

    /// Registers a change, or lets the newest one absorb it. `perform`: it is still to be applied.
    void Add(std::unique_ptr<Action> action, bool perform);
    [[nodiscard]] bool HasChangedSinceSave() const { return Depth() != mLastSavePoint; }
    [[nodiscard]] bool HasRedo() const { return !mRedoStack.empty(); }
    [[nodiscard]] bool HasUndo() const { return !mUndoStack.empty(); }
    void MarkSave() { mLastSavePoint = Depth(); }
    void Redo();
    void Undo();

    // The oldest first.
    [[nodiscard]] const std::vector<std::unique_ptr<Action>>& UndoStack() const { return mUndoStack; }
    [[nodiscard]] const std::vector<std::unique_ptr<Action>>& RedoStack() const { return mRedoStack; }
    /// Upper bound of the undo stack at the last save, -1 for the empty stack.
    [[nodiscard]] int64_t LastSavePoint() const { return mLastSavePoint; }

  private:
    // The save point is a depth and is never adjusted: a different change at the saved depth counts as saved.
    [[nodiscard]] int64_t Depth() const { return static_cast<int64_t>(mUndoStack.size()) - 1; }

    std::vector<std::unique_ptr<Action>> mUndoStack;
    std::vector<std::unique_ptr<Action>> mRedoStack;
    int64_t mLastSavePoint = -1;
    std::function<void()> mEnableMenuItems;
};

}  // namespace sorbel
