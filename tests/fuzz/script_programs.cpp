// Feeds the script compiler and machine random bytes, random words and programs made by a grammar. Nothing
// may crash, hang or run over; what a program does is of no interest.
//
// usage: script_programs COUNT [SEED [SECONDS]]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "scripting/compiler/KestrumScript.h"

namespace {

using sorbel::String;

class Random {
  public:
    explicit Random(uint64_t seed) : mEngine(seed) {}
    size_t Below(size_t count) { return mEngine() % count; }
    bool Chance(size_t percent) { return Below(100) < percent; }
    template <size_t N>
    String Pick(const char* const (&list)[N]) {
        return list[Below(N)];
    }

  private:
    std::mt19937_64 mEngine;
};

String RandomBytes(Random& random) {
    String text;
    for (size_t count = random.Below(200); count > 0; --count)
        text += static_cast<char>(random.Chance(80) ? 32 + random.Below(95) : random.Below(256));
    return text;
}

const char* const Words[] = {"Dim",         "a",
                             "b",           "s",
                             "x()",         "As",
                             "Integer",     "String",
                             "Double",      "Variant",
                             "Object",      "If",
                             "Then",        "Else",
                             "End If",      "End",
                             "For",         "Each",
                             "In",          "To",
                             "DownTo",      "Step",
                             "Next",        "While",
                             "Wend",        "Do",
                             "Loop",        "Until",
                             "Sub",         "Function",
                             "End Sub",     "End Function",
                             "Class",       "End Class",
                             "Property",    "Get",
                             "Set",         "End Get",
                             "Inherits",    "Implements",
                             "Interface",   "End Interface",
                             "Module",      "End Module",
                             "Structure",   "End Structure",
                             "Enum",        "End Enum",
                             "Delegate",    "AddressOf",
                             "New",         "Nil",
                             "Self",        "Me",
                             "Super",       "Try",
                             "Catch",       "Finally",
                             "End Try",     "Raise",
                             "ReDim",       "Call",
                             "Static",      "Const",
                             "Select Case", "Case",
                             "End Select",  "Exit",
                             "Continue",    "Goto",
                             "Return",      "ByRef",
                             "ParamArray",  "Optional",
                             "Assigns",     "Extends",
                             "#If",         "#Else",
                             "#EndIf",      "#Pragma",
                             "Error",       "(",
                             ")",           ",",
                             ".",           "=",
                             "<>",          "<",
                             ">=",          "+",
                             "-",           "*",
                             "/",           "\\",
                             "^",           "Mod",
                             "And",         "Or",
                             "Not",         "Is",
                             "IsA",         "1",
                             "2.5",         "\"t\"",
                             "True",        "&hFF",
                             "&cFF0000",    "Print",
                             "Str",         "Len",
                             "Mid",         "Array",
                             "Ubound",      "CType",
                             ":",           "_\n",
                             "'c",          "Shared",
                             "Private",     "Public",
                             "Protected",   "a:",
                             "Event",       "RaiseEvent",
                             "AddHandler",  "RemoveHandler",
                             "Using",       "Attributes(",
                             "Ptr",         ".Sort(AddressOf",
                             "Array(1, 2)", "Iterable"};

String RandomWords(Random& random) {
    String text;
    for (size_t count = 1 + random.Below(60); count > 0; --count)
        text += random.Pick(Words) + (random.Chance(25) ? "\n" : " ");
    return text;
}

/// Programs that mostly compile: a fixed set of declarations and random statements on them.
class Grammar {
  public:
    explicit Grammar(Random& random) : mRandom(random) {}

    String Program() {
        String text = Declarations;
        text += "Sub Work(n As Integer, ByRef r As String, ByRef k As Integer)\nIf n <= 0 Then Return\n" +
                LocalDims() + Block(3) + "End Sub\nFunction Calc(n As Integer, t As String) As Integer\n" +
                "If n <= 0 Then Return 1\nDim r As String, k As Integer\n" + LocalDims() + InFunction() +
                "Return " + Number(2) + "\nEnd Function\n";
        text +=
            "Dim n As Integer = 2\nDim r As String = \"r\"\nDim k As Integer, t As String\n" + LocalDims();
        return text + Block(4);
    }

