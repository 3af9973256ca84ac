#include <gtest/gtest.h>

#include <filesystem>

#include "script/RecordingScript.h"

// Each file in cases/ is one script, or several with `// ---` between them. What must happen stands in it:
// lines of output, a compile error with its details, or a failure at run time.
namespace sorbel::script {
namespace {

struct Expected {
    std::vector<String> Output;
    String Error, Failure;
};

Expected ReadExpectations(const String& text) {
    Expected expected;
    for (const String& line : Split(text, "\n")) {
        const size_t at = line.find("// expect ");
        if (at == String::npos) continue;
        const String rest = line.substr(at + 10);
        if (rest.starts_with("output ")) expected.Output.push_back(rest.substr(7));
        if (rest == "output") expected.Output.emplace_back();
        if (rest.starts_with("error ")) expected.Error = rest.substr(6);
        if (rest.starts_with("failure ")) expected.Failure = rest.substr(8);
    }
    return expected;
}

void Check(const String& text, const String& where) {
    SCOPED_TRACE(where);
    FakeHost host;
    const Expected expected = ReadExpectations(text);
    const RecordingScript script(text, &host);
    String error = script.Errors ? std::to_string(script.Error) + " line " + std::to_string(script.Line) : "";
    if (!script.Details.empty()) error += " details " + Join(script.Details, " | ");
    const String failure =
        script.FailureClass.empty() ? "" : script.FailureClass + " line " + std::to_string(script.Line);
    EXPECT_EQ(error, expected.Error);
    EXPECT_EQ(failure, expected.Failure) << script.Message;
    EXPECT_EQ(script.Output, expected.Output);
    EXPECT_FALSE(expected.Output.empty() && expected.Error.empty() && expected.Failure.empty())
        << "a case without expectation";
}

TEST(ScriptCases, DoWhatTheySay) {
    size_t count = 0;
    for (const auto& file : std::filesystem::directory_iterator(SORBEL_SCRIPT_CASES)) {
        size_t part = 0;
        for (const String& one : Split(ReadText(file.path().string()), "// ---\n"))
            Check(one, file.path().filename().string() + " part " + std::to_string(++part)), ++count;
    }
    EXPECT_GT(count, 5u);
}

}  // namespace
}  // namespace sorbel::script
