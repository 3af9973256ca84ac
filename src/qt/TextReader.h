#pragma once

#include <QTextFormat>

namespace sorbel {

/// From now on assistive technology reads every text field that is for reading only as one that it cannot
/// change: the toolkit's own reader would let it.
void ReadTextsForReadingOnly();

/// Property of a character format: the `RunKind` of what it formats.
inline constexpr int RunKindProperty = QTextFormat::UserProperty + 1;

}  // namespace sorbel
