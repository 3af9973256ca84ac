#pragma once

#include "scripting/compiler/Errors.h"

namespace sorbel::script {

/// How deeply a pass has called itself. Whatever follows the script in that counts here, so that no script
/// uses up the stack.
class Depth {
  public:
    class Step {
      public:
        /// `weight`: how many usual steps take as much stack.
        Step(Depth& depth, uint32_t line, int weight = 1) : mDepth(depth), mWeight(weight) {
            if (depth.mSteps > Most - weight) Fail(Error::Nesting, line);
            depth.mSteps += weight;
        }
        ~Step() { mDepth.mSteps -= mWeight; }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;

      private:
        Depth& mDepth;
        int mWeight;
    };

  private:
    static constexpr int Most = 3000;  // more than the links of the longest expression

    int mSteps = 0;
};

}  // namespace sorbel::script
