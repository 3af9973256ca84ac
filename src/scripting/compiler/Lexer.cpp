#include "scripting/compiler/Lexer.h"

#include <charconv>
#include <cstring>

namespace sorbel::script {

NameId Names::Intern(StringView spelling) {
    auto [place, added] = mIds.try_emplace(Fold(spelling), static_cast<NameId>(mSpellings.size()));
    if (added) mSpellings.emplace_back(spelling);
    return place->second;
}

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool StartsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool ContinuesName(char c) {
    return StartsName(c) || IsDigit(c);
}

const std::unordered_map<String, Tok>& Keywords() {
    static const std::unordered_map<String, Tok> table = {
#define X(Name) {Fold(#Name), Tok::K##Name},
        SORBEL_KEYWORDS(X)
#undef X
    };
    return table;
}

class Lexer {
  public:
    Lexer(StringView source, Names& names, Footprint& room) : mSource(source), mNames(names), mRoom(room) {}

    std::vector<Token> Read() {
        while (mAt < mSource.size())
            ReadOne();
        Add(Tok::NewLine, mAt);
        Add(Tok::End, mAt);
        return std::move(mTokens);
    }

  private:
    char Peek(size_t ahead = 0) const { return mAt + ahead < mSource.size() ? mSource[mAt + ahead] : '\0'; }

    Token& Add(Tok kind, size_t start) {
        // A list that is full is copied.
        const size_t copied = mTokens.size() == mTokens.capacity() ? mTokens.size() : 0;
        mRoom.Need((1 + copied) * sizeof(Token), mLine);
        Token token;
        token.Kind = kind;
        token.Line = mLine;
        token.SpaceBefore = mSpace;
        token.Spelling = mSource.substr(start, mAt - start);
        mSpace = false;
        return mTokens.emplace_back(std::move(token));
    }
    /// What other languages write here, and what to write instead.
    void AddUnavailable(size_t start, const char* instead) {
        const String found(mSource.substr(start, mAt - start));
        Token& token = Add(Tok::Bad, start);
        token.Integer = static_cast<int64_t>(Error::NotAvailable);
        token.Text = ConstantText(found + " (write " + instead + ")");
    }
    void AddBad(Error number, size_t start) { Add(Tok::Bad, start).Integer = static_cast<int64_t>(number); }

    void ReadOne() {
        const char c = Peek();
        if (c == ' ' || c == '\t' || c == '\f' || c == '\v') {
            ++mAt;
            mSpace = true;
        } else if (c == '\n' || c == '\r') {
            ReadLineEnd();
        } else if (c == '\'' || (c == '/' && Peek(1) == '/')) {
            SkipComment();
        } else if (c == '_' && !ContinuesName(Peek(1)) && ContinuesLine()) {
            return;
        } else if (const char* plain = PlainQuote()) {
            const size_t start = mAt;
            mAt += FirstCharacter(mSource.substr(mAt)).Bytes.size();
            AddUnavailable(start, plain);
        } else if (StartsName(c)) {
            ReadName();
        } else if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) {
            ReadNumber();
        } else if (c == '"') {
            ReadText();
        } else if (c == '&') {
            ReadPrefixed();
        } else if (c == '#') {
            ReadDirective();
        } else {
            ReadSymbol();
        }
    }

    void ReadLineEnd() {
        const size_t start = mAt;
        mAt += mSource.substr(mAt, 2) == "\r\n" ? 2 : 1;
        Add(Tok::NewLine, start);
        ++mLine;
    }

    void SkipComment() {
        while (mAt < mSource.size() && Peek() != '\n' && Peek() != '\r')
            ++mAt;
    }

    // An underscore that only blanks or a comment follow: the next line belongs to this one.
    bool ContinuesLine() {
        size_t at = mAt + 1;
        while (at < mSource.size() && (mSource[at] == ' ' || mSource[at] == '\t'))
            ++at;
        if (at < mSource.size() && (mSource[at] == '\'' || mSource.substr(at, 2) == "//"))
            while (at < mSource.size() && mSource[at] != '\n' && mSource[at] != '\r')
                ++at;
        if (at < mSource.size() && mSource[at] != '\n' && mSource[at] != '\r') return false;
        mAt = at;
        if (at < mSource.size()) mAt += mSource.substr(at, 2) == "\r\n" ? 2 : 1;
        ++mLine;
        mSpace = true;
        return true;
    }

    // The quotes that word processors make of plain ones; null elsewhere.
    const char* PlainQuote() const {
        static constexpr StringView marks[] = {"\u2018", "\u2019", "\u201A", "\u201B", "\u201C",
                                               "\u201D", "\u201E", "\u201F", "\u00AB", "\u00BB"};
        if (static_cast<unsigned char>(Peek()) < 0x80) return nullptr;
        for (size_t at = 0; at < std::size(marks); ++at)
            if (mSource.substr(mAt, marks[at].size()) == marks[at]) return at < 4 ? "'" : "\"";
        return nullptr;
    }

    void ReadName() {
        const size_t start = mAt;
        while (mAt < mSource.size() && ContinuesName(Peek()) && !PlainQuote())
            ++mAt;
        const StringView spelling = mSource.substr(start, mAt - start);
        const String folded = Fold(spelling);
        if (folded == "rem") {
            SkipComment();
            return;
        }
        const auto found = Keywords().find(folded);
        Add(found == Keywords().end() ? Tok::Identifier : found->second, start).Name =
            mNames.Intern(spelling);
    }

