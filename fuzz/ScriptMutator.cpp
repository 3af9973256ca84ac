// Changes scripts where their structure is, so that many of them still compile: statements that stand for
// themselves are put in between others, lines move, and numbers, texts, operators and names become others of
// their kind. Bytes alone nearly never get past the parser.
#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "platform/Text.h"

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t mostSize) __attribute__((weak));

namespace sorbel::fuzz {

namespace {

const StringView Numbers[] = {"0",
                              "1",
                              "2",
                              "3",
                              "7",
                              "-1",
                              "127",
                              "128",
                              "255",
                              "256",
                              "32767",
                              "32768",
                              "65535",
                              "0.5",
                              "1e18",
                              "-0.0",
                              "100",
                              "20",
                              "4294967296",
                              "&hFF",
                              "1e300",
                              "10",
                              "5",
                              "-32768",
                              "-2147483648",
                              "9223372036854775807",
                              "18446744073709551615"};
const StringView Texts[] = {"\"\"",       "\"a\"", "\"ab\"",  "\"Straße\"", "\"ÄÖ\"",
                            "\"a,b,,c\"", "\",\"", "\" x \"", "\"12\""};
const StringView Arithmetic[] = {"+", "-", "*", "\\", "Mod"};
const StringView Comparisons[] = {"=", "<>", "<", "<=", ">", ">="};

// Each stands for itself wherever a statement may stand.
const StringView Statements[] = {
    "If True Then\n  Dim n As Integer = 7\n  n = n * 3 + n \\ 2\n  Print Str(n)\nEnd If",
    "For i As Integer = 1 To 3\n  Print Str(i * 2)\nNext",
    "For i As UInt8 = 250 To 255\n  If i = 252 Then Continue For\n  Print Str(i)\nNext",
    "For d As Double = 0 To 1 Step 0.5\n  Print Str(d)\nNext",
    "If True Then\n  Dim a(2) As String\n  a(1) = \"x\" + \"y\"\n  a.Append(\"z\")\n  Print Join(a, "
    "\",\")\nEnd If",
    "If True Then\n  Dim v As Variant = 5\n  v = v + 1\n  v = \"a\" + CStr(v)\n  Print CStr(v)\nEnd If",
    "Try\n  Dim z As Integer\n  Print Str(1 \\ z)\nCatch e As DivisionByZeroException\n  Print "
    "e.Message\nFinally\n"
    "  Print \"f\"\nEnd Try",
    "Try\n  Raise New RuntimeException(\"r\", 3)\nCatch e As RuntimeException\n  Print "
    "Str(e.ErrorNumber)\nEnd Try",
    "Select Case 3\nCase 1, 2\n  Print \"low\"\nCase 3 To 5\n  Print \"mid\"\nCase Is > 7\n  Print "
    "\"high\"\nCase Else\n"
    "  Print \"other\"\nEnd Select",
    "Do\n  Exit\nLoop",
    "If True Then\n  Dim n As Integer\n  While n < 5\n    n = n + 1\n    If n = 3 Then Exit While\n  "
    "Wend\nEnd If",
    "For Each s As String In Split(\"a,b,c\", \",\")\n  Print Uppercase(s)\nNext",
    "If True Then\n  Dim a() As Integer = Array(3, 1, 2)\n  a.Sort\n  a.Shuffle\n  ReDim a(5)\n  Print "
    "Str(a.Ubound)\nEnd If",
    "If True Then\n  Dim m(2, 3) As Double\n  m(1, 2) = 0.5\n  Print Str(m(1, 2)) + Str(m.Ubound(2))\nEnd If",
    "If True Then\n  Dim s As String = \"Straße\"\n  Print Mid(s, 2, 3) + Left(s, 1) + Str(InStr(s, \"E\"))\n"
    "  s = ReplaceAll(s, \"S\", s) + Trim(s)\nEnd If",
    "Print Format(1234.5, \"#,##0.00\") + Str(Val(\"12abc\")) + Hex(255)",
    "CurrentRow = 1",
    "Translatedtext = DefaultText + Translatedtext",
    "Print Str(LastRow - FirstRow)",
};
// Each stands for itself outside of everything else; # is a number that makes its names its own.
const StringView Declarations[] = {
    "Function F#(a As Integer, b As Integer = 2) As Integer\n  If a > 3 Then Return b\n  Return F#(a + 1, b "
    "* 2)\n"
    "End Function\nPrint Str(F#(1))",
    "Sub S#(ByRef a As Integer, ByRef s As String)\n  a = a + 1\n  s = s + \"!\"\nEnd Sub\nDim n#(3) As "
    "Integer, t# As String\n"
    "S#(n#(1), t#)\nPrint t# + Str(n#(1))",
    "Class C#\n  Property Number As Integer = 3\n  Property Other As C#\n  Sub Constructor(n As Integer)\n   "
    " Number = n\n"
    "  End Sub\n  Function Twice() As Integer\n    Return Number * 2\n  End Function\n  Sub Destructor()\n"
    "    Print Str(Number)\n  End Sub\nEnd Class\nDim c1# As New C#(4), c2# As New C#(5)\nc1#.Other = "
    "c2#\nc2#.Other = c1#\n"
    "Print Str(c1#.Other.Twice)\nc2# = Nil",
    "Class B#\n  Function Name() As String\n    Return \"b\"\n  End Function\nEnd Class\nClass H# Inherits "
    "B#\n"
    "  Function Name() As String\n    Return \"h\" + Super.Name\n  End Function\nEnd Class\nDim b1# As B# = "
    "New H#\n"
    "Print b1#.Name\nPrint Str(b1# IsA H#)",
    "Interface I#\n  Function Size() As Integer\nEnd Interface\nClass J# Implements I#\n  Function Size() As "
    "Integer\n"
    "    Return 9\n  End Function\nEnd Class\nDim i1# As I# = New J#\nPrint Str(i1#.Size)",
    "Delegate Function D#(x As Integer) As Integer\nClass W#\n  Function Add(x As Integer) As Integer\n    "
    "Return x + 1\n"
    "  End Function\nEnd Class\nDim w1# As New W#\nDim d1# As D# = WeakAddressOf w1#.Add, d2# As D# = "
    "AddressOf w1#.Add\n"
    "Print Str(d1#.Invoke(1) + d2#.Invoke(2))\nd2# = Nil\nw1# = Nil\nTry\n  Print Str(d1#.Invoke(3))\n"
    "Catch e As NilObjectException\n  Print \"gone\"\nEnd Try",
    "Structure P#\n  x As Integer\n  y(2) As Double\nEnd Structure\nDim p1# As P#, p2# As P#\np1#.x = "
    "3\np1#.y(1) = 0.5\n"
    "p2# = p1#\np1#.x = 4\nPrint Str(p2#.x) + Str(p2#.y(1))",
    "Enum E#\n  One\n  Two = 5\n  Three\nEnd Enum\nPrint Str(Integer(E#.Three))",
    "Module M#\n  Const k = 3\n  Property n As Integer = 2\n  Function G() As Integer\n    n = n + k\n    "
    "Return n\n"
    "  End Function\nEnd Module\nPrint Str(M#.G)",
    "Class V#\n  Event Fired(n As Integer)\n  Sub Fire()\n    RaiseEvent Fired(2)\n  End Sub\nEnd "
    "Class\nClass L#\n"
    "  Sub Hear(sender As V#, n As Integer)\n    Print Str(n)\n  End Sub\nEnd Class\nDim v1# As New V#\nDim "
    "l1# As New L#\n"
    "AddHandler v1#.Fired, WeakAddressOf l1#.Hear\nv1#.Fire\nl1# = Nil\nv1#.Fire",
    "Class O#\n  Property v As Integer\n  Function Operator_Add(o As Integer) As O#\n    v = v + o\n    "
    "Return Self\n"
    "  End Function\n  Function Operator_Compare(o As Integer) As Integer\n    Return v - o\n  End "
    "Function\nEnd Class\n"
    "Dim o1# As New O#\no1# = o1# + 4\nPrint Str(3 < o1#) + Str(o1# = 4)",
    "Const k# = 2\n#If TargetLinux\n  Print Str(k#)\n#Else\n  Print \"x\"\n#EndIf",
    "Goto G#\nPrint \"skipped\"\nG#:\nPrint \"there\"",
};

bool IsWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.';
}

class Mutator {
  public:
    Mutator(StringView script, uint32_t seed) : mRandom(seed), mLines(Split(script, "\n")) {}

