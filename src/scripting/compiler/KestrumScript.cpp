#include "scripting/compiler/KestrumScript.h"

#include <new>

#include "scripting/compiler/Compilation.h"
#include "scripting/compiler/Machine.h"

namespace sorbel::script {

namespace {

constexpr int64_t PragmaWarning = 1;

KestrumScript::Details InOrder(const std::vector<String>& values) {
    KestrumScript::Details details;
    for (size_t at = 0; at < values.size(); ++at)
        details.Set(std::to_string(at + 1), values[at]);
    return details;
}

class Forward final : public Console {
  public:
    Forward(std::function<void(const String&)> print, std::function<String(const String&)> input)
        : mPrint(std::move(print)), mInput(std::move(input)) {}
    void Print(StringView text) override { mPrint(String(text)); }
    String Input(StringView prompt) override { return mInput(String(prompt)); }

  private:
    std::function<void(const String&)> mPrint;
    std::function<String(const String&)> mInput;
};

}  // namespace

void KestrumScript::Run() {
    Footprint room(Source.size());
    Compilation compilation(room);
    std::optional<ScriptFailure> failure;
    try {
        compilation.Build(Source, Context);
        for (const auto& [line, text] : compilation.Tree.Warnings)
            Event_CompilerWarning({line}, PragmaWarning, InOrder({text}));
        Forward console([this](const String& text) { Event_Print(text); },
                        [this](const String& prompt) { return Event_Input(prompt); });
        Machine machine(compilation.Program, compilation.Types, Context, console, room);
        failure = machine.Run(Watch);
    } catch (const CompileError& error) {
        Event_CompilerError({error.Line}, static_cast<int64_t>(error.Number), InOrder(error.Details));
        return;
    } catch (const std::bad_alloc&) {
        failure = ScriptFailure{OutOfMemory, OutOfMemoryMessage, room.Line()};
    }
    if (failure) Event_RuntimeError({failure->Line}, failure->ClassName, failure->Message);
}

}  // namespace sorbel::script
