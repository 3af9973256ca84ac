#include "platform/TextStreams.h"

#include <algorithm>

namespace sorbel {

TextInputStream::TextInputStream(std::shared_ptr<const ByteBuffer> contents)
    : mContents(std::move(contents)) {
    constexpr StringView mark = "\xEF\xBB\xBF";  // tells that the text is UTF-8, and is no part of it
    if (mContents->View().starts_with(mark)) mPosition = mark.size();
}

TextInputStream TextInputStream::Open(const FolderItem& f) {
    return TextInputStream(ReadContents(f));
}

StringView TextInputStream::ReadLine() {
    const StringView text = mContents->View();
    if (mBehindLineFeed <= mPosition) mBehindLineFeed = std::min(text.find('\n', mPosition), text.size()) + 1;
    StringView line = text.substr(mPosition, mBehindLineFeed - 1 - mPosition);
    line = line.substr(0, line.find('\r'));
    const size_t end = mPosition + line.size();
    const bool pair = text.substr(end, 2) == "\r\n";
    mPosition = std::min(text.size(), end + (pair ? 2 : 1));
    return line;
}

StringView TextInputStream::ReadAll() {
    const StringView rest = mContents->View().substr(mPosition);
    mPosition += rest.size();
    return rest;
}

}  // namespace sorbel
