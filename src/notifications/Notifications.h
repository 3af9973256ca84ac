#pragma once

#include <functional>

#include "platform/Dictionary.h"
#include "platform/Text.h"

namespace sorbel {

/// Hears of changed values.
class Listener {
  public:
    virtual ~Listener() = default;
    virtual void ValueChanged(StringView identifier) = 0;
    /// The batch in which it heard of changes is over.
    virtual void BatchEnded() {}
};

/// Lets a document stay ignorant of its windows: whoever registers for an object hears of its values.
namespace Notifications {

using Listeners = Dictionary<Listener*, bool>;

/// Adding a listener twice leaves one registration. Objects are told apart by identity; each registration
/// needs its `RemoveObserver` before the listener dies.
void AddObserver(const void* object, Listener& listener);
void RemoveObserver(const void* object, Listener& listener);
/// Tells each listener of the object, before it returns. Listeners may come and go during the delivery, which
/// still reaches one that is removed meanwhile and not one that is added.
void ValueChanged(const void* object, StringView identifier);

/// Makes many changes at once. Listeners hear of each as it is made, and then that the batch is over: one
/// whose reaction to a change only replaces its reaction to the change before may put it off until then. A
/// failure in `changes` ends the batch too, and passes on.
void Batch(const std::function<void()>& changes);
[[nodiscard]] bool InBatch();

/// Who listens to what.
[[nodiscard]] const Dictionary<const void*, Listeners>& Observers();

}  // namespace Notifications

}  // namespace sorbel
