#include "scripting/compiler/Strings.h"

#include <algorithm>
#include <cstring>
#include <new>

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

bool StartsInside(StringView text) {
    return !text.empty() && (static_cast<unsigned char>(text[0]) & 0xC0) == 0x80;
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
    if (!text->Index) {
        const size_t marks = text->Characters / Text::IndexStep + 1;
        text->Index = static_cast<uint32_t*>(memory.Allocate(marks * sizeof(uint32_t)));
        size_t byte = 0;
        for (size_t mark = 0; mark < marks; ++mark) {
            text->Index[mark] = static_cast<uint32_t>(byte);
            for (uint32_t step = 0; step < Text::IndexStep && byte < view.size(); ++step)
                byte += FirstCharacter(view.substr(byte)).Bytes.size();
        }
    }
    size_t byte = text->Index[character / Text::IndexStep];
    for (int64_t step = character % Text::IndexStep; step > 0 && byte < view.size(); --step)
        byte += FirstCharacter(view.substr(byte)).Bytes.size();
    return byte;
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
    if (!IsAscii(a) || !IsAscii(b)) return Fold(x).compare(Fold(y));
    const size_t shared = std::min(x.size(), y.size());
    for (size_t at = 0; at < shared; ++at)
        if (const int order = Lower(x[at]) - Lower(y[at])) return order;
    return x.size() < y.size() ? -1 : x.size() > y.size();
}

int64_t FindText(int64_t start, Text* text, Text* term) {
    const StringView hay = ViewOf(text), needle = ViewOf(term);
    if (needle.empty() || !IsAscii(text) || !IsAscii(term)) return InStr(start, hay, needle);
    auto at = static_cast<size_t>(std::max<int64_t>(start, 1) - 1);
    const char first = Lower(needle[0]);
    const char other = first >= 'a' && first <= 'z' ? static_cast<char>(first & ~0x20) : first;
    for (; at + needle.size() <= hay.size(); ++at) {
        if (hay[at] != first && hay[at] != other) continue;
        size_t same = 1;
        while (same < needle.size() && Lower(hay[at + same]) == Lower(needle[same]))
            ++same;
        if (same == needle.size()) return static_cast<int64_t>(at + 1);
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
    const bool known = left->Characters != Text::Unknown && right->Characters != Text::Unknown &&
                       !StartsInside(right->View());
    const uint32_t characters = known ? left->Characters + right->Characters : Text::Unknown;
    const bool ascii = known && left->Ascii && right->Ascii;
    const bool grows = &to == &a;
    Text* result = left;
    if (grows && left->References == 1) {
        memory.DropIndex(*left);
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
