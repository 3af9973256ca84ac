#pragma once

#include <memory>
#include <vector>

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// Whether a default value of a string differs from an earlier version's, or the string is new (`previous` is
/// null). Differences in letter case alone do not count, translations and platforms that only the earlier
/// version has are not looked at.
[[nodiscard]] bool IsNewOrChanged(const PlatformTable& current, const PlatformTable* previous);

/// By place in the entries of `current`, whether each string is new or changed since `older`.
[[nodiscard]] std::vector<bool> NewOrChangedStrings(const LocalizedStringSet& current,
                                                    const LocalizedStringSet& older);

/// Versions by date, the oldest first; versions of one moment stay in their order. One without a date is left
/// out.
[[nodiscard]] std::vector<std::shared_ptr<LocalizedStringSet>> VersionsByDate(
    const std::vector<std::shared_ptr<LocalizedStringSet>>& history);

}  // namespace sorbel
