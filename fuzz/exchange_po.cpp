// A PO file, or a locale file that becomes one.
#include "Exchanged.h"
#include "Target.h"
#include "exchange/Po.h"

namespace sorbel::fuzz {

void CheckInput(StringView input) {
    const auto write = [](const Rows& rows, Output& output) {
        WritePo(rows, "fuzz", false, output);
    };
    CheckExchange(input, {Holds::Characters, false, write, ReadPo});
}

}  // namespace sorbel::fuzz
