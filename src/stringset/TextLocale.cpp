// The lines of a tab-delimited file: identifier, platform, default value, translated value.
#include <algorithm>
#include <array>

#include "stringset/LocalizedStringSet.h"

namespace sorbel {

namespace {

using Row = std::array<StringView, 4>;

// Fields behind the fourth do not count.
Row SplitRow(StringView line) {
    Row row;
    size_t start = 0;
    for (size_t i = 0; i < row.size(); ++i) {
        if (start > line.size()) throw OutOfBoundsException("A line of the file has fewer than four fields.");
        const size_t end = std::min(line.find('\t', start), line.size());
        row[i] = line.substr(start, end - start);
        start = end + 1;
    }
    return row;
}

int64_t PlatformCode(StringView text) {
    for (const int64_t platform : {PlatformAny, PlatformLinux, PlatformMacOS, PlatformWindows})
        if (Equal(text, PlatformText(platform))) return platform;
    return PlatformAny;
}

}  // namespace

// Never true: such text fills a set for an import, but is not a document that could be opened.
bool LocalizedStringSet::ReadTextData(TextInputStream& s) {
    while (!s.EndOfFile()) {
        const Row row = SplitRow(s.ReadLine());
        AddEntry(PlatformCode(row[1]), row[0], row[2], row[3]);
    }
    return false;
}

void LocalizedStringSet::CheckTextFile(const FolderItem& f) {
    try {
        TextInputStream s = TextInputStream::Open(f);
        while (!s.EndOfFile())
            SplitRow(s.ReadLine());
    } catch (const IOException&) {
        return;
    }
}

}  // namespace sorbel
