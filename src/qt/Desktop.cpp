#include "qt/Desktop.h"

#include <QPointer>
#include <QThread>

#include "qt/QtWindow.h"

namespace sorbel {

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

void Desktop::DeleteWhenIdle(QObject* object) {
    if (mDeliveries == 0)
        object->deleteLater();
    else
        mDoomed.push_back(object);
}

}  // namespace sorbel
