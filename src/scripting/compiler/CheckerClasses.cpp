#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

namespace {
enum : uint8_t { Untouched, Arranging, Arranged };
}

// Gives fields and virtual methods their places, the superclass first.
void Checker::Arrange(Type& type) {
    constexpr int weight = 8;  // there are three functions to a step
    const Depth::Step step(mDepth, type.Decl->Line, weight);
    std::vector<Type*> line;
    for (Type* cls = &type; cls && cls != mTypes.Root() && cls->State == Untouched; cls = cls->Base)
        line.push_back(cls);
    for (size_t at = line.size(); at-- > 0;)
        ArrangeOne(*line[at]);
}

void Checker::ArrangeOne(Type& type) {
    type.State = Arranging;
    if (type.Base) {
        const auto& inherited = type.Base->Fields;
        mTree.Room.Need((inherited.size() + type.Base->Virtual.size()) * sizeof(void*), type.Decl->Line);
        type.Fields.insert(type.Fields.begin(), inherited.begin(), inherited.end());
    }
    for (size_t index = 0; index < type.Fields.size(); ++index)
        type.Fields[index]->Index = static_cast<uint32_t>(index);
    if (type.Is(Kind::Structure)) CheckStructure(type, type, type.Decl->Line);
    if (type.Is(Kind::Class)) ArrangeVirtual(type);
    if (type.Is(Kind::Interface))
        for (Method* method : type.Methods)
            method->Selector = mSelectors++;
    if (type.Is(Kind::Class) || type.Is(Kind::Interface) || type.Is(Kind::Structure)) {
        type.Index = static_cast<uint32_t>(mOut.Classes.size());
        mOut.Classes.push_back(&type);
    }
    type.State = Arranged;
}

// A structure lies inside the structure that has a field of it.
void Checker::CheckStructure(Type& type, const Type& outer, uint32_t line) {
    for (const Variable* field : type.Fields) {
        const Type* inner = field->T->Is(Kind::Array) ? field->T->Element : field->T;
        if (!inner->Is(Kind::Structure)) continue;
        if (inner == &outer) Fail(Error::StructureInItself, line);
        if (inner->State == Untouched) Arrange(const_cast<Type&>(*inner));
        if (inner->State == Arranging) Fail(Error::StructureInItself, line);
        if (inner->Height == MostHeight) Fail(Error::Nesting, line);
        type.Height = std::max(type.Height, static_cast<uint16_t>(inner->Height + 1));
    }
}

void Checker::ArrangeVirtual(Type& type) {
    type.Virtual = type.Base->Virtual;
    if (!type.Destructor) type.Destructor = type.Base->Destructor;
    for (const auto& [name, symbol] : type.Own) {
        const Symbol* inherited = FindMember(type.Base, name);
        if (!inherited || !symbol->Var || !inherited->Var || inherited->Visible == Visibility::Private ||
            symbol->Is == Symbol::What::Event)
            continue;
        if (symbol->Var->T != inherited->Var->T) Fail(Error::ShadowedProperty, symbol->Var->Line);
    }
    const std::vector<Method*>& bodies = mBodiesOf[&type];
    // Few methods are looked for one by one; many would take too long.
    constexpr size_t few = 16;
    std::unordered_map<size_t, std::vector<size_t>> slots;
    if (bodies.size() > few)
        for (size_t slot = 0; slot < type.Virtual.size(); ++slot)
            slots[SignatureOf(*type.Virtual[slot])].push_back(slot);
    for (Method* method : bodies) {
        if (method->Decl->Shared || method->Decl->Name == mConstructor || method->Decl->Name == mDestructor)
            continue;
        bool replaces = false;
        if (bodies.size() > few) {
            std::vector<size_t>& same = slots[SignatureOf(*method)];
            for (const size_t slot : same)
                if (!replaces) replaces = ReplaceVirtual(type.Virtual[slot], *method);
            if (!replaces) same.push_back(type.Virtual.size());
        } else {
            for (Method*& slot : type.Virtual)
                if (!replaces) replaces = ReplaceVirtual(slot, *method);
        }
        if (replaces) continue;
        method->Slot = static_cast<int>(type.Virtual.size());
        type.Virtual.push_back(method);
    }
}

