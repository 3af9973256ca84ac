#pragma once

#include "scripting/compiler/Syntax.h"

namespace sorbel::script {

struct Variable {
    enum class Storage : uint8_t {
        Local,  // a register of its method
        Top,    // a register of the main program, which every method reaches
        Field,  // of an object or structure
    } Where = Storage::Local;
    NameId Name = 0;
    const Type* T = nullptr;
    uint32_t Line = 0;
    uint32_t Index = 0;  // of the register or field
    bool IsParameter = false;
    bool IsProperty = false;  // a plain property, of an object or shared
    bool UsedByMethods = false;
    VariableDecl* Decl = nullptr;
    Symbol* Sym = nullptr;
    const Method* In = nullptr;  // whose local it is; null in the main program
};

struct Constant {
    ConstDecl* Decl = nullptr;
    const EnumMember* Member = nullptr;  // of an enumeration
    Type* Owner = nullptr;
    ConstantValue Value;
    const Type* T = nullptr;
    enum class State : uint8_t { Open, Busy, Done, Failed } Progress = State::Open;
    std::optional<CompileError> Failure;  // which whoever uses it meets too
    size_t Scope = 0;
    Constant* Before = nullptr;  // the enumeration's member above
};

struct Method {
    MethodDecl* Decl = nullptr;
    Type* Owner = nullptr;
    const Type* Result = nullptr;
    Symbol* Sym = nullptr;
    int Slot = -1;          // in the table of virtual methods
    int Selector = -1;      // of an interface's method
    uint32_t Function = 0;  // in the program
    int Host = -1;          // of a method of the host
    bool IsAccessor = false;
    [[nodiscard]] bool IsInstance() const {
        return Owner && !Decl->Shared && (Owner->Is(Kind::Class) || Owner->Is(Kind::Interface));
    }
};

struct Property {
    NameId Name = 0;
    const Type* T = nullptr;
    Method* Get = nullptr;
    Method* Set = nullptr;
    Symbol* Sym = nullptr;
};

class Machine;
union Slot;

/// A function of the library. `Parameters` are names with letters behind them: I Integer, U UInt64, D Double,
/// B Boolean, S String, W String that is a blank if it is missing, C Color, V Variant, A any array, E an
/// element of that array, T an array of strings, F a delegate. Those behind `|` may be missing. `Result` is
/// one such letter, or nothing.
struct NativeFunction {
    const char* Name;
    const char* Parameters;
    const char* Result;
    void (*Run)(Machine& machine, Slot* arguments);
    bool AsMember;  // also called behind a dot
};
struct NativeParameter {
    String Name;
    char Letter = 0;
    bool Optional = false;
};
[[nodiscard]] std::vector<NativeParameter> ParametersOf(const NativeFunction& function);

/// The library's functions of a name; empty if it has none.
[[nodiscard]] std::vector<const NativeFunction*> FindNative(StringView name);
[[nodiscard]] const NativeFunction& Native(StringView name);
[[nodiscard]] uint32_t NativeIndex(const NativeFunction& function);
/// All of them, by their indices.
[[nodiscard]] const NativeFunction* const* NativeTable();

/// Declarations in the language itself that stand before every script.
[[nodiscard]] StringView Prelude();

}  // namespace sorbel::script
