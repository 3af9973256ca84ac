#pragma once

namespace sorbel {

/// From now on a signal that ends the program (SIGTERM, SIGHUP, SIGINT) first has what is written flushed to
/// the disk, whatever the program is doing then, also a script that never ends. Nobody is asked: what is
/// unsaved is in the journals.
void FlushBeforeEndSignals();

}  // namespace sorbel
