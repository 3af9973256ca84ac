#pragma once

#include <cstdint>

#include "platform/Text.h"
#include "stringset/PlatformTable.h"

namespace sorbel {

/// The translation that an application on a platform gets: the platform's own unless it is empty, or else
/// that of the Any platform. Empty: the string stays out of the export.
[[nodiscard]] StringView ExportedValue(const PlatformTable& entry, int64_t platform);

}  // namespace sorbel
