#pragma once

#include <memory>

#include "ui/toolkit/Canvas.h"
#include "ui/toolkit/Picture.h"

namespace sorbel {

/// A bordered square with an icon in the text colour. What a press does is its owner's, by `MouseDown`.
class OptionsButton : public Canvas {
  public:
    using Canvas::Canvas;

    std::shared_ptr<const Picture> Icon;

    void Event_Paint(Graphics& g) override;
};

}  // namespace sorbel
