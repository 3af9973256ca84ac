#include "platform/FileSizeSignal.h"

#include <csignal>

namespace sorbel {

// A function that does nothing: that a signal is ignored would be inherited by every program started.
void SurviveFileSizeLimit() {
    struct sigaction action = {};
    action.sa_handler = [](int) {
    };
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
}

}  // namespace sorbel
