#pragma once
// What a creature is given of the place where it lives, beside its body and the computer. All of it
// outlives the creature's use of it.

#include <functional>

#include "effects/BallFX.h"
#include "platform/Geometry.h"

namespace quibbits {

struct Habitat {
    std::function<Point()> pointer = [] { return Point{}; };    // on the stage
    std::function<Point()> ballStart = [] { return Point{}; };  // where a thrown ball starts
    BallFX* fx = nullptr;  // without it nobody goes into a ball, comes out or attacks
    /// Whether nobody else stands in the way of coming out unasked.
    std::function<bool()> mayComeOut = [] { return true; };
    /// It has come out, gone in, or can be called where it could not before.
    std::function<void()> onPlaceChanged = [] {};
};

}  // namespace quibbits
