#pragma once

#include <cstddef>
#include <memory>

#include "platform/FolderItem.h"
#include "platform/Text.h"

namespace sorbel {

/// The bytes of a file in memory, read once and shared by whatever was made from them.
class ByteBuffer {
  public:
    explicit ByteBuffer(size_t size);
    [[nodiscard]] char* Data() { return mData.get(); }
    [[nodiscard]] StringView View() const { return {mData.get(), mSize}; }
    void Shrink(size_t size) { mSize = size; }  ///< a file that has become shorter while it was read

  private:
    std::unique_ptr<char[]> mData;  // not cleared first: every byte is read into
    size_t mSize;
};

/// The whole file, which must be a regular one: nothing here ever waits for a pipe or a device. Fails with
/// IOException, whose message is the system's reason.
[[nodiscard]] std::shared_ptr<const ByteBuffer> ReadContents(const FolderItem& f);

/// Makes these bytes the contents of the regular file, in place: owner, mode and links stay. The limit for
/// the size of files is asked and space is reserved before the old bytes are touched, so that these and a
/// full disk leave them as they were; the file is flushed to disk before the return. A file that does not
/// exist is created, and removed again if it cannot be finished. Fails with IOException, whose message is the
/// system's reason.
void WriteContents(const FolderItem& f, StringView bytes);

}  // namespace sorbel
