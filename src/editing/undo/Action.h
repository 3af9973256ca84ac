#pragma once

#include "platform/Text.h"

namespace sorbel {

/// An undoable change. Subclasses supply hooks; what a hook does by default is to refuse or to do nothing.
class Action {
  public:
    virtual ~Action() = default;
    Action() = default;
    Action(const Action&) = delete;
    Action& operator=(const Action&) = delete;

    /// Asks this, the older change, to absorb a newer one. True: it did.
    bool Combine(const Action& other) { return CombineWith(other); }
    [[nodiscard]] String Description() const { return GetDescription(); }
    void Perform() { Execute(); }
    void Undo() { Unexecute(); }

  protected:
    virtual bool CombineWith(const Action& /*other*/) { return false; }
    virtual void Execute() {}
    [[nodiscard]] virtual String GetDescription() const { return {}; }
    virtual void Unexecute() {}
};

}  // namespace sorbel
