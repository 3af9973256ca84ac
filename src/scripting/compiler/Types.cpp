#include "scripting/compiler/Types.h"

#include "scripting/compiler/Symbols.h"

namespace sorbel::script {

bool Type::ComesFrom(const Type* other) const {
    if (this == other) return true;
    for (const Type* part : Interfaces)
        if (part->ComesFrom(other)) return true;
    return Base && Base->ComesFrom(other);
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
