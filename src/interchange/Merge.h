#pragma once

#include <memory>

#include "editing/changes/ImportChange.h"
#include "platform/FolderItem.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The locale in a file that is to be imported; null if it holds none, as delimited text does. A short line
/// in a file of the type of tab-delimited text fails with OutOfBoundsException.
[[nodiscard]] std::shared_ptr<LocalizedStringSet> LocaleForImport(const FolderItem& f);

/// The changes that merging another locale into a document makes, not yet applied, with a snapshot of the
/// document as it stands for its history. The imported value always wins, also an empty one; identifiers that
/// the document lacks are left out.
[[nodiscard]] std::unique_ptr<ImportChange> ChangesFromLocale(
    const std::shared_ptr<LocalizedStringSet>& document, const LocalizedStringSet& imported);

}  // namespace sorbel
