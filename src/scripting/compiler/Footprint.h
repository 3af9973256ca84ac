#pragma once

#include <cstddef>
#include <cstdint>

namespace sorbel::script {

/// How much of the machine's memory a script may take, from its source to its end. What it makes is counted
/// where it is made; this also looks at how the process has grown, for what no count sees: gaps between
/// blocks, the tables of the compiler, what a host keeps.
class Footprint {
  public:
    static constexpr size_t Limit = size_t{1} << 30;

    /// `source` bytes are there already.
    explicit Footprint(size_t source);

    /// Whether the process may grow by so much more. Asks the system from time to time only.
    [[nodiscard]] bool MayGrow(size_t bytes) {
        mUnseen += bytes;
        return mUnseen < LookEvery || HasRoom(bytes);
    }
    /// Whether it may do so for a moment. What is little then adds up to nothing.
    [[nodiscard]] bool MayGrowBriefly(size_t bytes) { return bytes < LookEvery || HasRoom(bytes); }
    /// For the compiler: the line that it has reached needs so much. Fails with std::bad_alloc.
    void Need(size_t bytes, uint32_t line);
    /// The same for the text of a constant, which stays until the script ends.
    void Keep(size_t bytes, uint32_t line);
    void GiveBack(size_t bytes) { mKept -= bytes; }
    [[nodiscard]] size_t Kept() const { return mKept; }
    /// The line that the compiler has reached.
    [[nodiscard]] uint32_t Line() const { return mLine; }

  private:
    static constexpr size_t LookEvery = size_t{16} << 20;
    static constexpr size_t Overhead = size_t{96} << 20;  // what counted things may take besides

    [[nodiscard]] bool HasRoom(size_t bytes);

    size_t mMost;
    size_t mKept;
    size_t mUnseen = 0;
    uint32_t mLine = 1;
};

}  // namespace sorbel::script
