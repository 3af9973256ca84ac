// Scripts that are compiled and run for some ten thousand operations, with a host of a few rows. Tells at the
// end how many of them had no error.
#include <array>
#include <cstdio>

#include "Target.h"
#include "scripting/compiler/KestrumScript.h"

namespace sorbel::fuzz {

namespace {

using namespace script;

class Rows final : public ScriptHost {
  public:
    std::vector<HostMember> Members() const override {
        using enum HostMember::Form;
        using enum HostType;
        return {{Get, "CurrentRow", {}, Integer},
                {Set, "CurrentRow", {{"row", Integer}}, Nothing},
                {Get, "DefaultText", {}, Text},
                {Get, "FirstRow", {}, Integer},
                {Get, "LastRow", {}, Integer},
                {Get, "Translatedtext", {}, Text},
                {Set, "Translatedtext", {{"text", Text}}, Nothing}};
    }
    HostValue Call(size_t index, std::span<const HostValue> arguments) override {
        const auto last = static_cast<int64_t>(mTexts.size());
        switch (index) {
            case 0:
                return mRow;
            case 1:
                mRow = std::get<int64_t>(arguments[0]);
                return {};
            case 2:
                return String("Öffnen");
            case 3:
                return int64_t{1};
            case 4:
                return last;
            case 5:
                return mRow > 0 && mRow <= last ? mTexts[static_cast<size_t>(mRow - 1)] : String();
            default:
                if (mRow > 0 && mRow <= last)
                    mTexts[static_cast<size_t>(mRow - 1)] = std::get<String>(arguments[0]).substr(0, 1000);
                return {};
        }
    }

  private:
    std::array<String, 3> mTexts = {"a", "Straße", ""};
    int64_t mRow = 1;
};

/// How many scripts there were, and how many of them compiled.
struct Share {
    ~Share() { std::fprintf(stderr, "stat::compiled_scripts: %zu of %zu\n", Compiled, All); }
    size_t All = 0, Compiled = 0;
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
    Rows mRows;
    JumpLimit mLimit{20000};
    int64_t mLines = 0;
    size_t mFailures = 0;
};

}  // namespace

void CheckInput(StringView input) {
    static Share share;
    const Watched script(input);
    Require(script.Errors <= 1, "the first error is the only one");
    ++share.All;
    share.Compiled += script.Errors == 0;
}

}  // namespace sorbel::fuzz
