#pragma once

#include <memory>

#include "platform/Text.h"
#include "stringset/LocalizedStringSet.h"

namespace sorbel {

/// The document in a locale file, whatever the file is called. A save that was interrupted is completed
/// first, as the program does. Fails with ExchangeError.
[[nodiscard]] std::shared_ptr<LocalizedStringSet> ReadLocale(const String& path);

/// Saves a document as the program does, for whoever has nothing more to do with it. "-" is standard output.
/// Fails with ExchangeError, and the file is what it was.
void SaveLocale(const String& path, std::shared_ptr<LocalizedStringSet> document);

/// Makes the bytes that an unchanged document came from the contents of another file.
void CopyLocale(const String& path, const LocalizedStringSet& document);

}  // namespace sorbel
