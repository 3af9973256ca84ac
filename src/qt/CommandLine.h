#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

/// What the program was started with: files, before which the toolkit finds options of its own.
class CommandLine {
  public:
    /// As `main` gets them; the words must outlive this.
    CommandLine(int count, char** words);

    /// Answers `--help` and `--version` on the standard output. The status to end with; nothing if neither
    /// was asked for.
    [[nodiscard]] std::optional<int> Answer(StringView version) const;

    // --- For the toolkit, which takes out what is its own; nothing behind `--` is ---
    [[nodiscard]] int& ToolkitCount() { return mToolkitCount; }
    [[nodiscard]] char** ToolkitWords() { return mToolkitWords.data(); }

    /// All other words, as paths or `file:` addresses. By their bytes, since a name need not be text.
    [[nodiscard]] std::vector<std::shared_ptr<FolderItem>> Files() const;

  private:
    [[nodiscard]] bool Has(StringView option) const;

    std::vector<char*> mToolkitWords;  ///< the program's name first, a null last
    int mToolkitCount;
    std::vector<char*> mLiteral;  ///< behind `--`
};

}  // namespace sorbel
