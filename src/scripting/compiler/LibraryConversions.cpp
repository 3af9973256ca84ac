#include <algorithm>
#include <charconv>
#include <cmath>

#include "scripting/compiler/Library.h"

namespace sorbel::script {

double NumberOf(StringView text) {
    const StringView trimmed = Trimmed(text);
    const char* first = trimmed.data();
    const char* last = first + trimmed.size();
    if (first != last && *first == '+') ++first;
    // Words such as "inf" are no numbers here.
    const char* digits = first != last && *first == '-' ? first + 1 : first;
    if (digits == last || ((*digits < '0' || *digits > '9') && *digits != '.'))
        return static_cast<double>(WholeNumberOf(text));
    double value = 0;
    std::from_chars(first, last, value);
    return value;
}

// The digits that a text begins with, also of another base: &h, &b and &o.
int64_t WholeNumberOf(StringView text) {
    const StringView trimmed = Trimmed(text);
    const char* first = trimmed.data();
    const char* last = first + trimmed.size();
    int base = 10;
    if (last - first > 2 && *first == '&') {
        const char kind = static_cast<char>(first[1] | 0x20);
        base = kind == 'h' ? 16 : kind == 'b' ? 2 : kind == 'o' ? 8 : 10;
        first += 2;
    } else if (first != last && *first == '+') {
        ++first;
    }
    int64_t value = 0;
    const auto result = std::from_chars(first, last, value, base);
    if (result.ec == std::errc::result_out_of_range) return *first == '-' ? INT64_MIN : INT64_MAX;
    return value;
}

String TextOf(double value) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "INF" : "-INF";
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general);
    return String(buffer, result.ptr);
}

namespace {

struct Pattern {
    String Before, After;     // words around the number
    int Whole = 0;            // least digits
    int Least = 0, Most = 0;  // behind the point
    bool Grouped = false, Percent = false, Sign = false;
};

Pattern ReadPattern(StringView text) {
    Pattern pattern;
    bool point = false, digits = false;
    for (size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '0' || c == '#') {
            digits = true;
            if (point) ++pattern.Most;
            if (c == '0') (point ? pattern.Least = pattern.Most : ++pattern.Whole);
        } else if (c == '.' && !point) {
            point = digits = true;
        } else if (c == ',') {
            pattern.Grouped = true;
        } else if (c == '+' && !digits) {
            pattern.Sign = true;
        } else {
            if (c == '%') pattern.Percent = true;
            if (c == '\\' && at + 1 < text.size()) ++at;
            (digits ? pattern.After : pattern.Before) += text[at];
        }
    }
    return pattern;
}

String Grouped(StringView digits) {
    String grouped;
    for (size_t at = 0; at < digits.size(); ++at) {
        if (at > 0 && (digits.size() - at) % 3 == 0) grouped += ',';
        grouped += digits[at];
    }
    return grouped;
}

String Digits(double value, const Pattern& pattern) {
    char buffer[400];
    const int places = std::min(pattern.Most, 15);
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, places);
    String digits(buffer, result.ptr);
    const size_t point = std::min(digits.find('.'), digits.size());
    String whole = digits.substr(0, point), rest = digits.substr(std::min(point + 1, digits.size()));
    while (static_cast<int>(rest.size()) > pattern.Least && rest.back() == '0')
        rest.pop_back();
    if (whole == "0") whole.clear();
    const auto least = static_cast<size_t>(pattern.Whole);
    if (whole.size() < least) whole.insert(0, least - whole.size(), '0');
    if (pattern.Grouped) whole = Grouped(whole);
    return rest.empty() ? whole : whole + "." + rest;
}

StringView View(const Slot& slot) {
    return ViewOf(slot.T);
}

String InBase(uint64_t value, int base) {
    char buffer[72];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, base);
    String text(buffer, result.ptr);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
    return text;
}

