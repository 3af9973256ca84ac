#include "ui/toolkit/Control.h"

#include "ui/toolkit/Application.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

Control::Control(Window& owner, String name, Bounds bounds, Locks locks, int tabIndex)
    : mOwner(owner), mName(std::move(name)), mBounds(bounds), mLocks(locks), mTabIndex(tabIndex) {
    owner.mControls.push_back(this);
}

void Control::SetPlace(const Bounds& bounds) {
    if (bounds == mBounds) return;
    mBounds = bounds;
    Changed(Aspect::Geometry);
}

void Control::SetVisible(bool visible) {
    if (visible == mVisible) return;
    mVisible = visible;
    Changed(Aspect::Geometry);
}

void Control::SetEnabled(bool enabled) {
    if (enabled == mEnabled) return;
    mEnabled = enabled;
    Changed(Aspect::Enabled);
}

void Control::SetFocus() {
    mOwner.SetFocus(this);
}

bool Control::HasFocus() const {
    return mOwner.Focus() == this;
}

void Control::ByUser(const std::function<void()>& operation) {
    if (mEnabled && mVisible) mOwner.App().Perform(operation);
}

}  // namespace sorbel
