#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

// From the inside out: locals, members of the class and of what lies around it, the script's own names and
// what it imports, the host's, the built-in types. The classes of the language do not see the script's names.
Symbol* Checker::FindName(NameId name) {
    for (size_t at = mNow.Scopes.size(); at-- > 0;)
        if (const auto found = mNow.Scopes[at].find(name); found != mNow.Scopes[at].end())
            return found->second;
    for (Type* around = mNow.Owner; around && around != mTop; around = around->Owner) {
        if (Symbol* found = FindMember(around, name)) return found;
        if (Symbol* found = FindImported(around, name)) return found;
    }
    const bool inLibrary = mNow.Owner && mNow.Owner->Decl && mNow.Owner->Decl->InLibrary;
    if (Symbol* found = inLibrary ? nullptr : FindTopName(name)) return found;
    const auto found = mTypes.BuiltIn().find(name);
    return found == mTypes.BuiltIn().end() ? nullptr : found->second;
}

Symbol* Checker::FindTopName(NameId name) {
    if (const auto found = mTopVariables.find(name); found != mTopVariables.end()) return found->second;
    if (Symbol* found = FindMember(mTop, name)) return found;
    // In the main program a Using counts from its line on.
    if (!mNow.InMain)
        if (Symbol* found = FindImported(mTop, name)) return found;
    if (Symbol* found = FindGlobal(name)) return found;
    const auto found = mHost.find(name);
    return found == mHost.end() ? nullptr : found->second;
}

// Of several modules with a global name, the first in the text. Only a module of the script's own has some.
Symbol* Checker::FindGlobal(NameId name) const {
    const auto known = mGlobals.find(name);
    if (known == mGlobals.end()) return nullptr;
    Symbol* first = nullptr;
    for (Symbol* symbol : known->second)
        if (symbol->Visible == Visibility::Global &&
            (!first || symbol->Owner->Decl->Line < first->Owner->Decl->Line))
            first = symbol;
    return first;
}

// Makes a member of a module known to all who may see it.
void Checker::Show(Symbol& symbol, Type* owner, Visibility visible) {
    symbol.Owner = owner;
    symbol.Visible = visible;
    if (!owner->Is(Kind::Module) || owner == mTop) return;
    std::vector<Symbol*>& same = (visible == Visibility::Global ? mGlobals : mPublics)[symbol.Name];
    if (same.empty() || same.back() != &symbol) same.push_back(&symbol);
}

// Constants are worked out before there are variables, but one that names a variable has its own message.
void Checker::FailUnknown(NameId name, uint32_t line) const {
    if (mNow.InConstant)
        for (const Stmt* statement : mTree.Main)
            for (const VariableDecl& decl : statement->Vars)
                if (decl.Name == name) Fail(Error::ConstNeedsConstant, line);
    Fail(Error::UndefinedIdentifier, line);
}

Symbol* Checker::FindMember(const Type* type, NameId name) const {
    for (const Type* cls = type; cls; cls = cls->Base)
        if (const auto found = cls->Own.find(name); found != cls->Own.end()) return found->second;
    if (type->Is(Kind::Interface)) {
        for (const Type* part : type->Interfaces)
            if (Symbol* found = FindMember(part, name)) return found;
    }
    return nullptr;
}

namespace {

bool Inside(const Type* place, const Type* around) {
    for (; place; place = place->Owner)
        if (place == around) return true;
    return false;
}

// How many letters must change to make one name of the other, up to 3.
size_t Distance(const String& a, const String& b) {
    if (a.size() > b.size() + 2 || b.size() > a.size() + 2) return 3;
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t corner = row[0]++;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t change = corner + (a[i - 1] == b[j - 1] ? 0 : 1);
            corner = row[j];
            row[j] = std::min({change, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

}  // namespace

bool Checker::Sees(Visibility visible, const Type* owner) const {
    if (visible == Visibility::Public || visible == Visibility::Global || !owner) return true;
    if (Inside(mNow.Owner, owner)) return true;
    if (visible == Visibility::Protected)
        for (const Type* place = mNow.Owner; place; place = place->Owner)
            if (place->ComesFrom(owner)) return true;
    return false;
}

void Checker::CheckVisible(const Symbol& symbol, uint32_t line) const {
    if (Sees(symbol.Visible, symbol.Owner)) return;
    switch (symbol.Is) {
        case Symbol::What::Methods:
            Fail(Error::ProtectedMethod, line);
        case Symbol::What::Type:
            Fail(symbol.T->Is(Kind::Module) ? Error::PrivateModule : Error::PrivateType, line);
        default:
            Fail(Error::ProtectedProperty, line);
    }
}

// The known type whose name is nearest; empty if none is near.
String Checker::Suggestion(const String& name, bool classes) const {
    const String folded = sorbel::Fold(name);
    String best;
    size_t least = folded.size() > 3 ? 3 : 2;
    const auto look = [&](const Type& type) {
        if (type.Name.empty() || type.Is(Kind::Module) || type.Is(Kind::Array) || type.Is(Kind::Void) ||
            type.Is(Kind::Nil) || (classes && !type.Is(Kind::Class)))
            return;
        const size_t distance = Distance(folded, sorbel::Fold(type.Name));
        if (distance > 0 && distance < least) {
            least = distance;
            best = type.Name;
        }
    };
    for (const Type& type : mTypes.All())
        look(type);
    return best;
}

const Type* Checker::FindType(const TypeName& named, Error missing, Error module) {
    Symbol* symbol = FindName(named.Path[0]);
    const bool qualified = named.Path.size() > 1;
    const String& first = Spell(named.Path[0]);
    if (!symbol) {
        if (qualified) Fail(Error::NoSuchTypeOrModule, named.Line);
        const String near = missing == Error::NoSuchType ? Suggestion(first, false) : "";
        if (!near.empty()) Fail(Error::TypeDidYouMean, named.Line, {near});
        Fail(missing, named.Line);
    }
    if (symbol->Is != Symbol::What::Type)
        Fail(qualified ? Error::ExpectedTypeOrModule : Error::ExpectedType, named.Line, {first});
    CheckVisible(*symbol, named.Line);
    for (size_t at = 1; at < named.Path.size(); ++at) {
        Symbol* inner = FindMember(symbol->T, named.Path[at]);
        const bool last = at + 1 == named.Path.size();
        if (!inner) Fail(last ? missing : Error::NoSuchTypeOrModule, named.Line);
        if (inner->Is != Symbol::What::Type)
            Fail(last ? Error::ExpectedType : Error::ExpectedTypeOrModule, named.Line,
                 {Spell(named.Path[at])});
        CheckVisible(*inner, named.Line);
        symbol = inner;
    }
    if (!symbol->T->Is(Kind::Module)) return symbol->T;
    if (module != Error::ExpectedType) Fail(module, named.Line);
    Fail(Error::ExpectedType, named.Line, {symbol->T->Name});
}

const Type* Checker::FindWholeType(const TypeName& named) {
    const Type* type = FindType(named);
    return named.Rank == 0 ? type : mTypes.ArrayOf(type, named.Rank);
}

String Checker::Describe(const std::vector<const Type*>& list) const {
    String text;
    for (const Type* type : list)
        text += (text.empty() ? "" : ", ") + type->Name;
    return text;
}

}  // namespace sorbel::script
