#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <algorithm>

#include "platform/TextCoding.h"
#include "scripting/compiler/Library.h"

namespace sorbel::script {

namespace {

StringView View(const Slot& slot) {
    return ViewOf(slot.T);
}

// The text of an argument, for something that needs so many times its size for a moment.
StringView Working(Machine& machine, const Slot& slot, size_t times) {
    machine.Store().Expect(times * View(slot).size());
    return View(slot);
}

// `count` characters from `start`, which counts from 0.
void GiveMiddle(Machine& machine, Slot* a, int64_t start, int64_t count) {
    Text* text = a[0].T;
    const int64_t length = CountCharacters(text);
    if (start < 0 || start >= length || count <= 0) {
        a[0].T = nullptr;
        return;
    }
    count = std::min(count, length - start);
    if (count == length) {
        Memory::Retain(text);
        return;
    }
    const bool ascii = IsAscii(text);
    const size_t from = ByteOf(machine.Store(), text, start);
    if (ascii && count == 1) return machine.GiveCharacter(a[0], text->Bytes()[from]);
    const size_t to = ByteOf(machine.Store(), text, start + count);
    machine.Give(a[0], text->View().substr(from, to - from));
    a[0].T->Characters = static_cast<uint32_t>(count);
    a[0].T->Ascii = ascii;
}

void GiveBytes(Machine& machine, Slot* a, int64_t start, int64_t count) {
    const StringView text = View(a[0]);
    const auto size = static_cast<int64_t>(text.size());
    if (start < 0 || start >= size || count <= 0) {
        a[0].T = nullptr;
        return;
    }
    machine.Give(a[0],
                 text.substr(static_cast<size_t>(start), static_cast<size_t>(std::min(count, size - start))));
}

// Positions count from 1; a start before the beginning is the beginning.
int64_t FromOne(int64_t start) {
    return std::max<int64_t>(start, 1) - 1;
}

Text* CasedAscii(Machine& machine, StringView text, bool upper) {
    Text* result = machine.Store().NewText(text);
    for (char* c = result->Bytes(); c != result->Bytes() + text.size(); ++c) {
        const char first = upper ? 'a' : 'A';
        if (*c >= first && *c <= first + ('z' - 'a')) *c = static_cast<char>(*c ^ 0x20);
    }
    return result;
}

void GiveCased(Machine& machine, Slot& slot, int how) {
    if (how != 2 && slot.T && IsAscii(slot.T)) {
        slot.T = CasedAscii(machine, View(slot), how == 1);
        return;
    }
    const StringView text = Working(machine, slot, 8);
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
    if (how == 0) wide.toLower(icu::Locale::getRoot());
    if (how == 1) wide.toUpper(icu::Locale::getRoot());
    if (how == 2) wide.toTitle(nullptr, icu::Locale::getRoot());
    String result;
    wide.toUTF8String(result);
    machine.Give(slot, result);
}

StringView TrimmedEnd(StringView text, bool left, bool right) {
    const StringView trimmed = Trimmed(text);
    if (trimmed.empty()) return {};
    const auto start = static_cast<size_t>(trimmed.data() - text.data());
    const size_t end = start + trimmed.size();
    return text.substr(left ? start : 0, (right ? end : text.size()) - (left ? start : 0));
}

// Replacing looks without regard to letter case, as all searching does.
Text* Replaced(Machine& machine, Slot* a, bool all) {
    const StringView text = Working(machine, a[0], 3), what = View(a[1]), with = View(a[2]);
    if (what.empty()) {
        Memory::Retain(a[0].T);
        return a[0].T;
    }
    TextDraft result(machine.Store());
    size_t done = 0;
    while (const auto found = FindFolded(text.substr(done), what)) {
        result.Append(text.substr(done, found->Byte));
        result.Append(with);
        done += found->Byte + found->Size;
        if (!all) break;
    }
    result.Append(text.substr(done));
    return result.Take();
}

Text* WithLineEndings(Machine& machine, StringView text, StringView ending) {
    TextDraft result(machine.Store());
    for (size_t start = 0;;) {
        const size_t end = std::min(text.find_first_of("\r\n", start), text.size());
        result.Append(text.substr(start, end - start));
        if (end == text.size()) return result.Take();
        result.Append(ending);
        start = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
}

Array* Fields(Machine& machine, StringView text, StringView delimiter) {
    const int64_t count = CountFields(text, delimiter);
    Array* fields = machine.NewTexts(count);
    for (int64_t at = 0; at < count; ++at) {
        const bool last = at + 1 == count;
        const size_t end = last ? text.size() : coding::FindBytes(text, delimiter);
        machine.Give(fields->As<Slot>()[at], text.substr(0, end));
        if (!last) text.remove_prefix(end + delimiter.size());
    }
    return fields;
}

int64_t FindBytes(int64_t start, StringView text, StringView term) {
    const size_t found = coding::FindBytes(text, term, static_cast<size_t>(FromOne(start)));
    return found == StringView::npos ? 0 : static_cast<int64_t>(found) + 1;
}

void GiveJoined(Machine& machine, Slot* a) {
    if (!a[0].A) FailNil();
    const Array& array = *a[0].A;
    Text** texts = const_cast<Array&>(array).As<Text*>();
    const StringView between = View(a[1]);
    size_t size = 0;
    for (int64_t at = 0; at < array.Count; ++at)
        size += ViewOf(texts[at]).size() + (at ? between.size() : 0);
    TextDraft joined(machine.Store());
    joined.Reserve(size);
    for (int64_t at = 0; at < array.Count; ++at) {
        joined.Append(at ? between : StringView());
        joined.Append(ViewOf(texts[at]));
    }
    a[0].T = joined.Take();
}

Text* Repeated(Machine& machine, StringView text, int64_t count) {
    if (count <= 0 || text.empty()) return nullptr;
    if (count >= static_cast<int64_t>(Memory::Limit / text.size())) FailMemory();
    constexpr size_t most = size_t{1} << 16;  // bytes that are put at a time, unless the text has more
    const auto together = std::clamp(static_cast<int64_t>(most / text.size()), int64_t{1}, count);
    String several;
    for (int64_t done = 0; done < together; ++done)
        several.append(text);
    TextDraft result(machine.Store());
    result.Reserve(text.size() * static_cast<size_t>(count));
    for (int64_t done = 0; done < count; done += together)
        result.Append(StringView(several).substr(
            0, static_cast<size_t>(std::min(together, count - done)) * text.size()));
    return result.Take();
}

// Nothing to split at: every character by itself.
void GiveCharacters(Machine& machine, Slot* a) {
    Text* text = a[0].T;
    Array* characters = machine.NewTexts(0);
    try {
        ResizeArray(machine.Store(), *characters, CountCharacters(text));
        StringView rest = View(a[0]);
        for (int64_t at = 0; at < characters->Count; ++at) {
            const StringView one = rest.substr(0, FirstCharacter(rest).Bytes.size());
            rest.remove_prefix(one.size());
            Slot& to = characters->As<Slot>()[at];
            if (one.size() == 1 && static_cast<unsigned char>(one[0]) < 0x80)
                machine.GiveCharacter(to, one[0]);
            else
                machine.Give(to, one);
        }
    } catch (...) {
        machine.Store().Release(characters);
        throw;
    }
    a[0].A = characters;
}

int64_t CodeOf(StringView text) {
    return text.empty() ? -1 : FirstCharacter(text).CodePoint;
}

const NativeFunction table[] = {
    {"Len", "text S", "I", [](Machine&, Slot* a) { a->I = CountCharacters(a->T); }, true},
    {"Length", "text S", "I", [](Machine&, Slot* a) { a->I = CountCharacters(a->T); }, true},
    {"LenB", "text S", "I", [](Machine&, Slot* a) { a->I = LenB(View(*a)); }, true},
    {"Bytes", "text S", "I", [](Machine&, Slot* a) { a->I = LenB(View(*a)); }, true},
    {"Mid", "text S start I | count I", "S",
     [](Machine& m, Slot* a) { GiveMiddle(m, a, FromOne(a[1].I), Given(a[2].I, INT64_MAX)); }, true},
    {"Middle", "text S index I | count I", "S",
     [](Machine& m, Slot* a) { GiveMiddle(m, a, std::max<int64_t>(a[1].I, 0), Given(a[2].I, INT64_MAX)); },
     true},
    {"Left", "text S count I", "S", [](Machine& m, Slot* a) { GiveMiddle(m, a, 0, a[1].I); }, true},
    {"Right", "text S count I", "S",
     [](Machine& m, Slot* a) {
         const int64_t length = CountCharacters(a->T), count = std::clamp<int64_t>(a[1].I, 0, length);
         GiveMiddle(m, a, length - count, count);
     },
     true},
    {"MidB", "text S start I | count I", "S",
     [](Machine& m, Slot* a) { GiveBytes(m, a, FromOne(a[1].I), Given(a[2].I, INT64_MAX)); }, true},
    {"LeftB", "text S count I", "S", [](Machine& m, Slot* a) { GiveBytes(m, a, 0, a[1].I); }, true},
    {"RightB", "text S count I", "S",
     [](Machine& m, Slot* a) {
         const int64_t size = LenB(View(*a)), count = std::clamp<int64_t>(a[1].I, 0, size);
         GiveBytes(m, a, size - count, count);
     },
     true},
    {"InStr", "text S term S", "I",
     [](Machine& m, Slot* a) { a->I = FindText(m.Store(), 1, a[0].T, a[1].T); }, true},
    {"InStr", "start I text S term S", "I",
     [](Machine& m, Slot* a) { a->I = FindText(m.Store(), a[0].I, a[1].T, a[2].T); }, false},
    {"InStrB", "text S term S", "I", [](Machine&, Slot* a) { a->I = FindBytes(1, View(a[0]), View(a[1])); },
     true},
    {"InStrB", "start I text S term S", "I",
     [](Machine&, Slot* a) { a->I = FindBytes(a[0].I, View(a[1]), View(a[2])); }, false},
    {"IndexOf", "text S term S", "I",
     [](Machine& m, Slot* a) { a->I = FindText(m.Store(), 1, a[0].T, a[1].T) - 1; }, true},
    {"Contains", "text S term S", "B",
     [](Machine& m, Slot* a) { a->I = FindText(m.Store(), 1, a[0].T, a[1].T) > 0; }, true},
    {"BeginsWith", "text S term S", "B",
     [](Machine& m, Slot* a) { a->I = Equal(Left(Working(m, a[0], 1), Len(View(a[1]))), View(a[1])); }, true},
    {"EndsWith", "text S term S", "B",
     [](Machine& m, Slot* a) {
         const int64_t length = CountCharacters(a[0].T), end = std::min(CountCharacters(a[1].T), length);
         a->I = Equal(View(a[0]).substr(ByteOf(m.Store(), a[0].T, length - end)), View(a[1]));
     },
     true},
    {"Replace", "text S what S with S", "S", [](Machine& m, Slot* a) { a->T = Replaced(m, a, false); }, true},
    {"ReplaceAll", "text S what S with S", "S", [](Machine& m, Slot* a) { a->T = Replaced(m, a, true); },
     true},
    {"ReplaceLineEndings", "text S ending S", "S",
     [](Machine& m, Slot* a) { a->T = WithLineEndings(m, View(a[0]), View(a[1])); }, true},
    {"Trim", "text S", "S", [](Machine& m, Slot* a) { m.Give(*a, Trimmed(View(*a))); }, true},
    {"LTrim", "text S", "S", [](Machine& m, Slot* a) { m.Give(*a, TrimmedEnd(View(*a), true, false)); },
     true},
    {"RTrim", "text S", "S", [](Machine& m, Slot* a) { m.Give(*a, TrimmedEnd(View(*a), false, true)); },
     true},
    {"Lowercase", "text S", "S", [](Machine& m, Slot* a) { GiveCased(m, *a, 0); }, true},
    {"Uppercase", "text S", "S", [](Machine& m, Slot* a) { GiveCased(m, *a, 1); }, true},
    {"Titlecase", "text S", "S", [](Machine& m, Slot* a) { GiveCased(m, *a, 2); }, true},
    {"Split", "text S | delimiter W", "T",
     [](Machine& m, Slot* a) {
         if (View(a[1]).empty())
             GiveCharacters(m, a);
         else
             a->A = Fields(m, View(*a), View(a[1]));
     },
     true},
    {"Join", "fields T | delimiter W", "S", GiveJoined, true},
    {"NthField", "text S delimiter S index I", "S",
     [](Machine& m, Slot* a) { m.Give(*a, m.Store().Fields().Field(a[0].T, View(a[1]), a[2].I)); }, true},
    {"CountFields", "text S delimiter S", "I",
     [](Machine& m, Slot* a) { a->I = m.Store().Fields().Count(a[0].T, View(a[1])); }, true},
    {"Chr", "code I", "S",
     [](Machine& m, Slot* a) {
         const int64_t code = a->I;
         m.Give(*a, Chr(code < 0 || code > 0x10FFFF ? -1 : static_cast<int32_t>(code)));
     },
     false},
    {"ChrB", "byte I", "S", [](Machine& m, Slot* a) { m.Give(*a, ChrB(static_cast<uint8_t>(a->U))); }, false},
    {"Asc", "text S", "I", [](Machine&, Slot* a) { a->I = CodeOf(View(*a)); }, true},
    {"AscB", "text S", "I",
     [](Machine&, Slot* a) { a->I = View(*a).empty() ? -1 : static_cast<unsigned char>(View(*a)[0]); }, true},
    {"StrComp", "a S b S | mode I", "I",
     [](Machine&, Slot* a) {
         const bool exact = Given(a[2].I, 0) == 0;
         const int order = exact ? StrComp(View(a[0]), View(a[1]), 0) : CompareTexts(a[0].T, a[1].T);
         a->I = (order > 0) - (order < 0);
     },
     true},
    {"Repeat", "text S count I", "S", [](Machine& m, Slot* a) { a->T = Repeated(m, View(a[0]), a[1].I); },
     true},
    {"EndOfLine", "", "S", [](Machine& m, Slot* a) { m.Give(*a, EndOfLine); }, false},
};

}  // namespace

std::span<const NativeFunction> TextFunctions() {
    return table;
}

}  // namespace sorbel::script
