#include "platform/FileContents.h"

#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <new>

#include "platform/FileDescriptor.h"
#include "platform/LargePages.h"

namespace sorbel {

namespace {

/// Pipes and devices have no contents that could be read whole or replaced, and may keep a reader waiting.
void RequireRegular(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) ThrowSystemError(EISDIR);
    if (!S_ISREG(status.st_mode)) throw IOException("Not a regular file");
}

/// Whether the path leads to a file, asked without opening it, since devices act on being opened.
bool LeadsToFile(const String& path) {
    struct stat status = {};
    if (path.find('\0') != String::npos) ThrowSystemError(EINVAL);
    if (stat(path.c_str(), &status) == 0) return RequireRegular(status), true;
    if (errno != ENOENT) ThrowSystemError(errno);
    return false;
}

/// Asked again of what was opened: it may have taken the place of a file meanwhile.
struct stat RegularStatus(const FileDescriptor& file) {
    const struct stat status = file.Status();
    RequireRegular(status);
    return status;
}

/// Reads until the buffer is full or the file ends; the number of bytes that the buffer then holds.
size_t Fill(const FileDescriptor& file, ByteBuffer& buffer, size_t filled) {
    while (filled < buffer.View().size()) {
        const ssize_t count = Uninterrupted(
            [&] { return read(file.Number(), buffer.Data() + filled, buffer.View().size() - filled); });
        if (count < 0) ThrowSystemError(errno);
        if (count == 0) break;
        filled += static_cast<size_t>(count);
    }
    return filled;
}

std::shared_ptr<ByteBuffer> Doubled(const ByteBuffer& buffer) {
    const StringView bytes = buffer.View();
    auto larger = std::make_shared<ByteBuffer>(2 * bytes.size());
    std::memcpy(larger->Data(), bytes.data(), bytes.size());
    return larger;
}

/// One byte more than the size that is told, so that a file that has not grown is read without a second
/// buffer. Some of the system's files tell 0.
size_t FirstBufferSize(const struct stat& status) {
    constexpr size_t least = 4096;
    return std::max(least, static_cast<size_t>(status.st_size) + 1);
}

/// A write beyond the limit for the size of files would stop in the middle, and reserving does not see it.
void RequireWithinLimit(size_t size) {
    struct rlimit limit = {};
    if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && size > limit.rlim_cur) ThrowSystemError(EFBIG);
}

/// Takes the space for `size` bytes without a change to the file. A system that can't do so is no failure;
/// the writing will tell then.
void Reserve(const FileDescriptor& file, const struct stat& before, size_t size) {
    if (size == 0) return;
    const int result = Uninterrupted(
        [&] { return fallocate(file.Number(), FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)); });
    const int error = errno;
    if (result == 0 || (error != ENOSPC && error != EFBIG && error != EDQUOT)) return;
    // What was taken before the space ran out goes back. Should that fail, it is still the full disk that
    // counts.
    [[maybe_unused]] const int ignored = ftruncate(file.Number(), before.st_size);
    ThrowSystemError(error);
}

void WriteAll(const FileDescriptor& file, StringView bytes) {
    for (size_t written = 0; written < bytes.size();) {
        const ssize_t count = Uninterrupted([&] {
            return pwrite(file.Number(), bytes.data() + written, bytes.size() - written,
                          static_cast<off_t>(written));
        });
        if (count < 0) ThrowSystemError(errno);
        written += static_cast<size_t>(count);
    }
}

void CutAndFlush(const FileDescriptor& file, size_t size) {
    const auto cut = [&] {
        return ftruncate(file.Number(), static_cast<off_t>(size));
    };
    // What need not be done cannot fail.
    if (file.Status().st_size != static_cast<off_t>(size) && Uninterrupted(cut) != 0) ThrowSystemError(errno);
    const bool flushed = Uninterrupted([&] { return fsync(file.Number()); }) == 0;
    if (!flushed && errno != EINVAL && errno != EROFS) ThrowSystemError(errno);  // some systems cannot flush
}

void WriteInto(const String& path, int flags, StringView bytes) {
    FileDescriptor file(path, O_WRONLY | flags);
    const struct stat before = RegularStatus(file);
    Reserve(file, before, bytes.size());
    WriteAll(file, bytes);
    CutAndFlush(file, bytes.size());
    file.Close();
}

void Remove(const String& path) {
    std::error_code ignored;
    const std::filesystem::path file = std::filesystem::canonical(path, ignored);  // not the link to it
    if (!ignored) std::filesystem::remove(file, ignored);
}

}  // namespace

ByteBuffer::ByteBuffer(size_t size) : mData(new char[size]), mSize(size) {
    WishLargePages(mData.get(), size);
}

std::shared_ptr<const ByteBuffer> ReadContents(const FolderItem& f) try {
    if (!LeadsToFile(f.NativePath())) ThrowSystemError(ENOENT);
    const FileDescriptor file(f.NativePath(), O_RDONLY);
    auto buffer = std::make_shared<ByteBuffer>(FirstBufferSize(RegularStatus(file)));
    size_t size = Fill(file, *buffer, 0);
    while (size == buffer->View().size()) {
        buffer = Doubled(*buffer);
        size = Fill(file, *buffer, size);
    }
    buffer->Shrink(size);
    return buffer;
} catch (const std::bad_alloc&) {
    ThrowSystemError(ENOMEM);
}

void WriteContents(const FolderItem& f, StringView bytes) {
    const String& path = f.NativePath();
    const bool isNew = !LeadsToFile(path);
    RequireWithinLimit(bytes.size());
    try {
        WriteInto(path, isNew ? O_CREAT : 0, bytes);
    } catch (const IOException&) {
        if (isNew) Remove(path);
        throw;
    }
}

}  // namespace sorbel
