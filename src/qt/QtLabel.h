#pragma once

#include "qt/ControlView.h"
#include "ui/toolkit/Label.h"

namespace sorbel {

/// A plain text, or, for a selectable label, one that can be scrolled, selected and copied.
[[nodiscard]] std::unique_ptr<ControlView> MakeLabelView(Label& control, QtWindow& window);

}  // namespace sorbel
