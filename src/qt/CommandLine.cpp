#include "qt/CommandLine.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "qt/Text.h"

namespace sorbel {

namespace {

const char* const Help =
    "Usage: sorbel [FILE...]\n"
    "Translates the texts of applications.\n"
    "\n"
    "  FILE       a locale file, by its path or as a file: address\n"
    "  --         all words behind it are files\n"
    "  --help     shows this and ends\n"
    "  --version  shows the version and ends\n"
    "\n"
    "If Sorbel already runs in this session, that one opens the files. See also: man sorbel\n";

/// A full disk or a closed pipe is told by the status.
int Print(const String& text) {
    const bool isOut = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isOut ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

CommandLine::CommandLine(int count, char** words) {
    char** const end = words + count;
    char** const separator =
        std::find_if(words, end, [](const char* word) { return StringView(word) == "--"; });
    mToolkitWords.assign(words, separator);
    mToolkitCount = static_cast<int>(mToolkitWords.size());
    mToolkitWords.push_back(nullptr);
    if (separator != end) mLiteral.assign(separator + 1, end);
}

bool CommandLine::Has(StringView option) const {
    return std::any_of(mToolkitWords.begin(), mToolkitWords.begin() + mToolkitCount,
                       [&](const char* word) { return option == word; });
}

std::optional<int> CommandLine::Answer(StringView version) const {
    if (Has("--help")) return Print(Help);
    if (Has("--version")) return Print("sorbel " + String(version) + "\n");
    return std::nullopt;
}

std::vector<std::shared_ptr<FolderItem>> CommandLine::Files() const {
    std::vector<std::shared_ptr<FolderItem>> files;
    for (int index = 1; index < mToolkitCount; ++index)
        files.push_back(FileFromWord(mToolkitWords[static_cast<size_t>(index)]));
    for (const char* word : mLiteral)
        files.push_back(FileFromWord(word));
    return files;
}

}  // namespace sorbel
