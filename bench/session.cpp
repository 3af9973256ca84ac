// A document window that does one operation at a time when asked, so that `compare` can take turns with other
// programs. Reads names of operations, a line each, and answers each with the CPU seconds that it took.
//
// usage: session BASE [--no-journal]      BASE is such as data/1000 for data/1000.versions.kestrum_locale
//        --no-journal: unsaved changes are not kept, to see what keeping them costs
#include <algorithm>
#include <iostream>
#include <string_view>

#include "Workbench.h"

int main(int count, char** words) {
    using namespace sorbel::bench;
    const bool journal = count == 2;
    if (!journal && (count != 3 || std::string_view(words[2]) != "--no-journal")) {
        std::cerr << "usage: session BASE [--no-journal]\n";
        return 2;
    }
    Workbench workbench(words[1], journal);
    const auto operations = Operations();
    for (std::string name; std::getline(std::cin, name);) {
        const auto found =
            std::find_if(operations.begin(), operations.end(),
                         [&name](const Operation& operation) { return operation.Name == name; });
        if (found == operations.end()) return 1;
        std::cout << Measure(*found, workbench) << std::endl;
    }
    return 0;
}
