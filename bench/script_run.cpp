// Runs one script of the workbench's language from a file and prints what it prints. For `compare`.
//
// usage: script_run FILE
#include <fstream>
#include <iostream>
#include <iterator>

#include "scripting/compiler/KestrumScript.h"

namespace {

using sorbel::String;
using sorbel::script::KestrumScript;
using sorbel::script::KestrumScriptLocation;

class Script : public KestrumScript {
  public:
    bool Failed = false;

  protected:
    bool Event_CompilerError(const KestrumScriptLocation& location, int64_t error, const Details&) override {
        std::cerr << "line " << location.Line << ": error " << error << '\n';
        Failed = true;
        return false;
    }
    void Event_RuntimeError(const KestrumScriptLocation& location, const String& className,
                            const String&) override {
        std::cerr << "line " << location.Line << ": " << className << '\n';
        Failed = true;
    }
    void Event_Print(const String& text) override { std::cout << text << '\n'; }
};

}  // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::cerr << "usage: script_run FILE\n";
        return 2;
    }
    std::ifstream file(words[1]);
    Script script;
    script.Source.assign(std::istreambuf_iterator<char>(file), {});
    script.Run();
    return script.Failed ? 1 : 0;
}
