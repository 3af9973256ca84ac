#include "scripting/compiler/Strings.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "platform/TextCoding.h"

namespace sorbel::script {

namespace {

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
}

bool AllAscii(StringView text) {
    size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        uint64_t eight = 0;
        std::memcpy(&eight, text.data() + at, 8);
        if (eight & 0x8080808080808080u) return false;
    }
    for (; at < text.size(); ++at)
        if (static_cast<unsigned char>(text[at]) >= 0x80) return false;
    return true;
}

// The order of folded texts, which are folded only as far as they are the same.
int CompareFolded(StringView x, StringView y) {
    while (!x.empty() && !y.empty()) {
        const Character a = FirstCharacter(x), b = FirstCharacter(y);
        // A stray byte may look like the beginning of a character.
        if (a.CodePoint < 0 || b.CodePoint < 0) return Fold(x).compare(Fold(y));
        if (a.CodePoint != b.CodePoint)
            if (const int order = Fold(a.Bytes).compare(Fold(b.Bytes))) return order;
        x.remove_prefix(a.Bytes.size());
        y.remove_prefix(b.Bytes.size());
    }
    return static_cast<int>(!x.empty()) - static_cast<int>(!y.empty());
}

// Whether a byte may go on with a character. Where one does not, a character begins.
bool GoesOn(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool StartsInside(StringView text) {
    return !text.empty() && GoesOn(text[0]);
}

}  // namespace

int64_t CountCharacters(Text* text) {
    if (!text) return 0;
    if (text->Characters != Text::Unknown) return text->Characters;
    text->Ascii = AllAscii(text->View());
    text->Characters = text->Ascii ? text->Size : static_cast<uint32_t>(Len(text->View()));
    return text->Characters;
}

size_t ByteOf(Memory& memory, Text* text, int64_t character) {
    if (IsAscii(text)) return static_cast<size_t>(character);
    const StringView view = text->View();
    const auto skip = [view](size_t byte, int64_t characters) {
        for (; characters > 0 && byte < view.size(); --characters)
            byte += FirstCharacter(view.substr(byte)).Bytes.size();
        return byte;
    };
    // The index may be of a time when the text was shorter.
    if (character / Text::IndexStep >= text->Marks) {
        uint32_t mark = text->Marks;
        memory.ExtendIndex(*text, text->Characters / Text::IndexStep + 1);
        if (mark == 0) text->Index[mark++] = 0;
        for (; mark < text->Marks; ++mark)
            text->Index[mark] = static_cast<uint32_t>(skip(text->Index[mark - 1], Text::IndexStep));
    }
    return skip(text->Index[character / Text::IndexStep], character % Text::IndexStep);
}

bool SameText(Text* a, Text* b) {
    if (a == b) return true;
    const StringView x = ViewOf(a), y = ViewOf(b);
    if (x == y) return true;
    if (!IsAscii(a) || !IsAscii(b)) return Equal(x, y);
    if (x.size() != y.size()) return false;
    for (size_t at = 0; at < x.size(); ++at)
        if (Lower(x[at]) != Lower(y[at])) return false;
    return true;
}

int CompareTexts(Text* a, Text* b) {
    const StringView x = ViewOf(a), y = ViewOf(b);
    if (!IsAscii(a) || !IsAscii(b)) return CompareFolded(x, y);
    const size_t shared = std::min(x.size(), y.size());
    for (size_t at = 0; at < shared; ++at)
        if (const int order = Lower(x[at]) - Lower(y[at])) return order;
    return x.size() < y.size() ? -1 : x.size() > y.size();
}

// Looks in pieces, since a folded copy of all the rest would be too much for a term that is near. Pieces
// begin and end where characters do, and overlap by the term.
std::optional<Place> FindFolded(StringView text, StringView term) {
    const size_t most = 4 * term.size();  // bytes that the term may take: a character has at most four
    size_t begin = 0;
    for (size_t size = 256 + 2 * most;; size *= 2) {
        size_t end = text.size() - begin <= size ? text.size() : begin + size;
        while (end < text.size() && GoesOn(text[end]))
            ++end;
        const StringView piece = text.substr(begin, end - begin);
        if (const int64_t found = InStr(1, piece, term); found > 0) {
            const size_t before = coding::Measure(piece, found - 1).Bytes;
            const StringView rest = piece.substr(before);
            return Place{begin + before, coding::Measure(rest, Len(term)).Bytes};
        }
        if (end == text.size()) return std::nullopt;
        size_t next = end - most;
        while (next > begin && GoesOn(text[next]))
            --next;
        begin = next;
    }
}

