#pragma once

#include <cstdint>

/// Counts what `new` has given out in the whole program that this is linked into.
namespace sorbel::fuzz::CountedMemory {

/// Bytes in use now; `Peak` counts from here.
int64_t StartPeak();
/// The most bytes in use at a time.
[[nodiscard]] int64_t Peak();

}  // namespace sorbel::fuzz::CountedMemory
