#pragma once

#include "platform/Text.h"

namespace sorbel::Scripting {

/// Texts of the scripts that come with the program, with LF line ends.
extern const StringView Sample;
extern const StringView LoopSample;

}  // namespace sorbel::Scripting
