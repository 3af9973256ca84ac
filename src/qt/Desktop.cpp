#include "qt/Desktop.h"

#include <QKeyEvent>
#include <QThread>

#include "qt/QtWindow.h"

namespace sorbel {

namespace {

/// What comes of the user's hands.
bool IsInput(const QEvent& event) {
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::NativeGesture:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

}  // namespace

/// An event is being handled.
class Desktop::Delivery {
  public:
    explicit Delivery(Desktop& desktop, int loop)
        : mDesktop(desktop), mOuterLoop(std::exchange(desktop.mLoop, loop)) {
        ++mDesktop.mDeliveries;
    }
    ~Delivery() {
        mDesktop.mLoop = mOuterLoop;
        if (--mDesktop.mDeliveries > 0 || mDesktop.mDoomed.empty()) return;
        for (QObject* object : std::exchange(mDesktop.mDoomed, {}))
            object->deleteLater();
    }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    /// It comes from an event loop and not out of the handling of another event.
    [[nodiscard]] bool IsFromLoop() const { return mOuterLoop != mDesktop.mLoop; }

  private:
    Desktop& mDesktop;
    int mOuterLoop;
};

/// Threads of the toolkit's own also deliver events through here.
bool Desktop::notify(QObject* receiver, QEvent* event) {
    const QThread* const present = QThread::currentThread();
    if (present != thread()) return QApplication::notify(receiver, event);
    if (mLooking && IsInput(*event)) {
        Drop(*event);
        return true;
    }
    const Delivery delivery(*this, present->loopLevel());
    if (!mWaiting.empty() && delivery.IsFromLoop()) {
        const QPointer<QObject> watched(receiver);
        ShowWaiting();
        if (!watched) return false;  // it belonged to what was shown before
    }
    return QApplication::notify(receiver, event);
}

void Desktop::Wait(QtWindow& window) {
    mWaiting.push_back(&window);
}

void Desktop::Forget(QtWindow& window) {
    std::erase(mWaiting, &window);
}

/// Twice, since the screen may answer, for one that a list cannot be scrolled that far.
void Desktop::ShowWaiting() {
    if (mShowing || mWaiting.empty()) return;
    mShowing = true;
    for (int round = 0; round < 2; ++round)
        for (QtWindow* window : std::vector(mWaiting))
            window->Flush();
    mShowing = false;
}

void Desktop::WhenFree(QObject& owner, std::function<void()> work) {
    const auto begin = [this, &owner, work = std::move(work)] {
        if (mLooking)
            mHeld.push_back({&owner, work});
        else
            work();
    };
    QMetaObject::invokeMethod(&owner, begin, Qt::QueuedConnection);
}

/// What is held is put behind the events that wait. It comes back here for as long as the work goes on.
bool Desktop::LookForEscape() {
    ShowWaiting();
    mLooking = true;
    processEvents(QEventLoop::ExcludeSocketNotifiers);
    mLooking = false;
    for (Held& held : std::exchange(mHeld, {}))
        if (held.Owner) WhenFree(*held.Owner, std::move(held.Work));
    return std::exchange(mSawEscape, false);
}

/// A shortcut may take the key before it is pressed anywhere.
void Desktop::Drop(QEvent& event) {
    event.ignore();
    if (event.type() != QEvent::KeyPress && event.type() != QEvent::ShortcutOverride) return;
    if (static_cast<const QKeyEvent&>(event).matches(QKeySequence::Cancel)) mSawEscape = true;
}

void Desktop::DeleteWhenIdle(QObject* object) {
    if (mDeliveries == 0)
        object->deleteLater();
    else
        mDoomed.push_back(object);
}

}  // namespace sorbel
