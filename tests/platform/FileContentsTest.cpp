#include "platform/FileContents.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "platform/Exceptions.h"
#include "platform/TextStreams.h"
#include "support/TemporaryFolder.h"

namespace {

/// What the system calls below answer, in place of what the kernel would.
struct Failures {
    int Reserve = 0;         // the error of fallocate
    bool Interrupt = false;  // pwrite is interrupted each second time and takes three bytes at most
    int Flush = 0;           // the error of fsync
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
    if (failures.Interrupt && (interrupted = !interrupted)) return Fail(EINTR);
    return syscall(SYS_pwrite64, file, bytes, failures.Interrupt ? std::min<size_t>(size, 3) : size, at);
}
extern "C" int fsync(int file) {
    return failures.Flush != 0 ? Fail(failures.Flush) : static_cast<int>(syscall(SYS_fsync, file));
}

namespace sorbel {
namespace {

namespace fs = std::filesystem;

String Contents(const String& path) {
    return String(ReadContents(FolderItem(path))->View());
}

class FileContentsTest : public testing::Test {
  protected:
    void TearDown() override { failures = {}; }

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
    const String pipe = mFolder / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const String sent(100000, 'p');
    std::thread writer([&] {
        const int file = open(pipe.c_str(), O_WRONLY);
        for (size_t done = 0; done < sent.size();)
            done += static_cast<size_t>(write(file, sent.data() + done, sent.size() - done));
        close(file);
    });
    EXPECT_TRUE(Contents(pipe) == sent);
    writer.join();
}

TEST_F(FileContentsTest, FailuresAreIOExceptions) {
    EXPECT_THROW((void)ReadContents(mFile), IOException);
    EXPECT_THROW((void)ReadContents(FolderItem(mFolder.Path())), IOException);
    EXPECT_THROW((void)ReadContents(FolderItem(mFolder / String("file\0x", 6))), IOException);
    EXPECT_THROW(WriteContents(FolderItem(mFolder.Path()), "x"), IOException);
    EXPECT_THROW(WriteContents(FolderItem(mFolder / "no/file"), "x"), IOException);
    EXPECT_THROW(WriteContents(FolderItem("/dev/full"), "x"), IOException);
    EXPECT_NO_THROW(WriteContents(FolderItem("/dev/null"), "x"));
    failures.Flush = EIO;
    EXPECT_THROW(WriteContents(mFile, "x"), IOException);
    failures.Flush = EINVAL;
    EXPECT_NO_THROW(WriteContents(mFile, "x"));
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
    EXPECT_EQ(lines("\n\r\r\n\xff\r"), "|||\xff|");
    TextInputStream stream = TextInputStream::Open(mFile);
    EXPECT_EQ(stream.ReadLine(), "");
    EXPECT_EQ(stream.ReadAll(), "\r\r\n\xff\r");
    EXPECT_EQ(stream.ReadLine(), "");
}

}  // namespace
}  // namespace sorbel
