#include "notifications/Notifications.h"

#include <utility>

namespace sorbel::Notifications {

namespace {

Dictionary<const void*, Listeners>& mObservers() {
    static Dictionary<const void*, Listeners> observers;
    return observers;
}

int batchDepth = 0;
Listeners batchListeners;  // who heard of a change in the batch

void EndBatch() {
    if (--batchDepth > 0) return;
    for (Listener* listener : std::exchange(batchListeners, {}).Keys())
        listener->BatchEnded();
}

void Tell(Listener& listener, StringView identifier) {
    if (InBatch()) batchListeners.Set(&listener, true);
    listener.ValueChanged(identifier);
}

}  // namespace

void AddObserver(const void* object, Listener& listener) {
    mObservers().FindOrAdd(object, [object] { return object; }).Set(&listener, true);
}

void RemoveObserver(const void* object, Listener& listener) {
    batchListeners.Remove(&listener);
    Listeners* listeners = mObservers().Find(object);
    if (listeners && listeners->Remove(&listener) && listeners->Count() == 0) mObservers().Remove(object);
}

void ValueChanged(const void* object, StringView identifier) {
    const Listeners* listeners = mObservers().Find(object);
    if (!listeners) return;
    if (listeners->Count() == 1) return Tell(*listeners->KeyAt(0), identifier);  // nearly always
    // A copy, since a listener may register or remove others, which moves the dictionary.
    for (Listener* listener : listeners->Keys())
        Tell(*listener, identifier);
}

void Batch(const std::function<void()>& changes) {
    ++batchDepth;
    try {
        changes();
    } catch (...) {
        EndBatch();
        throw;
    }
    EndBatch();
}

bool InBatch() {
    return batchDepth > 0;
}

const Dictionary<const void*, Listeners>& Observers() {
    return mObservers();
}

}  // namespace sorbel::Notifications
