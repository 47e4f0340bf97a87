// The colours of every form: a ramp a material, and the named colours of the stamps.
//
// Shadows turn towards red and plum on fur and towards indigo on ghosts; lights turn towards yellow
// and cyan. A shiny palette fills the same places with other colours and never changes a shape.
#pragma once

#include "atelier/Ink.h"

namespace quibbits::atelier {

/// The paints of one form.
struct Paints {
    Palette plain{};
    Palette shiny{};
};

Paints mizzlePaints();
Paints sparrelPaints();
Paints thrummetPaints();
Paints coralisPaints();
Paints wispulPaints();
Paints gloamerPaints();
Paints umbroolPaints();

/// Where the light on a material passes from one tone into the next; light runs from -1 to 1.
struct ToneLimits {
    double shade = -0.35;
    double base = 0.12;
    double light = 0.80;
    double high = 2;
};
ToneLimits toneLimits(Material material);

/// 0xAARRGGBB, `share` of the way from one colour to the other.
std::uint32_t mixed(std::uint32_t from, std::uint32_t to, double share);

}  // namespace quibbits::atelier
