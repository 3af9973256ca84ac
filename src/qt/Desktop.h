#pragma once

#include <QApplication>
#include <QPointer>
#include <functional>
#include <vector>

namespace sorbel {

class QtWindow;

/// The toolkit's application object, through which all events pass. So it is the one place that can bring the
/// screen up to date before anything else happens, and that knows when nothing is being handled any more.
class Desktop : public QApplication {
  public:
    using QApplication::QApplication;

    /// The one there is.
    [[nodiscard]] static Desktop& The() { return *static_cast<Desktop*>(QCoreApplication::instance()); }

    /// The window has something to show. It is shown before the next event, whatever that is and whatever it
    /// is for; one that comes out of the handling of another event, such as a repaint, does not count.
    void Wait(QtWindow& window);
    /// It has shown that, or will not any more.
    void Forget(QtWindow& window);
    /// All windows show what waits.
    void ShowWaiting();
    /// Deletes an object when no event is being handled, not even one that waits for a dialog to end: what
    /// handles it may come back to the object.
    void DeleteWhenIdle(QObject* object);

    /// Carries something out when the event loop gets to it and no long work goes on, on behalf of `owner`,
    /// which may be gone by then. For whatever comes from outside of the windows.
    void WhenFree(QObject& owner, std::function<void()> work);
    /// See `Backend`.
    [[nodiscard]] bool LookForEscape();
    [[nodiscard]] bool IsLooking() const { return mLooking; }

    bool notify(QObject* receiver, QEvent* event) override;

  private:
    class Delivery;
    struct Held {
        QPointer<QObject> Owner;
        std::function<void()> Work;
    };

    void Drop(QEvent& event);

    std::vector<QtWindow*> mWaiting;
    std::vector<QObject*> mDoomed;
    int mDeliveries = 0;  ///< of events, one inside the other
    int mLoop = -1;       ///< nesting of the event loop that the innermost delivery came from
    bool mShowing = false;
    bool mLooking = false;  ///< for Escape alone
    bool mSawEscape = false;
    std::vector<Held> mHeld;  ///< until the long work is done
};

}  // namespace sorbel
