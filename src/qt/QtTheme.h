#pragma once

#include <QColor>
#include <map>
#include <optional>

#include "platform/Color.h"
#include "ui/toolkit/Backend.h"

namespace sorbel {

[[nodiscard]] QColor ToQColor(Color color);
[[nodiscard]] Color FromQColor(const QColor& color);

/// The program's colours in the palette in use.
class QtTheme {
  public:
    [[nodiscard]] Color System(SystemColor color) const;
    /// By the name that a colour has in the program; letter case is ignored. Nothing if the palette has none.
    [[nodiscard]] static std::optional<Color> Named(StringView name);

    /// How a colour kept by a control is shown now: one that the theme told under an earlier appearance is
    /// the same colour of the present one, and so is a control's first colour, which is that of text.
    [[nodiscard]] Color Present(Color color) const;
    [[nodiscard]] QColor Shown(Color color) const { return ToQColor(Present(color)); }

  private:
    mutable std::map<uint32_t, SystemColor> mTold{{0, SystemColor::Text}};
};

}  // namespace sorbel
