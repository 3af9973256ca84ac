#include "exchange/Output.h"

#include <cstdlib>
#include <filesystem>

#include "exchange/ExchangeError.h"
#include "platform/FileDescriptor.h"

namespace sorbel {

namespace {

void WriteAll(int descriptor, StringView bytes) {
    while (!bytes.empty()) {
        const ssize_t count = Uninterrupted([&] { return write(descriptor, bytes.data(), bytes.size()); });
        if (count < 0) ThrowSystemError(errno);
        bytes.remove_prefix(static_cast<size_t>(count));
    }
}

/// The mode that the file has, or that a new one gets.
mode_t ModeOf(const String& path) {
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) ThrowSystemError(EISDIR);
        if (!S_ISREG(status.st_mode)) throw IOException("Not a regular file");
        if (access(path.c_str(), W_OK) != 0) ThrowSystemError(errno);
        return status.st_mode & 07777;
    }
    if (errno != ENOENT) ThrowSystemError(errno);
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// A file that is removed again unless it takes the place of the one that it is for.
class UnfinishedFile {
  public:
    explicit UnfinishedFile(const String& path) : mMode(ModeOf(path)), mTarget(Resolved(path)) {
        mName = mTarget + ".XXXXXX";
        mDescriptor = mkostemp(mName.data(), O_CLOEXEC);
        if (mDescriptor < 0) ThrowSystemError(errno);
    }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    ~UnfinishedFile() {
        if (mDescriptor >= 0) close(mDescriptor);
        if (!mName.empty()) unlink(mName.c_str());
    }

    void Write(StringView bytes) const { WriteAll(mDescriptor, bytes); }
    void Finish() {
        if (fchmod(mDescriptor, mMode) != 0) ThrowSystemError(errno);
        if (fsync(mDescriptor) != 0 && errno != EINVAL && errno != EROFS) ThrowSystemError(errno);
        if (close(std::exchange(mDescriptor, -1)) != 0 && errno != EINTR) ThrowSystemError(errno);
        if (rename(mName.c_str(), mTarget.c_str()) != 0) ThrowSystemError(errno);
        mName.clear();
    }

  private:
    static String Resolved(const String& path) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::canonical(path, error);
        return error ? path : target.native();
    }

    mode_t mMode;
    String mTarget, mName;
    int mDescriptor = -1;
};

}  // namespace

void Output::Flush() {
    mReceiver(mText);
    mText.clear();
}

void Print(StringView text) {
    try {
        WriteAll(STDOUT_FILENO, text);
    } catch (const IOException& failure) {
        throw ExchangeError("standard output", failure.Message());
    }
}

void Tell(StringView text) {
    try {
        WriteAll(STDERR_FILENO, text);
    } catch (const IOException&) {
    }
}

void WriteOutput(const String& path, const std::function<void(Output&)>& write) {
    if (path == "-") {
        Output output([](StringView piece) { WriteAll(STDOUT_FILENO, piece); });
        write(output);
        return output.Flush();
    }
    UnfinishedFile file(path);
    Output output([&file](StringView piece) { file.Write(piece); });
    write(output);
    output.Flush();
    file.Finish();
}

}  // namespace sorbel
