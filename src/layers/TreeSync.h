#pragma once
// Brings the display tree up to date with the layers at one instant, and collects what must be
// painted for it. Branches where nothing has changed and nothing moves are left alone.

#include "layers/ArtPixelMotion.h"
#include "layers/Damage.h"
#include "layers/DisplayTree.h"

namespace quibbits {

class TreeSync {
public:
    TreeSync(LayerTree::State& state, Instant now) : state_(state), now_(now) {}

    Damage run(Layer& root);

private:
    struct Context {
        Affine toDevice;  // from the parent's coordinates
        PixelRect clip;
        Instant frames = 0;  // the instant at which discrete animations are read
        bool moved = false;  // the parent's place or clip differs from the last frame's
    };

    void visit(Layer& layer, DrawnLayer& node, const Context& context);
    Appearance present(const Layer& layer, Instant& frames) const;
    Drawn draw(Layer& layer, DrawnLayer& node, const Appearance& seen, const Affine& exact);
    void visitMask(Layer& layer, DrawnLayer& node, const Context& inside, bool& repaint);
    void matchSublayers(Layer& layer, DrawnLayer& node);
    void collapse(DrawnLayer& node, bool active);

    LayerTree::State& state_;
    Instant now_;
    Damage damage_;
};

}  // namespace quibbits
