#pragma once

namespace sorbel {

/// Place and size in points, relative to the window's content.
struct Bounds {
    int Left = 0, Top = 0, Width = 0, Height = 0;
    bool operator==(const Bounds&) const = default;
};

}  // namespace sorbel
