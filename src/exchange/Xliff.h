#pragma once

#include "exchange/Input.h"
#include "exchange/Output.h"
#include "exchange/Rows.h"
#include "exchange/TranslationImport.h"

namespace sorbel {

/// A language code with hyphens for underscores, as RFC 3066 and the schema want it; empty for one that can't
/// be made so.
[[nodiscard]] String LanguageTag(StringView code);

/// An XLIFF 1.2 file (OASIS standard of 1 February 2008) with one `file`, and in it a `trans-unit` for each
/// row. `original` is the name of the document's file; `sourceLanguage` a language tag.
void WriteXliff(const Rows& rows, StringView original, StringView sourceLanguage, Output& output);

/// Takes the targets of all units of an XLIFF 1.0 to 1.2 file. Units without a target or with an empty one,
/// or marked as new or as in need of translation, bring nothing; nor does one with an inline element that
/// stands for a text which it doesn't tell. The text inside inline elements is part of the text. No entity is
/// expanded and nothing is fetched. Fails with FormatError.
void ReadXliff(Input& input, TranslationImport& import);

}  // namespace sorbel
