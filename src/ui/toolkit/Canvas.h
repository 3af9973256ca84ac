#pragma once

#include <optional>

#include "ui/toolkit/Control.h"
#include "ui/toolkit/Graphics.h"

namespace sorbel {

enum class MouseCursor { Standard, SplitterEastWest, SplitterNorthSouth };

/// An area that its owner, or a subclass, draws and that takes the mouse. Coordinates are the control's own.
class Canvas : public Control {
  public:
    using Control::Control;
    void Accept(ControlVisitor& visitor) override { visitor.Visit(*this); }

    std::function<void(Graphics& g)> Paint;
    std::function<bool(int x, int y)> MouseDown;
    /// The window that holds the control has been made.
    std::function<void()> Open;

    [[nodiscard]] MouseCursor Cursor() const { return mCursor; }
    void Invalidate() { Changed(Aspect::Cells); }

    // Subclasses act here; the basic ones raise the events above.
    virtual void Event_Open() { Raise(Open); }
    virtual void Event_Paint(Graphics& g) { Raise(Paint, g); }
    virtual bool Event_MouseDown(int x, int y) { return MouseDown && MouseDown(x, y); }
    virtual void Event_MouseDrag(int, int) {}
    virtual void Event_MouseUp(int, int) {}

    /// Where a control that is for dragging stands on its way, and how far it can go; the edge that moves, in
    /// the window's coordinates.
    struct Travel {
        int Position, Least, Most;
    };
    /// Nothing for a control that stays where it is.
    [[nodiscard]] virtual std::optional<Travel> Way() const { return {}; }

    /// True claims the drag that may follow. One that no handler claims goes to the window.
    bool UserMouseDown(int x, int y);
    void UserMouseDrag(int x, int y);
    void UserMouseUp(int x, int y);

  protected:
    void SetCursor(MouseCursor cursor) { mCursor = cursor; }

  private:
    MouseCursor mCursor = MouseCursor::Standard;
    bool mDragging = false;  // the last mouse-down was claimed
};

}  // namespace sorbel
