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

}  // namespace

Rect Reach::of(const Layer& layer) const {
    const Appearance model = Appearance::of(layer.model_);
    Appearance seen = model;
    const auto* animations = layer.animations_.get();
    if (animations) animations->apply(seen, {now_, now_});
    const Spread spread = spreadOf(model, seen, animations);

    Rect box = own(layer, seen).united(spread.bounds);
    for (const auto& below : layer.sublayers_) box = box.united(of(*below));
    const Point unit = layer.model_.anchorPoint;
    const Point anchor{seen.bounds.x + unit.x * seen.bounds.width,
                       seen.bounds.y + unit.y * seen.bounds.height};
    const double far = farthest(box, anchor) * spread.scale + spread.shift;
    return {spread.x.lo - far, spread.y.lo - far, spread.x.width() + 2 * far,
            spread.y.width() + 2 * far};
}

Rect Reach::ofItself(const Layer& layer) const {
    Appearance seen = Appearance::of(layer.model_);
    if (layer.animations_) layer.animations_->apply(seen, {now_, now_});
    return own(layer, seen);
}

Rect Reach::own(const Layer& layer, const Appearance& seen) const {
    const auto& shadow = seen.shadow;
    Rect box = seen.bounds.inset(-textOverhang);
    if (const auto* shape = std::get_if<Shape>(&layer.model_.content)) {
        box = box.united(shape->path.bounds().inset(-shape->lineWidth * miterLimit));
    } else if (const auto* emitter = std::get_if<Emitter>(&layer.model_.content)) {
        box = box.united(Emission::reach(*emitter));
    }
    const double blur = shadow.opacity > 0 ? shadow.radius * 3 + shadow.offset.length() : 0;
    return box.inset(-blur);
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
