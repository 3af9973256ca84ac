#pragma once

#include <unordered_set>

#include "scripting/compiler/Depth.h"
#include "scripting/compiler/ScriptHost.h"
#include "scripting/compiler/Symbols.h"

namespace sorbel::script {

/// What the checker found, besides what it wrote into the tree.
struct Checked {
    std::deque<Symbol> Symbols;
    std::deque<Variable> Variables;
    std::deque<Constant> Constants;
    std::deque<Method> Methods;
    std::deque<Property> Properties;
    std::deque<MethodDecl> HostDecls;
    std::vector<Method*> Bodies;          // methods with code, in the order of their functions, from 1
    std::vector<Variable*> TopVariables;  // which every method reaches
    std::unordered_map<const Variable*, Variable*> StaticFlags;
    std::vector<Variable*> Initialised;  // properties with values to set before the program starts
    struct Implementation {
        Type* Class;
        const Method* Wanted;  // of the interface
        const Method* Found;
    };
    std::vector<Implementation> Implementations;
    std::vector<Type*> Classes;  // with structures and interfaces; the superclass before its heirs
};

/// Gives every name its meaning and every expression its type, and makes each conversion visible in the tree.
/// Fails with CompileError; of several, the first in the text.
class Checker {
  public:
    Checker(Tree& tree, Names& names, Types& types, const ScriptHost* host, Checked& out);
    void Check();

  private:
    static constexpr uint16_t MostHeight = 200;

    using Scope = std::unordered_map<NameId, Symbol*>;

    // Declarations
    void DeclareHost(const ScriptHost& host);
    void DeclareTypes(TypeDecl& owner, Type* around);
    void ResolveHeritage(Type& type);
    void ResolveClassHeritage(Type& type);
    uint16_t HeightOf(Type& type);
    void DeclareMembers(TypeDecl& decl, Type* owner);
    void DeclareProperty(PropertyDecl& property, Type* owner);
    void DeclareConstant(ConstDecl& decl, Type* owner);
    void DeclareEnum(TypeDecl& decl);
    Variable& AddProperty(VariableDecl& decl, const Type* type, Symbol& symbol);
    void DeclareStructure(TypeDecl& decl);
    void CheckStructureBound(const Variable& field) const;
    void DeclareDelegate(TypeDecl& decl);
    void CheckDelegateSignature(const Method& method) const;
    void DeclareEvent(MethodDecl& decl, Type* owner);
    Method* DeclareMethod(MethodDecl& decl, Type* owner, bool accessor);
    void ResolveSignature(Method& method);
    void CheckParameters(const Method& method);
    void AddOverload(Method& method, Type* owner);
    [[nodiscard]] bool SameParameters(const Method& a, const Method& b) const;
    [[nodiscard]] static size_t SignatureOf(const Method& method);
    [[nodiscard]] static size_t SignatureIn(const Symbol& symbol, const std::vector<const Type*>& types);
    Symbol* Declare(Members& members, NameId name, Symbol::What what, uint32_t line);
    void CheckTopNames();

    // Classes
    void Arrange(Type& type);
    void ArrangeOne(Type& type);
    void CheckStructure(Type& type, const Type& outer, uint32_t line);
    void ArrangeVirtual(Type& type);
    bool ReplaceVirtual(Method*& slot, Method& method) const;
    void CheckInterfaces(Type& type);
    void CheckInterface(Type& type, Type& part, std::unordered_set<const Type*>& checked);
    [[nodiscard]] const std::vector<Method*>& Explicit(const Type& type, NameId name);
    [[nodiscard]] Method* FindImplementation(const Type& type, const Method& wanted);
    void CheckExplicit(Type& type);

    // Names
    [[nodiscard]] Symbol* FindName(NameId name);
    [[nodiscard]] Symbol* FindTopName(NameId name);
    [[nodiscard]] Symbol* FindGlobal(NameId name) const;
    void Show(Symbol& symbol, Type* owner, Visibility visible);
    [[nodiscard]] Symbol* FindMember(const Type* type, NameId name) const;
    [[nodiscard]] Symbol* FindImported(const Type* around, NameId name) const;
    [[nodiscard]] const Type* FindType(const TypeName& named, Error missing = Error::NoSuchType,
                                       Error module = Error::ExpectedType);
    [[nodiscard]] const Type* FindWholeType(const TypeName& named);
    [[nodiscard]] String Suggestion(const String& name, bool classes) const;
    [[noreturn]] void FailUnknown(NameId name, uint32_t line) const;
    void CheckVisible(const Symbol& symbol, uint32_t line) const;
    [[nodiscard]] bool Sees(Visibility visible, const Type* owner) const;

