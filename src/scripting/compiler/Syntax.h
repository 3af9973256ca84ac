#pragma once

#include <optional>
#include <variant>

#include "scripting/compiler/Footprint.h"
#include "scripting/compiler/Types.h"

namespace sorbel::script {

struct Expr;
struct Stmt;
struct MethodDecl;
using Block = std::vector<Stmt*>;

/// A type as it is written: names joined by dots, and `()` or `(,)` behind them for an array.
struct TypeName {
    std::vector<NameId> Path;
    int Rank = 0;
    uint32_t Line = 0;
    [[nodiscard]] bool Given() const { return !Path.empty(); }
};

/// A value that is known at compile time. A colour and an enumeration's value are integers.
using ConstantValue = std::variant<std::monostate, bool, int64_t, double, ConstantText>;

enum class Op : uint8_t {
    None,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Is,
    And,
    Or,
    Xor,
    Not,
    Negate,
};
/// How an operator is written, and the method of a class that stands for it.
[[nodiscard]] const char* Spelling(Op op);
[[nodiscard]] const char* MethodName(Op op);
[[nodiscard]] inline bool IsComparison(Op op) {
    return op >= Op::Equal && op <= Op::GreaterEqual;
}

enum class ExprKind : uint8_t {
    // as parsed
    Literal,
    Nil,
    Name,
    Member,
    Call,
    Unary,
    Binary,
    IsA,
    New,
    AddressOf,
    Self,
    Super,
    Cast,  // CType(value, Type)
    RaiseEvent,
    Missing,
    Conditional,  // If(condition, a, b): Left and both Args
    // put in place of the above by the checker
    Variable,
    Field,      // of Left
    Subscript,  // of the array Left
    Invoke,     // Target, on Left if it is an instance method
    InvokeDelegate,
    Native,  // a function of the library
    Host,
    Convert,
    Namespace,  // a type or module, which is no value
    Methods,    // named, not called
    Event,      // named, of the object Left
    PropertyOf,
    ArrayOf,  // Array(a, b, c), and the rest of a ParamArray
    ReferTo,  // a value that several places of the tree share, worked out once
};

/// What a literal is whose value alone does not tell.
enum class LiteralForm : uint8_t { Plain, Color, Unsigned };

struct Expr {
    ExprKind Kind = ExprKind::Literal;
    Op Operator = Op::None;
    bool Weak = false;  // WeakAddressOf; Me instead of Self
    bool Parenthesised = false;
    bool HasList = false;     // a call or a New with parentheses
    bool DirectCall = false;  // not virtual: through Super, or a constructor
    LiteralForm Written = LiteralForm::Plain;
    uint16_t Depth = 1;
    uint32_t Line = 0;
    NameId Name = 0;
    Expr* Left = nullptr;
    Expr* Right = nullptr;
    std::vector<Expr*> Args;
    TypeName Named;
    ConstantValue Value;

