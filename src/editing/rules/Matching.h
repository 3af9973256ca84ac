#pragma once

#include "platform/Finder.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

/// Which texts a search looks at.
struct SearchScopes {
    bool Name = true;
    bool Default = true;
    bool Translated = true;
};

/// Whether one of the platforms that the string has a value for lacks its translation. A platform without a
/// value neither passes nor fails.
[[nodiscard]] bool IsUntranslated(const PlatformTable& entry);

[[nodiscard]] inline bool MatchesName(StringView identifier, const Finder& term, const SearchScopes& scopes) {
    return scopes.Name && term.IsIn(identifier);
}
[[nodiscard]] inline bool MatchesValue(const EntryValue& value, const Finder& term,
                                       const SearchScopes& scopes) {
    return (scopes.Default && term.IsIn(value.Original)) || (scopes.Translated && term.IsIn(value.Localized));
}

}  // namespace sorbel
