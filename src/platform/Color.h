#pragma once
// A colour as four parts from 0 to 1, not premultiplied.

#include <cstdint>

namespace quibbits {

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
    bool operator==(const Color&) const = default;

    static constexpr Color white(double alpha = 1) { return {1, 1, 1, alpha}; }
    static constexpr Color black(double alpha = 1) { return {0, 0, 0, alpha}; }
    static constexpr Color clear() { return {}; }
    static constexpr Color gray(double level, double alpha = 1) {
        return {level, level, level, alpha};
    }
    /// 0xRRGGBB, opaque.
    static constexpr Color rgb(std::uint32_t hex) {
        return {((hex >> 16) & 0xff) / 255.0, ((hex >> 8) & 0xff) / 255.0, (hex & 0xff) / 255.0, 1};
    }
    constexpr Color withAlpha(double a) const { return {red, green, blue, a}; }
};

}  // namespace quibbits
