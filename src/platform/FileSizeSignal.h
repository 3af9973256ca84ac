#pragma once

namespace sorbel {

/// From now on a write beyond the limit for the size of files fails with its error, where the system's signal
/// would end the program. Programs started from here are not concerned.
void SurviveFileSizeLimit();

}  // namespace sorbel
