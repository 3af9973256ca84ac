#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// `Using Module`, `Using Module.InnerModule` or `Using Module.Member`.
Checker::Import Checker::FindImport(const TypeName& named) {
    const Symbol* symbol = FindName(named.Path[0]);
    if (!symbol) Fail(Error::NoSuchTypeOrModule, named.Line);
    for (size_t at = 1;; ++at) {
        if (symbol->Is != Symbol::What::Type || !symbol->T->Is(Kind::Module) || named.Rank > 0)
            Fail(Error::ImportOfNoModule, named.Line);
        const Type* module = symbol->T;
        if (at == named.Path.size()) return {module, {}};
        const bool last = at + 1 == named.Path.size();
        const Symbol* inner = FindMember(module, named.Path[at]);
        if (!inner && !last) Fail(Error::NoSuchTypeOrModule, named.Line);
        const bool innerModule = inner && inner->Is == Symbol::What::Type && inner->T->Is(Kind::Module);
        if (last && !innerModule) return {module, named.Path[at]};
        CheckVisible(*inner, named.Line);
        symbol = inner;
    }
}

void Checker::CheckImport(const Import& import, uint32_t line) const {
    if (!import.Only) return;
    const Symbol* symbol = FindMember(import.Module, *import.Only);
    if (!symbol) Fail(Error::UndefinedMember, line);
    if (symbol->Visible == Visibility::Public) return;
    Fail(symbol->Visible == Visibility::Global ? Error::ImportOfGlobal : Error::ImportOfPrivate, line,
         {Spell(*import.Only), import.Module->Name});
}

// Types may be named by what is imported, so this comes before anything else is declared.
void Checker::CollectImports() {
    for (const Stmt* statement : mTree.Main)
        if (statement->Kind == StmtKind::Using) {
            mNow.Owner = mTop;
            AddImport(mTop, statement->Named);
        }
    for (const Type* type : mDeclared)
        for (const TypeName& named : type->Decl->Usings) {
            mNow.Owner = type->Owner;
            AddImport(type, named);
        }
}

void Checker::AddImport(const Type* around, const TypeName& named) {
    std::vector<Import>& imports = mImports[around];
    imports.push_back(FindImport(named));
    mImportsOf[around][imports.back().Module].push_back(imports.size() - 1);
}

void Checker::CheckImports() {
    for (const Type* type : mDeclared)
        for (size_t at = 0; at < type->Decl->Usings.size(); ++at) {
            const Import& import = mImports[type][at];
            const uint32_t line = type->Decl->Usings[at].Line;
            CheckImport(import, line);
            for (const auto& [name, symbol] : import.Module->Own) {
                const bool meant = import.Only ? *import.Only == name : symbol->Visible == Visibility::Public;
                if (meant && type->Own.contains(name)) Fail(Error::ImportOverSymbol, line);
            }
        }
}

Symbol* Checker::FindImported(const Type* around, NameId name) const {
    const auto imports = mImportsOf.find(around);
    const auto known = mPublics.find(name);
    if (imports == mImportsOf.end() || known == mPublics.end()) return nullptr;
    const std::vector<Import>& all = mImports.at(around);
    Symbol* first = nullptr;
    size_t least = SIZE_MAX;
    for (Symbol* symbol : known->second) {
        const auto places = imports->second.find(symbol->Owner);
        if (symbol->Visible != Visibility::Public || places == imports->second.end()) continue;
        for (const size_t place : places->second)
            if (place < least && (!all[place].Only || *all[place].Only == name)) {
                least = place;
                first = symbol;
            }
    }
    return first;
}

// Among statements the names are known in the rest of the block, as if they were declared in it.
void Checker::CheckUsing(const Stmt& statement) {
    const Import import = FindImport(statement.Named);
    CheckImport(import, statement.Line);
    const bool top = mNow.InMain && mNow.Scopes.size() == 1;
    for (const auto& [name, symbol] : import.Module->Own) {
        if (symbol->Visible != Visibility::Public || (import.Only && *import.Only != name)) continue;
        Symbol*& slot = mNow.Scopes.back()[name];
        if ((slot && slot != symbol) || (top && mTop->Own.contains(name)))
            Fail(Error::ImportOverSymbol, statement.Line);
        slot = symbol;
    }
}

}  // namespace sorbel::script
