#include <gtest/gtest.h>

#include <functional>

#include "script/RecordingScript.h"

// Scripts that are too long to be written down.
namespace sorbel::script {
namespace {

String Each(int count, const std::function<String(int)>& line) {
    String all;
    for (int i = 0; i < count; ++i)
        all += line(i) + "\n";
    return all;
}

String Numbered(StringView name, int number) {
    return String(name) + std::to_string(number);
}

TEST(ScriptLimits, RefuseWhatNoOperandHolds) {
    constexpr int many = 65537;
    const String fields = Each(many, [](int i) { return Numbered("Property p", i) + " As Integer"; });
    EXPECT_EQ(
        RecordingScript("Class C\n" + fields + "End Class\nDim o As New C\no.p65535 = 1\nPrint \"fits\"")
            .Output,
        std::vector<String>{"fits"});
    const RecordingScript beyond("Class C\n" + fields + "End Class\nDim o As New C\no.p65536 = 1");
    EXPECT_EQ(beyond.Error, 23);
    EXPECT_EQ(beyond.Line, many + 4);
}

TEST(ScriptLimits, BoundHowFarConstantsReferToEachOther) {
    const auto next = [](int i) {
        return Numbered("Const c", i) + Numbered(" = c", i + 1) + " + 1";
    };
    EXPECT_EQ(RecordingScript("Module M\n" + Each(500, next) + "Const c500 = 1\nEnd Module\nPrint Str(M.c0)")
                  .Output,
              std::vector<String>{"501"});
    EXPECT_EQ(RecordingScript("Module M\n" + Each(20000, next) + "Const c20000 = 1\nEnd Module").Error, 5);
    const auto opposite = [](int i) {
        return Numbered("Const c", i) + Numbered(" = Not c", i + 1);
    };
    const String conditions = "#If c0\nPrint \"yes\"\n#EndIf\nPrint \"end\"";
    EXPECT_EQ(RecordingScript(Each(20000, opposite) + "Const c20000 = True\n" + conditions).Error, 5);
    EXPECT_EQ(RecordingScript("Const c0 = c1\nConst c1 = c0\n" + conditions).Error, 149);
    EXPECT_EQ(RecordingScript("Const c0 = c0\n" + conditions).Error, 149);
    // Members of an enumeration count on from the ones above, however many they are.
    const String members = Each(20000, [](int i) { return Numbered("m", i); });
    EXPECT_EQ(RecordingScript("Module M\nConst last = E.m19999\nEnum E\n" + members +
                              "End Enum\nEnd Module\nPrint Str(Integer(M.last))")
                  .Output,
              std::vector<String>{"19999"});
}

TEST(ScriptLimits, BoundHowFarTypesReferToEachOther) {
    const String address = Each(20000, [](int) { return "AddressOf _"; });
    EXPECT_EQ(RecordingScript("Dim x As Variant = " + address + "y").Error, 5);
    const auto aggregating = [](int i) {
        return Numbered("Interface I", i) + Numbered("\nAggregates I", i + 1) + "\nEnd Interface";
    };
    EXPECT_EQ(
        RecordingScript(Each(100, aggregating) + "Interface I100\nEnd Interface\nPrint \"fits\"").Output,
        std::vector<String>{"fits"});
    EXPECT_EQ(RecordingScript(Each(3000, aggregating) + "Interface I3000\nEnd Interface").Error, 5);
    const auto within = [](int i) {
        return Numbered("Structure S", i) + Numbered("\na As S", i + 1) + "\nEnd Structure";
    };
    EXPECT_EQ(RecordingScript(Each(3000, within) + "Structure S3000\na As Integer\nEnd Structure").Error, 5);
}

TEST(ScriptLimits, ShareLongConstants) {
    const String used = Each(20000, [](int) { return "n = n + Len(M.c)"; });
    const RecordingScript script("Module M\nConst c = \"" + String(1000000, 'x') +
                                 "\"\nEnd Module\nDim n As Integer\n" + used + "Print Str(n)");
    EXPECT_EQ(script.Output, std::vector<String>{"20000000000"});
}

// Whatever ends its lines, a script is the same, and so are the lines that it is told of.
TEST(ScriptLines, EndInAnyWay) {
    const String text =
        "Dim s As String = \"a\"  _ ' goes on\n  + \"b\"\n\nIf s = \"ab\" Then\n  Print s\nEnd If ' and so "
        "on\n"
        "Dim a() As Integer\n#If TargetLinux\na(1) = 1\n#EndIf\n";
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const RecordingScript fails(ReplaceLineEndings(text, end));
        EXPECT_EQ(fails.Output, std::vector<String>{"ab"});
        EXPECT_EQ(fails.FailureClass, "OutOfBoundsException");
        EXPECT_EQ(fails.Line, 9);
        const RecordingScript refused(ReplaceLineEndings("x = 1 _\n + 2\n" + text, end));
        EXPECT_EQ(refused.Error, 11);
        EXPECT_EQ(refused.Line, 1);
        EXPECT_EQ(RecordingScript(ReplaceLineEndings(text + "Print \"open\nPrint s", end)).Line, 11);
    }
}

}  // namespace
}  // namespace sorbel::script
