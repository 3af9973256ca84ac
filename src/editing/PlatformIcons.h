#pragma once

#include <cstdint>
#include <memory>

#include "platform/Color.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

/// The icon of a platform in a colour; null for the Any platform and for codes that have none. Icons once
/// tinted are kept, so that rows share them.
[[nodiscard]] std::shared_ptr<const Picture> PlatformIcon(int64_t platform, Color tint);

}  // namespace sorbel
