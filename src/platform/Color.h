#pragma once

#include <cstdint>

namespace sorbel {

/// 0xAARRGGBB with an alpha byte in which 0 is opaque and 255 transparent.
struct Color {
    uint32_t Value = 0;

    static constexpr Color FromRGB(unsigned red, unsigned green, unsigned blue, unsigned alpha = 0) {
        return {(alpha << 24) | (red << 16) | (green << 8) | blue};
    }
    [[nodiscard]] constexpr unsigned Alpha() const { return Value >> 24; }
    [[nodiscard]] constexpr unsigned Red() const { return (Value >> 16) & 0xFF; }
    [[nodiscard]] constexpr unsigned Green() const { return (Value >> 8) & 0xFF; }
    [[nodiscard]] constexpr unsigned Blue() const { return Value & 0xFF; }

    bool operator==(const Color&) const = default;
};

}  // namespace sorbel
