#include "WindowModel.h"

#include <utility>

namespace sorbel::fuzz {

bool WindowModel::Joins(const PlainChange& change, int64_t ticks) const {
    if (mDone.empty() || !mDone.back().TypedAt) return false;
    const PlainChange& last = mDone.back().Changes.front();
    return Equal(last.Identifier, change.Identifier) && last.Platform == change.Platform &&
           ticks - *mDone.back().TypedAt < 30;
}

void WindowModel::Type(StringView identifier, int64_t platform, StringView text, int64_t ticks) {
    const PlainChange change(Document, identifier, platform, text);
    if (!Joins(change, ticks)) return Do({{change}, ticks});
    mDone.back().Changes.front().New = text;
    mDone.back().TypedAt = ticks;
    change.Perform(Document);
}

void WindowModel::Import(std::vector<PlainChange> changes, bool addsVersion) {
    Do({std::move(changes), std::nullopt, addsVersion});
}

void WindowModel::Do(Step step) {
    mUndone.clear();
    mUndone.push_back(std::move(step));
    Redo();
}

void WindowModel::Undo() {
    mUndone.push_back(std::move(mDone.back()));
    mDone.pop_back();
    for (const PlainChange& change : mUndone.back().Changes)
        change.Undo(Document);
    if (mUndone.back().AddsVersion) --Versions;
}

void WindowModel::Redo() {
    mDone.push_back(std::move(mUndone.back()));
    mUndone.pop_back();
    for (const PlainChange& change : mDone.back().Changes)
        change.Perform(Document);
    if (mDone.back().AddsVersion) ++Versions;
}

}  // namespace sorbel::fuzz
