#pragma once

#include <memory>

#include "editing/changes/ImportChange.h"
#include "platform/FolderItem.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// Tab-delimited text of all entries: identifier, platform word, default value, translation; one row each, no
/// header, UTF-8, the two values with backslash escapes.
[[nodiscard]] String ToDelimitedText(const LocalizedStringSet& set);

/// The changes that a file of delimited text makes to a document, not yet applied: for each row of a known
/// identifier and platform its fourth field becomes the translation. Rows that do not fit are skipped. The
/// first line decides between tab and comma. Null: the file cannot be read, or its first line holds neither.
[[nodiscard]] std::unique_ptr<ImportChange> ChangesFromDelimitedText(
    const std::shared_ptr<LocalizedStringSet>& document, const FolderItem& f);

}  // namespace sorbel
