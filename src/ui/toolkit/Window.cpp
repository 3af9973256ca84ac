#include "ui/toolkit/Window.h"

#include <algorithm>

#include "ui/toolkit/Application.h"
#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Raised.h"

namespace sorbel {

Window::Window(Application& app, String title, Size size)
    : mApp(app), mTitle(std::move(title)), mSize(size) {}

Control* Window::FindControl(StringView name) const {
    const auto found = std::ranges::find(mControls, name, &Control::Name);
    return found == mControls.end() ? nullptr : *found;
}

void Window::SetTitle(String title) {
    if (title == mTitle) return;
    mTitle = std::move(title);
    Changed(Aspect::Text);
}

void Window::SetContentsChanged(bool changed) {
    if (changed == mContentsChanged) return;
    mContentsChanged = changed;
    Changed(Aspect::Modified);
}

void Window::SetRepresentedFile(std::shared_ptr<FolderItem> f) {
    mRepresentedFile = std::move(f);
    Changed(Aspect::Modified);
}

sorbel::MenuBar* Window::MenuBar() const {
    return mApp.MenuBar.get();
}

// --- Life ---

void Window::Show() {
    if (mOpen) return mApp.BringToFront(*this);
    if (mOpened) return;
    mOpen = mOpened = true;
    // Each new window a little lower and to the right, so that none hides another's title.
    mLeft = mTop = 40 + 24 * static_cast<int>(mApp.WindowCount() % 10);
    mApp.Opened(shared_from_this());
    RaiseOpen();
    if (mOpen) mApp.Desktop().WindowShown(*this);
}

void Window::RaiseOpen() {
    Event_Open();
    for (Control* const control : mControls)
        if (auto* const canvas = dynamic_cast<Canvas*>(control)) canvas->Event_Open();
}

bool Window::Close(bool appQuitting) {
    if (!mOpen) return true;
    if (mAsking) {
        mApp.BringToFront(*this);
        return false;
    }
    {
        const Raised asking(mAsking);
        if (Event_CancelClose(appQuitting)) return false;
    }
    mOpen = false;
    Event_Close();
    mApp.Desktop().WindowClosed(*this);
    mApp.Closed(*this);
    return true;
}

void Window::SetFocus(Control* control) {
    Control* const before = std::exchange(mFocus, control);
    if (before) before->Changed(Aspect::Focus);
    if (control && control != before) control->Changed(Aspect::Focus);
    Changed(Aspect::Focus);
}

// --- What a user does ---

namespace {

/// Where a stretch from `start` of `length` goes when the window grows by `growth` along it.
void FollowEdges(bool lockedNear, bool lockedFar, int growth, int& start, int& length) {
    if (!lockedFar) return;
    (lockedNear ? length : start) += growth;
}

}  // namespace

void Window::UserMove(int left, int top) {
    mLeft = left;
    mTop = top;
}

void Window::UserResize(Size size, bool resizing) {
    mApp.Perform([&] {
        SetSize({std::clamp(size.Width, Minimum.Width, Maximum.Width),
                 std::clamp(size.Height, Minimum.Height, Maximum.Height)});
        resizing ? Event_Resizing() : Event_Resized();
    });
}

void Window::SetSize(Size size) {
    const Size before = std::exchange(mSize, size);
    Changed(Aspect::Geometry);
    for (Control* const control : mControls) {
        Bounds place = control->Place();
        const Locks& locks = control->Locked();
        FollowEdges(locks.Left, locks.Right, mSize.Width - before.Width, place.Left, place.Width);
        FollowEdges(locks.Top, locks.Bottom, mSize.Height - before.Height, place.Top, place.Height);
        control->SetPlace(place);
    }
}

void Window::UserKeyDown(StringView key) {
    mApp.Perform([&] { Event_KeyDown(key); });
}

void Window::UserMouseDown(int x, int y) {
    mApp.Perform([&] { Event_MouseDown(x, y); });
}

bool Window::UserClose() {
    bool closed = false;
    mApp.Perform([&] { closed = Close(); });
    return closed;
}

void Window::UserFocus(Control* control) {
    mApp.Desktop().ShowWaiting();
    SetFocus(control);
}

}  // namespace sorbel
