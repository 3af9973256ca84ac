#pragma once

#include "scripting/compiler/Errors.h"

namespace sorbel::script {

/// How deeply a pass has called itself. Whatever follows the script in that counts here, so that no script
/// uses up the stack.
class Depth {
  public:
    class Step {
      public:
        Step(Depth& depth, uint32_t line) : mDepth(depth) {
            if (depth.mSteps == Most) Fail(Error::Nesting, line);
            ++depth.mSteps;
        }
        ~Step() { --mDepth.mSteps; }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;

      private:
        Depth& mDepth;
    };

  private:
    static constexpr int Most = 3000;  // more than the links of the longest expression

    int mSteps = 0;
};

}  // namespace sorbel::script
