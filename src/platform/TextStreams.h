#pragma once

#include <memory>

#include "platform/FileContents.h"
#include "platform/Text.h"

namespace sorbel {

/// Reads a file of text line by line. Text stays the bytes that it is, without a UTF-8 mark at its beginning.
class TextInputStream {
  public:
    /// Fails with IOException.
    static TextInputStream Open(const FolderItem& f);

    [[nodiscard]] bool EndOfFile() const { return mPosition >= mContents->View().size(); }
    /// The next line without its end, which is CR LF, LF or CR.
    StringView ReadLine();
    /// Everything that is left.
    StringView ReadAll();

  private:
    explicit TextInputStream(std::shared_ptr<const ByteBuffer> contents);

    std::shared_ptr<const ByteBuffer> mContents;
    size_t mPosition = 0;
    // Behind the next LF, or the end; 0 before the first search. Kept, since a text without any would be
    // searched to its end for each line.
    size_t mBehindLineFeed = 0;
};

}  // namespace sorbel
