#pragma once

namespace sorbel {

/// Raises a flag and lowers it on every way out.
class Raised {
  public:
    explicit Raised(bool& flag) : mFlag(flag) { mFlag = true; }
    ~Raised() { mFlag = false; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

  private:
    bool& mFlag;
};

}  // namespace sorbel
