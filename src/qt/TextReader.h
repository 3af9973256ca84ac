#pragma once

namespace sorbel {

/// From now on assistive technology reads every text field that is for reading only as one that it cannot
/// change: the toolkit's own reader would let it.
void ReadTextsForReadingOnly();

}  // namespace sorbel
