#pragma once

#include "platform/Dictionary.h"
#include "platform/Text.h"

namespace sorbel {

/// Hears of changed values.
class Listener {
  public:
    virtual ~Listener() = default;
    virtual void ValueChanged(StringView identifier) = 0;
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

/// Who listens to what.
[[nodiscard]] const Dictionary<const void*, Listeners>& Observers();

}  // namespace Notifications

}  // namespace sorbel
