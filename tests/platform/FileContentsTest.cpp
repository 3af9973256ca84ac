#include "platform/FileContents.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "platform/Exceptions.h"
#include "platform/FileDescriptor.h"
#include "platform/FileSizeSignal.h"
#include "platform/TextStreams.h"
#include "support/TemporaryFolder.h"

namespace {

/// What the system calls below answer, in place of what the kernel would.
struct Failures {
    int Reserve = 0;         // the error of fallocate
    bool Interrupt = false;  // pwrite is interrupted each second time and takes three bytes at most
    int Write = 0;           // the error of pwrite, after three bytes
    int Flush = 0;           // the error of fsync
    int Look = 0;            // the error of stat
    std::function<void()> AfterLook;
} failures;

int Fail(int error) {
    errno = error;
    return -1;
}

}  // namespace

// The program's calls come here, since the linker finds these before those of the C library.
extern "C" int fallocate(int file, int mode, off_t from, off_t size) {
    if (failures.Reserve != 0) return Fail(failures.Reserve);
    return static_cast<int>(syscall(SYS_fallocate, file, mode, from, size));
}
extern "C" ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
    static bool interrupted = false;
    if (failures.Write != 0 && at > 0) return Fail(failures.Write);
    if (failures.Interrupt && (interrupted = !interrupted)) return Fail(EINTR);
    const bool inSteps = failures.Interrupt || failures.Write != 0;
    return syscall(SYS_pwrite64, file, bytes, inSteps ? std::min<size_t>(size, 3) : size, at);
}
extern "C" int fsync(int file) {
    return failures.Flush != 0 ? Fail(failures.Flush) : static_cast<int>(syscall(SYS_fsync, file));
}
extern "C" int stat(const char* path, struct stat* status) {
    if (failures.Look != 0) return Fail(failures.Look);
    const int result = fstatat(AT_FDCWD, path, status, 0);
    if (const auto act = std::exchange(failures.AfterLook, nullptr)) act();
    return result;
}

namespace sorbel {
namespace {

namespace fs = std::filesystem;

String Contents(const String& path) {
    return String(ReadContents(FolderItem(path))->View());
}

/// The reason that the failure of an action tells; empty if it does not fail.
template <typename Action>
String Reason(Action action) {
    try {
        action();
        return {};
    } catch (const IOException& failure) {
        return failure.Message();
    }
}

/// A limit for the size of files, for as long as it lives.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        const rlimit limit{size, mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &mBefore); }

  private:
    rlimit mBefore{};
};

class FileContentsTest : public testing::Test {
  protected:
    void TearDown() override { failures = {}; }

    String ReadingFails(const String& path) const {
        return Reason([&] { (void)ReadContents(FolderItem(path)); });
    }
    String WritingFails(const String& path, StringView bytes = "x") const {
        return Reason([&] { WriteContents(FolderItem(path), bytes); });
    }

    TemporaryFolder mFolder;
    FolderItem mFile{mFolder / "file"};
};

TEST_F(FileContentsTest, GoRoundTrip) {
    for (const size_t size : {0u, 1u, 4095u, 4096u, 4097u, 300000u, 5u}) {
        String bytes(size, '\0');
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + i / 256);
        WriteContents(mFile, bytes);
        ASSERT_TRUE(Contents(mFile.NativePath()) == bytes) << size;
        EXPECT_EQ(fs::file_size(mFile.NativePath()), size);
    }
}

TEST_F(FileContentsTest, FilesThatTellNoSizeAreReadToTheEnd) {
    EXPECT_NE(Contents("/proc/self/status").find("Name:"), String::npos);
}

TEST_F(FileContentsTest, NothingButRegularFilesIsOpened) {
    const String pipe = mFolder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    sockaddr_un address{AF_UNIX, {}};
    std::strcpy(address.sun_path, (mFolder / "socket").c_str());
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    for (const String& path : {pipe, mFolder / "socket", String("/dev/zero"), String("/dev/null")}) {
        EXPECT_EQ(ReadingFails(path), "Not a regular file") << path;
        EXPECT_EQ(WritingFails(path), "Not a regular file") << path;
        EXPECT_TRUE(fs::exists(path));
    }
    close(listener);
    EXPECT_EQ(ReadingFails(mFolder.Path()), std::strerror(EISDIR));
    EXPECT_EQ(WritingFails(mFolder.Path()), std::strerror(EISDIR));
}

TEST_F(FileContentsTest, WhatTakesTheFilesPlaceMeanwhileIsNotWaitedFor) {
    const auto exchange = [&] {
        fs::remove(mFile.NativePath());
        mkfifo(mFile.NativePath().c_str(), 0600);
    };
    WriteContents(mFile, "x");
    failures.AfterLook = exchange;
    EXPECT_EQ(ReadingFails(mFile.NativePath()), "Not a regular file");
    fs::remove(mFile.NativePath());
    WriteContents(mFile, "x");
    failures.AfterLook = exchange;
    EXPECT_NE(WritingFails(mFile.NativePath()), "");
    EXPECT_TRUE(fs::is_fifo(mFile.NativePath()));
}

