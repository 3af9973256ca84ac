#include "qt/TextSplice.h"

#include <algorithm>

#include "qt/Text.h"

namespace sorbel {

namespace {

/// Bytes of the text that the first `shown` units of its editable form stand for.
size_t BytesFor(StringView text, qsizetype shown) {
    EditableWalk walk(text);
    while (walk.Shown() < shown)
        walk.Step();
    return walk.Bytes();
}

StringView LineEndOf(StringView text) {
    const size_t at = text.find_first_of("\r\n");
    if (at == StringView::npos || text[at] == '\n') return "\n";
    return text.substr(at).starts_with("\r\n") ? "\r\n" : "\r";
}

/// A CR and an LF that come to stand side by side are two line breaks and must not turn into one.
void Append(String& text, StringView piece) {
    if (text.ends_with('\r') && piece.starts_with('\n')) {
        text += '\r';
        piece.remove_prefix(1);
    }
    text += piece;
}

}  // namespace

Difference Compare(QStringView before, QStringView after, qsizetype longestHead) {
    const qsizetype shorter = std::min(before.size(), after.size());
    const qsizetype headEnd = std::clamp<qsizetype>(longestHead, 0, shorter);
    const auto head = std::mismatch(before.begin(), before.begin() + headEnd, after.begin()).first;
    Difference result{head - before.begin(), 0};
    if (result.Head > 0 && before[result.Head - 1].isHighSurrogate()) --result.Head;
    while (result.Tail < shorter - result.Head &&
           before[before.size() - 1 - result.Tail] == after[after.size() - 1 - result.Tail])
        ++result.Tail;
    const qsizetype tailStart = before.size() - result.Tail;
    if (result.Tail > 0 && tailStart > 0 && before[tailStart].isLowSurrogate() &&
        before[tailStart - 1].isHighSurrogate())
        --result.Tail;
    return result;
}

String SpliceEdit(StringView original, QStringView edited) {
    const QString shown = ToEditable(original);
    if (shown == edited) return String(original);
    const Difference difference = Compare(shown, edited);
    const size_t head = BytesFor(original, difference.Head);
    const size_t tail = BytesFor(original, shown.size() - difference.Tail);
    const QStringView typed = edited.mid(difference.Head, edited.size() - difference.Head - difference.Tail);

    String result(original.substr(0, head));
    Append(result, ReplaceAll(FromQt(typed), "\n", LineEndOf(original)));
    Append(result, original.substr(tail));
    return result;
}

}  // namespace sorbel
