#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/Text.h"
#include "scripting/compiler/Errors.h"

namespace sorbel::script {

// clang-format off
/// Every word that the language keeps for itself.
#define SORBEL_KEYWORDS(X) \
    X(AddHandler) X(AddressOf) X(Aggregates) X(And) X(As) X(Assigns) X(ByRef) X(ByVal) X(Call) \
    X(Case) X(Catch) X(Class) X(Const) X(Continue) X(CType) X(Declare) X(Delegate) X(Dim) X(Do) \
    X(DownTo) X(Each) X(Else) X(ElseIf) X(End) X(Enum) X(Event) X(Exit) X(Extends) X(False) \
    X(Finally) X(For) X(Function) X(Global) X(Goto) X(If) X(Implements) X(In) X(Inherits) \
    X(Interface) X(Is) X(IsA) X(Loop) X(Me) X(Mod) X(Module) X(New) X(Next) X(Nil) X(Not) \
    X(Optional) X(Or) X(ParamArray) X(Private) X(Property) X(Protected) X(Public) X(Raise) \
    X(RaiseEvent) X(ReDim) X(RemoveHandler) X(Return) X(Select) X(Self) X(Shared) X(Static) \
    X(Step) X(Structure) X(Sub) X(Super) X(Then) X(To) X(True) X(Try) X(Until) X(Using) X(Var) \
    X(WeakAddressOf) X(Wend) X(While) X(Xor)
// clang-format on

enum class Tok : uint8_t {
    End,
    NewLine,
    Bad,  // what cannot be read; its number waits until the parser arrives there
    Identifier,
    Integer,
    Unsigned,  // too large for an Integer, with the bits of a UInt64
    Real,
    Text,
    Color,
    Directive,  // #If and its kin, by name
    Plus,
    Minus,
    Star,
    Slash,
    Backslash,
    Caret,
    Equal,
    NotEqual,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    PlusEqual,
    MinusEqual,
    StarEqual,
    SlashEqual,
    LeftParen,
    RightParen,
    Comma,
    Dot,
    Colon,
#define X(Name) K##Name,
    SORBEL_KEYWORDS(X)
#undef X
};

using NameId = uint32_t;  ///< a name without regard to letter case

/// Gives each name one number, whatever its letter case, and keeps its first spelling.
class Names {
  public:
    NameId Intern(StringView spelling);
    [[nodiscard]] const String& Spelling(NameId name) const { return mSpellings[name]; }

  private:
    std::unordered_map<String, NameId> mIds;
    std::vector<String> mSpellings;
};

/// A text that is known at compile time. Copies share it.
class ConstantText {
  public:
    ConstantText() = default;
    explicit ConstantText(String text) : mText(std::make_shared<const String>(std::move(text))) {}
    [[nodiscard]] StringView View() const { return mText ? StringView(*mText) : StringView(); }
    [[nodiscard]] bool IsShared() const { return mText.use_count() > 1; }
    friend bool operator==(const ConstantText& a, const ConstantText& b) {
        return a.mText == b.mText || a.View() == b.View();
    }

  private:
    std::shared_ptr<const String> mText;
};

struct Token {
    Tok Kind = Tok::End;
    bool SpaceBefore = false;
    uint32_t Line = 1;
    NameId Name = 0;  // identifiers, keywords and directives
    StringView Spelling;
    int64_t Integer = 0;  // also a colour, and the error number of a Bad one
    double Real = 0;
    ConstantText Text;  // of a literal, with doubled quotes made single; what is to be said about a Bad one
};

[[nodiscard]] inline bool IsKeyword(Tok kind) {
    return kind > Tok::Colon;
}

}  // namespace sorbel::script
