#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "headless/Arguments.h"
#include "headless/Session.h"
#include "platform/Date.h"
#include "platform/FileSizeSignal.h"
#include "platform/SpecialFolder.h"

using namespace sorbel;
using namespace sorbel::headless;

namespace {

/// A folder of a run that was given none: empty, and gone with the run, so that nothing of the user's takes
/// part and nothing is left in the user's folders.
class PrivateFolder {
  public:
    PrivateFolder() {
        String path = (std::filesystem::temp_directory_path() / "sorbel-headless-XXXXXX").native();
        if (mkdtemp(path.data())) mPath = path;
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() {
        std::error_code ignored;
        if (!mPath.empty()) std::filesystem::remove_all(mPath, ignored);
    }
    [[nodiscard]] const String& Path() const { return mPath; }

  private:
    String mPath;
};

void SetUp(const Arguments& arguments, HeadlessClock& clock) {
    if (arguments.Now) clock.StopAt(*arguments.Now);
    Clock::Install(&clock);
    if (!arguments.Locale.empty()) Date::SetLocale(arguments.Locale);
    SpecialFolder::SetDocuments(arguments.Documents);
    SpecialFolder::SetState(arguments.State);
    SpecialFolder::SetResources(arguments.Resources.empty() ? DefaultResources() : arguments.Resources);
}

/// The status to end with if all that is asked for is a text on the standard output.
std::optional<int> AnswerWord(StringView word) {
    if (word == "--help")
        std::cout << Usage << std::flush;
    else if (word == "--version")
        std::cout << "sorbel-headless " SORBEL_VERSION << std::endl;
    else
        return std::nullopt;
    return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int count, char** words) {
    SurviveFileSizeLimit();
    if (count == 2)
        if (const std::optional<int> status = AnswerWord(words[1])) return *status;
    std::optional<Arguments> arguments = ParseArguments({words + 1, words + count});
    if (!arguments) {
        std::cerr << Usage;
        return 2;
    }
    std::ios::sync_with_stdio(false);
    std::optional<PrivateFolder> documents, state;
    if (arguments->Documents.empty()) arguments->Documents = documents.emplace().Path();
    if (arguments->State.empty()) arguments->State = state.emplace().Path();
    HeadlessClock clock(Clock::Current());
    SetUp(*arguments, clock);
    Session session(clock);
    for (String line; std::getline(std::cin, line);)
        std::cout << session.Answer(line) << std::endl;
    return 0;
}
