#include "ui/SimpleSplitter.h"

#include <algorithm>

#include "ui/Icons.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

void SimpleSplitter::VerticalSplit(int delta) {
    SetLeft(Left() + delta);
    Raise(Moved);
}

void SimpleSplitter::HorizontalSplit(int delta) {
    SetTop(Top() + delta);
    Raise(Moved);
}

void SimpleSplitter::MoveTo(int position) {
    if (IsVertical())
        VerticalSplit(position - Left());
    else
        HorizontalSplit(position - Top());
}

/// It may stand beyond its limits, since they hold for moves only.
std::optional<Canvas::Travel> SimpleSplitter::Way() const {
    const int position = IsVertical() ? Left() : Top();
    const int room = IsVertical() ? Owner().Width() : Owner().Height();
    const int least = Limit ? Limit(0) : 0, most = Limit ? Limit(room) : room;
    return Travel{position, std::min(least, position), std::max(most, position)};
}

void SimpleSplitter::Event_Open() {
    SetCursor(IsVertical() ? MouseCursor::SplitterEastWest : MouseCursor::SplitterNorthSouth);
    Canvas::Event_Open();
}

void SimpleSplitter::Event_Paint(Graphics& g) {
    const std::shared_ptr<const Picture> grip = Icons::GetIcon("SeparatorSmall");
    g.DrawPicture(*grip, Width() / 2 - grip->Width() / 2, Height() / 2 - grip->Height() / 2);
}

bool SimpleSplitter::Event_MouseDown(int x, int y) {
    mXAnchor = x;
    mYAnchor = y;
    return true;
}

/// Coordinates are the control's own and it moves along, so the anchor stays and each delta is one step.
void SimpleSplitter::Event_MouseDrag(int x, int y) {
    if (IsVertical())
        VerticalSplit(x - mXAnchor);
    else
        HorizontalSplit(y - mYAnchor);
}

}  // namespace sorbel
