#pragma once
// Finds the next instant at which a tree may look different by itself. Only what can be seen, or
// can come into sight, counts.

#include "layers/ArtPixelMotion.h"
#include "layers/DisplayTree.h"

namespace quibbits {

class WakeSearch {
public:
    WakeSearch(const LayerTree::State& state, Instant now) : state_(state), now_(now) {}

    /// The earliest such instant after now; forever when there is none.
    Instant run(const Layer& root);

private:
    struct Context {
        Affine toDevice;  // from the parent's coordinates
        PixelRect clip;
        Instant frames = 0;                 // the instant at which discrete animations are read
        std::optional<Instant> motionEnds;  // while a body goes in steps
        const Layer* body = nullptr;        // the layer itself, if it is one that does
        const Layer* carrier = nullptr;     // the innermost one that carries it
    };

    void visit(const Layer& layer, const DrawnLayer& node, const Context& context);
    bool mayDraw(const Layer& layer, const DrawnLayer& node) const;
    void visitAnimations(const Layer& layer, const Context& context, bool (*counts)(KeyPath));
    Instant nextFrameOf(const RunningAnimation& running, const Playback& part,
                        const Context& context) const;
    void visitEmission(const Layer& layer, const DrawnLayer& node, const Context& context);
    Context insideOf(const Layer& layer, const DrawnLayer& node, const Context& context);
    void wakeAt(Instant instant);

    const LayerTree::State& state_;
    Instant now_;
    Instant next_ = forever;
};

}  // namespace quibbits
