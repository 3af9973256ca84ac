#pragma once

#include "platform/Color.h"
#include "platform/Text.h"

namespace sorbel {

class Backend;

/// Semantic colours of the desktop's present appearance.
namespace Platform::Colors {

[[nodiscard]] Color ControlBackgroundColor();
[[nodiscard]] Color ControlBorderColor();
[[nodiscard]] Color DefaultHighlightTextColor();
[[nodiscard]] Color PrimaryLabelColorDisabled();
[[nodiscard]] Color SecondaryLabelColor();
[[nodiscard]] Color SecondaryLabelColorDisabled();
[[nodiscard]] Color TextColor();

/// A semantic colour by name, letter case ignored; black if it is unknown. The desktop is asked once for each
/// spelling until `ResetCache`.
[[nodiscard]] Color GetMacNamedColor(StringView name);
/// Forgets the colours, since the appearance has changed.
void ResetCache();

/// The desktop that the colours come from; it must outlive its use here. Null: every colour is black.
void UseDesktop(const Backend* desktop);

}  // namespace Platform::Colors

}  // namespace sorbel
