#pragma once

#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Label.h"
#include "ui/toolkit/Window.h"

namespace sorbel {

class App;

/// The program's icon and version. Any key or click closes it.
class AboutWindow : public Window {
  public:
    explicit AboutWindow(sorbel::App& app);
    [[nodiscard]] String ClassName() const override { return "AboutWindow"; }

    Canvas Canvas1;
    Label StaticText1;

    bool Event_KeyDown(StringView key) override;
    bool Event_MouseDown(int x, int y) override;
};

}  // namespace sorbel
