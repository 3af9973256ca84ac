#pragma once

#include "scripting/compiler/Footprint.h"
#include "scripting/compiler/Tokens.h"

namespace sorbel::script {

/// Cuts a text into tokens. Comments are gone and continued lines joined; a text that ends without a line end
/// gets one. Never fails: what cannot be read is a token of its own. The tokens refer to `source`.
[[nodiscard]] std::vector<Token> ReadTokens(StringView source, Names& names, Footprint& room);

}  // namespace sorbel::script
