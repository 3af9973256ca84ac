#include <algorithm>

#include "scripting/compiler/Checker.h"

namespace sorbel::script {

namespace {
enum : uint8_t { Untouched, Arranging, Arranged };
}

// Gives fields and virtual methods their places, the superclass first.
void Checker::Arrange(Type& type) {
    if (type.State != Untouched) return;
    type.State = Arranging;
    if (type.Base) {
        if (type.Base != mTypes.Root()) Arrange(*type.Base);
        const auto& inherited = type.Base->Fields;
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
void Checker::CheckStructure(const Type& type, const Type& outer, uint32_t line) {
    for (const Variable* field : type.Fields) {
        const Type* inner = field->T->Is(Kind::Array) ? field->T->Element : field->T;
        if (!inner->Is(Kind::Structure)) continue;
        if (inner == &outer) Fail(Error::StructureInItself, line);
        if (inner->State == Untouched) Arrange(const_cast<Type&>(*inner));
        if (inner->State == Arranging) Fail(Error::StructureInItself, line);
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
    const auto place = [&](Method* method) {
        if (method->Decl->Shared || method->Decl->Name == mConstructor || method->Decl->Name == mDestructor)
            return;
        for (Method*& slot : type.Virtual) {
            if (slot->Decl->Name != method->Decl->Name || slot->IsAccessor != method->IsAccessor ||
                slot->Decl->IsFunction != method->Decl->IsFunction || !SameParameters(*slot, *method) ||
                slot->Decl->Visible == Visibility::Private) {
                if (slot->Decl->Name == method->Decl->Name && !slot->IsAccessor && !method->IsAccessor &&
                    SameParameters(*slot, *method) && slot->Decl->Visible != Visibility::Private)
                    Fail(Error::OverrideReturnType, method->Decl->Line);
                continue;
            }
            if (slot->Result != method->Result) Fail(Error::OverrideReturnType, method->Decl->Line);
            method->Slot = slot->Slot;
            slot = method;
            return;
        }
        method->Slot = static_cast<int>(type.Virtual.size());
        type.Virtual.push_back(method);
    };
    for (Method* method : mOut.Bodies)
        if (method->Owner == &type) place(method);
}

Method* Checker::FindImplementation(const Type& type, const Method& wanted) {
    Method* found = nullptr;
    for (const Type* cls = &type; cls; cls = cls->Base) {
        for (Method* method : cls->Methods) {
            const TypeName& explicitly = method->Decl->Implements;
            if (!explicitly.Given() || explicitly.Path.back() != wanted.Decl->Name) continue;
            if (explicitly.Path[explicitly.Path.size() - 2] != wanted.Owner->Decl->Name) continue;
            if (!SameParameters(*method, wanted)) continue;
            if (found) Fail(Error::AmbiguousInterfaceMethod, method->Decl->Line);
            found = method;
        }
        for (Method* method : cls->Methods)
            if (!found && !method->Decl->Implements.Given() && !method->Decl->Shared &&
                method->Decl->Name == wanted.Decl->Name && SameParameters(*method, wanted))
                return method;
        if (found) return found;
    }
    return nullptr;
}

void Checker::CheckInterfaces(Type& type) {
    CheckExplicit(type);
    for (Type* part : type.Interfaces)
        CheckInterface(type, *part);
}

void Checker::CheckInterface(Type& type, Type& part) {
    for (const Method* wanted : part.Methods) {
        const Method* found = FindImplementation(type, *wanted);
        if (!found) Fail(Error::InterfaceIncomplete, type.Decl->Line);
        if (found->Result != wanted->Result) Fail(Error::InterfaceReturnType, found->Decl->Line);
        mOut.Implementations.push_back({&type, wanted, found});
    }
    for (Type* inner : part.Interfaces)
        CheckInterface(type, *inner);
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
        bool claims = false;
        for (const Type* own : type.Interfaces)
            claims |= own->ComesFrom(part);
        if (!part->Is(Kind::Interface) || !claims) Fail(Error::InterfaceNotClaimed, named.Line);
        const bool declared =
            std::any_of(part->Methods.begin(), part->Methods.end(), [&](const Method* other) {
                return other->Decl->Name == wanted && SameParameters(*other, *method);
            });
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
