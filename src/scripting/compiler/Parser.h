#pragma once

#include <functional>

#include "scripting/compiler/Depth.h"
#include "scripting/compiler/Syntax.h"

namespace sorbel::script {

/// Reads tokens by recursive descent and builds the tree. Above each function stands the rule that it reads.
/// Fails with CompileError at the first thing that does not fit.
class Parser {
  public:
    Parser(const std::vector<Token>& tokens, Names& names, Tree& tree);
    void ReadProgram();

  private:
    // How deeply blocks and parentheses may lie in each other, and how many links an expression's longest
    // chain may have: the later passes walk the tree by recursion.
    static constexpr int MaxNesting = 200;
    static constexpr uint16_t MaxDepth = 1000;

    struct Nested {
        explicit Nested(Parser& parser) : mParser(parser) {
            if (++mParser.mNesting > MaxNesting) Fail(Error::Nesting, mParser.Line());
        }
        ~Nested() { --mParser.mNesting; }
        Parser& mParser;
    };

    // Tokens
    [[nodiscard]] const Token& Now() const { return mTokens[mAt]; }
    [[nodiscard]] const Token& Ahead(size_t count) const;
    [[nodiscard]] uint32_t Line() const { return Now().Line; }
    [[nodiscard]] bool At(Tok kind) const { return Now().Kind == kind; }
    [[nodiscard]] bool AtWord(NameId word) const { return At(Tok::Identifier) && Now().Name == word; }
    [[nodiscard]] bool AtEnd(Tok kind) const { return At(Tok::KEnd) && Ahead(1).Kind == kind; }
    void CheckReadable() const;
    const Token& Take();
    bool Accept(Tok kind);
    const Token& Expect(Tok kind);
    void CloseParenthesis();
    void EndStatement();
    void SkipLines();
    NameId DeclaredName();
    NameId MemberName();
    [[nodiscard]] TypeName ReadTypeName();
    [[nodiscard]] int ReadArrayRank();
    [[nodiscard]] TypeName ReadAsType();

    // Directives
    void ReadDirective();
    void ReadIf(uint32_t line);
    void ReadPragma(uint32_t line);
    void SkipInactive(bool mayElse);
    [[nodiscard]] bool DirectiveCondition();
    [[nodiscard]] ConstantValue DirectiveValue(const Expr& expr);
    [[nodiscard]] ConstantValue NamedValue(NameId name);

    // Declarations
    struct Modifiers {
        Visibility Visible = Visibility::Public;
        bool VisibleGiven = false;
        bool Shared = false;
        uint32_t Line = 0;
    };
    Modifiers ReadModifiers();
    [[nodiscard]] bool AtAttributes() const;
    void ReadAttributes();
    bool ReadDeclaration(TypeDecl& owner);
    TypeDecl* ReadType(Kind kind, const TypeDecl& owner, Visibility visible);
    void ReadMembers(TypeDecl& type, Tok end);
    void ReadHeritage(TypeDecl& type);
    void ReadInterfaceMembers(TypeDecl& type);
    void ReadStructureMembers(TypeDecl& type);
    [[noreturn]] void FailSize(const TypeName& type);
    void ReadEnumMembers(TypeDecl& type);
    void ReadDelegate(TypeDecl& owner, Visibility visible);
    void ReadEvent(TypeDecl& owner, const Modifiers& modifiers);
    void ReadProperty(TypeDecl& owner, const Modifiers& modifiers, bool keyword);
    void ReadAccessors(TypeDecl& owner, PropertyDecl& property, const Modifiers& modifiers);
    MethodDecl* ReadMethod(bool signatureOnly);
    void ReadParameters(std::vector<Parameter>& params);
    Parameter ReadParameter();
    void ReadConsts(std::vector<ConstDecl>& consts, Visibility visible);

    // Statements
    using Stop = std::function<bool()>;
    void ReadBlock(Block& block, const Stop& stop, Error missing, uint32_t opened);
    void ReadStatement(Block& block);
    bool ReadKeywordStatement(Block& block);
    Stmt* NewStmt(StmtKind kind);
    void ReadDim(Block& block, bool isStatic);
    VariableDecl ReadVariable();
    void ReadVariables(std::vector<VariableDecl>& vars);
    void ReadIfStatement(Block& block);
    void ReadBlockIf(Stmt& statement);
    void ReadLineIf(Stmt& statement);
    void ReadSelect(Block& block);
    CaseTest ReadCaseTest();
    void ReadFor(Block& block);
    void ReadForEach(Stmt& statement);
    void ReadForCount(Stmt& statement);
    void ReadWhile(Block& block);
    void ReadDo(Block& block);
    void ReadTry(Block& block);
    void ReadExit(Block& block, StmtKind kind);
    void ReadReDim(Block& block);
    void ReadHandler(Block& block);
    void ReadShort(Block& block);
    void ReadSimple(Block& block);
    Op AcceptChange();

    // Expressions
    Expr* NewExpr(ExprKind kind, uint32_t line);
    Expr* Deeper(Expr* expr);
    Expr* ReadExpr(int above = 0);
    Expr* ReadCondition(Error missing);
    Expr* ReadUnary();
    Expr* ReadPostfix();
    Expr* ReadPrimary();
    Expr* ReadNew();
    Expr* ReadCast();
    Expr* ReadConditional();
    Expr* ReadMember(Expr* object);
    Expr* ReadAddress();
    Expr* ReadRaiseEvent();
    void ReadArguments(Expr& call);

    const std::vector<Token>& mTokens;
    Names& mNames;
    Tree& mTree;
    size_t mAt = 0;
    int mNesting = 0;
    struct OpenIf {
        uint32_t Line;
        bool Holds;
        bool SawElse;
    };
    std::vector<OpenIf> mOpenIfs;
    /// What a condition of #If knows of a constant: worked out once, when it is asked for.
    struct DirectiveConstant {
        Expr* Init;
        enum class State : uint8_t { Open, Busy, Done } Progress = State::Open;
        ConstantValue Value;
    };
    std::unordered_map<NameId, DirectiveConstant> mConstants;
    Depth mDepth;  // of what a condition refers to
    NameId mGet, mSet, mDirectiveIf, mDirectiveElse, mDirectiveElseIf, mDirectiveEndIf, mDirectivePragma,
        mErrorWord, mWarningWord, mAttributes, mAlignment, mReDim;
};

}  // namespace sorbel::script
