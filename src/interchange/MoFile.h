#pragma once

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The catalogue of a Windows application in the gettext MO format (GNU gettext manual, "The Format of GNU MO
/// Files"): little-endian, identifiers in byte order, since readers bisect with a byte comparison; no header
/// entry, no hash table. Values are UTF-8 with CR LF line ends and no escapes.
[[nodiscard]] String ToMoFile(const LocalizedStringSet& set);

}  // namespace sorbel
