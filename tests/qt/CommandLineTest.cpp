#include "qt/CommandLine.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace sorbel {
namespace {

/// The paths of what a command line names, "none" for nothing, after the toolkit took so many words away.
String FilesOf(std::vector<const char*> words, int taken = 0) {
    words.insert(words.begin(), "sorbel");
    CommandLine commandLine(static_cast<int>(words.size()), const_cast<char**>(words.data()));
    char** const toolkit = commandLine.ToolkitWords();
    EXPECT_EQ(toolkit[commandLine.ToolkitCount()], nullptr);
    std::copy(toolkit + 1 + taken, toolkit + commandLine.ToolkitCount(), toolkit + 1);
    commandLine.ToolkitCount() -= taken;
    String paths;
    for (const auto& file : commandLine.Files())
        paths += file->NativePath() + " ";
    return paths.empty() ? "none" : paths;
}

std::optional<int> Answer(std::vector<const char*> words) {
    testing::internal::CaptureStdout();
    const auto status =
        CommandLine(static_cast<int>(words.size()), const_cast<char**>(words.data())).Answer("9.8");
    const String printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.empty(), !status);
    EXPECT_TRUE(printed.empty() || printed == "sorbel 9.8\n" || printed.starts_with("Usage: sorbel "));
    return status;
}

TEST(CommandLine, WordsAreFiles) {
    EXPECT_EQ(FilesOf({}), "none");
    EXPECT_EQ(FilesOf({"--"}), "none");
    EXPECT_NE(FilesOf({"/a", "--odd", "-"}).find("/--odd "), String::npos);
    EXPECT_EQ(FilesOf({"/a", "/b\xFF"}), "/a /b\xFF ");
    EXPECT_EQ(FilesOf({"file:///a%20b", "FILE:/c", "file://elsewhere/d"}).substr(0, 8), "/a b /c ");
    EXPECT_EQ(FilesOf({"/a", "--", "file:///b", "/c"}), "/a /b /c ");
}

TEST(CommandLine, TheToolkitTakesWhatIsBeforeTheDashes) {
    EXPECT_EQ(FilesOf({"-style", "fusion", "/a", "--", "/b"}, 2), "/a /b ");
    EXPECT_EQ(FilesOf({"-style", "--", "/b"}, 1), "/b ");
}

TEST(CommandLine, QuestionsAreAnswered) {
    EXPECT_EQ(Answer({"sorbel", "--version"}), 0);
    EXPECT_EQ(Answer({"sorbel", "/a", "--help"}), 0);
    EXPECT_EQ(Answer({"sorbel"}), std::nullopt);
    EXPECT_EQ(Answer({}), std::nullopt);
    EXPECT_EQ(Answer({"sorbel", "--helpful", "--", "--help", "--version"}), std::nullopt);
}

}  // namespace
}  // namespace sorbel