    String Mutate() {
        MutateOnce();
        return Join(mLines, "\n");
    }

  private:
    size_t Below(size_t limit) { return limit == 0 ? 0 : mRandom() % limit; }
    template <size_t N>
    StringView Pick(const StringView (&list)[N]) {
        return list[Below(N)];
    }

    void MutateOnce() {
        switch (Below(12)) {
            case 0:
            case 1:
            case 2:
                return Insert(Pick(Statements));
            case 3:
            case 4:
            case 5:
                return Insert(ReplaceAll(Pick(Declarations), "#", std::to_string(mRandom() % 1000000)));
            case 6:
            case 7:
            case 8:
                return ChangeToken();
            case 9:
            case 10:
                return Below(3) == 0 ? ChangeName() : Below(3) == 0 ? MoveLine() : ChangeToken();
            default:
                return DropPart();
        }
    }

    // Lines where nothing is open: what stands for itself fits there.
    std::vector<size_t> Places() const {
        std::vector<size_t> places = {0};
        int open = 0;
        for (size_t at = 0; at < mLines.size(); ++at) {
            const String line = Trim(mLines[at]);
            const String first = NthField(line, " ", 1), second = NthField(line, " ", 2);
            const auto is = [](StringView word, std::initializer_list<StringView> words) {
                return std::any_of(words.begin(), words.end(),
                                   [&](StringView one) { return Equal(one, word); });
            };
            if (is(first, {"Class", "Module", "Interface", "Structure", "Enum", "Sub", "Function", "Select",
                           "Try", "For", "While", "Do"}) ||
                (is(first, {"If"}) && line.ends_with("Then")) ||
                is(second, {"Sub", "Function", "Class", "Module", "Interface", "Structure", "Enum"}))
                ++open;
            if (is(first, {"Next", "Wend", "Loop"})) --open;
            if (is(first, {"End"}))
                open -= is(second, {"Sub", "Function", "Class", "Module", "Interface", "Structure", "Enum"})
                            ? 2
                            : 1;
            if (open <= 0) places.push_back(at + 1);
        }
        return places;
    }

