#pragma once

#include <optional>

#include "PlainDocument.h"

namespace sorbel::fuzz {

/// What a window does to its document, the plain way: values, undo, versions and whether a save is due.
class WindowModel {
  public:
    explicit WindowModel(const LocalizedStringSet& set)
        : Document(set), Language(set.Language), Versions(set.History.size()) {}

    PlainDocument Document;
    String Language;
    size_t Versions;

    void Type(StringView identifier, int64_t platform, StringView text, int64_t ticks);
    void Import(std::vector<PlainChange> changes, bool addsVersion);
    void Undo();
    void Redo();
    void Save() { mSavePoint = mDone.size(); }

    [[nodiscard]] bool Dirty() const { return mDone.size() != mSavePoint; }
    [[nodiscard]] size_t Done() const { return mDone.size(); }
    [[nodiscard]] size_t Undone() const { return mUndone.size(); }

  private:
    struct Step {
        std::vector<PlainChange> Changes;
        std::optional<int64_t> TypedAt;  // nothing for an import
        bool AddsVersion = false;
    };
    bool Joins(const PlainChange& change, int64_t ticks) const;
    void Do(Step step);

    std::vector<Step> mDone, mUndone;
    size_t mSavePoint = 0;
};

}  // namespace sorbel::fuzz
