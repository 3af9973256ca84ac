#include "ui/SimpleSplitter.h"

#include "ui/Icons.h"

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
