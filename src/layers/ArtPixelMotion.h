#pragma once
// How a body made of pixel art moves while it is slow: in steps of whole art pixels, at most
// twenty a second. The steps count from where its motion began, so a body does not jump when it
// sets out; when the motion has ended, the body stands exactly where it belongs.

#include <optional>

#include "layers/AnimationList.h"

namespace quibbits {

/// Motion below this speed goes in steps; points a second.
constexpr double steppingSpeed = 90;
/// Steps of all bodies, and the frame changes of what steps, share instants this far apart. A frame
/// that changes where a step leads nowhere waits for the next one, so that both cost one repaint.
constexpr Seconds stepInterval = 1.0 / 20;

/// Whether an animation of the value moves a layer in its parent.
bool movesPosition(KeyPath path);

struct ArtStep {
    Instant instant = 0;  // of the step that shows
    Instant frames = 0;   // at which frames are read
    Point position;
    Instant motionEnds = 0;
};

/// The step that shows at the instant, or nothing while the layer stands or moves fast. The grid
/// is the size of a step in points.
std::optional<ArtStep> artStep(const Appearance& model, const AnimationList& animations,
                               double grid, Instant now);

/// When the next step may show something else than this one.
Instant nextArtStep(const Appearance& model, const AnimationList& animations, double grid,
                    const ArtStep& current);

/// The first shared instant at or after the given one.
Instant stepAtOrAfter(Instant instant);

}  // namespace quibbits
