#include "ui/toolkit/Canvas.h"

#include "ui/toolkit/Window.h"

namespace sorbel {

bool Canvas::UserMouseDown(int x, int y) {
    mDragging = false;
    ByUser([&] {
        mDragging = Event_MouseDown(x, y);
        if (!mDragging) Owner().Event_MouseDown(Left() + x, Top() + y);
    });
    return mDragging;
}

void Canvas::UserMouseDrag(int x, int y) {
    if (mDragging) ByUser([&] { Event_MouseDrag(x, y); });
}

void Canvas::UserMouseUp(int x, int y) {
    if (!mDragging) return;
    mDragging = false;
    ByUser([&] { Event_MouseUp(x, y); });
}

}  // namespace sorbel
