#pragma once

#include <memory>
#include <span>

#include "SilentBackend.h"
#include "editing/MainWindow.h"
#include "platform/Clock.h"

namespace sorbel::bench {

/// The whole program with a document window on a file, without a screen.
class Workbench {
  public:
    /// `base`: what the names of the files begin with; see BenchFiles. The document is a copy. `journal`:
    /// what is unsaved is kept, as the program does; else not.
    explicit Workbench(const String& base, bool journal = true);
    ~Workbench();
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    [[nodiscard]] MainWindow& Window() { return *mWindow; }
    [[nodiscard]] Listbox& List() { return mWindow->ListBox1; }
    /// Chooses a menu item by its name. One that is not enabled ends the program: what would be measured is
    /// nothing.
    void Choose(StringView name);
    /// Imports the file whose name is the base and this ending.
    void Import(StringView ending);
    void Search(StringView term) { mWindow->SearchField.UserSetText(term); }
    void SelectMiddle() { List().UserSelect(List().ListCount() / 2); }
    /// Types one character behind the present translation, as a change of its own.
    void Type();

  private:
    String mBase;
    String mFolder;  // for what is written, and for what stands for the user's
    ManualClock mTime;
    SilentBackend mDesktop;
    std::unique_ptr<Application> mApp;
    MainWindow* mWindow = nullptr;
};

/// Something a user does. Only `Run` is measured; the other two put the window into the state for it and
/// back, and may be null.
struct Operation {
    using Step = void (*)(Workbench&);
    const char* Name;
    Step Prepare, Run, Restore;
};

[[nodiscard]] std::span<const Operation> Operations();

/// CPU seconds of one run of an operation.
[[nodiscard]] double Measure(const Operation& operation, Workbench& workbench);

}  // namespace sorbel::bench
