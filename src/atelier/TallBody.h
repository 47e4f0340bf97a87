// The body that the two grown furry forms share: upright, with a ruff and long arms.
#pragma once

#include "atelier/Form.h"

namespace quibbits::atelier {

struct TallFrames {
    Frame hip;
    Frame head;
};

/// Legs, trunk, ruff, arms and the head without its ears.
TallFrames shapeTallBody(Model& model, const Stage& stage, const Pose& pose);

/// Where the tail grows, turned out of the head's way.
/// With its narrow head, it turns further than others, or the far eye would lie on the outline.
constexpr std::array<double, directionCount> tallHeadTurn{0, -10, -40, -6, 0, 6, 40, 10};

Frame tallTailRoot(const Frame& hip, double turn, const Pose& pose);

Head tallHead(const Frame& frame);

enum class Brow { soft, keen };
void layTallFace(Model& model, const Head& head, const Pose& pose, Brow brow);

}  // namespace quibbits::atelier
