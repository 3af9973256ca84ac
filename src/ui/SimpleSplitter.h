#pragma once

#include "ui/toolkit/Canvas.h"

namespace sorbel {

/// A divider that the user drags. One taller than wide is vertical and moves left and right, any other moves
/// up and down. It applies no limits: after each step it raises `Moved`, and the owner lays out the
/// neighbours and may put it elsewhere.
class SimpleSplitter : public Canvas {
  public:
    using Canvas::Canvas;

    // Fixed at design time, for the owner.
    int64_t Maximum = 0;
    int64_t Minimum = 0;

    [[nodiscard]] bool IsVertical() const { return Width() < Height(); }
    void VerticalSplit(int delta);
    void HorizontalSplit(int delta);
    /// Puts the left or upper edge, by orientation, there. Raises `Moved` also if it is there already.
    void MoveTo(int position);

    std::function<void()> Moved;
    /// Where the owner puts it that was moved to a position; without this it stays there.
    std::function<int(int position)> Limit;
    [[nodiscard]] std::optional<Travel> Way() const override;

    void Event_Open() override;
    void Event_Paint(Graphics& g) override;
    bool Event_MouseDown(int x, int y) override;
    void Event_MouseDrag(int x, int y) override;

  private:
    int mXAnchor = 0;
    int mYAnchor = 0;
};

}  // namespace sorbel
