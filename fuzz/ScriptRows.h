#pragma once

#include <array>
#include <cstdio>

#include "scripting/compiler/ScriptHost.h"

namespace sorbel::fuzz {

/// A host of three rows, as little as a script can work on.
class ScriptRows final : public script::ScriptHost {
  public:
    std::vector<script::HostMember> Members() const override {
        using namespace script;
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
    script::HostValue Call(size_t index, std::span<const script::HostValue> arguments) override {
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

/// How many scripts there were, and how many of them compiled, told when the program ends.
struct CompiledShare {
    ~CompiledShare() { std::fprintf(stderr, "stat::compiled_scripts: %zu of %zu\n", Compiled, All); }
    size_t All = 0, Compiled = 0;
};

}  // namespace sorbel::fuzz
