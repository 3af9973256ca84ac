#pragma once

#include "platform/Dictionary.h"
#include "scripting/compiler/ScriptHost.h"
#include "scripting/compiler/Watch.h"

namespace sorbel::script {

/// A place in a script's text.
struct KestrumScriptLocation {
    int64_t Line = 0;  ///< counts from 1
};

/// Compiles and runs one script. An heir answers the events.
class KestrumScript {
  public:
    using Details = Dictionary<String, String>;

    virtual ~KestrumScript() = default;

    String Source;
    /// What the script sees besides itself; may be null. The caller keeps it alive during `Run`.
    ScriptHost* Context = nullptr;
    /// Ends the script while it runs; may be null. The caller keeps it alive during `Run`.
    script::Watch* Watch = nullptr;

    /// Compiles `Source` and, if it has no error, runs it to its end on the calling thread. The first error
    /// ends the compilation.
    void Run();

  protected:
    /// `errorInfo` has the values of the message's placeholders in their order. The answer is not used.
    virtual bool Event_CompilerError(const KestrumScriptLocation&, int64_t, const Details&) { return false; }
    virtual void Event_CompilerWarning(const KestrumScriptLocation&, int64_t, const Details&) {}
    /// A failure that nothing in the script caught, or its end from outside, which has no class. What the
    /// script did before stays done.
    virtual void Event_RuntimeError(const KestrumScriptLocation&, const String& className,
                                    const String& message) {
        (void)className;
        (void)message;
    }
    virtual void Event_Print(const String&) {}
    virtual String Event_Input(const String&) { return {}; }
};

}  // namespace sorbel::script
