// Scripts that are compiled and run for some ten thousand operations, with a host of a few rows. Tells at the
// end how many of them had no error.
#include "ScriptRows.h"
#include "Target.h"
#include "scripting/compiler/KestrumScript.h"

#include <ctime>

namespace sorbel::fuzz {

namespace {

using namespace script;

/// Ends a script after so many jumps, or a fifth of a second of processor time: joining the largest of arrays
/// at each jump takes minutes, and tells nothing new.
class Limit final : public script::Watch {
  public:
    void Begin(Attention& attention) override { attention.Ask(); }
    [[nodiscard]] bool Stops() override {
        return --mJumps <= 0 || (mJumps % JumpsForEachLook == 0 && std::clock() > mEnd);
    }
    void End() override {}

  private:
    static constexpr int64_t JumpsForEachLook = 16;
    int64_t mJumps = 20000;
    std::clock_t mEnd = std::clock() + CLOCKS_PER_SEC / 5;
};

class Watched final : public KestrumScript {
  public:
    explicit Watched(StringView text) {
        Source = text;
        Context = &mRows;
        Watch = &mLimit;
        mLines = CountFields(ReplaceLineEndings(text, "\n"), "\n");
        Run();
    }
    size_t Errors = 0;

  protected:
    bool Event_CompilerError(const KestrumScriptLocation& location, int64_t, const Details&) override {
        ++Errors;
        Require(location.Line >= 1 && location.Line <= mLines + 1, "an error stands in a line of the script");
        return false;
    }
    void Event_RuntimeError(const KestrumScriptLocation& location, const String& className,
                            const String& message) override {
        ++mFailures;
        Require(mFailures == 1 && Errors == 0, "a script ends once");
        Require(!className.empty() || !message.empty(), "the end of a script has a reason");
        Require(location.Line >= 0 && location.Line <= mLines + 1,
                "a failure stands in a line of the script");
    }
    void Event_Print(const String&) override { Require(Errors == 0, "what does not compile does not run"); }
    String Event_Input(const String&) override { return "7"; }

  private:
    ScriptRows mRows;
    Limit mLimit;
    int64_t mLines = 0;
    size_t mFailures = 0;
};

}  // namespace

void CheckInput(StringView input) {
    static CompiledShare share;
    const Watched script(input);
    Require(script.Errors <= 1, "the first error is the only one");
    ++share.All;
    share.Compiled += script.Errors == 0;
}

}  // namespace sorbel::fuzz
