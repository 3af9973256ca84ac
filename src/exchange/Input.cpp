#include "exchange/Input.h"

#include <algorithm>

#include "platform/FileDescriptor.h"
#include "platform/TextCoding.h"

namespace sorbel {

namespace {

size_t ReadFrom(int descriptor, char* to, size_t size) {
    const ssize_t count = Uninterrupted([&] { return read(descriptor, to, size); });
    if (count < 0) ThrowSystemError(errno);
    return static_cast<size_t>(count);
}

uint64_t MarkLineEnds(uint64_t word) {
    return coding::MarkByte(word, '\n') | coding::MarkByte(word, '\r');
}

}  // namespace

Input Input::Open(const String& path) {
    if (path == "-") return Input([](char* to, size_t size) { return ReadFrom(STDIN_FILENO, to, size); });
    auto file = std::make_shared<FileDescriptor>(path, O_RDONLY);
    const mode_t mode = file->Status().st_mode;
    if (S_ISDIR(mode)) ThrowSystemError(EISDIR);
    if (!S_ISREG(mode)) throw IOException("Not a regular file");
    return Input([file](char* to, size_t size) { return ReadFrom(file->Number(), to, size); });
}

Input Input::Of(StringView bytes) {
    return Input([bytes](char* to, size_t size) mutable {
        const size_t count = bytes.copy(to, size);
        bytes.remove_prefix(count);
        return count;
    });
}

/// Moves what is left to the front and reads on; false at the end.
bool Lines::Fill() {
    constexpr size_t pieceSize = size_t{1} << 18;
    if (mEnded) return false;
    std::copy(mBytes.begin() + static_cast<ptrdiff_t>(mStart),
              mBytes.begin() + static_cast<ptrdiff_t>(mFilled), mBytes.begin());
    mFilled -= mStart;
    mStart = 0;
    // A long line doubles its room, so that it is not looked at again and again.
    if (mBytes.size() < mFilled + pieceSize) mBytes.resize(std::max(2 * mFilled, mFilled + pieceSize));
    const size_t count = mInput.Read(mBytes.data() + mFilled, mBytes.size() - mFilled);
    mFilled += count;
    mEnded = count == 0;
    return !mEnded;
}

/// Of a line end behind `from`; where the bytes end if there is none.
size_t Lines::FindEnd(size_t from) const {
    return coding::FindMarked(StringView(mBytes.data(), mFilled), from, MarkLineEnds);
}

bool Lines::Next() {
    size_t end = FindEnd(mStart);
    // A CR that is the last byte may have an LF behind it.
    while (end >= mFilled || (mBytes[end] == '\r' && end + 1 == mFilled)) {
        const size_t searched = end - mStart;
        const bool more = Fill();
        end = FindEnd(mStart + searched);
        if (!more) break;
    }
    if (mStart == mFilled) return false;
    const StringView rest(mBytes.data() + mStart, mFilled - mStart);
    const size_t length = end - mStart;
    mText = rest.substr(0, length);
    mEnd = rest.substr(length, rest.substr(length, 2) == "\r\n" ? 2 : 1);
    mStart += length + mEnd.size();
    constexpr StringView mark = "\xEF\xBB\xBF";
    if (++mNumber == 1 && mText.starts_with(mark)) mText.remove_prefix(mark.size());
    return true;
}

}  // namespace sorbel
