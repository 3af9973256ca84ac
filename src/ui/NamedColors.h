#pragma once

#include <optional>

#include "platform/Color.h"
#include "platform/Text.h"

namespace sorbel::Platform::Colors {

/// Where semantic colours come from: a system that knows some of them by name.
class NamedColorSource {
  public:
    virtual ~NamedColorSource() = default;
    [[nodiscard]] virtual bool Knows(StringView selector) = 0;
    /// The colour of that name, or element `index` of what is an array of colours. Nothing if there is none.
    [[nodiscard]] virtual std::optional<Color> Get(StringView selector, int64_t index = 0) = 0;
    [[nodiscard]] virtual Color HighlightColor() = 0;
    /// The user has chosen grey as the colour of controls.
    [[nodiscard]] virtual bool IsGraphite() = 0;
};

/// One of the 59 semantic colours, letter case ignored. Older systems lack some of them; those have a
/// substitute. Black for another name and for a colour that the source does not have.
[[nodiscard]] Color GetMacNamedColorInternal(NamedColorSource& source, StringView name);

}  // namespace sorbel::Platform::Colors
