#pragma once

class QAccessibleInterface;

namespace sorbel {

/// Tells assistive technology that the folder `row` has been opened or closed, as its state now says.
void TellExpansion(QAccessibleInterface& row);

}  // namespace sorbel