  private:
    static constexpr const char* Declarations =
        "Interface Named\nFunction Name() As String\nEnd Interface\n"
        "Structure Sub1\nM(2) As UInt8\nEnd Structure\n"
        "Structure Pt\nX As Integer\nY As Double\nA(3) As Integer\nS(1) As Sub1\nEnd Structure\n"
        "Class Node\nImplements Named\nProperty Nxt As Node\nProperty V As Variant\nProperty T As String = "
        "\"t\"\n"
        "Property P As Pt\nProperty L() As Node\nShared Made As Integer\nSub Constructor(t As String = "
        "\"d\")\n"
        "Self.T = t\nMade = Made + 1\nEnd Sub\nSub Destructor()\nMade = Made - 1\nIf Made Mod 5 = 0 Then "
        "gKeep = Me\n"
        "End Sub\nFunction Name() As String\nReturn T + \"n\"\nEnd Function\n"
        "Function Operator_Add(o As Node) As Node\nReturn New Node(T + o.T)\nEnd Function\n"
        "Function Calc2(n As Integer, t As String) As Integer\nReturn n + Len(Self.Name)\nEnd Function\n"
        "Event Rung(n As Integer, ByRef r As String) As Integer\nEvent Ended(p As Pt)\n"
        "Function Ring(n As Integer) As Integer\nEnds\nReturn n + RaiseEvent Rung(n, T)\nEnd Function\n"
        "Sub Ends()\nRaiseEvent Ended(P)\nEnd Sub\n"
        "Function Heard(o As Node, n As Integer, ByRef r As String) As Integer\nr = r + \"h\"\nIf Len(r) > 9 "
        "Then "
        "Nxt = Nil\nReturn n\nEnd Function\n"
        "Function Operator_Subscript(n As Integer) As Node\nReturn L(n)\nEnd Function\n"
        "Sub Operator_Subscript(n As Integer, Assigns v As Node)\nL(n) = v\nEnd Sub\n"
        "Function Operator_Lookup(n As String) As String\nReturn n + T\nEnd Function\n"
        "Sub Operator_Lookup(n As String, Assigns v As String)\nT = n + v\nEnd Sub\n"
        "Function Operator_Compare(o As Node) As Integer\nIf o = Nil Then Return 1\nReturn Len(T) - "
        "Len(o.T)\nEnd "
        "Function\n"
        "Function Operator_Convert() As String\nReturn T\nEnd Function\nEnd Class\n"
        "Class Leaf Inherits Node\nFunction Name() As String\nReturn Super.Name + \"l\"\nEnd Function\nEnd "
        "Class\n"
        "Delegate Function Fn(n As Integer, t As String) As Integer\n"
        "Function Sum(ParamArray v() As Integer) As Integer\nDim s As Integer\nFor Each i As Integer In v\ns "
        "= s + i\n"
        "Next\nReturn s\nEnd Function\nDim gKeep As Node\nDim gTexts() As String, gPts() As Pt\n"
        "Module Tools\nCounted As Integer\nKept() As Node\nFunction Count(n As Integer) As Integer\nStatic c "
        "As "
        "Integer = n\nc = c + 1\nCounted = c\nReturn c\nEnd Function\nEnd Module\nUsing Tools\n"
        "Function ByText(a As String, b As String) As Integer\nStatic n As Integer\nn = n + 1\nIf n Mod 7 = "
        "0 Then "
        "gTexts.Append(a)\nIf n Mod 11 = 0 Then gTexts.Pop\nIf n Mod 29 = 0 Then Raise New "
        "RuntimeException(a)\nReturn Len(a) - Len(b) + n Mod 3 - 1\nEnd Function\n"
        "Function ByPt(a As Pt, b As Pt) As Integer\nb.A(1) = a.X\ngPts(0).X = gPts(0).X + 1\nReturn a.X - "
        "b.X\nEnd Function\n"
        "Function ByNode(a As Node, b As Node) As Integer\nIf a = Nil Or b = Nil Then Return -1\na.L = "
        "b.L\nReturn Len(a.T) - Len(b.T)\nEnd Function\n"
        "Function Late(o As Node, n As Integer, ByRef r As String) As Integer\nTry\nIf n = 2 Then Return "
        "n\nr = o.Name\nFinally\nRemoveHandler o.Rung, AddressOf Late\nEnd Try\nReturn 1\nEnd Function\n"
        "Sub Ending(o As Node, p As Pt)\np.A(0) = 4\no.P = p\nEnd Sub\n"
        "Function Drop() As Integer\ngKeep = Nil\nKept.RemoveAll\nReturn 1\nEnd Function\n";

