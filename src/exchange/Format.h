#pragma once

#include "exchange/CommandLine.h"
#include "platform/Text.h"

namespace sorbel {

enum class Format { Po, Pot, Xliff, Tsv, Csv };

/// The format of a file, by what the option says or else by the ending of its name. Fails with WrongUse.
[[nodiscard]] Format FormatOf(StringView path, const Arguments& arguments, StringView option);

}  // namespace sorbel
