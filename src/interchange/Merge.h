#pragma once

#include <memory>

#include "editing/changes/ImportChange.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The changes that merging another locale into a document makes, not yet applied, with a snapshot of the
/// document as it stands for its history. The imported value always wins, also an empty one; identifiers that
/// the document lacks are left out.
[[nodiscard]] std::unique_ptr<ImportChange> ChangesFromLocale(
    const std::shared_ptr<LocalizedStringSet>& document, const LocalizedStringSet& imported);

}  // namespace sorbel