    const Type* T = nullptr;      // from here on: by the checker
    const Type* Other = nullptr;  // of IsA, and the namespace itself
    Symbol* Sym = nullptr;
    script::Variable* Var = nullptr;
    Method* Target = nullptr;
    const struct NativeFunction* Function = nullptr;
    int HostIndex = -1;
};

struct Parameter {
    NameId Name = 0;
    TypeName Named;
    uint32_t Line = 0;
    bool ByRef = false, IsParamArray = false, IsAssigns = false, IsExtends = false, IsOptional = false;
    Expr* Default = nullptr;
    const Type* T = nullptr;
    script::Variable* Var = nullptr;
};

/// One name of a Dim, Static or property declaration.
struct VariableDecl {
    NameId Name = 0;
    uint32_t Line = 0;
    TypeName Named;
    int OwnRank = 0;  // of the parentheses behind the name
    bool HasBounds = false;
    std::vector<Expr*> Bounds;
    Expr* Init = nullptr;
    bool IsNew = false;
    Visibility Visible = Visibility::Public;
    bool Shared = false;
    script::Variable* Var = nullptr;
};

struct ConstDecl {
    NameId Name = 0;
    uint32_t Line = 0;
    TypeName Named;
    Expr* Init = nullptr;
    Visibility Visible = Visibility::Public;
    struct Constant* Const = nullptr;
};

enum class StmtKind : uint8_t {
    Expression,
    Assign,
    Dim,
    Const,
    If,
    Select,
    For,
    ForEach,
    While,
    Do,
    Exit,
    Continue,
    Goto,
    Label,
    Return,
    Try,
    Raise,
    ReDim,
    AddHandler,
    RemoveHandler,
    Using,
};

/// What Exit and Continue may name.
enum class BlockKind : uint8_t { Any, For, While, Do, Select, Sub, Function, Try, Property };

struct CaseTest {
    enum class Form : uint8_t { Value, Range, Relation, IsA } How = Form::Value;
    Op Relation = Op::None;
    Expr* Low = nullptr;
    Expr* High = nullptr;
    TypeName Named;
    const Type* T = nullptr;
};
/// A branch of If or Select Case, or a Catch.
struct Branch {
    uint32_t Line = 0;
    Expr* Condition = nullptr;
    std::vector<CaseTest> Tests;
    NameId Name = 0;  // of a Catch, with its type
    bool HasName = false;
    TypeName Named;
    const Type* T = nullptr;
    script::Variable* Var = nullptr;
    Block Body;
};

struct Stmt {
    StmtKind Kind = StmtKind::Expression;
    uint32_t Line = 0;
    uint32_t EndLine = 0;
    Expr* A = nullptr;
    Expr* B = nullptr;
    Expr* C = nullptr;
    std::vector<Expr*> Args;
    std::vector<VariableDecl> Vars;
    std::vector<ConstDecl> Consts;
    std::vector<Branch> Branches;
    Block Body;
    Block Else;  // also Finally
    bool HasElse = false;
    bool Down = false;  // DownTo
    bool IsStatic = false;
    bool Explicit = false;  // Call
    bool Until = false;     // of a Do loop's condition
    bool AtEnd = false;
    bool DeclaresCounter = false;
    bool HasName = false;  // Exit and Continue of the loop that counts with Name
    NameId Name = 0;
    TypeName Named;
    BlockKind Target = BlockKind::Any;
    Op Change = Op::None;  // of `a += b` and its like
    script::Variable* Var = nullptr;
    script::Variable* Hidden = nullptr;  // the limit, the array or the subject
    script::Variable* Index = nullptr;
};

struct MethodDecl {
    NameId Name = 0;
    uint32_t Line = 0;
    std::vector<Parameter> Params;
    bool IsFunction = false;
    TypeName Result;
    TypeName Implements;  // the interface's method, by its path
    Block Body;
    Visibility Visible = Visibility::Public;
    bool Shared = false;
    bool SignatureOnly = false;
    bool InLibrary = false;  // what fails in it fails where it was called
};

struct PropertyDecl {
    VariableDecl Plain;
    bool Computed = false;
    MethodDecl* Get = nullptr;
    MethodDecl* Set = nullptr;
};

struct EnumMember {
    NameId Name = 0;
    uint32_t Line = 0;
    Expr* Value = nullptr;
};

struct TypeDecl {
    Kind K = Kind::Class;
    NameId Name = 0;
    uint32_t Line = 0;
    Visibility Visible = Visibility::Public;
    bool InLibrary = false;
    TypeName Base;  // of an enumeration its integer type
    std::vector<TypeName> Interfaces;
    std::vector<PropertyDecl> Properties;
    std::vector<ConstDecl> Consts;
    std::vector<MethodDecl*> Methods;
    std::vector<TypeDecl*> Types;
    std::vector<EnumMember> Members;
    std::vector<MethodDecl*> Events;
    std::vector<TypeName> Usings;
    MethodDecl* Signature = nullptr;
    Type* T = nullptr;
};

/// One text after parsing. Owns all nodes; they are freed without recursion.
struct Tree {
    explicit Tree(Footprint& room) : Room(room) {}

    Footprint& Room;  // for all that is made of it
    std::deque<Expr> Exprs;
    std::deque<Stmt> Stmts;
    std::deque<MethodDecl> Methods;
    std::deque<TypeDecl> Types;
    Block Main;
    std::vector<std::pair<uint32_t, String>> Warnings;  // lines and texts of #Pragma Warning
    TypeDecl Top;  // what is declared outside of everything, as if in one module
};

}  // namespace sorbel::script
