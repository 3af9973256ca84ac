// Nanoseconds for each operation of five small programs, and for compiling and starting twenty lines.
//
// usage: script_bench [PROGRAM]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "scripting/compiler/KestrumScript.h"

namespace {

using sorbel::String;

class Script : public sorbel::script::KestrumScript {
  public:
    String Output;

  protected:
    bool Event_CompilerError(const sorbel::script::KestrumScriptLocation& location, int64_t error,
                             const Details&) override {
        std::printf("error %ld line %ld\n", static_cast<long>(error), static_cast<long>(location.Line));
        return false;
    }
    void Event_RuntimeError(const sorbel::script::KestrumScriptLocation&, const String& className,
                            const String&) override {
        Output = className;
    }
    void Event_Print(const String& text) override { Output = text; }
};

struct Program {
    const char* Name;
    double Operations;
    const char* Expected;
    const char* Source;
};

const Program programs[] = {
    {"loop", 1e8, "5000000050000000",
     "Dim s As Integer\nFor i As Integer = 1 To 100000000\ns = s + i\nNext\nPrint Str(s)"},
    {"fib", 2692537, "832040",
     "Function Fib(n As Integer) As Integer\nIf n < 2 Then Return n\nReturn Fib(n - 1) + Fib(n - 2)\n"
     "End Function\nPrint Str(Fib(30))"},
    {"sieve", 1e6, "78498",
     "Dim n As Integer = 1000000\nDim a(1000000) As Boolean\nDim c As Integer\nFor i As Integer = 2 To n\n"
     "a(i) = True\nNext\nFor i As Integer = 2 To n\nIf a(i) Then\nc = c + 1\n"
     "For j As Integer = i * i To n Step i\na(j) = False\nNext\nEnd If\nNext\nPrint Str(c)"},
    {"reverse", 4e5, "20000",
     "Dim s As String = Repeat(\"abcdefghij\", 2000)\nDim r As String\nFor k As Integer = 1 To 20\nr = \"\"\n"
     "For i As Integer = Len(s) DownTo 1\nr = r + Mid(s, i, 1)\nNext\nNext\nPrint Str(Len(r))"},
    {"strings", 1e6, "45739",
     "Dim a(1000000) As String\nDim c As Integer\nFor i As Integer = 1 To 1000000\na(i) = \"item\" + Str(i) "
     "+ \"x\"\n"
     "Next\nFor i As Integer = 1 To 1000000\nIf InStr(a(i), \"99\") > 0 Then c = c + 1\nNext\nPrint Str(c)"},
    {"float", 1e7, "0.7853981",
     "Dim s As Double\nFor i As Integer = 0 To 9999999\ns = s + (1 - 2 * (i Mod 2)) / (2 * i + 1)\nNext\n"
     "Print Left(Str(s), 9)"},
    {"method", 1e7, "10000000",
     "Class C\nV As Integer\nSub Add(n As Integer)\nV = V + n\nEnd Sub\nEnd Class\nDim o As New C\n"
     "For i As Integer = 1 To 10000000\no.Add(1)\nNext\nPrint Str(o.V)"},
    {"start", 1, "xx9y", nullptr},
};

String TwentyLines() {
    String text = "Function Twice(s As String) As String\nReturn s + s\nEnd Function\nDim a(10) As String\n";
    for (int i = 1; i < 10; ++i) {
        const String n = std::to_string(i);
        text += "a(" + n + ") = Twice(\"x\") + Str(" + n + ")\nIf Len(a(" + n + ")) > 2 Then a(" + n +
                ") = a(" + n + ") + \"y\"\n";
    }
    return text + "Print a(9)\n";
}

}  // namespace

int main(int argc, char** argv) {
    for (const Program& program : programs) {
        if (argc > 1 && String(argv[1]) != program.Name) continue;
        std::vector<double> times;
        Script script;
        script.Source = program.Source ? program.Source : TwentyLines();
        for (int round = 0; round < 7; ++round) {
            const auto start = std::chrono::steady_clock::now();
            script.Run();
            times.push_back(
                std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
        }
        std::nth_element(times.begin(), times.begin() + 3, times.end());
        const bool right = script.Output == program.Expected;
        std::printf("%-8s %12.2f ns  %s\n", program.Name, times[3] / program.Operations,
                    right ? "" : ("WRONG: " + script.Output).c_str());
        if (!right) return 1;
    }
    return 0;
}
