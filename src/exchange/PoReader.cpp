#include <algorithm>
#include <array>

#include "exchange/ExchangeError.h"
#include "exchange/Po.h"
#include "platform/TextCoding.h"

namespace sorbel {

namespace {

enum class Keyword { Context, Id, IdPlural, Text, TextOfNumber, Domain, None };

struct KeywordName {
    StringView Name;
    Keyword Word;
};
/// A longer one before the one that it begins with.
constexpr std::array<KeywordName, 6> KeywordNames = {{{"msgctxt", Keyword::Context},
                                                      {"msgid_plural", Keyword::IdPlural},
                                                      {"msgid", Keyword::Id},
                                                      {"msgstr[", Keyword::TextOfNumber},
                                                      {"msgstr", Keyword::Text},
                                                      {"domain", Keyword::Domain}}};

constexpr StringView Blanks = " \t\v\f";

StringView WithoutBlanksBefore(StringView text) {
    return text.substr(std::min(text.find_first_not_of(Blanks), text.size()));
}

uint64_t MarkSpecial(uint64_t word) {
    return coding::MarkByte(word, '"') | coding::MarkByte(word, '\\');
}

int DigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

/// Takes up to `most` digits off the head of a text, as the byte that they give.
char TakeByte(StringView& text, int base, size_t most) {
    int value = 0;
    for (; most > 0 && !text.empty() && DigitValue(text[0]) < base; --most, text.remove_prefix(1))
        value = value * base + DigitValue(text[0]);
    return static_cast<char>(value);
}

/// The charset that a header's text tells; empty if it tells none.
StringView CharsetOf(StringView header) {
    constexpr StringView mark = "charset=";
    const size_t at = header.find(mark);
    if (at == StringView::npos) return {};
    const StringView rest = header.substr(at + mark.size());
    return rest.substr(0, rest.find_first_of(" \t\r\n;"));
}

class PoReader {
  public:
    PoReader(Input& input, TranslationImport& import) : mLines(input), mImport(import) {}

    void Read() {
        while (mLines.Next())
            ReadLine(WithoutBlanksBefore(mLines.Text()));
        EndEntry();
    }

  private:
    void ReadLine(StringView line) {
        if (line.empty()) return;
        if (line[0] == '#') return ReadComment(line);
        if (line[0] == '"') {
            if (mLast == Keyword::None) Fail("a text without a keyword");
            return AppendText(line);
        }
        for (const auto& [name, word] : KeywordNames)
            if (line.starts_with(name)) return ReadKeyword(word, line.substr(name.size()));
        Fail("neither a keyword, a text nor a comment");
    }

    /// A comment behind a translation belongs to the next entry.
    void ReadComment(StringView line) {
        if (mHasText) EndEntry();
        if (line.starts_with("#~")) {
            const StringView rest = WithoutBlanksBefore(line.substr(2));
            if (rest.starts_with("msgid") && !rest.starts_with("msgid_plural")) mImport.Skip();
        } else if (line.starts_with("#,") && line.find("fuzzy") != StringView::npos) {
            mIsFuzzy = true;
        }
    }

    void ReadKeyword(Keyword word, StringView rest) {
        if (mHasText && word != Keyword::Text && word != Keyword::TextOfNumber) EndEntry();
        switch (word) {
            case Keyword::Context:
                if (mHasId || mHasContext) Fail("msgctxt does not stand before msgid");
                mHasContext = true;
                break;
            case Keyword::Id:
                if (mHasId) Fail("an entry has two msgid, or no msgstr");
                mHasId = true;
                mIdLine = mLines.Number();
                break;
            case Keyword::IdPlural:
                if (!mHasId) Fail("msgid_plural does not stand behind msgid");
                mIsPlural = true;
                break;
            case Keyword::TextOfNumber: {
                const size_t end = rest.find(']');
                if (!mIsPlural || end == StringView::npos || end == 0) Fail("msgstr[N] without msgid_plural");
                rest.remove_prefix(end + 1);
                mHasText = true;
                break;
            }
            case Keyword::Text:
                if (!mHasId || mHasText || mIsPlural) Fail("msgstr does not stand behind msgid");
                mHasText = true;
                break;
            default:
                break;
        }
        mLast = word;
        rest = WithoutBlanksBefore(rest);
        if (!rest.starts_with('"')) Fail("a keyword without a text in quotation marks");
        AppendText(rest);
    }