    void Insert(StringView part) {
        const std::vector<size_t> places = Places();
        const std::vector<String> lines = Split(part, "\n");
        mLines.insert(mLines.begin() + static_cast<ptrdiff_t>(places[Below(places.size())]), lines.begin(),
                      lines.end());
    }

    // A number, a text or an operator becomes another one.
    void ChangeToken() {
        String& line = mLines[Below(mLines.size())];
        std::vector<std::pair<size_t, size_t>> tokens;
        for (size_t at = 0; at < line.size();) {
            size_t end = at + 1;
            if (line[at] == '"')
                end = std::min(line.find('"', at + 1), line.size() - 1) + 1;
            else if (IsWord(line[at]))
                while (end < line.size() && IsWord(line[end]))
                    ++end;
            else if (line[at] == '<' && end < line.size() && (line[end] == '>' || line[end] == '='))
                ++end;
            if (!Other(StringView(line).substr(at, end - at)).empty()) tokens.emplace_back(at, end - at);
            at = end;
        }
        if (tokens.empty()) return;
        const auto [at, size] = tokens[Below(tokens.size())];
        line.replace(at, size, Other(StringView(line).substr(at, size)));
    }

    StringView Other(StringView token) {
        if (std::isdigit(static_cast<unsigned char>(token[0]))) return Pick(Numbers);
        if (token[0] == '"') return Pick(Texts);
        if (std::find(std::begin(Arithmetic), std::end(Arithmetic), token) != std::end(Arithmetic))
            return Pick(Arithmetic);
        if (token != "=" &&
            std::find(std::begin(Comparisons), std::end(Comparisons), token) != std::end(Comparisons))
            return Pick(Comparisons);
        return {};
    }

    void ChangeName() {
        String &line = mLines[Below(mLines.size())], &other = mLines[Below(mLines.size())];
        const auto [at, size] = Word(line);
        const auto [from, length] = Word(other);
        const String word = other.substr(from, length);
        if (size > 0 && length > 0) line.replace(at, size, word);
    }

    std::pair<size_t, size_t> Word(const String& line) {
        size_t at = Below(line.size());
        while (at > 0 && at < line.size() && IsWord(line[at - 1]))
            --at;
        size_t end = at;
        while (end < line.size() && IsWord(line[end]))
            ++end;
        return {at, end - at};
    }

    void MoveLine() {
        const String line = mLines[Below(mLines.size())];
        const std::vector<size_t> places = Places();
        mLines.insert(mLines.begin() + static_cast<ptrdiff_t>(places[Below(places.size())]), line);
    }

    void DropPart() {
        const std::vector<size_t> places = Places();
        const size_t first = Below(places.size());
        const size_t last = std::min(first + 1 + Below(4), places.size() - 1);
        mLines.erase(mLines.begin() + static_cast<ptrdiff_t>(places[first]),
                     mLines.begin() + static_cast<ptrdiff_t>(places[last]));
        if (mLines.empty()) mLines.emplace_back();
    }

    std::mt19937 mRandom;
    std::vector<String> mLines;
};

}  // namespace

}  // namespace sorbel::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t mostSize, unsigned seed) {
    using namespace sorbel::fuzz;
    if (LLVMFuzzerMutate && seed % 32 == 0) return LLVMFuzzerMutate(data, size, mostSize);
    const sorbel::String script = Mutator({reinterpret_cast<const char*>(data), size}, seed).Mutate();
    if (script.size() > mostSize) return size;
    std::memcpy(data, script.data(), script.size());
    return script.size();
}