void GiveInteger(Machine& machine, Slot* a) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, a->I);
    machine.Give(*a, StringView(buffer, static_cast<size_t>(result.ptr - buffer)));
    a->T->Characters = a->T->Size;
    a->T->Ascii = true;
}

void GiveUnsigned(Machine& machine, Slot* a) {
    machine.Give(*a, std::to_string(a->U));
}

void GiveReal(Machine& machine, Slot* a) {
    machine.Give(*a, TextOf(a->D));
}

void GiveTruth(Machine& machine, Slot* a) {
    machine.Give(*a, a->I ? "True" : "False");
}

void GiveText(Machine&, Slot* a) {
    Memory::Retain(a->H);
}

void GiveVariant(Machine& machine, Slot* a) {
    *a = Unbox(machine, a->V, *machine.KnownTypes().Of(Kind::String));
}

void GiveFormatted(Machine& machine, Slot* a) {
    const StringView pattern = View(a[1]);
    machine.Store().Expect(8 * pattern.size());
    machine.Give(*a, FormatNumber(a[0].D, pattern));
}

const NativeFunction table[] = {
    {"Str", "number I", "S", GiveInteger, false},
    {"Str", "number U", "S", GiveUnsigned, false},
    {"Str", "number D", "S", GiveReal, false},
    {"Str", "truth B", "S", GiveTruth, false},
    {"Str", "text S", "S", GiveText, false},
    {"Str", "value V", "S", GiveVariant, false},
    {"Str", "number D pattern S", "S", GiveFormatted, false},
    {"ToString", "number I", "S", GiveInteger, true},
    {"ToString", "number U", "S", GiveUnsigned, true},
    {"ToString", "number D", "S", GiveReal, true},
    {"ToString", "truth B", "S", GiveTruth, true},
    {"ToString", "text S", "S", GiveText, true},
    {"ToString", "value V", "S", GiveVariant, true},
    {"ToString", "number D pattern S", "S", GiveFormatted, true},
    {"CStr", "value V", "S", GiveVariant, false},
    {"Format", "number D pattern S", "S", GiveFormatted, true},
    {"Val", "text S", "D", [](Machine&, Slot* a) { a->D = NumberOf(View(*a)); }, true},
    {"CDbl", "text S", "D", [](Machine&, Slot* a) { a->D = NumberOf(View(*a)); }, true},
    {"ToDouble", "text S", "D", [](Machine&, Slot* a) { a->D = NumberOf(View(*a)); }, true},
    {"CInt", "text S", "I", [](Machine&, Slot* a) { a->I = WholeNumberOf(View(*a)); }, true},
    {"CLong", "text S", "I", [](Machine&, Slot* a) { a->I = WholeNumberOf(View(*a)); }, true},
    {"ToInteger", "text S", "I", [](Machine&, Slot* a) { a->I = WholeNumberOf(View(*a)); }, true},
    {"Hex", "number I", "S", [](Machine& m, Slot* a) { m.Give(*a, InBase(a->U, 16)); }, true},
    {"Oct", "number I", "S", [](Machine& m, Slot* a) { m.Give(*a, InBase(a->U, 8)); }, true},
    {"Bin", "number I", "S", [](Machine& m, Slot* a) { m.Give(*a, InBase(a->U, 2)); }, true},
};

}  // namespace

String FormatNumber(double value, StringView pattern) {
    if (std::isnan(value) || std::isinf(value)) return TextOf(value);
    const std::vector<String> parts = Split(pattern, ";");
    const bool below = value < 0 && parts.size() > 1;
    const Pattern read = ReadPattern(below ? parts[1] : parts[0]);
    const double amount = std::fabs(value) * (read.Percent ? 100 : 1);
    const String digits = Digits(amount, read);
    const bool zero = digits.find_first_of("123456789") == String::npos;
    const char* sign = value < 0 && !below && !zero ? "-" : read.Sign && value >= 0 ? "+" : "";
    return sign + read.Before + digits + read.After;
}

std::span<const NativeFunction> ConversionFunctions() {
    return table;
}

}  // namespace sorbel::script
