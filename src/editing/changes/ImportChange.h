#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "editing/undo/Action.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// A batch of changes, and the snapshots that an import adds to the history, as one step.
class ImportChange : public Action {
  public:
    std::vector<std::unique_ptr<Action>> Changes;  ///< all made before any of them runs
    std::shared_ptr<LocalizedStringSet> Document;  ///< that `Changes` are of
    std::vector<std::shared_ptr<LocalizedStringSet>> Histories;
    std::shared_ptr<LocalizedStringSet> StringSet;  ///< whose history receives `Histories`, or null

  protected:
    void Execute() override;
    [[nodiscard]] String GetDescription() const override { return "Import"; }
    void Unexecute() override;
    /// What is done to the document's history besides the changes, and how it is taken back.
    virtual void AddHistories();
    virtual void TakeHistories();

  private:
    /// Makes the changes one after the other, then those of the history, as one batch of the document's log.
    void Run(void (*change)(Action& action), void (ImportChange::*histories)());

    uint64_t mLogged = 0;  // the log's number for the batch
};

}  // namespace sorbel
