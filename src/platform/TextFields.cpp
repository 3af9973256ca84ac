#include "platform/TextCoding.h"

namespace sorbel {

using namespace coding;

namespace {

/// Gives out the fields of a text one after the other. An empty delimiter leaves it in one piece.
class Fields {
  public:
    Fields(StringView text, StringView delimiter) : mRest(text), mDelimiter(delimiter) {}

    /// False when there are no more.
    bool Next(StringView& field) {
        if (mEnded) return false;
        const size_t end = mDelimiter.empty() ? StringView::npos : FindBytes(mRest, mDelimiter);
        field = mRest.substr(0, end);
        mEnded = end == StringView::npos;
        if (!mEnded) mRest.remove_prefix(end + mDelimiter.size());
        return true;
    }

  private:
    StringView mRest;
    StringView mDelimiter;
    bool mEnded = false;
};

}  // namespace

std::vector<String> Split(StringView text, StringView delimiter) {
    std::vector<String> result;
    Fields fields(text, delimiter);
    for (StringView field; fields.Next(field);)
        result.emplace_back(field);
    return result;
}

String Join(const std::vector<String>& fields, StringView delimiter) {
    String text;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) text += delimiter;
        text += fields[i];
    }
    return text;
}

String NthField(StringView text, StringView delimiter, int64_t index) {
    Fields fields(text, delimiter);
    for (StringView field; index > 0 && fields.Next(field); --index)
        if (index == 1) return String(field);
    return {};
}

int64_t CountFields(StringView text, StringView delimiter) {
    Fields fields(text, delimiter);
    int64_t count = 0;
    for (StringView field; fields.Next(field);)
        ++count;
    return count;
}

String ReplaceAll(StringView text, StringView what, StringView with) {
    String result;
    Fields fields(text, what);
    bool first = true;
    for (StringView field; fields.Next(field); first = false) {
        if (!first) result += with;
        result += field;
    }
    return result;
}

String ReplaceLineEndings(StringView text, StringView ending) {
    String result;
    result.reserve(text.size());
    ReplaceLineEndings(text, ending, result);
    return result;
}

void ReplaceLineEndings(StringView text, StringView ending, String& to) {
    const auto markEnds = [](uint64_t word) {
        return MarkByte(word, '\r') | MarkByte(word, '\n');
    };
    for (size_t start = 0;;) {
        const size_t end = FindMarked(text, start, markEnds);
        to.append(text, start, end - start);
        if (end == text.size()) return;
        to += ending;
        start = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
}

}  // namespace sorbel