    // Imports
    /// The members of a module that `Using` makes known by their bare names.
    struct Import {
        const Type* Module = nullptr;
        std::optional<NameId> Only;  // all of them if not given
    };
    [[nodiscard]] Import FindImport(const TypeName& named);
    void CheckImport(const Import& import, uint32_t line) const;
    void CollectImports();
    void AddImport(const Type* around, const TypeName& named);
    void CheckImports();
    void CheckUsing(const Stmt& statement);
    [[nodiscard]] const String& Spell(NameId name) const { return mNames.Spelling(name); }
    [[nodiscard]] String Describe(const std::vector<const Type*>& list) const;

    // Constants
    void Evaluate(Constant& constant);
    void WorkOut(Constant& constant);
    void EvaluateMember(Constant& constant);
    bool Fold(Expr& expr) const;
    void JoinTexts(Expr& expr) const;
    bool FoldIntegers(Expr& expr, int64_t a, int64_t b) const;
    bool FoldReals(Expr& expr, double a, double b) const;

    // Bodies
    void CheckBody(Method& method);
    void MakeLibraryBody(Method& method);
    void CheckKeys(Expr*& dictionary);
    void CheckFirstValues();
    void CheckMain();
    void DeclareRest();
    void CheckBlock(Block& block, bool scope = true);
    void CheckStatement(Stmt& statement);
    void CheckDim(Stmt& statement);
    void CheckVariable(VariableDecl& decl, bool isStatic);
    Variable* DeclareLocal(NameId name, const Type* type, uint32_t line);
    Variable* Hidden(const Type* type);
    void CheckConsts(Stmt& statement);
    void CheckCondition(Expr*& condition);
    void CheckSelect(Stmt& statement);
    void CheckCase(CaseTest& test, Variable& subject, uint32_t line);
    void CheckFor(Stmt& statement);
    void CheckForEach(Stmt& statement);
    void CheckTry(Stmt& statement);
    void CheckLeave(const Stmt& statement) const;
    void CheckHandler(Stmt& statement);
    void CheckReturn(Stmt& statement);
    void CheckReDim(Stmt& statement);
    void CheckAssign(Stmt& statement);
    void ExpandChange(Stmt& statement);
    [[nodiscard]] Expr* Repeated(Expr& target, Stmt& statement);
    void WorkOutOnce(Expr*& expr, Stmt& statement, bool always);
    void CheckExpressionStatement(Stmt& statement);
    void CollectLabels(const Block& block, const Block* around = nullptr);
    void CheckGoto(const Stmt& statement) const;

    // Expressions
    void CheckExpr(Expr*& expr, const Type* expected = nullptr);
    void CheckValue(Expr*& expr, const Type* expected = nullptr);
    void CheckConverted(Expr*& expr, const Type* to, Error mismatch);
    void CheckInteger(Expr*& expr, Error mismatch);
    void CheckName(Expr*& expr);
    void CheckMember(Expr*& expr);
    void CheckSelf(Expr& expr);
    void CheckSuper(Expr& expr);
    void CheckUnary(Expr*& expr);
    void CheckBinary(Expr*& expr);
    void CheckArithmetic(Expr*& expr);
    void CheckComparison(Expr*& expr);
    void CheckLogic(Expr*& expr);
    void CheckIs(Expr& expr);
    bool TryOperatorMethod(Expr*& expr);
    [[noreturn]] void FailOperator(const Expr& expr) const;
    void CheckNew(Expr& expr);
    void CheckNewObject(Expr& expr, const Type& type);
    void CheckAddressOf(Expr& expr, const Type* expected);
    void CheckCast(Expr*& expr);
    void CheckIsA(Expr& expr);
    void CheckConditional(Expr*& expr, const Type* expected);
    [[nodiscard]] const Type* SharedType(const Type* a, const Type* b, const Type* expected) const;
    void CheckRaiseEvent(Expr& expr);
    void UseSymbol(Expr*& expr, Symbol& symbol, Expr* self);
    void NeedInstance(Expr& expr, const Symbol& symbol, bool property);
    Expr* ImplicitSelf(uint32_t line);
    [[nodiscard]] Expr* MakeExpr(ExprKind kind, uint32_t line, const Type* type);
    [[nodiscard]] Expr* MakeText(String text, uint32_t line);
    [[nodiscard]] Expr* Reference(Variable& variable, uint32_t line);

