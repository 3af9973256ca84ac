#pragma once

#include "exchange/Input.h"
#include "exchange/Output.h"
#include "exchange/Rows.h"
#include "exchange/TranslationImport.h"

namespace sorbel {

/// A catalogue as in the GNU gettext manual, "The Format of PO Files", in UTF-8: `msgctxt` is the row's key,
/// `msgid` the default text (the key where that is empty, which a comment tells), `msgstr` the translation.
/// A template has no translations. `name` is what the header calls the project.
///
/// Read and written here and not by gettext's library: that builds a list of all messages in memory and ends
/// the process on an error.
void WritePo(const Rows& rows, StringView name, bool isTemplate, Output& output);

/// Takes the translations of a catalogue. Fuzzy, obsolete and plural entries and those with an empty `msgstr`
/// bring nothing. Fails with FormatError.
void ReadPo(Input& input, TranslationImport& import);

}  // namespace sorbel
