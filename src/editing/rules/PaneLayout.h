#pragma once

#include "platform/Bounds.h"

namespace sorbel {

/// Places of the controls that follow the two splitters of a document window.
struct PaneLayout {
    Bounds ListBox1, LocalizedValueField, DefaultValueFieldLong, DefaultValueLabel, TranslationText;
    Bounds SimpleSplitter1, SimpleSplitter2, SearchField, StaticText4, NameField, HistoryFilter;
    Bounds HistoryDefaultValueFieldLong, HistoryDefaultValueLabel, SearchOptionsMenu;
};

/// The layout that follows from the splitters in a window of this size. `comparing`: the two default values
/// share the width. A window too narrow for its panes yields negative widths; the next resize mends them.
[[nodiscard]] PaneLayout RepositionPanes(PaneLayout layout, int windowWidth, int windowHeight,
                                         bool comparing);

/// Where a dragged splitter may stand. In a very narrow window the limit on the right wins.
[[nodiscard]] int LimitVerticalSplitter(int left, int width, int windowWidth);
[[nodiscard]] int LimitHorizontalSplitter(int top, int height, int windowHeight);

}  // namespace sorbel
