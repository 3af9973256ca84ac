#include "editing/rules/PaneLayout.h"

#include <algorithm>

namespace sorbel {

namespace {

constexpr int Gap = 2;             // between a splitter and its neighbours
constexpr int WindowMargin = 20;   // right and bottom
constexpr int ComparisonGap = 14;  // between the two default values

void PlaceLeftOfSplitter(PaneLayout& p) {
    const int edge = p.SimpleSplitter1.Left - Gap;
    p.SearchOptionsMenu.Left = edge - p.SearchOptionsMenu.Width;
    p.SearchField.Width = p.SearchOptionsMenu.Left - Gap - p.SearchField.Left;
    p.HistoryFilter.Width = edge - p.HistoryFilter.Left;
    p.ListBox1.Width = edge - p.ListBox1.Left;
}

void PlaceRightOfSplitter(PaneLayout& p, int windowWidth) {
    p.StaticText4.Left = p.SimpleSplitter1.Left + p.SimpleSplitter1.Width + Gap;
    p.NameField.Left = p.StaticText4.Left + p.StaticText4.Width + 3;
    for (Bounds* pane : {&p.DefaultValueLabel, &p.DefaultValueFieldLong, &p.SimpleSplitter2,
                         &p.TranslationText, &p.LocalizedValueField})
        pane->Left = p.StaticText4.Left;
    for (Bounds* pane : {&p.NameField, &p.LocalizedValueField, &p.SimpleSplitter2})
        pane->Width = windowWidth - WindowMargin - pane->Left;
}

void PlaceAroundLowerSplitter(PaneLayout& p, int windowHeight) {
    p.DefaultValueFieldLong.Height = p.SimpleSplitter2.Top - 6 - p.DefaultValueFieldLong.Top;
    p.TranslationText.Top = p.SimpleSplitter2.Top + p.SimpleSplitter2.Height - 1;
    p.LocalizedValueField.Top = p.TranslationText.Top + p.TranslationText.Height + 1;
    p.LocalizedValueField.Height = windowHeight - p.LocalizedValueField.Top - WindowMargin;
}

/// The height of the older value is meant to stay as designed; only its width follows.
void ShareWidth(PaneLayout& p, int usable, int windowWidth) {
    p.DefaultValueFieldLong.Width = static_cast<int>((usable - ComparisonGap) / 2.0);
    p.HistoryDefaultValueFieldLong.Left =
        p.DefaultValueFieldLong.Left + p.DefaultValueFieldLong.Width + ComparisonGap;
    p.HistoryDefaultValueFieldLong.Width = windowWidth - WindowMargin - p.HistoryDefaultValueFieldLong.Left;
    p.HistoryDefaultValueLabel.Left = p.HistoryDefaultValueFieldLong.Left;
    p.HistoryDefaultValueLabel.Width = p.HistoryDefaultValueFieldLong.Width;
}

}  // namespace

PaneLayout RepositionPanes(PaneLayout layout, int windowWidth, int windowHeight, bool comparing) {
    PlaceLeftOfSplitter(layout);
    PlaceRightOfSplitter(layout, windowWidth);
    PlaceAroundLowerSplitter(layout, windowHeight);
    const int usable =
        windowWidth - layout.SimpleSplitter1.Left - layout.SimpleSplitter1.Width - Gap - WindowMargin;
    if (comparing)
        ShareWidth(layout, usable, windowWidth);
    else
        layout.DefaultValueFieldLong.Width = usable;
    layout.DefaultValueLabel.Left = layout.DefaultValueFieldLong.Left;
    layout.DefaultValueLabel.Width = layout.DefaultValueFieldLong.Width;
    return layout;
}

int LimitVerticalSplitter(int left, int width, int windowWidth) {
    left = std::max(left, 104);
    const double limit = windowWidth * 0.75;
    return left + width > limit ? static_cast<int>(limit - width) : left;
}

int LimitHorizontalSplitter(int top, int height, int windowHeight) {
    top = std::max(top, 100);
    return std::min(top, windowHeight - 60 - height);
}

}  // namespace sorbel
