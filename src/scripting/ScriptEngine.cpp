#include "scripting/ScriptEngine.h"

#include "ui/toolkit/Application.h"

namespace sorbel::Scripting {

String printf(StringView format, const std::vector<String>& values) {
    String text(format);
    for (size_t index = values.size(); index > 0; --index)  // downward: %10 before %1 can take its head
        text = ReplaceAll(text, "%" + std::to_string(index), values[index - 1]);
    return text;
}

bool ScriptEngine::Event_CompilerError(const script::KestrumScriptLocation& location, int64_t error,
                                       const Details& errorInfo) {
    std::vector<String> values;
    for (const auto& [key, value] : errorInfo)
        values.push_back(value);
    Tell(printf(Error2Text(error), values), location.Line);
    return false;
}

void ScriptEngine::Event_RuntimeError(const script::KestrumScriptLocation& location, const String& className,
                                      const String& message) {
    const bool both = !className.empty() && !message.empty();
    Tell(className + (both ? ": " : "") + message, location.Line);
}

void ScriptEngine::Tell(const String& text, int64_t line) {
    mApp.Desktop().MsgBox(text + String(EndOfLine) + "Line " + std::to_string(line));
}

}  // namespace sorbel::Scripting
