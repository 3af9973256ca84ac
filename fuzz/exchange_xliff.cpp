// An XLIFF file, or a locale file that becomes one.
#include "Exchanged.h"
#include "Target.h"
#include "exchange/Xliff.h"

namespace sorbel::fuzz {

void CheckInput(StringView input) {
    const auto write = [](const Rows& rows, Output& output) {
        WriteXliff(rows, "fuzz", "en", output);
    };
    CheckExchange(input, {Holds::Characters, false, write, ReadXliff});
}

}  // namespace sorbel::fuzz
