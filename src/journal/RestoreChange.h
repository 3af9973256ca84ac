#pragma once

#include <memory>
#include <vector>

#include "editing/changes/ImportChange.h"

namespace sorbel {

/// Changes that were not saved, brought back as one step.
class RestoreChange : public ImportChange {
  public:
    std::vector<std::shared_ptr<LocalizedStringSet>> Versions;  ///< that the document is to have

  protected:
    [[nodiscard]] String GetDescription() const override { return "Restore"; }
    void AddHistories() override { Document->History.swap(Versions); }
    void TakeHistories() override { Document->History.swap(Versions); }
};

}  // namespace sorbel
