#pragma once

#include <functional>

#include "platform/Bounds.h"
#include "platform/Color.h"
#include "platform/Text.h"
#include "ui/toolkit/View.h"

namespace sorbel {

class Canvas;
class Label;
class Listbox;
class PopupMenu;
class PushButton;
class TextArea;
class TextField;
class Window;

/// One operation for each kind of control, for bindings that make their own object for it.
class ControlVisitor {
  public:
    virtual ~ControlVisitor() = default;
    virtual void Visit(Canvas& control) = 0;
    virtual void Visit(Label& control) = 0;
    virtual void Visit(Listbox& control) = 0;
    virtual void Visit(PopupMenu& control) = 0;
    virtual void Visit(PushButton& control) = 0;
    virtual void Visit(TextArea& control) = 0;
    virtual void Visit(TextField& control) = 0;
};

/// The edges of a control that follow the window's edges when the window is resized. A control locked to two
/// opposite edges stretches; to none of a pair, it stays where it is.
struct Locks {
    bool Left = false, Top = false, Right = false, Bottom = false;
};

/// The state of one control, without a toolkit. Setters store, tell the view and then raise the owner's event
/// inside the call where the control has such an event. What a user does enters through the operations named
/// `User...`, which do nothing on a disabled or hidden control; a failure in them ends in the application's
/// handler of unhandled failures.
class Control {
  public:
    /// Becomes the last control of `owner`, which must outlive it.
    Control(Window& owner, String name, Bounds bounds, Locks locks = {}, int tabIndex = 0);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    virtual void Accept(ControlVisitor& visitor) = 0;

    [[nodiscard]] Window& Owner() const { return mOwner; }
    [[nodiscard]] const String& Name() const { return mName; }
    [[nodiscard]] const Bounds& Place() const { return mBounds; }
    [[nodiscard]] const Locks& Locked() const { return mLocks; }
    [[nodiscard]] int TabIndex() const { return mTabIndex; }

    [[nodiscard]] int Left() const { return mBounds.Left; }
    [[nodiscard]] int Top() const { return mBounds.Top; }
    [[nodiscard]] int Width() const { return mBounds.Width; }
    [[nodiscard]] int Height() const { return mBounds.Height; }
    void SetPlace(const Bounds& bounds);
    void SetLeft(int left) { SetPlace({left, Top(), Width(), Height()}); }
    void SetTop(int top) { SetPlace({Left(), top, Width(), Height()}); }
    void SetWidth(int width) { SetPlace({Left(), Top(), width, Height()}); }
    void SetHeight(int height) { SetPlace({Left(), Top(), Width(), height}); }

    [[nodiscard]] bool Visible() const { return mVisible; }
    void SetVisible(bool visible);
    [[nodiscard]] bool Enabled() const { return mEnabled; }
    void SetEnabled(bool enabled);

    /// Makes this the focused control of its window, whatever its kind.
    void SetFocus();
    [[nodiscard]] bool HasFocus() const;

    /// What assistive technology calls the control.
    [[nodiscard]] const String& AccessibleName() const { return mAccessibleName; }
    void SetAccessibleName(String name) { mAccessibleName = std::move(name); }

    /// What a pointer tells that rests on the control; asked each time. Nothing for the empty text.
    std::function<String()> Tip;

    /// The binding's object for this control, or null; it stays the binding's.
    void Attach(View* view) { mView = view; }

  protected:
    void Changed(Aspect aspect) const {
        if (mView) mView->Changed(aspect);
    }
    /// Runs what a user has set off, if the control can be used at present.
    void ByUser(const std::function<void()>& operation);

  private:
    friend class Window;

    Window& mOwner;
    String mName;
    Bounds mBounds;
    Locks mLocks;
    int mTabIndex;
    bool mVisible = true;
    bool mEnabled = true;
    String mAccessibleName;
    View* mView = nullptr;
};

/// Raises an optional event of a control.
template <typename... Parameters, typename... Arguments>
void Raise(const std::function<void(Parameters...)>& event, Arguments&&... arguments) {
    if (event) event(std::forward<Arguments>(arguments)...);
}

}  // namespace sorbel
