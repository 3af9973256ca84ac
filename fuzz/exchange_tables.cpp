// Comma-separated values and tab-delimited text, or a locale file that becomes both.
#include "Exchanged.h"
#include "Target.h"
#include "exchange/Tables.h"

namespace sorbel::fuzz {

void CheckInput(StringView input) {
    CheckExchange(input, {Holds::Characters, true, WriteCsv, ReadCsv});
    CheckExchange(input, {Holds::DelimitedText, true, WriteTsv, ReadTsv});
}

}  // namespace sorbel::fuzz
