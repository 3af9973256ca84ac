#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "platform/Text.h"

namespace sorbel {

/// Where bytes come from, piece by piece.
class Input {
  public:
    /// A regular file, or standard input for "-". Fails with IOException.
    static Input Open(const String& path);
    /// Bytes in memory, which must outlive this.
    static Input Of(StringView bytes);

    /// Whatever a function gives that does as `Read`.
    using Reader = std::function<size_t(char*, size_t)>;
    static Input By(Reader read) { return Input(std::move(read)); }

    /// Puts up to `size` bytes to `to` and returns how many; 0 at the end. Fails with IOException.
    size_t Read(char* to, size_t size) { return mRead(to, size); }

  private:
    explicit Input(Reader read) : mRead(std::move(read)) {}

    Reader mRead;
};

/// Takes a text apart into lines, which end at CR LF, LF or CR. A byte-order mark of UTF-8 at its head is
/// skipped.
class Lines {
  public:
    explicit Lines(Input& input) : mInput(input) {}

    /// Goes on to the next line; false at the end.
    bool Next();
    /// The line without its end, until the next call.
    [[nodiscard]] StringView Text() const { return mText; }
    /// Its end: empty at the end of a text that does not end with a line end.
    [[nodiscard]] StringView End() const { return mEnd; }
    /// From 1.
    [[nodiscard]] int64_t Number() const { return mNumber; }

  private:
    bool Fill();
    [[nodiscard]] size_t FindEnd(size_t from) const;

    Input& mInput;
    std::vector<char> mBytes;  // what has been read and not given out begins at mStart
    size_t mStart = 0, mFilled = 0;
    bool mEnded = false;
    StringView mText, mEnd;
    int64_t mNumber = 0;
};

}  // namespace sorbel
