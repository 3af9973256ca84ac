#pragma once

class QHelpEvent;
class QWidget;

namespace sorbel {

struct PlacedTip;

/// Shows a tip where the pointer rests on a widget, or takes one away if it has no text. A very long text is
/// shown in part.
void ShowTip(const QHelpEvent& event, QWidget& widget, const PlacedTip& tip);

}  // namespace sorbel
