// Frames of animations, drawn from all eight directions upon one common ground.
//
// Whoever plays a sheet takes the lowest drawn row of a strip for the ground, so the ground must be
// the same row in all of them: every strip touches `groundRow` and none goes below it.
#pragma once

#include <array>
#include <vector>

#include "atelier/Animations.h"
#include "atelier/Form.h"
#include "atelier/Render.h"

namespace quibbits::atelier {

/// Room for the largest form with all its effects. Nothing may touch its rim.
constexpr Canvas frameCanvas{.width = 121, .height = 104, .originX = 60, .originY = 80};

/// The lowest row a creature may cover, counted from the top of the canvas.
constexpr int groundRow = frameCanvas.originY;

/// How far down each direction's drawings must be shifted to stand on the ground.
using GroundShift = std::array<int, directionCount>;
GroundShift groundShiftOf(const Form& form);

using Strip = std::vector<Drawing>;
/// One animation from one direction.
Strip drawStrip(const Form& form, const GroundShift& shift, const Animation& animation,
                int direction);

using DrawnAnimation = std::array<Strip, directionCount>;

DrawnAnimation drawAnimation(const Form& form, const GroundShift& shift,
                             const Animation& animation);

/// The last row with any ink; -1 when there is none.
int lowestRow(const Drawing& drawing);

}  // namespace quibbits::atelier
