#pragma once

#include "exchange/Input.h"
#include "exchange/Output.h"
#include "exchange/Rows.h"
#include "exchange/TranslationImport.h"
#include "platform/Text.h"

namespace sorbel::fuzz {

/// A format in which documents are exchanged.
struct ExchangeForm {
    Holds What;
    bool BringsEmpty;  ///< an empty translation comes back too
    void (*Write)(const Rows& rows, Output& output);
    void (*Read)(Input& input, TranslationImport& import);
};

/// The input as a locale file, if it begins as one: exported and read again it gives the same translations.
/// Otherwise as a text of the format: it is refused, or nothing but translations of the document that it is
/// brought into changes, which all come out again.
void CheckExchange(StringView input, const ExchangeForm& form);

}  // namespace sorbel::fuzz