    // Calls
    void CheckCall(Expr*& expr, const Type* expected);
    void CheckSubscript(Expr& expr);
    void CheckConversionCall(Expr*& expr, const Type* to);
    void CheckArrayLiteral(Expr& expr, const Type* expected);
    void CheckArguments(std::vector<Expr*>& arguments);
    [[nodiscard]] std::vector<Method*> ExactOverloads(const std::vector<Method*>& overloads,
                                                      const std::vector<Expr*>& arguments) const;
    void CallMethods(Expr*& expr, const std::vector<Method*>& overloads, Expr* self, Expr* assigned);
    void CallAssignable(Expr*& expr, const std::vector<Method*>& overloads, Expr* self, bool assigns);
    void FinishCall(Expr*& expr, Method& method, Expr* self);
    bool CallNative(Expr*& expr, StringView name, Expr* base);
    [[nodiscard]] bool IsAbout(char letter, const Type& type) const;
    void FinishNative(Expr& expr, const NativeFunction& function);
    [[nodiscard]] int NativeCost(const NativeFunction& function, const std::vector<Expr*>& arguments) const;
    [[nodiscard]] const Type* ComparisonOf(const Type* array);
    [[nodiscard]] bool Compares(const Expr& argument, const Type* array) const;
    [[nodiscard]] int LetterCost(char letter, const Expr& argument, const Type* array) const;
    [[noreturn]] void FailNative(const Expr& expr, const std::vector<const NativeFunction*>& functions);
    bool CallExtension(Expr*& expr, NameId name, Expr* base, Expr* assigned);
    bool CallOperator(Expr*& expr, const char* name, Expr* self, bool assigns);
    bool CallLookup(Expr*& expr, const Expr& member, bool assigns);
    void CallDelegate(Expr*& expr, Expr* delegate);
    [[nodiscard]] int MethodCost(const Method& method, const std::vector<Expr*>& arguments) const;
    [[noreturn]] void FailMethod(const Method& method, const Expr& expr);
    [[noreturn]] void FailCounts(const Method& method, const Expr& expr, size_t least, size_t most);
    [[noreturn]] void FailOverloads(const std::vector<Method*>& overloads, const Expr& expr);
    void FillArguments(std::vector<Expr*>& arguments, Method& method, uint32_t line);
    void CheckByRef(const Expr& argument, const Parameter& param) const;

    // Conversions
    [[nodiscard]] int Cost(const Expr& from, const Type* to) const;
    [[nodiscard]] int TypeCost(const Type* from, const Type* to) const;
    [[nodiscard]] Method* UserConversion(const Type* from, const Type* to) const;
    [[nodiscard]] bool Castable(const Type* from, const Type* to) const;
    bool Convert(Expr*& expr, const Type* to);
    void ForceConvert(Expr*& expr, const Type* to);

    // The method that is being checked
    struct Context {
        script::Method* M = nullptr;
        Type* Owner = nullptr;
        bool Shared = false;
        std::vector<Scope> Scopes;
        struct OpenBlock {
            BlockKind Kind;
            NameId Counter = 0;  // of a For
        };
        std::vector<OpenBlock> Blocks;
        bool InMain = false;
        bool InConstant = false;
        std::unordered_map<NameId, const Block*> Labels;  // each with the block that only its start may enter
        std::vector<const Block*> Inside;                 // the blocks around what is being checked
    };

    Tree& mTree;
    Names& mNames;
    Types& mTypes;
    Checked& mOut;
    Context mNow;
    Depth mDepth;
    Scope mHost;
    Scope mTopVariables;
    std::unordered_map<const Type*, std::vector<Import>> mImports;  // by the module or class with the Using
    std::unordered_map<const Type*, std::unordered_map<const Type*, std::vector<size_t>>>
        mImportsOf;  // by module
    Type* mTop = nullptr;
    const Type* mDictionary = nullptr;
    std::vector<Type*> mDeclared;
    std::unordered_set<const Type*> mAggregated;                      // interfaces that others aggregate
    std::unordered_map<const Type*, std::vector<Method*>> mBodiesOf;  // a class's, accessors too
    std::unordered_map<const Type*, std::unordered_map<NameId, std::vector<Method*>>> mExplicit;
    std::unordered_map<NameId, std::vector<Symbol*>> mGlobals, mPublics;  // of modules
    std::unordered_multimap<size_t, Method*> mSignatures;                 // by SignatureIn
    std::vector<Method*> mToCheck;
    Expr* mAssigned = nullptr;      // the right side, until a setter or an Assigns parameter takes it
    Expr* mAssignTarget = nullptr;  // what such a thing must be called by
    bool mAssignCall = false;       // and whether with arguments
    int mSelectors = 0;
    std::unordered_map<const Type*, const Type*> mComparisons;  // delegates that sort arrays
    NameId mConstructor, mDestructor, mConvert, mValue, mArrayName, mInvokeName;
    const Type *mInteger, *mDouble, *mBoolean, *mString, *mVariant, *mVoid, *mNil, *mPtr;
};

}  // namespace sorbel::script