    void ReadNumber() {
        const size_t start = mAt;
        bool real = false;
        while (IsDigit(Peek()))
            ++mAt;
        if (Peek() == '.' && IsDigit(Peek(1))) {
            real = true;
            ++mAt;
            while (IsDigit(Peek()))
                ++mAt;
        }
        const size_t sign = Peek(1) == '+' || Peek(1) == '-' ? 2 : 1;
        if ((Peek() == 'e' || Peek() == 'E') && IsDigit(Peek(sign))) {
            real = true;
            mAt += sign;
            while (IsDigit(Peek()))
                ++mAt;
        }
        AddNumber(start, real);
    }

    void AddNumber(size_t start, bool real) {
        const char* first = mSource.data() + start;
        const char* last = mSource.data() + mAt;
        if (!real) {
            int64_t value = 0;
            if (std::from_chars(first, last, value).ec == std::errc()) {
                Add(Tok::Integer, start).Integer = value;
                return;
            }
            uint64_t large = 0;
            if (std::from_chars(first, last, large).ec == std::errc()) {
                Add(Tok::Unsigned, start).Integer = static_cast<int64_t>(large);
                return;
            }
        }
        double value = 0;
        std::from_chars(first, last, value);
        Add(Tok::Real, start).Real = value;
    }

    // How many bytes there are up to the quote that ends a text, or to the end of the line.
    size_t TextSize() const {
        size_t at = mAt;
        for (;; at += 2) {
            at = mSource.find_first_of("\"\r\n", at);
            if (at == StringView::npos) return mSource.size() - mAt;
            if (mSource.substr(at, 2) != "\"\"") return at - mAt;
        }
    }

    void ReadText() {
        const size_t start = mAt++;
        const size_t size = TextSize();
        mRoom.Keep(size, mLine);
        String text;
        text.reserve(size);
        for (;;) {
            const char c = Peek();
            if (mAt >= mSource.size() || c == '\n' || c == '\r') return AddBad(Error::EndQuote, start);
            ++mAt;
            if (c != '"') {
                text += c;
            } else if (Peek() == '"') {
                text += '"';
                ++mAt;
            } else {
                break;
            }
        }
        Add(Tok::Text, start).Text = ConstantText(std::move(text));
    }

    // Behind a value no literal can begin. Behind a name one can, if there is a blank: `Print &h1F`.
    bool FollowsValue() const {
        if (mTokens.empty()) return false;
        const Tok last = mTokens.back().Kind;
        return last == Tok::Text || last == Tok::RightParen || last == Tok::Integer ||
               last == Tok::Unsigned || last == Tok::Real || (last == Tok::Identifier && !mSpace);
    }

    // &h1F, &b101, &o17 are numbers, &cFF8000 a colour and &u41 a character.
    void ReadPrefixed() {
        const size_t start = mAt++;
        const char kind = static_cast<char>(Peek() | 0x20);
        const int base = kind == 'b'                                 ? 2
                         : kind == 'o'                               ? 8
                         : kind == 'h' || kind == 'c' || kind == 'u' ? 16
                                                                     : 0;
        if (base == 0 || FollowsValue()) return AddUnavailable(start, "+ to join texts");
        const char* first = mSource.data() + ++mAt;
        uint64_t value = 0;
        const auto result = std::from_chars(first, mSource.data() + mSource.size(), value, base);
        mAt += static_cast<size_t>(result.ptr - first);
        if (result.ptr == first || result.ec != std::errc()) return AddBad(Error::Syntax, start);
        if (kind == 'u') {
            Add(Tok::Text, start).Text =
                ConstantText(Chr(value > 0x10FFFF ? -1 : static_cast<int32_t>(value)));
            return;
        }
        if (kind == 'c') {
            const auto digits = result.ptr - first;
            if (digits != 6 && digits != 8) return AddBad(Error::Syntax, start);
            // Eight digits are red, green, blue and alpha; a Color keeps its alpha in front.
            if (digits == 8) value = (value >> 8) | ((value & 0xFF) << 24);
        }
        Add(kind == 'c' ? Tok::Color : Tok::Integer, start).Integer = static_cast<int64_t>(value);
    }

    void ReadDirective() {
        const size_t start = mAt++;
        while (mAt < mSource.size() && ContinuesName(Peek()))
            ++mAt;
        Add(Tok::Directive, start).Name = mNames.Intern(mSource.substr(start, mAt - start));
    }

    void ReadSymbol() {
        static constexpr struct {
            const char* Spelling;
            Tok Kind;
        } symbols[] = {{"+=", Tok::PlusEqual},  {"-=", Tok::MinusEqual}, {"*=", Tok::StarEqual},
                       {"/=", Tok::SlashEqual}, {"<=", Tok::LessEqual},  {">=", Tok::GreaterEqual},
                       {"<>", Tok::NotEqual},   {"<", Tok::Less},        {">", Tok::Greater},
                       {"=", Tok::Equal},       {"+", Tok::Plus},        {"-", Tok::Minus},
                       {"*", Tok::Star},        {"/", Tok::Slash},       {"\\", Tok::Backslash},
                       {"^", Tok::Caret},       {"(", Tok::LeftParen},   {")", Tok::RightParen},
                       {",", Tok::Comma},       {".", Tok::Dot},         {":", Tok::Colon}};
        const size_t start = mAt;
        for (const auto& symbol : symbols) {
            const size_t length = std::strlen(symbol.Spelling);
            if (mSource.substr(start, length) != symbol.Spelling) continue;
            mAt += length;
            Add(symbol.Kind, start);
            return;
        }
        ++mAt;
        AddBad(Error::Syntax, start);
    }

    StringView mSource;
    Names& mNames;
    Footprint& mRoom;
    size_t mAt = 0;
    uint32_t mLine = 1;
    bool mSpace = false;
    std::vector<Token> mTokens;
};

}  // namespace

std::vector<Token> ReadTokens(StringView source, Names& names, Footprint& room) {
    return Lexer(source, names, room).Read();
}

}  // namespace sorbel::script
