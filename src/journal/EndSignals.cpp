#include "journal/EndSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include "journal/DiskFlusher.h"

namespace sorbel {

namespace {

int channel[2];  // from the handler, which may do next to nothing, to the thread

void Tell(int signal) {
    const int before = errno;
    [[maybe_unused]] const ssize_t ignored = write(channel[1], &signal, sizeof signal);
    errno = before;
}

/// The program ends by the signal, as whoever sent it expects.
[[noreturn]] void EndBy(int signal) {
    DiskFlusher::FlushAll();
    std::signal(signal, SIG_DFL);
    kill(getpid(), signal);
    for (;;)
        pause();
}

void WaitForSignal() {
    int signal = 0;
    while (read(channel[0], &signal, sizeof signal) != sizeof signal)
        if (errno != EINTR) return;
    EndBy(signal);
}

}  // namespace

void FlushBeforeEndSignals() {
    static const bool isReady = pipe2(channel, O_CLOEXEC) == 0;
    static bool isWatched = false;
    if (!isReady || isWatched) return;
    isWatched = true;
    std::thread(WaitForSignal).detach();
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        struct sigaction present = {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler == SIG_IGN) continue;  // whoever started the program wants it to go on
        struct sigaction told = {};
        told.sa_handler = Tell;
        told.sa_flags = SA_RESTART;
        sigaction(signal, &told, nullptr);
    }
}

}  // namespace sorbel