    String InFunction() {
        mResult = true;
        const String block = Block(2);
        mResult = false;
        return block;
    }
    String LocalDims() {
        return "Dim i As Integer, j As Integer = 3, d As Double = 1.5, b As Boolean, s As String = \"abé\"\n"
               "Dim u As UInt8 = 7, q As Single, v As Variant, p As Pt, a(4) As Integer, z(2, 2) As Double\n"
               "Dim l() As String, o As New Node, x As Node, f As Fn = AddressOf Calc, w As Named, o8() As "
               "Node\n";
    }

    String Number(int depth) {
        if (depth == 0 || mRandom.Chance(30)) {
            static const char* const leaves[] = {"i",
                                                 "j",
                                                 "k",
                                                 "n",
                                                 "1",
                                                 "0",
                                                 "-7",
                                                 "u",
                                                 "100000000000",
                                                 "p.X",
                                                 "o.P.X",
                                                 "p.A(1)",
                                                 "o.P.S(1).M(2)",
                                                 "Counted"};
            return mRandom.Pick(leaves);
        }
        static const char* const operators[] = {" + ",   " - ",   " * ",  " \\ ",
                                                " Mod ", " And ", " Or ", " Xor "};
        switch (mRandom.Below(15)) {
            case 9:
                return "Count(" + Number(depth - 1) + ")";
            case 10:
                return "o.Ring(" + Number(depth - 1) + ")";
            case 11:
                return "p.A(" + Number(depth - 1) + ")";
            case 0:
                return "Len(" + Text(depth - 1) + ")";
            case 1:
                return "a(" + Number(depth - 1) + ")";
            case 2:
                return "Calc(n - 1, " + Text(depth - 1) + ")";
            case 3:
                return "f(n - 1, " + Text(depth - 1) + ")";
            case 4:
                return "InStr(" + Text(depth - 1) + ", " + Text(depth - 1) + ")";
            case 5:
                return "Sum(" + Number(depth - 1) + ", " + Number(depth - 1) + ")";
            case 6:
                return "l.Ubound";
            case 7:
                return "Integer(" + Real(depth - 1) + ")";
            case 8:
                return "a.IndexOf(" + Number(depth - 1) + ")";
            default:
                return "(" + Number(depth - 1) + mRandom.Pick(operators) + Number(depth - 1) + ")";
        }
    }
    String Real(int depth) {
        if (depth == 0 || mRandom.Chance(30)) return mRandom.Chance(50) ? "d" : "z(1, u Mod 3)";
        static const char* const operators[] = {" + ", " - ", " * ", " / ", " Mod ", " ^ "};
        return "(" + (mRandom.Chance(50) ? Real(depth - 1) : Number(depth - 1)) + mRandom.Pick(operators) +
               Real(depth - 1) + ")";
    }
    String Text(int depth) {
        if (depth == 0 || mRandom.Chance(30)) {
            static const char* const leaves[] = {"s",   "r",      "t",     "\"x\"", "\"\"",
                                                 "o.T", "o.Name", "o.Any", "o(0).T"};
            return mRandom.Pick(leaves);
        }
        switch (mRandom.Below(9)) {
            case 0:
                return "Mid(" + Text(depth - 1) + ", " + Number(depth - 1) + ", 3)";
            case 1:
                return "Str(" + Number(depth - 1) + ")";
            case 2:
                return "Str(" + Real(depth - 1) + ")";
            case 3:
                return "Replace(" + Text(depth - 1) + ", " + Text(depth - 1) + ", s)";
            case 4:
                return "NthField(" + Text(depth - 1) + ", \"b\", " + Number(depth - 1) + ")";
            case 5:
                return "Left(" + Text(depth - 1) + ", 5)";
            case 6:
                return "l(" + Number(depth - 1) + ")";
            default:
                return "(" + Text(depth - 1) + " + " + Text(depth - 1) + ")";
        }
    }
    String Truth(int depth) {
        static const char* const relations[] = {" = ", " <> ", " < ", " <= ", " > ", " >= "};
        if (depth == 0) return "b";
        switch (mRandom.Below(8)) {
            case 0:
                return Text(depth - 1) + mRandom.Pick(relations) + Text(depth - 1);
            case 1:
                return "(" + Truth(depth - 1) + (mRandom.Chance(50) ? " And " : " Or ") + Truth(depth - 1) +
                       ")";
            case 2:
                return "Not (" + Truth(depth - 1) + ")";
            case 3:
                return Real(depth - 1) + mRandom.Pick(relations) + Real(depth - 1);
            case 4:
                return "x Is Nil";
            case 5:
                return "x IsA Leaf";
            case 6:
                return "v = " + (mRandom.Chance(50) ? Number(depth - 1) : Text(depth - 1));
            default:
                return Number(depth - 1) + mRandom.Pick(relations) + Number(depth - 1);
        }
    }
    String Assignment() {
        switch (mRandom.Below(45)) {
            case 26:
                return "AddHandler o.Rung, AddressOf Late";
            case 27:
                return "AddHandler o.Rung, " + String(mRandom.Chance(50) ? "Weak" : "") + "AddressOf x.Heard";
            case 28:
                return "RemoveHandler o.Rung, AddressOf x.Heard";
            case 29:
                return "AddHandler x.Ended, AddressOf Ending";
            case 30:
                return "gTexts.Sort(AddressOf ByText)";
            case 31:
                return "gTexts.Append(" + Text(2) + ")";
            case 32:
                return "gPts.Append(p)\ngPts.Sort(AddressOf ByPt)";
            case 33:
                return "o.L.Sort(AddressOf ByNode)";
            case 34:
                return "o(" + Number(1) + ") = x";
            case 35:
                return "o.Other = " + Text(2);
            case 36:
                return "s = o";
            case 37:
                return "p.A(" + Number(1) + ") = " + Number(2);
            case 38:
                return "o.P.S(1) = p.S(0)\np.S(1).M(" + Number(1) + ") = " + Number(1);
            case 39:
                return "gPts.Insert(0, o.P)\np = gPts(" + Number(1) + ")";
            case 40:
                return "Kept.Append(o)\ngKeep = New Node(s)\nf = WeakAddressOf gKeep.Calc2";
            case 41:
                return "i = f(Drop(), s)";
            case 42:
                return "l.SortWith(l, gTexts)";
            case 44:
                return String(mRandom.Chance(50) ? "l" : mRandom.Chance(50) ? "a" : "o.L") + " = Nil";
            case 43:
                return "ReDim p.A(" + Number(1) + ")";
            case 0:
                return "i = " + Number(3);
            case 1:
                return "s = " + Text(3);
            case 2:
                return "s = s + " + Text(2);
            case 3:
                return "d = " + Real(3);
            case 4:
                return "b = " + Truth(3);
            case 5:
                return "a(" + Number(2) + ") = " + Number(2);
            case 6:
                return "z(" + Number(1) + ", 1) = " + Real(2);
            case 7:
                return "l.Append(" + Text(2) + ")";
            case 8:
                return "x = " + String(mRandom.Chance(50) ? "o" : mRandom.Chance(50) ? "New Leaf(s)" : "Nil");
            case 9:
                return "o.Nxt = x";
            case 10:
                return "o.L.Append(o)";
            case 11:
                return "v = " + (mRandom.Chance(50) ? Number(2) : Text(2));
            case 12:
                return "v = x";
            case 13:
                return "Work(n - 1, s, i)";
            case 14:
                return "Work(n - 1, l(" + Number(1) + "), a(" + Number(1) + "))";
            case 15:
                return "ReDim a(" + Number(1) + " Mod 9)";
            case 16:
                return "p.X = " + Number(2);
            case 17:
                return "o.P = p";
            case 18:
                return "w = o";
            case 19:
                return "s = w.Name";
            case 20:
                return "f = " + String(mRandom.Chance(60) ? "AddressOf Calc" : "Nil");
            case 21:
                return "l.Sort";
            case 22:
                return "o = o + o";
            case 23:
                return "a.Remove(" + Number(1) + ")";
            case 24:
                return "o8.Append(x)";
            default:
                return "u = " + Number(2);
        }
    }
    String Block(int depth) {
        String text;
        for (size_t count = 1 + mRandom.Below(4); count > 0; --count)
            // Most would end the program early.
            text += mRandom.Chance(70) ? "Try\n" + Statement(depth) + "\nCatch\nEnd Try\n"
                                       : Statement(depth) + "\n";
        return text;
    }
    String Statement(int depth) {
        if (depth == 0) return Assignment();
        switch (mRandom.Below(17)) {
            case 14:
                return "Try\nIf " + Truth(1) + " Then Return " + (mResult ? Number(1) : "") + "\n" +
                       Block(depth - 1) + "Finally\n" + Block(depth - 1) + "End Try";
            case 15:
                return "For i" + std::to_string(depth) + " As Integer = 1 To 3 Step " + Number(1) + "\n" +
                       Block(depth - 1) + (mRandom.Chance(50) ? "Exit" : "Continue") + " For i" +
                       std::to_string(depth) + "\nNext";
            case 16:
                return "If " + Truth(1) + " Then\nStatic k" + std::to_string(depth) + " As String = s\nk" +
                       std::to_string(depth) + " = " + Text(1) + "\nElse If b Then\n" + Block(depth - 1) +
                       "End If";
            case 0:
                return "If " + Truth(2) + " Then\n" + Block(depth - 1) + "Else\n" + Block(depth - 1) +
                       "End If";
            case 1:
                return "For i = 1 To 3\n" + Block(depth - 1) + "Next";
            case 2:
                return "For m" + std::to_string(depth) + " As UInt8 = " + Number(1) + " To 9 Step 4\n" +
                       Block(depth - 1) + (mRandom.Chance(30) ? "Exit For\n" : "") + "Next";
            case 3:
                return "Try\n" + Block(depth - 1) + "Catch e As RuntimeException\n" + Block(depth - 1) +
                       "Finally\n" + Block(depth - 1) + "End Try";
            case 4:
                return "Select Case " + Number(2) + "\nCase 1 To 3\n" + Block(depth - 1) + "Case Else\n" +
                       Block(depth - 1) + "End Select";
            case 5:
                return "For Each y" + std::to_string(depth) + " As String In l\n" + Block(depth - 1) + "Next";
            case 6:
                return "While j > 0\nj = j - 1\n" + Block(depth - 1) +
                       (mRandom.Chance(20) ? "Continue\n" : "") + "Wend";
            case 7:
                return "Try\nRaise New RuntimeException(" + Text(1) + ")\nFinally\n" + Block(depth - 1) +
                       "End Try";
            default:
                return Assignment();
        }
    }

