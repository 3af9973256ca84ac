#pragma once

#include <atomic>
#include <cstdint>

namespace sorbel::script {

struct Instruction;

/// How a watch gets the attention of a running script, from whatever thread.
class Attention {
  public:
    /// From now on the watch is asked at each of the script's jumps back and calls. In the midst of a jump
    /// this may be overlooked, so whoever does not wait for the answer calls again.
    void Ask() {
        mAsked.store(true, std::memory_order_relaxed);
        mRoundStart.store(nullptr, std::memory_order_relaxed);
    }
    void Rest() { mAsked.store(false, std::memory_order_relaxed); }

  private:
    friend class Machine;
    [[nodiscard]] bool IsAsked() const { return mAsked.load(std::memory_order_relaxed); }

    std::atomic<bool> mAsked{false};
    std::atomic<const Instruction*> mRoundStart{nullptr};  // where the last jump back went; null: look here
};

/// Decides from outside whether a running script is to go on.
class Watch {
  public:
    virtual ~Watch() = default;
    /// A script begins.
    virtual void Begin(Attention& attention) = 0;
    /// Asked on the script's thread where `Attention` wants it. True ends the script there: none of its code
    /// runs any more.
    [[nodiscard]] virtual bool Stops() = 0;
    /// The script has ended, and its `Attention` with it.
    virtual void End() = 0;
};

/// Ends a script after so many jumps back and calls, so at the same place each time.
class JumpLimit final : public Watch {
  public:
    explicit JumpLimit(int64_t most) : mLeft(most) {}
    void Begin(Attention& attention) override { attention.Ask(); }
    [[nodiscard]] bool Stops() override { return --mLeft <= 0; }
    void End() override {}

  private:
    int64_t mLeft;
};

}  // namespace sorbel::script
