#include <gtest/gtest.h>

#include "script/RecordingScript.h"

namespace sorbel::script {
namespace {

/// Keeps what the script says at its end.
class ReportingHost : public FakeHost {
  public:
    String Report;
    HostValue Call(size_t index, std::span<const HostValue> arguments) override {
        if (arguments.size() == 4) Report = std::get<String>(arguments[1]);
        return FakeHost::Call(index, arguments);
    }
    void Run(const String& name) {
        const RecordingScript script(ReadText(String(SORBEL_SCRIPT_SAMPLES) + "/" + name + ".sorbel_script"),
                                     this);
        EXPECT_EQ(script.Errors, 0) << "error " << script.Error << " in line " << script.Line;
        EXPECT_EQ(script.FailureClass, "") << script.Message;
    }
};

TEST(ScriptSamples, FindTextsThatAreTranslatedInDifferentWays) {
    ReportingHost host;
    host.Defaults = {"Open", "Close", "OPEN", "open", "Open", "Open", "", "Close"};
    host.Translations = {"Öffnen", "Zu", "Auf", "öffnen", "", "auf", "x", "zu"};
    host.Run("Check Same Texts");
    EXPECT_EQ(host.Report, "Open: Öffnen / Auf\n");
    EXPECT_EQ(host.Row, 3);
    host.Translations = {"Auf", "Zu", "auf", "auf", "", "auf", "x", "zu"};
    host.Run("Check Same Texts");
    EXPECT_EQ(host.Report, "Each text is translated in one way.");
    EXPECT_EQ(host.Row, 0);
}

TEST(ScriptSamples, FindTermsThatAreNotTranslatedAsTheListSays) {
    ReportingHost host;
    host.Defaults = {"A profile",    "Save files",      "Close the Window",
                     "A new folder", "File and folder", "window"};
    host.Translations = {"Ein Profil", "Dateien sichern", "Schließen", "", "Datei und Mappe", "Fenster"};
    host.Run("Check Terms");
    EXPECT_EQ(host.Report,
              "Row 3: window is not \"Fenster\": Schließen\n"
              "Row 5: folder is not \"Ordner\" or \"Verzeichnis\": Datei und Mappe\n");
    EXPECT_EQ(host.Row, 3);
}

}  // namespace
}  // namespace sorbel::script
