#include <iostream>

#include "headless/Arguments.h"
#include "headless/Session.h"
#include "platform/Date.h"
#include "platform/SpecialFolder.h"

using namespace sorbel;
using namespace sorbel::headless;

namespace {

void SetUp(const Arguments& arguments, HeadlessClock& clock) {
    if (arguments.Now) clock.StopAt(*arguments.Now);
    Clock::Install(&clock);
    if (!arguments.Locale.empty()) Date::SetLocale(arguments.Locale);
    if (!arguments.Documents.empty()) SpecialFolder::SetDocuments(arguments.Documents);
    SpecialFolder::SetResources(arguments.Resources.empty() ? DefaultResources() : arguments.Resources);
}

}  // namespace

int main(int count, char** words) {
    const std::optional<Arguments> arguments = ParseArguments({words + 1, words + count});
    if (!arguments) {
        std::cerr << Usage;
        return 2;
    }
    std::ios::sync_with_stdio(false);
    HeadlessClock clock(Clock::Current());
    SetUp(*arguments, clock);
    Session session(clock);
    for (String line; std::getline(std::cin, line);)
        std::cout << session.Answer(line) << std::endl;
    return 0;
}
