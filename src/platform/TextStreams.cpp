#include "platform/TextStreams.h"

#include <algorithm>

namespace sorbel {

TextInputStream TextInputStream::Open(const FolderItem& f) {
    return TextInputStream(ReadContents(f));
}

StringView TextInputStream::ReadLine() {
    const StringView rest = ReadAll();
    size_t size = 0;
    while (size < rest.size() && rest[size] != '\n' && rest[size] != '\r')
        ++size;
    const bool pair = rest.substr(size, 2) == "\r\n";
    mPosition -= rest.size() - std::min(rest.size(), size + (pair ? 2 : 1));
    return rest.substr(0, size);
}

StringView TextInputStream::ReadAll() {
    const StringView rest = mContents->View().substr(mPosition);
    mPosition += rest.size();
    return rest;
}

}  // namespace sorbel