// Gives a method the place of another if it is the same one of an heir.
bool Checker::ReplaceVirtual(Method*& slot, Method& method) const {
    if (slot->Decl->Name != method.Decl->Name || slot->Decl->Visible == Visibility::Private) return false;
    if (!SameParameters(*slot, method)) return false;
    const bool same =
        slot->IsAccessor == method.IsAccessor && slot->Decl->IsFunction == method.Decl->IsFunction;
    if (!same && (slot->IsAccessor || method.IsAccessor)) return false;
    if (!same || slot->Result != method.Result) Fail(Error::OverrideReturnType, method.Decl->Line);
    method.Slot = slot->Slot;
    slot = &method;
    return true;
}

Method* Checker::FindImplementation(const Type& type, const Method& wanted) {
    Method* found = nullptr;
    for (const Type* cls = &type; cls; cls = cls->Base) {
        for (Method* method : Explicit(*cls, wanted.Decl->Name)) {
            const TypeName& explicitly = method->Decl->Implements;
            if (explicitly.Path[explicitly.Path.size() - 2] != wanted.Owner->Decl->Name) continue;
            if (!SameParameters(*method, wanted)) continue;
            if (found) Fail(Error::AmbiguousInterfaceMethod, method->Decl->Line);
            found = method;
        }
        if (found) return found;
        const auto own = cls->Own.find(wanted.Decl->Name);
        if (own == cls->Own.end() || own->second->Is != Symbol::What::Methods) continue;
        for (Method* method : own->second->Overloads)
            if (!method->Decl->Implements.Given() && !method->Decl->Shared && SameParameters(*method, wanted))
                return method;
    }
    return nullptr;
}

// The methods of a class that name an interface's method of this name.
const std::vector<Method*>& Checker::Explicit(const Type& type, NameId name) {
    const auto [known, added] = mExplicit.try_emplace(&type);
    if (added)
        for (Method* method : type.Methods)
            if (const TypeName& named = method->Decl->Implements; named.Path.size() > 1)
                known->second[named.Path.back()].push_back(method);
    return known->second[name];
}

void Checker::CheckInterfaces(Type& type) {
    CheckExplicit(type);
    std::unordered_set<const Type*> checked;
    for (Type* part : type.Interfaces)
        CheckInterface(type, *part, checked);
}

void Checker::CheckInterface(Type& type, Type& part, std::unordered_set<const Type*>& checked) {
    if (!checked.insert(&part).second) return;
    for (const Method* wanted : part.Methods) {
        const Method* found = FindImplementation(type, *wanted);
        if (!found) Fail(Error::InterfaceIncomplete, type.Decl->Line);
        if (found->Result != wanted->Result) Fail(Error::InterfaceReturnType, found->Decl->Line);
        mOut.Implementations.push_back({&type, wanted, found});
    }
    for (Type* inner : part.Interfaces)
        CheckInterface(type, *inner, checked);
}

// A method that names the interface's method that it stands for.
void Checker::CheckExplicit(Type& type) {
    mNow.Owner = &type;
    for (const Method* method : type.Methods) {
        TypeName named = method->Decl->Implements;
        if (!named.Given()) continue;
        if (named.Path.size() < 2) Fail(Error::Syntax, named.Line);
        const NameId wanted = named.Path.back();
        named.Path.pop_back();
        const Type* part = FindType(named);
        if (!std::binary_search(type.Reached.begin(), type.Reached.end(), part, std::less<>()))
            Fail(Error::InterfaceNotClaimed, named.Line);
        const auto own = part->Own.find(wanted);
        const bool declared =
            own != part->Own.end() && own->second->Is == Symbol::What::Methods &&
            std::any_of(own->second->Overloads.begin(), own->second->Overloads.end(),
                        [&](const Method* other) { return SameParameters(*other, *method); });
        if (!declared) Fail(Error::InterfaceLacksMethod, named.Line);
    }
}

// What stands at the top of the script must not share its name with a method, class or module.
void Checker::CheckTopNames() {
    for (const Stmt* statement : mTree.Main) {
        if (statement->Kind != StmtKind::Dim) continue;
        for (const VariableDecl& decl : statement->Vars) {
            const auto found = mTop->Own.find(decl.Name);
            if (found == mTop->Own.end()) continue;
            const Symbol& symbol = *found->second;
            if (symbol.Is == Symbol::What::Methods) Fail(Error::GlobalSameAsFunction, decl.Line);
            if (symbol.Is == Symbol::What::Constant) Fail(Error::LocalSameAsConstant, decl.Line);
            if (symbol.Is != Symbol::What::Type) continue;
            if (symbol.T->Is(Kind::Module)) Fail(Error::GlobalSameAsModule, decl.Line);
            Fail(symbol.T->Is(Kind::Class) ? Error::GlobalSameAsClass : Error::Redefined, decl.Line);
        }
    }
}

}  // namespace sorbel::script