    /// Texts of plural entries and domains are checked and dropped.
    String& Target() {
        switch (mLast) {
            case Keyword::Context:
                return mContext;
            case Keyword::Id:
                return mId;
            case Keyword::Text:
                return mText;
            default:
                mDropped.clear();
                return mDropped;
        }
    }

    void AppendText(StringView quoted) {
        String& to = Target();
        for (quoted.remove_prefix(1);;) {
            const size_t special = coding::FindMarked(quoted, 0, MarkSpecial);
            if (special == quoted.size()) Fail("a text without its closing quotation mark");
            to += quoted.substr(0, special);
            const char found = quoted[special];
            quoted.remove_prefix(special + 1);
            if (found == '"') break;
            AppendEscaped(quoted, to);
        }
        if (quoted.find_first_not_of(Blanks) != StringView::npos) Fail("something behind a text");
    }

    /// Takes the escape off the head of a text, behind its backslash.
    void AppendEscaped(StringView& text, String& to) {
        constexpr StringView letters = "abfnrtv\\\"";
        constexpr StringView meanings = "\a\b\f\n\r\t\v\\\"";
        if (text.empty()) Fail("a text without its closing quotation mark");
        if (const size_t letter = letters.find(text[0]); letter != StringView::npos) {
            to += meanings[letter];
            text.remove_prefix(1);
        } else if (DigitValue(text[0]) < 8) {
            to += TakeByte(text, 8, 3);
        } else if (text[0] == 'x' && text.size() > 1 && DigitValue(text[1]) < 16) {
            text.remove_prefix(1);
            to += TakeByte(text, 16, 2);
        } else {
            Fail("an escape that there is not");
        }
    }

    void EndEntry() {
        if (!mHasText && (mHasId || mHasContext)) Fail("an entry without msgstr");
        if (mHasText) TakeEntry();
        mContext.clear();
        mId.clear();
        mText.clear();
        mLast = Keyword::None;
        mHasContext = mHasId = mHasText = mIsPlural = mIsFuzzy = false;
    }

    void TakeEntry() {
        if (!mHasContext && mId.empty()) return RequireUtf8();
        if (mIsPlural || mIsFuzzy || mText.empty()) return mImport.Skip();
        if (!IsXmlText(mContext) || !IsXmlText(mId) || !IsXmlText(mText))
            throw FormatError("bytes that are not UTF-8, or a control character, in the entry", mIdLine);
        if (!mHasContext) return mImport.TakeUnknown(mId);
        mImport.Take({mContext, mId, mText}, {.EmptyDefaultIsKey = true});
    }

    void RequireUtf8() const {
        const StringView charset = CharsetOf(mText);
        for (const StringView known : {"", "UTF-8", "UTF8", "ASCII", "US-ASCII", "CHARSET"})
            if (Equal(charset, known)) return;
        throw FormatError(
            "the charset is " + String(charset) + " and not UTF-8; msgconv -t UTF-8 converts it", mIdLine);
    }

    [[noreturn]] void Fail(StringView why) const { throw FormatError(why, mLines.Number()); }

    Lines mLines;
    TranslationImport& mImport;
    // The entry that is being read.
    String mContext, mId, mText, mDropped;
    Keyword mLast = Keyword::None;
    bool mHasContext = false, mHasId = false, mHasText = false, mIsPlural = false, mIsFuzzy = false;
    int64_t mIdLine = 0;
};

}  // namespace

void ReadPo(Input& input, TranslationImport& import) {
    PoReader(input, import).Read();
}

}  // namespace sorbel
