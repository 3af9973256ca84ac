#include "scripting/compiler/Types.h"

#include <algorithm>
#include <unordered_set>

#include "scripting/compiler/Symbols.h"

namespace sorbel::script {

namespace {

// Visits what some interfaces aggregate, each once: there may be very many ways to it. Ends when `visit` says
// so.
template <typename Visit>
bool VisitInterfaces(std::vector<const Type*> open, Visit visit) {
    std::unordered_set<const Type*> seen(open.begin(), open.end());
    while (!open.empty()) {
        const Type* type = open.back();
        open.pop_back();
        if (visit(type)) return true;
        for (const Type* part : type->Interfaces)
            if (seen.insert(part).second) open.push_back(part);
    }
    return false;
}

}  // namespace

bool Type::ComesFrom(const Type* other) const {
    for (const Type* type = this; type; type = type->Base) {
        if (type == other) return true;
        if (std::binary_search(type->Reached.begin(), type->Reached.end(), other, std::less<>())) return true;
    }
    return Is(Kind::Interface) && Aggregates(other);
}

bool Type::Aggregates(const Type* other) const {
    return VisitInterfaces({this}, [other](const Type* type) { return type == other; });
}

void Type::ReachInterfaces() {
    if (!Is(Kind::Class) || Interfaces.empty()) return;
    VisitInterfaces({Interfaces.begin(), Interfaces.end()}, [this](const Type* type) {
        Reached.push_back(type);
        return false;
    });
    std::sort(Reached.begin(), Reached.end(), std::less<>());
}

Types::Types(Names& names) {
    static constexpr const char* spellings[] = {"Nothing", "Nil",   "Boolean", "Int8",   "Int16",  "Int32",
                                                "Integer", "UInt8", "UInt16",  "UInt32", "UInt64", "Single",
                                                "Double",  "Color", "Ptr",     "",       "String", "Variant"};
    for (size_t index = 0; index <= static_cast<size_t>(Kind::Module); ++index) {
        Type* type = Declare(static_cast<Kind>(index), index < std::size(spellings) ? spellings[index] : "");
        mBuiltIn.push_back(type);
        if (index >= 2 && index < std::size(spellings) && *spellings[index])
            Name(names, spellings[index], type->K);
    }
    Name(names, "Int64", Kind::Int64);
    Name(names, "UInteger", Kind::UInt64);
    Name(names, "Byte", Kind::UInt8);
    Name(names, "Auto", Kind::Variant);
    mRoot = Declare(Kind::Class, "Object");
    mNames[names.Intern("Object")] = Add(names.Intern("Object"), mRoot);
}

Type* Types::Declare(Kind kind, String name) {
    Type& type = mAll.emplace_back();
    type.K = kind;
    type.Name = std::move(name);
    return &type;
}

Symbol* Types::Add(NameId name, Type* type) {
    Symbol& symbol = mSymbols.emplace_back();
    symbol.Is = Symbol::What::Type;
    symbol.Name = name;
    symbol.T = type;
    return &symbol;
}

void Types::Name(Names& names, StringView spelling, Kind kind) {
    const NameId name = names.Intern(spelling);
    mNames[name] = Add(name, mBuiltIn[static_cast<size_t>(kind)]);
}

const Type* Types::ArrayOf(const Type* element, int rank) {
    std::vector<const Type*>& known = mArrays[element];
    for (const Type* type : known)
        if (type->Rank == rank) return type;
    Type* type = Declare(Kind::Array, element->Name + "(" + String(static_cast<size_t>(rank) - 1, ',') + ")");
    type->Element = element;
    type->Rank = rank;
    known.push_back(type);
    return type;
}

}  // namespace sorbel::script
