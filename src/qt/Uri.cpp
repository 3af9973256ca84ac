// Addresses of files. The toolkit's own would lose bytes that are not UTF-8.
#include <algorithm>

#include "qt/Text.h"

namespace sorbel {

namespace {

constexpr StringView Scheme = "file:";
constexpr StringView Digits = "0123456789ABCDEF";

bool StandsForItself(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           StringView("/-._~").find(byte) != StringView::npos;
}

/// The value of a digit in either case; -1 for no digit.
int ValueOf(char digit) {
    const size_t upper = Digits.find(digit);
    if (upper != StringView::npos) return static_cast<int>(upper);
    return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

/// A percent sign without two digits behind it is one.
String Decoded(StringView text) {
    String bytes;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isCode = text[at] == '%' && at + 2 < text.size();
        const int high = isCode ? ValueOf(text[at + 1]) : -1;
        const int low = isCode ? ValueOf(text[at + 2]) : -1;
        const bool isByte = high >= 0 && low >= 0;
        bytes += isByte ? static_cast<char>(high * 16 + low) : text[at];
        if (isByte) at += 2;
    }
    return bytes;
}

}  // namespace

String ToUri(const FolderItem& file) {
    String uri = String(Scheme) + "//";
    for (const char byte : file.NativePath()) {
        const auto code = static_cast<unsigned char>(byte);
        if (StandsForItself(byte))
            uri += byte;
        else
            uri.append("%").append(1, Digits[code / 16]).append(1, Digits[code % 16]);
    }
    return uri;
}

std::shared_ptr<FolderItem> FileFromUri(StringView uri) {
    if (!Equal(uri.substr(0, Scheme.size()), Scheme)) return nullptr;
    StringView path = uri.substr(Scheme.size());
    path = path.substr(0, path.find_first_of("?#"));
    if (path.starts_with("//")) {
        path.remove_prefix(2);
        const StringView host = path.substr(0, path.find('/'));
        if (!host.empty() && !Equal(host, "localhost")) return nullptr;
        path.remove_prefix(host.size());
    }
    return path.starts_with('/') ? std::make_shared<FolderItem>(Decoded(path)) : nullptr;
}

std::shared_ptr<FolderItem> FileFromWord(StringView word) {
    std::shared_ptr<FolderItem> file = FileFromUri(word);
    return file ? file : std::make_shared<FolderItem>(word);
}

std::vector<std::shared_ptr<FolderItem>> FilesFromUriList(StringView list) {
    std::vector<std::shared_ptr<FolderItem>> files;
    list = list.substr(0, list.find('\0'));  // some put one at the end
    for (size_t start = 0; start < list.size();) {
        const size_t end = std::min(list.find_first_of("\r\n", start), list.size());
        if (auto file = FileFromUri(list.substr(start, end - start))) files.push_back(std::move(file));
        start = end + 1;
    }
    return files;
}

}  // namespace sorbel
