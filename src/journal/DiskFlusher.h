#pragma once

#include <memory>

#include "platform/FileDescriptor.h"

namespace sorbel {

/// Puts what was written to files on the disk within a second, so that a power cut takes no more than that,
/// without a wait for the disk: a thread of its own does it, which touches nothing else of the program.
namespace DiskFlusher {

/// The file has been written to. It is kept open until it has been flushed.
void FlushSoon(const std::shared_ptr<const FileDescriptor>& file);

/// Flushes what is due now.
void FlushAll();

}  // namespace DiskFlusher

}  // namespace sorbel
