#pragma once

#include <optional>

#include "scripting/compiler/ScriptHost.h"

namespace sorbel {

class Application;
class FrontDocument;

namespace Scripting {

/// The object that a running script talks to. Each call looks the front document window up afresh; without
/// one, every operation gives its neutral value and assignments have no effect.
class ScriptContext : public script::ScriptHost {
  public:
    explicit ScriptContext(Application& app) : mApp(app) {}

    [[nodiscard]] std::vector<script::HostMember> Members() const override;
    script::HostValue Call(size_t index, std::span<const script::HostValue> arguments) override;

    void Beep();
    [[nodiscard]] int64_t CurrentRow() const;  ///< counts from 1; 0 is no selection, -1 no document window
    void SetCurrentRow(int64_t row);           ///< kept within the rows; 0 and below clear the selection
    [[nodiscard]] String DefaultText() const;
    [[nodiscard]] int64_t FirstRow() const;
    [[nodiscard]] int64_t LastRow() const;
    /// The caption of the button that was pressed. Blank captions leave a button as a new dialog has it; the
    /// icon is accepted and ignored. Leaving dialogs with Escape twice within a second stops the script.
    String ShowDialog(StringView message, StringView explanation, StringView actionCaption,
                      StringView cancelCaption, StringView alternateCaption = {}, int64_t icon = -1);
    [[nodiscard]] String Translatedtext() const;
    void SetTranslatedtext(StringView text);

  private:
    [[nodiscard]] FrontDocument* GetFrontWindow() const;
    void StopAtSecondEscape();

    Application& mApp;
    std::optional<int64_t> mLastEscape;  // in ticks
};

}  // namespace Scripting

}  // namespace sorbel
