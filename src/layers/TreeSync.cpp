#include "layers/TreeSync.h"

#include <unordered_map>
#include <utility>

#include "layers/Emission.h"
#include "layers/LayerEngine.h"

namespace quibbits {

namespace {

/// Whether everything below looks different though the layers below are the same.
bool changesGroup(const Drawn& was, const Drawn& is) {
    if (was.masksToBounds != is.masksToBounds) return true;
    return is.masksToBounds &&
           (was.toDevice != is.toDevice || was.values.bounds != is.values.bounds ||
            was.values.cornerRadius != is.values.cornerRadius);
}

}  // namespace

Damage TreeSync::run(Layer& root) {
    visit(root, state_.root, {state_.flip(), state_.pixels(), now_});
    return std::move(damage_);
}

void TreeSync::visit(Layer& layer, DrawnLayer& node, const Context& context) {
    const bool changed = std::exchange(node.changes, layer.changes_) != layer.changes_;
    if (!context.moved && !node.isNew && !node.isActive && !changed) return;
    const bool alive = layer.hasAnimations() || layer.emission_;
    if (layer.model_.hidden) return collapse(node, false);

    Context inside{.frames = context.frames};
    const Appearance seen = present(layer, inside.frames);
    inside.toDevice = context.toDevice.after(toParent(seen, layer.model_.anchorPoint));
    const int opacity = drawnOpacity(seen.opacity);
    if (opacity == 0) return collapse(node, alive);
    Drawn drawn = draw(layer, node, seen, inside.toDevice);

    inside.clip = context.clip;
    if (drawn.masksToBounds) {
        const Rect box = drawn.toDevice.apply(drawn.values.bounds);
        inside.clip = inside.clip.intersected(PixelRect::around(box));
    }
    bool repaint = node.opacity != opacity || changesGroup(node.drawn, drawn);
    visitMask(layer, node, inside, repaint);
    if (node.mask) inside.clip = inside.clip.intersected(node.mask->subtreeExtent);

    const PixelRect extent = extentOf(drawn, inside.toDevice).intersected(inside.clip);
    if (node.drawn != drawn || node.extent != extent) {
        damage_.add(node.extent);
        damage_.add(extent);
        node.drawn = std::move(drawn);
        node.extent = extent;
    }
    inside.moved =
        context.moved || node.isNew || node.exact != inside.toDevice || node.clip != inside.clip;
    node.opacity = opacity;
    node.exact = inside.toDevice;
    node.clip = inside.clip;
    node.isNew = false;

    if (node.sublayersRevision != layer.sublayersRevision_ || node.isCollapsed) {
        matchSublayers(layer, node);
    }
    node.isActive = alive || (node.mask && node.mask->isActive);
    node.subtreeExtent = extent;
    for (std::size_t i = 0; i < node.sublayers.size(); ++i) {
        auto& below = *node.sublayers[i];
        visit(*layer.sublayers_[i], below, inside);
        node.isActive = node.isActive || below.isActive;
        node.subtreeExtent = node.subtreeExtent.united(below.subtreeExtent);
    }
    // What the branch no longer covers was painted over by the layers that left it.
    if (repaint) damage_.add(node.subtreeExtent);
}

/// The layer's values as they are seen. For a body that goes in steps, `frames` falls back to the
/// step that shows.
Appearance TreeSync::present(const Layer& layer, Instant& frames) const {
    const Appearance model = Appearance::of(layer.model_);
    if (!layer.hasAnimations()) return model;
    std::optional<ArtStep> step;
    if (layer.model_.artPixel > 0) {
        step = artStep(model, *layer.animations_, state_.stepSize(layer.model_.artPixel), now_);
    }
    if (step) frames = std::min(frames, step->frames);
    Appearance seen = model;
    layer.animations_->apply(seen, {now_, frames});
    if (step) seen.position = step->position;
    return seen;
}

Drawn TreeSync::draw(Layer& layer, DrawnLayer& node, const Appearance& seen, const Affine& exact) {
    auto content = node.drawn.content;
    if (!content || node.contentRevision != layer.contentRevision_) {
        content = std::make_shared<const Content>(layer.model_.content);
        node.contentRevision = layer.contentRevision_;
    }
    Drawn drawn = drawnOf(seen, layer.model_, exact, std::move(content));
    if (const auto* emitter = std::get_if<Emitter>(drawn.content.get());
        emitter && layer.emission_) {
        for (const auto& p : layer.emission_->particles(*emitter, layer.emissionSeed(), now_)) {
            drawn.particles.push_back(
                drawnParticle(emitter->cells[p.cell], p.cell, p.place, p.opacity, exact));
        }
    }
    return drawn;
}

/// A change inside a mask shows in all that it masks.
void TreeSync::visitMask(Layer& layer, DrawnLayer& node, const Context& inside, bool& repaint) {
    const std::uint64_t wanted = layer.mask_ ? layer.mask_->id_ : 0;
    if (wanted != (node.mask ? node.mask->id : 0)) {
        node.mask = wanted ? std::make_unique<DrawnLayer>() : nullptr;
        if (node.mask) node.mask->id = wanted;
        repaint = true;
    }
    if (!node.mask) return;
    Context context = inside;
    context.moved = node.exact != inside.toDevice || node.clip != inside.clip;
    const Damage outside = std::exchange(damage_, {});
    visit(*layer.mask_, *node.mask, context);
    repaint = repaint || !damage_.isEmpty();
    damage_ = outside;
}

/// Gives each sublayer its node, in order. What went away or changed places must be painted.
void TreeSync::matchSublayers(Layer& layer, DrawnLayer& node) {
    node.sublayersRevision = layer.sublayersRevision_;
    node.isCollapsed = false;
    std::unordered_map<std::uint64_t, std::size_t> places;
    for (std::size_t i = 0; i < node.sublayers.size(); ++i) places[node.sublayers[i]->id] = i;

    auto before = std::exchange(node.sublayers, {});
    std::size_t highest = 0;
    for (const auto& sublayer : layer.sublayers_) {
        const auto place = places.find(sublayer->id_);
        auto next = place == places.end() ? nullptr : std::move(before[place->second]);
        if (!next) {
            next = std::make_unique<DrawnLayer>();
            next->id = sublayer->id_;
        } else if (place->second < highest) {
            damage_.add(next->subtreeExtent);
        } else {
            highest = place->second;
        }
        node.sublayers.push_back(std::move(next));
    }
    for (const auto& gone : before) {
        if (gone) damage_.add(gone->subtreeExtent);
    }
}

/// Nothing of it is seen: what it last drew is painted over, and it begins anew when it returns.
void TreeSync::collapse(DrawnLayer& node, bool active) {
    if (node.isCollapsed && !node.isNew) {
        node.isActive = active;
        return;
    }
    damage_.add(node.subtreeExtent);
    DrawnLayer fresh;
    fresh.id = node.id;
    fresh.changes = node.changes;
    fresh.isActive = active;
    fresh.isNew = false;
    node = std::move(fresh);
}

}  // namespace quibbits
