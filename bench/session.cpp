// A document window that does one operation at a time when asked, so that `compare` can take turns with other
// programs. Reads names of operations, a line each, and answers each with the CPU seconds that it took.
//
// usage: session BASE      BASE is such as data/1000 for data/1000.versions.kestrum_locale
#include <algorithm>
#include <iostream>

#include "Workbench.h"

int main(int count, char** words) {
    using namespace sorbel::bench;
    if (count != 2) {
        std::cerr << "usage: session BASE\n";
        return 2;
    }
    Workbench workbench(words[1]);
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
