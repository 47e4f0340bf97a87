#pragma once
// Soft shadows.

#include "raster/Canvas.h"

namespace quibbits {

/// How far a blur of a radius reaches, in pixels.
int blurReach(double radius);

/// The shadow that the bitmap's opacity casts, in one colour, as far as the area shows it. The
/// bitmap must hold the area with a margin of blurReach around it.
Bitmap shadowOf(const Bitmap& caster, PixelRect area, int dx, int dy, double radius, Argb color);

}  // namespace quibbits
