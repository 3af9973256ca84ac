#pragma once

#include "scripting/compiler/Emitter.h"

namespace sorbel::script {

/// One script on its way from text to operations: what all passes share.
struct Compilation {
    explicit Compilation(Footprint& room) : Tree(room) {}

    /// Compiles the language's own classes and `source`, in UTF-8; `host` may be null. Fails with
    /// CompileError, or with std::bad_alloc when the script needs more than it may have.
    void Build(StringView source, const ScriptHost* host);

    script::Names Names;
    script::Types Types{Names};
    script::Tree Tree;
    script::Checked Checked;
    script::Program Program;

  private:
    void Read(StringView text);
};

}  // namespace sorbel::script
