#pragma once

#include <memory>

#include "platform/Text.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The document in a locale file, whatever the file is called. Fails with ExchangeError.
[[nodiscard]] std::shared_ptr<LocalizedStringSet> ReadLocale(const String& path);

/// Makes these bytes the contents of a locale file, in place as the program saves. Whatever fails, the file
/// is what it was. "-" is standard output. Fails with ExchangeError.
void SaveLocale(const String& path, StringView bytes);

}  // namespace sorbel