void TextDraft::Resize(size_t capacity) {
    if (capacity >= Memory::Limit) FailMemory();
    if (!mText) {
        mText = mMemory.NewTextOf(capacity);
        return;
    }
    const size_t bytes = Memory::Room(sizeof(Text) + capacity);
    mText = static_cast<Text*>(mMemory.Resize(mText, sizeof(Text) + mText->Capacity, bytes));
    mText->Capacity = static_cast<uint32_t>(bytes - sizeof(Text));
}

void TextDraft::Reserve(size_t more) {
    if (more > Memory::Limit) FailMemory();
    if (!mText || mText->Capacity < Size() + more) Resize(Size() + more);
}

// Grows by half, so that many small parts take no more than linear time.
void TextDraft::Append(StringView part) {
    if (part.empty()) return;
    const size_t size = Size() + part.size();
    if (!mText || size > mText->Capacity) {
        const size_t left = mMemory.Left() - std::min(mMemory.Left(), part.size());
        Resize(size + std::min(size / 2 + 64, left / 2));
    }
    std::memcpy(mText->Bytes() + mText->Size, part.data(), part.size());
    mText->Size = static_cast<uint32_t>(size);
}

Text* TextDraft::Take() {
    if (Size() == 0) return nullptr;
    if (mText->Capacity - mText->Size > mText->Size / 8 + 64) Resize(mText->Size);
    return std::exchange(mText, nullptr);
}

int64_t FindText(Memory& memory, int64_t start, Text* text, Text* term) {
    const StringView hay = ViewOf(text), needle = ViewOf(term);
    if (needle.empty() || !IsAscii(text) || !IsAscii(term)) {
        constexpr size_t small = 256;  // bytes, which need no pieces
        if (hay.size() <= small) return InStr(start, hay, needle);
        memory.Expect(2 * (hay.size() + needle.size()));  // to look without regard to letter case
        const int64_t skipped = std::max<int64_t>(start, 1) - 1;
        if (skipped > CountCharacters(text)) return 0;
        if (needle.empty()) return skipped + 1;
        const size_t from = skipped == 0 ? 0 : ByteOf(memory, text, skipped);
        const auto found = FindFolded(hay.substr(from), needle);
        return found ? skipped + Len(hay.substr(from, found->Byte)) + 1 : 0;
    }
    auto at = static_cast<size_t>(std::max<int64_t>(start, 1) - 1);
    const char first = Lower(needle[0]);
    const char other = first >= 'a' && first <= 'z' ? static_cast<char>(first & ~0x20) : first;
    // Where nearly all is the same everywhere, another way is quicker.
    size_t patience = 4 * hay.size();
    for (; at + needle.size() <= hay.size(); ++at) {
        if (hay[at] != first && hay[at] != other) continue;
        size_t same = 1;
        while (same < needle.size() && Lower(hay[at + same]) == Lower(needle[same]))
            ++same;
        if (same == needle.size()) return static_cast<int64_t>(at + 1);
        if (same > patience) return InStr(static_cast<int64_t>(at + 1), hay, needle);
        patience -= same;
    }
    return 0;
}

void AppendText(Memory& memory, Slot& to, const Slot& a, const Slot& b) {
    Text *left = a.T, *right = b.T;
    const size_t before = ViewOf(left).size(), added = ViewOf(right).size();
    if (before == 0 || added == 0) {
        Text* same = added == 0 ? left : right;
        Memory::Retain(same);
        Heap* old = to.H;
        to.T = same;
        return memory.Release(old);
    }
    if (before + added >= Memory::Limit) FailMemory();
    // Counting what is added is little work; counting all of it again would be much.
    const bool known = left->Characters != Text::Unknown && !StartsInside(right->View());
    if (known && right->Characters == Text::Unknown) CountCharacters(right);
    const uint32_t characters = known ? left->Characters + right->Characters : Text::Unknown;
    const bool ascii = known && left->Ascii && right->Ascii;
    const bool grows = &to == &a;
    Text* result = left;
    if (grows && left->References == 1) {
        if (!known) memory.DropIndex(*left);
        if (left->Watched) memory.Fields().Forget(left);
        left->Watched = false;
        if (before + added > left->Capacity) {
            const size_t bytes = Memory::Room(sizeof(Text) + std::max(before * 2, before + added + 16));
            result = static_cast<Text*>(memory.Resize(left, sizeof(Text) + left->Capacity, bytes));
            result->Capacity = static_cast<uint32_t>(bytes - sizeof(Text));
            to.T = result;
        }
        if (right == left) right = result;
    } else {
        result = memory.NewTextOf(before + added + (grows ? 16 : 0));
        std::memcpy(result->Bytes(), left->Bytes(), before);
    }
    std::memcpy(result->Bytes() + before, right->Bytes(), added);
    result->Size = static_cast<uint32_t>(before + added);
    result->Characters = characters;
    result->Ascii = ascii;
    if (result == to.T) return;
    Heap* old = to.H;
    to.T = result;
    memory.Release(old);
}

}  // namespace sorbel::script
