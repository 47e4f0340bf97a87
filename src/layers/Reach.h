#pragma once
// Where a layer and all below it can ever come by the animations that run now. For a layer that is
// out of sight this tells whether it is worth waking for.

#include "layers/AnimationList.h"

namespace quibbits {

class Reach {
public:
    explicit Reach(Instant now) : now_(now) {}

    /// A rectangle in the parent's coordinates around all places; rather too large than too small.
    Rect of(const Layer& layer) const;
    /// A rectangle in the layer's own coordinates around what it may draw without its sublayers.
    Rect ofItself(const Layer& layer) const;

private:
    Appearance seenOf(const Layer& layer) const;

    Instant now_;
};

/// Whether a change of the value may carry a layer, or something it draws, to another place.
bool movesThings(KeyPath path);

}  // namespace quibbits
