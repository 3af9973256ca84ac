#include "ui/Notifications.h"

namespace sorbel::Notifications {

namespace {

Dictionary<const void*, Listeners>& mObservers() {
    static Dictionary<const void*, Listeners> observers;
    return observers;
}

}  // namespace

void AddObserver(const void* object, Listener& listener) {
    mObservers().FindOrAdd(object, [object] { return object; }).Set(&listener, true);
}

void RemoveObserver(const void* object, Listener& listener) {
    Listeners* listeners = mObservers().Find(object);
    if (listeners && listeners->Remove(&listener) && listeners->Count() == 0) mObservers().Remove(object);
}

void ValueChanged(const void* object, StringView identifier) {
    const Listeners* listeners = mObservers().Find(object);
    if (!listeners) return;
    // A copy, since a listener may register or remove others, which moves the dictionary.
    for (Listener* listener : listeners->Keys())
        listener->ValueChanged(identifier);
}

const Dictionary<const void*, Listeners>& Observers() {
    return mObservers();
}

}  // namespace sorbel::Notifications
