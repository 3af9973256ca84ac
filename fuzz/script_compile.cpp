// Scripts that are compiled only, so that the machine's time goes into the compiler.
#include <algorithm>
#include <optional>

#include "ScriptRows.h"
#include "Target.h"
#include "scripting/compiler/Compilation.h"

namespace sorbel::fuzz {

namespace {

using namespace script;

/// What is wrong with a script, nothing if it compiles.
std::optional<CompileError> ErrorOf(StringView text, const ScriptHost& rows) {
    Footprint room(text.size());
    Compilation compilation(room);
    try {
        compilation.Build(text, &rows);
    } catch (const CompileError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        Require(false, "no script this short needs much memory to be compiled");
    }
    for (const Function& function : compilation.Program.Functions) {
        const size_t size = function.Code.size();
        Require(size > 0 && function.Lines.size() == size, "each operation has its line");
        Require(std::all_of(function.Handlers.begin(), function.Handlers.end(),
                            [size](const Handler& handler) {
                                return handler.Start <= handler.End && handler.End <= size &&
                                       handler.Target < size;
                            }),
                "handlers stay within their function");
    }
    return std::nullopt;
}

}  // namespace

void CheckInput(StringView input) {
    static CompiledShare share;
    const ScriptRows rows;
    const std::optional<CompileError> error = ErrorOf(input, rows);
    ++share.All;
    if (!error) {
        ++share.Compiled;
        return;
    }
    const auto lines = static_cast<uint32_t>(CountFields(ReplaceLineEndings(input, "\n"), "\n"));
    Require(error->Line >= 1 && error->Line <= lines + 1, "an error stands in a line of the script");
    const std::optional<CompileError> moved = ErrorOf("\n" + String(input), rows);
    Require(moved && moved->Number == error->Number && moved->Line == error->Line + 1,
            "behind an empty line the same error stands a line further down");
}

}  // namespace sorbel::fuzz
