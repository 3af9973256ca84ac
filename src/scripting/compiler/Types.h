#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "scripting/compiler/Tokens.h"

namespace sorbel::script {

struct Symbol;
struct Method;
struct Variable;
struct TypeDecl;

/// What a value is at run time. The order of the numbers is used: see IsInteger and its like.
enum class Kind : uint8_t {
    Void,
    Nil,  // the type of Nil alone, which fits every reference
    Boolean,
    Int8,
    Int16,
    Int32,
    Int64,
    UInt8,
    UInt16,
    UInt32,
    UInt64,
    Single,
    Double,
    Color,
    Ptr,  // a number that scripts may pass around, and nothing else
    Enum,
    String,
    Variant,
    Array,
    Structure,
    Class,
    Interface,
    Delegate,
    Module,
};

enum class Visibility : uint8_t { Public, Protected, Private, Global };

using Members = std::unordered_map<NameId, Symbol*>;

/// A type, or a module, which has members like one. Types are the same if their addresses are.
struct Type {
    Kind K = Kind::Void;
    String Name;
    const Type* Element = nullptr;  // of an array; of an enumeration its integer type
    int Rank = 0;

    TypeDecl* Decl = nullptr;
    Type* Owner = nullptr;  // the module or class around it
    Visibility Visible = Visibility::Public;
    Type* Base = nullptr;              // superclass
    std::vector<Type*> Interfaces;     // implemented or aggregated
    std::vector<const Type*> Reached;  // of a class: those and what they aggregate, by address
    Members Own;                       // declared here
    std::vector<Variable*> Fields;     // of an instance, those of the superclass first
    std::vector<Method*> Methods;      // declared here
    std::vector<Method*> Virtual;      // the table of virtual methods
    std::vector<Method*> Constructors;
    Method* Destructor = nullptr;
    Method* Signature = nullptr;  // of a delegate
    uint32_t Index = 0;           // of a class or structure in the program
    uint8_t State = 0;            // how far the checker is with it
    uint16_t Height = 0;          // how many interfaces stand above, or structures lie in, each other

    [[nodiscard]] bool IsNumber() const { return K >= Kind::Int8 && K <= Kind::Double; }
    [[nodiscard]] bool IsInteger() const { return K >= Kind::Int8 && K <= Kind::UInt64; }
    [[nodiscard]] bool IsUnsigned() const { return K >= Kind::UInt8 && K <= Kind::UInt64; }
    [[nodiscard]] bool IsReal() const { return K == Kind::Single || K == Kind::Double; }
    [[nodiscard]] bool IsObject() const { return K == Kind::Class || K == Kind::Interface || K == Kind::Nil; }
    /// Whether a register with such a value counts references.
    [[nodiscard]] bool IsReference() const { return K >= Kind::String || K == Kind::Nil; }
    [[nodiscard]] bool Is(Kind kind) const { return K == kind; }
    /// Whether this class or interface is `other` or comes from it. The interfaces must be known by then.
    [[nodiscard]] bool ComesFrom(const Type* other) const;
    /// Whether this interface is `other` or aggregates it, as far as that is known.
    [[nodiscard]] bool Aggregates(const Type* other) const;
    /// Fills `Reached` of a class. An interface would have too many that nobody asks for.
    void ReachInterfaces();
};

/// All types of one program: the built-in ones, arrays by element and rank, and what a script declares.
class Types {
  public:
    explicit Types(Names& names);
    [[nodiscard]] const Type* Of(Kind kind) const { return mBuiltIn[static_cast<size_t>(kind)]; }
    [[nodiscard]] const Type* ArrayOf(const Type* element, int rank);
    Type* Declare(Kind kind, String name);
    [[nodiscard]] const Members& BuiltIn() const { return mNames; }
    /// `Object`, from which every class comes.
    [[nodiscard]] Type* Root() const { return mRoot; }
    [[nodiscard]] const std::deque<Type>& All() const { return mAll; }
    Symbol* Add(NameId name, Type* type);

  private:
    void Name(Names& names, StringView spelling, Kind kind);

    std::deque<Type> mAll;
    std::deque<Symbol> mSymbols;
    std::vector<Type*> mBuiltIn;
    std::unordered_map<const Type*, std::vector<const Type*>> mArrays;
    Members mNames;
    Type* mRoot = nullptr;
};

/// What a name stands for.
struct Symbol {
    enum class What : uint8_t { Variable, Constant, Type, Methods, Property, Event } Is = What::Variable;
    NameId Name = 0;
    Visibility Visible = Visibility::Public;
    Type* Owner = nullptr;  // the class or module that declares it
    script::Variable* Var = nullptr;
    struct Constant* Const = nullptr;
    script::Type* T = nullptr;
    std::vector<Method*> Overloads;
    bool TakesLists = false;  // one of them has a ParamArray
    struct Property* Prop = nullptr;
};

}  // namespace sorbel::script
