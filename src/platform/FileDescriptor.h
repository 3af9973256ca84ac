#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/Exceptions.h"
#include "platform/Text.h"

namespace sorbel {

[[noreturn]] inline void ThrowSystemError(int error) {
    throw IOException(std::strerror(error));
}

/// The result of a system call, called again for as long as a signal interrupts it.
template <typename Call>
auto Uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// An open file that is closed in the end. Its failures are IOExceptions with the system's text.
class FileDescriptor {
  public:
    /// Never waits: not for the other end of a pipe, and not for a device.
    FileDescriptor(const String& path, int flags, mode_t mode = 0666) {
        if (path.find('\0') != String::npos) ThrowSystemError(EINVAL);
        constexpr int always = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
        mNumber = Uninterrupted([&] { return open(path.c_str(), flags | always, mode); });
        if (mNumber < 0) ThrowSystemError(errno);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (mNumber >= 0) close(mNumber);
    }

    [[nodiscard]] int Number() const { return mNumber; }
    [[nodiscard]] struct stat Status() const {
        struct stat status = {};
        if (fstat(mNumber, &status) != 0) ThrowSystemError(errno);
        return status;
    }
    /// Closes now, to learn of errors that come that late. Interrupted, it is closed all the same.
    void Close() {
        const int number = std::exchange(mNumber, -1);
        if (close(number) != 0 && errno != EINTR) ThrowSystemError(errno);
    }

  private:
    int mNumber = -1;
};

}  // namespace sorbel
