#include "scripting/compiler/Compilation.h"

#include "scripting/compiler/Lexer.h"
#include "scripting/compiler/Parser.h"

namespace sorbel::script {

void Compilation::Build(StringView source, const ScriptHost* host) {
    Read(Prelude());
    for (TypeDecl* type : Tree.Top.Types)
        type->InLibrary = true;
    Read(source);
    Checker(Tree, Names, Types, host, Checked).Check();
    Emitter(Tree, Names, Types, Checked, Program).Emit();
}

void Compilation::Read(StringView text) {
    const std::vector<Token> tokens = ReadTokens(text, Names, Tree.Room);
    Parser(tokens, Names, Tree).ReadProgram();
}

}  // namespace sorbel::script
