#pragma once

#include <fstream>
#include <map>
#include <sstream>

#include "scripting/compiler/KestrumScript.h"

namespace sorbel::script {

inline String ReadText(const String& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// A script whose events are kept.
class RecordingScript : public KestrumScript {
  public:
    explicit RecordingScript(String source, ScriptHost* host = nullptr, int64_t jumps = 100'000'000) {
        Source = std::move(source);
        Context = host;
        JumpLimit limit(jumps);
        Watch = &limit;
        Run();
        Watch = nullptr;
    }
    std::vector<String> Output;
    std::vector<int64_t> Warnings;  // lines
    int Errors = 0;
    int64_t Error = 0;
    int64_t Line = 0;
    std::vector<String> Details;
    String FailureClass;
    String Message;

  protected:
    bool Event_CompilerError(const KestrumScriptLocation& location, int64_t error,
                             const KestrumScript::Details& details) override {
        ++Errors;
        Error = error;
        Line = location.Line;
        for (const auto& item : details)
            Details.push_back(item.Second);
        return false;
    }
    void Event_CompilerWarning(const KestrumScriptLocation& location, int64_t,
                               const KestrumScript::Details&) override {
        Warnings.push_back(location.Line);
    }
    void Event_RuntimeError(const KestrumScriptLocation& location, const String& className,
                            const String& message) override {
        FailureClass = className;
        Message = message;
        Line = location.Line;
    }
    void Event_Print(const String& text) override { Output.push_back(text); }
};

/// A host like the program's: a list of rows with a selection, and a dialog.
class FakeHost : public ScriptHost {
  public:
    std::vector<String> Defaults, Translations;
    int64_t Row = 0;
    String Answer;
    int Beeps = 0;

    std::vector<HostMember> Members() const override {
        using enum HostMember::Form;
        using enum HostType;
        std::vector<HostParameter> four = {
            {"message", Text}, {"explanation", Text}, {"action", Text}, {"cancel", Text}};
        std::vector<HostParameter> five = four;
        five.push_back({"alternate", Text});
        std::vector<HostParameter> six = five;
        six.push_back({"icon", Integer});
        return {{Method, "Beep", {}, Nothing},
                {Get, "CurrentRow", {}, Integer},
                {Set, "CurrentRow", {{"value", Integer}}, Nothing},
                {Get, "DefaultText", {}, Text},
                {Get, "FirstRow", {}, Integer},
                {Get, "LastRow", {}, Integer},
                {Method, "ShowDialog", four, Text},
                {Method, "ShowDialog", five, Text},
                {Method, "ShowDialog", six, Text},
                {Get, "Translatedtext", {}, Text},
                {Set, "Translatedtext", {{"value", Text}}, Nothing},
                {Method, "Fail", {}, Nothing}};
    }
    HostValue Call(size_t index, std::span<const HostValue> arguments) override {
        const auto count = static_cast<int64_t>(Translations.size());
        const bool selected = Row >= 1 && Row <= count;
        const auto at = static_cast<size_t>(Row - 1);
        switch (index) {
            case 0:
                ++Beeps;
                return {};
            case 1:
                return Row;
            case 2:
                Row = std::get<int64_t>(arguments[0]);
                return {};
            case 3:
                return selected ? Defaults[at] : String();
            case 4:
                return int64_t{count > 0};
            case 5:
                return count;
            case 9:
                return selected ? Translations[at] : String();
            case 10:
                if (selected) Translations[at] = std::get<String>(arguments[0]);
                return {};
            case 11:
                throw IOException("no such file");
            default:
                return Answer + std::to_string(arguments.size());
        }
    }
};

}  // namespace sorbel::script