TEST_F(FileContentsTest, FailuresTellTheSystemsReason) {
    EXPECT_EQ(ReadingFails(mFile.NativePath()), std::strerror(ENOENT));
    EXPECT_EQ(ReadingFails(mFolder / String("file\0x", 6)), std::strerror(EINVAL));
    EXPECT_EQ(WritingFails(mFolder / "no/file"), std::strerror(ENOENT));
    EXPECT_EQ(WritingFails(mFolder / String(300, 'x')), std::strerror(ENAMETOOLONG));
    failures.Flush = EIO;
    EXPECT_EQ(WritingFails(mFile.NativePath()), std::strerror(EIO));
    failures.Flush = EINVAL;
    EXPECT_EQ(WritingFails(mFile.NativePath()), "");
    EXPECT_EQ(WritingFails(mFile.NativePath() + "/file"), std::strerror(ENOTDIR));
}

TEST_F(FileContentsTest, AFileThatCannotBeFinishedIsRemovedOnlyIfItIsNew) {
    failures.Write = EIO;
    EXPECT_EQ(WritingFails(mFile.NativePath(), "long"), std::strerror(EIO));
    EXPECT_FALSE(fs::exists(mFile.NativePath()));
    failures = {};
    WriteContents(mFile, "old");
    failures.Look = ESTALE;  // a file that cannot be looked at is not a new one
    EXPECT_EQ(WritingFails(mFile.NativePath()), std::strerror(ESTALE));
    failures = {};
    EXPECT_EQ(Contents(mFile.NativePath()), "old");
}

TEST_F(FileContentsTest, WritingKeepsTheFileItself) {
    WriteContents(mFile, "a long first version");
    chmod(mFile.NativePath().c_str(), 0604);
    fs::create_hard_link(mFile.NativePath(), mFolder / "second");
    fs::create_symlink("file", mFolder / "link");
    WriteContents(FolderItem(mFolder / "link"), "short");
    EXPECT_EQ(Contents(mFolder / "second"), "short");
    EXPECT_TRUE(fs::is_symlink(mFolder / "link"));
    EXPECT_EQ(static_cast<int>(fs::status(mFile.NativePath()).permissions()), 0604);
    EXPECT_EQ(fs::hard_link_count(mFile.NativePath()), 2);
    failures.Interrupt = true;
    WriteContents(mFile, "written in many small steps");
    EXPECT_EQ(Contents(mFolder / "second"), "written in many small steps");
}

TEST_F(FileContentsTest, AFullDiskLeavesTheOldBytes) {
    WriteContents(mFile, "the old bytes");
    fs::create_symlink("not yet", mFolder / "link");
    for (const int error : {ENOSPC, EFBIG, EDQUOT}) {
        failures.Reserve = error;
        EXPECT_THROW(WriteContents(mFile, "new and longer bytes"), IOException);
        EXPECT_EQ(Contents(mFile.NativePath()), "the old bytes");
        EXPECT_THROW(WriteContents(FolderItem(mFolder / "new"), "x"), IOException);
        EXPECT_FALSE(fs::exists(mFolder / "new"));
        EXPECT_THROW(WriteContents(FolderItem(mFolder / "link"), "x"), IOException);
        EXPECT_FALSE(fs::exists(mFolder / "not yet"));
        EXPECT_TRUE(fs::is_symlink(mFolder / "link"));
    }
    failures.Reserve = EOPNOTSUPP;
    WriteContents(mFile, "a system that reserves nothing");
    EXPECT_EQ(Contents(mFile.NativePath()), "a system that reserves nothing");
}

TEST_F(FileContentsTest, ALimitForFileSizesLeavesTheOldBytes) {
    WriteContents(mFile, "the old bytes");
    const FileSizeLimit limit(20);
    EXPECT_EQ(WritingFails(mFile.NativePath(), String(21, 'x')), std::strerror(EFBIG));
    EXPECT_EQ(Contents(mFile.NativePath()), "the old bytes");
    EXPECT_EQ(WritingFails(mFolder / "new", String(21, 'x')), std::strerror(EFBIG));
    EXPECT_FALSE(fs::exists(mFolder / "new"));
    EXPECT_EQ(WritingFails(mFile.NativePath(), String(20, 'x')), "");
    EXPECT_EQ(Contents(mFile.NativePath()), String(20, 'x'));
    SurviveFileSizeLimit();
    const FileDescriptor file(mFile.NativePath(), O_WRONLY | O_APPEND);
    EXPECT_EQ(write(file.Number(), "x", 1), -1);
    EXPECT_EQ(errno, EFBIG);
}

TEST_F(FileContentsTest, LinesEndInThreeWays) {
    const auto lines = [&](StringView bytes) {
        WriteContents(mFile, bytes);
        TextInputStream stream = TextInputStream::Open(mFile);
        String joined;
        while (!stream.EndOfFile())
            joined += String(stream.ReadLine()) + "|";
        return joined;
    };
    EXPECT_EQ(lines(""), "");
    EXPECT_EQ(lines("a\n"), "a|");
    EXPECT_EQ(lines("a\r\nb\rc\nd"), "a|b|c|d|");
    const String mark = "\xEF\xBB\xBF";
    EXPECT_EQ(lines(mark), "");
    EXPECT_EQ(lines(mark + mark + "a\n" + mark), mark + "a|" + mark + "|") << "only the first is a mark";
    EXPECT_EQ(lines("\xEF\xBB"), "\xEF\xBB|");
    EXPECT_EQ(lines("\n\r\r\n\xff\r"), "|||\xff|");
    TextInputStream stream = TextInputStream::Open(mFile);
    EXPECT_EQ(stream.ReadLine(), "");
    EXPECT_EQ(stream.ReadAll(), "\r\r\n\xff\r");
    EXPECT_EQ(stream.ReadLine(), "");
}

}  // namespace
}  // namespace sorbel
