// A drawing before it is coloured: every pixel holds an ink, not a colour.
//
// An ink is a tint of a material (the light of the fur, the line of the paw) or one of the named
// colours that stamps are typed in. A form's palettes turn inks into colours, so that the shiny
// form is the same drawing in other paints.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quibbits::atelier {

enum class Material : std::uint8_t { fur, cream, paw, glow, skin, fluff };
constexpr int materialCount = 6;

/// The five lit tones, then the outline and its three softer mixtures with the deep tone.
enum class Tint : std::uint8_t {
    deep,
    shade,
    base,
    light,
    high,
    line,
    lineFirm,
    lineDark,
    lineSoft
};
constexpr int tintCount = 9;

using Ink = std::uint8_t;
constexpr Ink noInk = 0;

constexpr Ink inkOf(Material material, Tint tint) {
    return static_cast<Ink>(1 + static_cast<int>(material) * tintCount + static_cast<int>(tint));
}
/// The ink of a letter in a stamp, 'A' to 'z'.
constexpr Ink inkOf(char letter) {
    return static_cast<Ink>(128 + letter - 'A');
}

/// 0xAARRGGBB for every ink.
using Palette = std::array<std::uint32_t, 256>;

/// Where the pixel lies among the rows of a picture of that width.
constexpr std::size_t indexOf(int x, int y, int width) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
           static_cast<std::size_t>(x);
}

/// A rectangle of inks. `originX` and `originY` say where the creature's foot point lies: the pixel
/// whose centre is the foot point, and the first row below the ground.
struct Drawing {
    int width = 0;
    int height = 0;
    int originX = 0;
    int originY = 0;
    std::vector<Ink> inks;

    Drawing() = default;
    Drawing(int w, int h, int x, int y)
        : width{w},
          height{h},
          originX{x},
          originY{y},
          inks(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), noInk) {}

    [[nodiscard]] bool holds(int x, int y) const {
        return x >= 0 && y >= 0 && x < width && y < height;
    }
    [[nodiscard]] Ink& at(int x, int y) { return inks[indexOf(x, y, width)]; }
    [[nodiscard]] Ink at(int x, int y) const { return inks[indexOf(x, y, width)]; }
    bool operator==(const Drawing&) const = default;
};

}  // namespace quibbits::atelier
