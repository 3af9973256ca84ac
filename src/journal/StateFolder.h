#pragma once

#include <memory>
#include <vector>

#include "platform/FileDescriptor.h"
#include "platform/Text.h"

namespace sorbel {

/// The folder of the journals (`SpecialFolder::State`).
namespace StateFolder {

/// A journal is to be made there whose name no other has; the names of later ones sort behind it. Makes the
/// folder if need be, for its owner only. Fails with IOException.
[[nodiscard]] String NewJournalPath();

/// Open, so that it can be flushed. Fails with IOException.
[[nodiscard]] std::shared_ptr<const FileDescriptor> Opened();

/// The journals there, the oldest first.
[[nodiscard]] std::vector<String> JournalPaths();

}  // namespace StateFolder

}  // namespace sorbel
