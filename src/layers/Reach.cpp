#include "layers/Reach.h"

#include <algorithm>
#include <cmath>

#include "layers/DisplayTree.h"
#include "layers/Emission.h"

namespace quibbits {

namespace {

/// The values that a layer takes one after another, spread out.
struct Spread {
    Range x;
    Range y;
    double scale = 0;
    double shift = 0;  // by a translation
    Rect bounds;
    bool castsShadow = false;
    double shadowReach = 0;
    double lineWidth = 0;

    explicit Spread(const Appearance& first)
        : x{first.position.x, first.position.x}, y{first.position.y, first.position.y} {
        takeIn(first);
    }
    void takeIn(const Appearance& values) {
        const auto& t = values.transform;
        x = {std::min(x.lo, values.position.x), std::max(x.hi, values.position.x)};
        y = {std::min(y.lo, values.position.y), std::max(y.hi, values.position.y)};
        scale = std::max({scale, std::abs(t.scaleX), std::abs(t.scaleY)});
        shift = std::max(shift, t.translation.length());
        bounds = bounds.united(values.bounds);
        castsShadow = castsShadow || values.shadow.opacity > 0;
        shadowReach =
            std::max(shadowReach, values.shadow.radius * 3 + values.shadow.offset.length());
        lineWidth = std::max(lineWidth, values.lineWidth);
    }
};

Spread spreadOf(const Appearance& model, const Appearance& seen, const AnimationList* animations) {
    Spread spread(seen);
    spread.takeIn(model);
    if (!animations) return spread;
    for (const auto& running : animations->running()) {
        for (const auto& part : running.parts) {
            const KeyPath path = part.animation().keyPath;
            for (const auto& value : part.extremes(model.value(path))) {
                for (Appearance values : {seen, model}) {
                    const bool adds = part.animation().additive;
                    values.set(path, adds ? sum(values.value(path), value) : value);
                    spread.takeIn(values);
                }
            }
        }
    }
    return spread;
}

/// How far the corners of a rectangle are from a point.
double farthest(Rect r, Point from) {
    return std::hypot(std::max(std::abs(r.minX() - from.x), std::abs(r.maxX() - from.x)),
                      std::max(std::abs(r.minY() - from.y), std::abs(r.maxY() - from.y)));
}

/// Around what the layer itself draws, in its own coordinates.
Rect drawnBox(const Content& content, const Spread& spread) {
    Rect box = spread.bounds.inset(-textOverhang);
    if (const auto* shape = std::get_if<Shape>(&content)) {
        box = box.united(shape->path.bounds().inset(-spread.lineWidth * miterLimit));
    } else if (const auto* emitter = std::get_if<Emitter>(&content)) {
        box = box.united(Emission::reach(*emitter));
    }
    return spread.castsShadow ? box.inset(-spread.shadowReach) : box;
}

}  // namespace

Rect Reach::of(const Layer& layer) const {
    const Appearance seen = seenOf(layer);
    const Spread spread = spreadOf(Appearance::of(layer.model_), seen, layer.animations_.get());
    Rect box = drawnBox(layer.model_.content, spread);
    for (const auto& below : layer.sublayers_) box = box.united(of(*below));
    const Point unit = layer.model_.anchorPoint;
    const Point anchor{seen.bounds.x + unit.x * seen.bounds.width,
                       seen.bounds.y + unit.y * seen.bounds.height};
    const double far = farthest(box, anchor) * spread.scale + spread.shift;
    return {spread.x.lo - far, spread.y.lo - far, spread.x.width() + 2 * far,
            spread.y.width() + 2 * far};
}

Rect Reach::ofItself(const Layer& layer) const {
    return drawnBox(layer.model_.content,
                    spreadOf(Appearance::of(layer.model_), seenOf(layer), layer.animations_.get()));
}

Appearance Reach::seenOf(const Layer& layer) const {
    Appearance seen = Appearance::of(layer.model_);
    if (layer.animations_) layer.animations_->apply(seen, {now_, now_});
    return seen;
}

bool movesThings(KeyPath path) {
    switch (path) {
        case KeyPath::position:
        case KeyPath::positionX:
        case KeyPath::positionY:
        case KeyPath::bounds:
        case KeyPath::transformScale:
        case KeyPath::transformScaleX:
        case KeyPath::transformScaleY:
        case KeyPath::transformRotation:
        case KeyPath::transformTranslation:
        case KeyPath::lineWidth:
        case KeyPath::shadowRadius: return true;
        default: return false;
    }
}

}  // namespace quibbits
