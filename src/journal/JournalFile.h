#pragma once

#include <memory>

#include "journal/Records.h"
#include "platform/FileContents.h"
#include "platform/FileDescriptor.h"

namespace sorbel {

/// A file of records in the state folder (SpecialFolder.h), made when there is something to put into it. A
/// lock on it tells that whoever wrote it still lives; the system takes the lock away with the process.
class JournalFile {
  public:
    /// One that is still to be made.
    JournalFile() = default;
    /// One that somebody has left behind. Null: it is gone, or whoever wrote it lives.
    static std::unique_ptr<JournalFile> OpenLeftBehind(const String& path);
    ~JournalFile();
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    [[nodiscard]] bool IsEmpty() const { return mSize == 0 && mUnwritten.empty(); }
    /// Nothing waits for room on the disk.
    [[nodiscard]] bool IsWritten() const { return mUnwritten.empty(); }
    [[nodiscard]] std::shared_ptr<const ByteBuffer> Read() const;
    /// The first bytes of it, in which the record of the base lies.
    [[nodiscard]] String ReadHead() const;

    /// Appends a record, and what earlier calls could not write. Fails with IOException; the record is kept
    /// then and written with the next one.
    void Append(RecordType type, StringView payload);
    /// Appends a record in two pieces, of which the first has a checksum of the second, and waits until the
    /// disk has it. Fails with IOException, and nothing is kept of it.
    void AppendNow(RecordType type, StringView payload, StringView more);
    /// Takes the last record away that `AppendNow` has written.
    void TakeBack() { CutTo(mSizeBefore); }
    /// Takes all records away.
    void Empty();
    /// Removes the file; it can be made again.
    void Remove();

  private:
    [[nodiscard]] String HeaderOf(RecordType type, StringView payload, size_t more);
    void Open();
    void Write(StringView bytes);
    void CutTo(int64_t size);

    String mPath;
    std::shared_ptr<const FileDescriptor> mFile;
    int64_t mSize = 0, mSizeBefore = 0;
    int64_t mGeneration = 0;
    String mUnwritten;  // records that the disk had no room for
};

}  // namespace sorbel
