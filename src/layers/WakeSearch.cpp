#include "layers/WakeSearch.h"

#include <algorithm>

#include "layers/Emission.h"
#include "layers/Reach.h"

namespace quibbits {

namespace {

bool isOpacity(KeyPath path) {
    return path == KeyPath::opacity;
}

bool isAny(KeyPath) {
    return true;
}

/// Whether what reaches that far may draw in the clip, edges and soft shadows included.
bool mayTouch(Rect reach, PixelRect clip) {
    constexpr int edge = 4;
    return PixelRect::around(reach).inset(-edge).intersects(clip);
}

/// Whether a change of the value shows on the sublayers.
bool changesBranch(KeyPath path) {
    return movesThings(path) || path == KeyPath::opacity || path == KeyPath::cornerRadius;
}

}  // namespace

Instant WakeSearch::run(const Layer& root) {
    visit(root, state_.root, {state_.flip(), state_.pixels(), now_});
    return next_;
}

void WakeSearch::visit(const Layer& layer, const DrawnLayer& node, const Context& context) {
    if (!node.isActive || layer.model_.hidden) return;
    const bool seen = !node.subtreeExtent.isEmpty();
    if (!seen) {
        const Rect reach = context.toDevice.apply(Reach(now_).of(layer));
        if (!mayTouch(reach, context.clip)) return;
    }
    if (node.isCollapsed) return visitAnimations(layer, context, isOpacity);
    const Context inside = insideOf(layer, node, context);
    visitAnimations(layer, inside,
                    mayDraw(layer, node) ? isAny
                    : seen               ? changesBranch
                                         : movesThings);
    visitEmission(layer, node, context);
    if (node.mask) {
        Context mask = inside;
        mask.clip = context.clip;
        visit(*layer.mask_, *node.mask, mask);
    }
    for (std::size_t i = 0; i < node.sublayers.size(); ++i) {
        visit(*layer.sublayers_[i], *node.sublayers[i], inside);
    }
}

/// Whether what the layer itself draws, now or after a change that moves nothing, is in sight.
bool WakeSearch::mayDraw(const Layer& layer, const DrawnLayer& node) const {
    if (!node.extent.isEmpty()) return true;
    const Rect reach = node.exact.apply(Reach(now_).ofItself(layer));
    return mayTouch(reach, node.clip);
}

/// What holds for a layer's sublayers and its own animations. The steps of a body are looked ahead
/// for here.
WakeSearch::Context WakeSearch::insideOf(const Layer& layer, const DrawnLayer& node,
                                         const Context& context) {
    Context inside = context;
    inside.toDevice = node.exact;
    inside.clip = node.clip;
    inside.body = nullptr;
    if (!(layer.model_.artPixel > 0) || !layer.hasAnimations()) return inside;
    const Appearance model = Appearance::of(layer.model_);
    const double grid = state_.stepSize(layer.model_.artPixel);
    const auto step = artStep(model, *layer.animations_, grid, now_);
    if (!step) {
        const Instant next = stepAtOrAfter(now_ + stepInterval / 1000);
        if (artStep(model, *layer.animations_, grid, next)) wakeAt(next);  // slow from there on
        return inside;
    }
    wakeAt(nextArtStep(model, *layer.animations_, grid, *step));
    inside.frames = std::min(inside.frames, step->frames);
    inside.motionEnds = std::min(step->motionEnds, inside.motionEnds.value_or(forever));
    inside.body = inside.carrier = &layer;
    return inside;
}

void WakeSearch::visitAnimations(const Layer& layer, const Context& context,
                                 bool (*counts)(KeyPath)) {
    if (!layer.hasAnimations()) return;
    for (const auto& running : layer.animations_->running()) {
        for (const auto& part : running.parts) {
            const KeyPath path = part.animation().keyPath;
            if (!counts(path)) continue;
            if (context.body == &layer && movesPosition(path) && running.isInProgress(now_)) {
                continue;
            }
            wakeAt(part.isDiscrete() ? nextFrameOf(running, part, context)
                                     : running.steadyUntil(part, now_));
        }
    }
}

/// When a discrete animation shows its next frame; at a shared step where its body goes in steps.
Instant WakeSearch::nextFrameOf(const RunningAnimation& running, const Playback& part,
                                const Context& context) const {
    const Instant change = running.steadyUntil(part, std::max(context.frames, running.start));
    if (!context.motionEnds || change >= running.end) return change;
    constexpr Seconds clockError = 1e-6;
    Instant shown = stepAtOrAfter(std::max(change, now_ + clockError));
    const auto step =
        artStep(Appearance::of(context.carrier->model_), *context.carrier->animations_,
                state_.stepSize(context.carrier->model_.artPixel), shown);
    if (step && step->frames + clockError < change) {
        shown = stepAtOrAfter(shown + stepInterval / 2);
    }
    return std::min(shown, std::max(change, *context.motionEnds));
}

void WakeSearch::visitEmission(const Layer& layer, const DrawnLayer& node, const Context& context) {
    const auto* emitter = std::get_if<Emitter>(&layer.model_.content);
    if (!emitter || !layer.emission_) return;
    if (node.extent.isEmpty()) {
        const Rect reach = context.toDevice.apply(Reach(now_).of(layer));
        if (!mayTouch(reach, context.clip)) return;
    }
    const auto change = layer.emission_->nextChange(*emitter, layer.emissionSeed(), now_);
    if (change) wakeAt(*change);
}

/// What changes all the time changes with the display's next frame.
void WakeSearch::wakeAt(Instant instant) {
    next_ = std::min(next_, instant > now_ ? instant : state_.frameAfter(now_));
}

}  // namespace quibbits
