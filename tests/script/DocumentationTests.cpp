#include <gtest/gtest.h>

#include <optional>

#include "script/RecordingScript.h"

// Every block of code in docs/scripting.md runs and does what its comments say: `// prints text`, `// error
// number` and
// `// raises class` on the line where it happens.
namespace sorbel::script {
namespace {

struct CodeBlock {
    size_t Line = 0;
    String Text;
};

/// Lines that begin with four blanks, with the empty lines between them.
std::vector<CodeBlock> ReadBlocks(const String& page) {
    std::vector<CodeBlock> blocks;
    size_t number = 0, empty = 0;
    bool open = false;
    for (const String& line : Split(page, "\n")) {
        ++number;
        if (line.starts_with("    ")) {
            if (!open) blocks.push_back({number, ""});
            blocks.back().Text += (open ? String(empty, '\n') : "") + line.substr(4) + "\n";
            open = true;
            empty = 0;
        } else {
            open &= line.empty();
            ++empty;
        }
    }
    return blocks;
}

/// What stands behind `word` in a comment, up to where the text ends.
std::optional<String> Said(const String& line, const String& word) {
    const size_t at = line.find("// " + word + " ");
    if (at == String::npos) return {};
    return line.substr(at + word.size() + 4);
}

void Check(const CodeBlock& block) {
    SCOPED_TRACE("docs/scripting.md, block at line " + std::to_string(block.Line));
    std::vector<String> output;
    String error, failure;
    size_t number = 0;
    for (const String& line : Split(block.Text, "\n")) {
        ++number;
        const String where = " in line " + std::to_string(number);
        if (const auto text = Said(line, "prints")) output.push_back(*text);
        if (const auto text = Said(line, "error")) error = *text + where;
        if (const auto text = Said(line, "raises")) failure = *text + where;
    }
    FakeHost host;
    host.Defaults = {"Open", "Close"};
    host.Translations = {"Öffnen", ""};
    const RecordingScript script(block.Text, &host);
    const String where = " in line " + std::to_string(script.Line);
    EXPECT_EQ(script.Errors ? std::to_string(script.Error) + where : "", error);
    EXPECT_EQ(script.FailureClass.empty() ? "" : script.FailureClass + where, failure) << script.Message;
    EXPECT_EQ(script.Output, output);
}

TEST(ScriptDocumentation, EveryBlockDoesWhatItSays) {
    const std::vector<CodeBlock> blocks = ReadBlocks(ReadText(String(SORBEL_DOCS) + "/scripting.md"));
    EXPECT_GT(blocks.size(), 40u);
    for (const CodeBlock& block : blocks)
        Check(block);
}

}  // namespace
}  // namespace sorbel::script
