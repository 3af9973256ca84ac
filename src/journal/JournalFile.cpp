#include "journal/JournalFile.h"

#include <sys/file.h>

#include <chrono>

#include "journal/DiskFlusher.h"
#include "journal/StateFolder.h"
#include "platform/Clock.h"

namespace sorbel {

namespace {

constexpr mode_t OwnerOnly = 0600;

using File = std::shared_ptr<const FileDescriptor>;

/// False: another has it, or it was removed in between.
bool Lock(const FileDescriptor& file) {
    return flock(file.Number(), LOCK_EX | LOCK_NB) == 0 && file.Status().st_nlink > 0;
}

}  // namespace

std::unique_ptr<JournalFile> JournalFile::OpenLeftBehind(const String& path) try {
    auto file = std::make_shared<const FileDescriptor>(path, O_RDWR | O_NONBLOCK | O_NOFOLLOW);
    if (!S_ISREG(file->Status().st_mode) || !Lock(*file)) return nullptr;
    auto journal = std::make_unique<JournalFile>();
    journal->mPath = path;
    journal->mSize = file->Status().st_size;
    journal->mFile = std::move(file);
    return journal;
} catch (const IOException&) {
    return nullptr;
}

/// At once, though the file may stay open until it has been flushed.
JournalFile::~JournalFile() {
    if (mFile) flock(mFile->Number(), LOCK_UN);
}

std::shared_ptr<const ByteBuffer> JournalFile::Read() const {
    return ReadContents(FolderItem(mPath));
}

String JournalFile::ReadHead() const {
    String head(size_t{1} << 14, '\0');  // a path has 4096 bytes at most
    const ssize_t count = Uninterrupted([&] { return pread(mFile->Number(), head.data(), head.size(), 0); });
    head.resize(count > 0 ? static_cast<size_t>(count) : 0);
    return head;
}

/// Somebody who looks for journals may have locked and removed the new file as an empty one.
void JournalFile::Open() {
    while (!mFile) {
        const String path = StateFolder::NewJournalPath();
        File file = std::make_shared<const FileDescriptor>(path, O_RDWR | O_CREAT | O_EXCL, OwnerOnly);
        if (!Lock(*file)) continue;
        mPath = path;
        mFile = std::move(file);
        mSize = 0;
        DiskFlusher::FlushSoon(StateFolder::Opened());  // the file's name, too, is to survive a power cut
    }
}

String JournalFile::HeaderOf(RecordType type, StringView payload, size_t more) {
    if (IsEmpty()) mGeneration = std::chrono::system_clock::now().time_since_epoch().count();
    return RecordHeader(static_cast<uint64_t>(mGeneration), type, Clock::Current().LocalSeconds(), payload,
                        more);
}

void JournalFile::Append(RecordType type, StringView payload) {
    mUnwritten += HeaderOf(type, payload, 0);
    mUnwritten += payload;
    Open();
    Write(mUnwritten);
    mUnwritten.clear();
    DiskFlusher::FlushSoon(mFile);
}

void JournalFile::AppendNow(RecordType type, StringView payload, StringView more) {
    Open();
    Write(mUnwritten);
    mUnwritten.clear();
    mSizeBefore = mSize;
    try {
        Write(HeaderOf(type, payload, more.size()));
        Write(payload);
        Write(more);
        if (Uninterrupted([&] { return fdatasync(mFile->Number()); }) != 0) ThrowSystemError(errno);
    } catch (const IOException&) {
        TakeBack();
        throw;
    }
}

/// All of it or nothing.
void JournalFile::Write(StringView bytes) {
    for (size_t written = 0; written < bytes.size();) {
        const ssize_t count = Uninterrupted([&] {
            return pwrite(mFile->Number(), bytes.data() + written, bytes.size() - written,
                          static_cast<off_t>(mSize + static_cast<int64_t>(written)));
        });
        if (count < 0) {
            const int error = errno;
            CutTo(mSize);
            ThrowSystemError(error);
        }
        written += static_cast<size_t>(count);
    }
    mSize += static_cast<int64_t>(bytes.size());
}

/// Where the file cannot be cut, what stays behind is of an older generation, or of a checksum that does not
/// fit, once the next record is written. An empty journal may get none.
void JournalFile::CutTo(int64_t size) {
    mSize = size;
    if (ftruncate(mFile->Number(), static_cast<off_t>(size)) == 0 || size > 0) return;
    constexpr char Nothing[64] = {};
    [[maybe_unused]] const ssize_t ignored = pwrite(mFile->Number(), Nothing, sizeof Nothing, 0);
}

void JournalFile::Empty() {
    mUnwritten.clear();
    if (!mFile) return;
    CutTo(0);
    DiskFlusher::FlushSoon(mFile);
}

void JournalFile::Remove() {
    mUnwritten.clear();
    if (mFile) unlink(mPath.c_str());
    mFile = nullptr;
    mSize = 0;
}

}  // namespace sorbel
