#pragma once

#include <cstdint>

#include "platform/Text.h"

namespace sorbel::checks {

/// A row of a document: a string on one platform. The texts belong to whoever gives it.
struct Row {
    StringView Identifier;
    int64_t Platform;  ///< code (stringset/PlatformTable.h)
    StringView Default;
    StringView Translation;
};

}  // namespace sorbel::checks
