#include <gtest/gtest.h>

#include "script/RecordingScript.h"
#include "scripting/Samples.h"

namespace sorbel::script {
namespace {

TEST(ScriptSamples, ReverseTheSelectedTranslation) {
    FakeHost host;
    host.Defaults = {"Open", "Save"};
    host.Translations = {"Öffnen", "Sichern"};
    host.Row = 1;
    host.Answer = "Maybe";
    EXPECT_EQ(RecordingScript(String(Scripting::Sample), &host).Errors, 0);
    EXPECT_EQ(host.Translations[0], "Öffnen");  // the answer was not "Yes"
    class Agreeing : public FakeHost {
      public:
        HostValue Call(size_t index, std::span<const HostValue> arguments) override {
            return index == 8 ? HostValue(String("Yes")) : FakeHost::Call(index, arguments);
        }
    } agreeing;
    static_cast<FakeHost&>(agreeing) = host;
    EXPECT_EQ(RecordingScript(String(Scripting::Sample), &agreeing).FailureClass, "");
    EXPECT_EQ(agreeing.Translations[0], "Open: nenffÖ");
    EXPECT_EQ(agreeing.Translations[1], "Sichern");
}

TEST(ScriptSamples, ReverseAllTranslationsAndRestoreTheRow) {
    FakeHost host;
    host.Defaults = {"a", "b", "c"};
    host.Translations = {"xyz", "", "日本"};
    host.Row = 2;
    EXPECT_EQ(RecordingScript(String(Scripting::LoopSample), &host).Errors, 0);
    EXPECT_EQ(host.Translations, (std::vector<String>{"a: zyx", "b: ", "c: 本日"}));
    EXPECT_EQ(host.Row, 2);
    FakeHost empty;
    EXPECT_EQ(RecordingScript(String(Scripting::LoopSample), &empty).FailureClass, "");
}

TEST(ScriptHostCalls, ChooseOverloadsAndReachNothingElse) {
    FakeHost host;
    host.Answer = "n";
    const RecordingScript calls(
        "Beep\nPrint ShowDialog(\"a\", \"b\", \"c\", \"d\")\ncurrentrow = 2.9\nBEEP()", &host);
    EXPECT_EQ(calls.Output, std::vector<String>{"n4"});
    EXPECT_EQ(host.Beeps, 2);
    EXPECT_EQ(host.Row, 2);
    EXPECT_EQ(RecordingScript("Print ShowDialog(\"a\")", &host).Error, 7);
    EXPECT_EQ(RecordingScript("Dim b As Integer = Beep", &host).Error, 67);
    EXPECT_EQ(RecordingScript("LastRow = 3", &host).Error, 70);
    EXPECT_EQ(RecordingScript("Beep").Error, 11);
    // What was done before a failure stays.
    EXPECT_EQ(RecordingScript("CurrentRow = 1\nFail", &host).FailureClass, "IOException");
    EXPECT_EQ(host.Row, 1);
    const RecordingScript caught("Try\nFail\nCatch e As IOException\nPrint e.Message\nEnd Try", &host);
    EXPECT_EQ(caught.Output, std::vector<String>{"no such file"});
}

TEST(ScriptCompiler, ReportsOnceAndRunsNothing) {
    const RecordingScript script("Print \"x\"\nfoo = 1\nbar = 2\n");
    EXPECT_EQ(script.Errors, 1);
    EXPECT_EQ(script.Line, 2);
    EXPECT_TRUE(script.Output.empty());
    // The first error in the text, whichever body it is in.
    EXPECT_EQ(RecordingScript("Sub A()\nx = 1\nEnd Sub\ny = 2").Line, 2);
    EXPECT_EQ(RecordingScript("x = 1\nConst C = y").Line, 1);
    EXPECT_EQ(RecordingScript("Print Str(C)\nConst C = D\nConst D = C").Error, 149);
    EXPECT_EQ(RecordingScript("#Pragma Warning \"old\"\n").Warnings, std::vector<int64_t>{1});
}

TEST(ScriptCompiler, BoundsNesting) {
    const auto repeated = [](const String& text, int count) {
        String all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    for (const char* text : {"(", "-", "Not ", "If x Then ", "Str("})
        EXPECT_EQ(RecordingScript("Dim x As Boolean\nx = " + repeated(text, 100000)).Error,
                  *text == 'I' ? 1 : 5);
    EXPECT_EQ(RecordingScript(repeated("If True Then\n", 100000)).Error, 5);
    EXPECT_EQ(RecordingScript("Dim x As Integer = 1" + repeated(" + 1", 100000)).Error, 5);
    EXPECT_EQ(RecordingScript("Dim a As Object = x" + repeated(".y", 100000)).Error, 5);
    EXPECT_EQ(RecordingScript("Dim x As Integer = 0" + repeated(" + x", 900)).Error, 11);
    // Long is not deep, and jumps over much code still arrive.
    const RecordingScript lines("Dim x As Integer\nFor i As Integer = 1 To 2\nIf i = 3 Then\n" +
                                repeated("x = x + i * 2\n", 20000) + "End If\nNext\nPrint Str(x)");
    EXPECT_EQ(lines.Output, std::vector<String>{"0"});
}

TEST(ScriptMachine, IsStoppedFromOutside) {
    const auto line = [](const char* source, int64_t jumps) {
        const RecordingScript script(source, nullptr, jumps);
        EXPECT_EQ(script.FailureClass, "") << source;
        EXPECT_EQ(script.Message, "The script was stopped.") << source;
        EXPECT_EQ(script.Output, std::vector<String>()) << source;  // no Catch, Finally or destructor has run
        return script.Line;
    };
    EXPECT_EQ(line("Do\nLoop", 1000), 1);
    EXPECT_EQ(line("Dim i As Integer\nWhile True\ni = i + 1\nWend", 3), 3);
    EXPECT_EQ(line("here:\nDim i As Integer\nGoto here", 3), 2);
    EXPECT_EQ(line("Sub F()\nF\nEnd Sub\nF", 50), 2);
    EXPECT_EQ(line("Try\nDo\nLoop\nCatch e\nPrint \"caught\"\nFinally\nPrint \"last\"\nEnd Try", 9), 2);
    EXPECT_EQ(
        line("Class C\nSub Destructor()\nPrint \"gone\"\nEnd Sub\nEnd Class\nDim x As New C\nDo\nLoop", 9),
        7);
    // Also where the library or the end of an object calls the script back.
    EXPECT_EQ(line("Function F(a As Integer, b As Integer) As Integer\nReturn a - b\nEnd Function\n"
                   "Dim a() As Integer = Array(3, 2, 1)\na.Sort(AddressOf F)\nPrint \"sorted\"",
                   2),
              2);
    EXPECT_EQ(line("Class C\nSub Destructor()\nDim x As New C\nEnd Sub\nEnd Class\nDim x As New C\nx = "
                   "Nil\nPrint \"end\"",
                   60),
              3);
    // Jumps forward do not count.
    EXPECT_EQ(RecordingScript("For i As Integer = 1 To 5\nIf i > 2 Then\nElse\nEnd If\nNext\nPrint \"end\"",
                              nullptr, 5)
                  .Output,
              std::vector<String>{"end"});
}

TEST(ScriptMachine, EndsWhatHoldsTooMuch) {
    EXPECT_EQ(RecordingScript("Dim a(2000000000) As Integer").FailureClass, "OutOfMemoryException");
    EXPECT_EQ(RecordingScript("Dim a(100000, 100000, 100000) As Integer").FailureClass,
              "OutOfMemoryException");
    EXPECT_EQ(RecordingScript("Dim a() As String, t As String = Repeat(\"x\", "
                              "10000)\nTry\nDo\na.Append(Repeat(t, 1000))\nLoop\nCatch e\nEnd Try")
                  .FailureClass,
              "OutOfMemoryException");
    // A list of a million links goes without a call for each.
    const char* const chain =
        "Class N\nProperty Nxt As N\nEnd Class\nDim first As N\nFor i As Integer = 1 To 1000000\n"
        "Dim n As New N\nn.Nxt = first\nfirst = n\nNext\nfirst = Nil\nPrint \"gone\"";
    EXPECT_EQ(RecordingScript(chain).Output, std::vector<String>{"gone"});
}

}  // namespace
}  // namespace sorbel::script