    Random& mRandom;
    bool mResult = false;  // a Return has a value here
};

class Quiet : public sorbel::script::KestrumScript {
  public:
    bool Compiled = true;
    bool Failed = false;

  protected:
    bool Event_CompilerError(const sorbel::script::KestrumScriptLocation& location, int64_t error,
                             const Details&) override {
        Compiled = false;
        if (std::getenv("SCRIPT_SHOW"))
            std::fprintf(stderr, "error %ld line %ld\n", static_cast<long>(error),
                         static_cast<long>(location.Line));
        return false;
    }
    void Event_RuntimeError(const sorbel::script::KestrumScriptLocation&, const String&,
                            const String&) override {
        Failed = true;
    }
};

}  // namespace

int main(int argc, char** argv) {
    const long count = argc > 1 ? std::atol(argv[1]) : 1000;
    const uint64_t seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(argc > 3 ? std::atol(argv[3]) : 86400);
    long compiled = 0, failed = 0, done = 0;
    for (; done < count && std::chrono::steady_clock::now() < end; ++done) {
        Random random(seed + static_cast<uint64_t>(done));
        Quiet script;
        const size_t kind = random.Below(4);
        script.Source = kind == 0   ? RandomBytes(random)
                        : kind == 1 ? RandomWords(random)
                                    : Grammar(random).Program();
        sorbel::script::JumpLimit limit(20000);
        script.Watch = &limit;
        if (std::getenv("SCRIPT_SHOW")) std::fputs(script.Source.c_str(), stderr);
        script.Run();
        compiled += script.Compiled;
        failed += script.Failed;
    }
    std::printf("%ld programs, %ld compiled, %ld of them failed at run time\n", done, compiled, failed);
    std::fflush(stdout);
    return 0;
}
