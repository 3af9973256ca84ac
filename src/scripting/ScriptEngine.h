#pragma once

#include <vector>

#include "scripting/compiler/KestrumScript.h"

namespace sorbel {

class Application;

namespace Scripting {

/// The English message of a compile error by its number, with placeholders %1, %2 and so on; empty for a
/// number without one.
[[nodiscard]] String Error2Text(int64_t error);

/// Puts values in the place of %1, %2 and so on. Placeholders without a value stay.
[[nodiscard]] String printf(StringView format, const std::vector<String>& values);

/// Runs one script and tells the user of its errors in words. Output and input of a script reach nothing.
class ScriptEngine : public script::KestrumScript {
  public:
    explicit ScriptEngine(Application& app) : mApp(app) {}

  protected:
    bool Event_CompilerError(const script::KestrumScriptLocation& location, int64_t error,
                             const Details& errorInfo) override;
    void Event_RuntimeError(const script::KestrumScriptLocation& location, const String& className,
                            const String& message) override;

  private:
    void Tell(const String& text, int64_t line);

    Application& mApp;
};

}  // namespace Scripting

}  // namespace sorbel
