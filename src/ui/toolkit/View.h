#pragma once

#include <cstdint>

namespace sorbel {

/// What of a control or a window has changed; a set of bits.
enum class Aspect : uint32_t {
    Geometry = 1,  ///< place, size, visible
    Enabled = 2,
    Text = 4,   ///< text, caption, title, coloured runs
    Style = 8,  ///< colour, italic
    Rows = 16,  ///< rows added, removed, opened or closed
    Selection = 32,
    Scroll = 64,
    Cells = 128,  ///< how existing rows look
    Focus = 256,
    Modified = 512,  ///< a window's modified mark and file
    Order = 1024,    ///< a window came to the front
};

/// What a binding attaches to a control or window to show it. It is told that something has changed while the
/// change is going on, and should look at the control only when the program has gone back to its event loop.
/// It never writes to the control from inside `Changed`.
class View {
  public:
    virtual ~View() = default;
    virtual void Changed(Aspect aspect) = 0;
};

}  // namespace sorbel
