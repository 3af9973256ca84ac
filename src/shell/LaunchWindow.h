#pragma once

#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/PushButton.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

class App;

/// What the user sees when there is no document: what the program is for, and a button to open a file.
class LaunchWindow : public Window {
  public:
    explicit LaunchWindow(sorbel::App& app);
    [[nodiscard]] String ClassName() const override { return "LaunchWindow"; }

    Canvas Canvas1;
    Label StaticText1;
    Label StaticText2;
    PushButton PushButton1;

    /// A document has come by another way, and replaces this window.
    bool ShouldClose = false;

  private:
    void Canvas1_Paint(Graphics& g);
    void PushButton1_Action();
    bool _FileClose_Action();

    sorbel::App& mOwner;
};

}  // namespace sorbel
