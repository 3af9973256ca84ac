#pragma once

#include "exchange/Input.h"
#include "exchange/Output.h"
#include "exchange/Rows.h"
#include "exchange/TranslationImport.h"

namespace sorbel {

/// Comma-separated values after RFC 4180, in UTF-8: a header line
/// "identifier,platform,default,translation", then a record for each row.
void WriteCsv(const Rows& rows, Output& output);
/// Fails with FormatError. Columns are taken by their order. An empty line is passed over.
void ReadCsv(Input& input, TranslationImport& import);

/// The program's own tab-delimited text (interchange/DelimitedText.h).
void WriteTsv(const Rows& rows, Output& output);
/// Takes lines as the program's import does, but only those of rows that exist. Lines with fewer than four
/// fields, or without a platform, bring nothing.
void ReadTsv(Input& input, TranslationImport& import);

}  // namespace sorbel
