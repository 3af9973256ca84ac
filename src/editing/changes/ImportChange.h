#pragma once

#include <memory>
#include <vector>

#include "editing/undo/Action.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// A batch of changes, and the snapshots that an import adds to the history, as one step.
class ImportChange : public Action {
  public:
    std::vector<std::unique_ptr<Action>> Changes;  ///< all made before any of them runs
    std::vector<std::shared_ptr<LocalizedStringSet>> Histories;
    std::shared_ptr<LocalizedStringSet> StringSet;  ///< whose history receives `Histories`, or null

  protected:
    void Execute() override;
    [[nodiscard]] String GetDescription() const override { return "Import"; }
    void Unexecute() override;
};

}  // namespace sorbel
