// The work on files without a window, a process for each: what `compare` puts beside other file tools.
//
// usage: files COMMAND FILE [OUT]
//   locale     reads a locale file and writes it back
//   mo, tab, strings   reads it and exports it in that format
//   read       reads it and prints the bytes of memory that it takes
#include <fstream>
#include <functional>
#include <iostream>
#include <map>

#include "interchange/DelimitedText.h"
#include "interchange/MoFile.h"
#include "interchange/StringFile.h"
#include "platform/FileContents.h"
#include "stringset/LocalizedStringSet.h"

namespace {

using sorbel::FolderItem;
using sorbel::LocalizedStringSet;
using sorbel::String;

long ResidentBytes() {
    long size = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident * 4096;
}

const std::map<String, String (*)(const LocalizedStringSet&)> Writers = {
    {"locale",
     [](const LocalizedStringSet& set) {
         return set.ToBytes();
     }},
    {"mo",
     [](const LocalizedStringSet& set) {
         return ToMoFile(set);
     }},
    {"tab",
     [](const LocalizedStringSet& set) {
         return ToDelimitedText(set);
     }},
    {"strings",
     [](const LocalizedStringSet& set) {
         return ToStringFile(set);
     }},
};

}  // namespace

int main(int count, char** words) {
    const String command = count > 2 ? words[1] : "";
    const auto writer = Writers.find(command);
    if (command != "read" && (count != 4 || writer == Writers.end())) {
        std::cerr << "usage: files locale|mo|tab|strings FILE OUT, or files read FILE\n";
        return 2;
    }
    const long before = ResidentBytes();
    const auto document = std::make_shared<LocalizedStringSet>();
    if (!document->ReadFile(FolderItem(words[2]))) return 1;
    if (command == "read")
        std::cout << ResidentBytes() - before << '\n';
    else
        sorbel::WriteContents(FolderItem(words[3]), writer->second(*document));
    return 0;
}
