#pragma once

#include <cstdint>

namespace sorbel {

/// Raises a window's `IsInternalChange` for as long as it lives, on every way out.
class InternalChange {
  public:
    explicit InternalChange(int64_t& counter) : mCounter(counter) { ++mCounter; }
    ~InternalChange() { --mCounter; }
    InternalChange(const InternalChange&) = delete;
    InternalChange& operator=(const InternalChange&) = delete;

  private:
    int64_t& mCounter;
};

}  // namespace sorbel
