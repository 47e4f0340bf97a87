#include "body/Pet.h"

#include <algorithm>
#include <utility>

namespace quibbits {

Pet::Pet(LayerEngine& engine, const TextMeasure& text, double scale)
    : engine_(engine), text_(text), scale_(scale) {
    buildLayers();
}

Pet::~Pet() = default;

void Pet::buildLayers() {
    node_ = engine_.makeLayer({.artPixel = scale_});
    figure_ = engine_.makeLayer();
    sprite_ = engine_.makeLayer();
    bubble_ = engine_.makeLayer({.opacity = 0});
    bubbleLine_ = engine_.makeLayer();
    dialog_ = engine_.makeLayer({.opacity = 0});
    dialogLine_ = engine_.makeLayer();
    caption_ = engine_.makeLayer();
    dialogArrow_ = engine_.makeLayer();
    thought_ = engine_.makeLayer({.opacity = 0});

    for (const auto& layer : {figure_, bubble_, dialog_, thought_}) node_->addSublayer(layer);
    figure_->addSublayer(sprite_);
    bubble_->addSublayer(bubbleLine_);
    for (const auto& layer : {dialogLine_, caption_, dialogArrow_}) dialog_->addSublayer(layer);
}

Rect Pet::frame() const {
    const Point at = position();
    return sprite_->frame().offset({at.x, at.y});
}

void Pet::play(const Anim& anim, double repeats, double speed) {
    if (!anim.isPlayable()) return;
    const Transaction still(engine_, Transaction::withoutActions());
    sprite_->change([&](LayerProperties& l) {
        l.content = Picture{anim.image, Filter::nearest};
        l.contentsRect = anim.frames.front();
        l.bounds = {0, 0, anim.frameSize.width * scale_, anim.frameSize.height * scale_};
        const double height = anim.frameSize.height;
        l.anchorPoint = {0.5, (height / 2 - anim.feet) / height};
        l.position = {};
    });
    if (anim.duration <= 0) {
        sprite_->removeAnimation("frames");
        return;
    }
    AnimationTiming timing{.duration = anim.duration, .repeatCount = repeats, .speed = speed};
    if (repeats != forever) {
        timing.fill = FillMode::forwards;
        timing.removedOnCompletion = false;
    }
    std::vector<AnimatedValue> frames(anim.frames.begin(), anim.frames.end());
    sprite_->add({.keyPath = KeyPath::contentsRect,
                  .motion = KeyframeMotion{.values = std::move(frames),
                                           .calculation = Calculation::discrete},
                  .timing = timing},
                 "frames");
}

void Pet::hold(const Anim& anim, std::size_t frame) {
    if (!anim.isPlayable()) return;
    play(anim, 1, 1);
    const Transaction still(engine_, Transaction::withoutActions());
    sprite_->removeAnimation("frames");
    sprite_->change([&](LayerProperties& l) {
        l.contentsRect = anim.frames[std::min(anim.frames.size() - 1, frame)];
    });
}

void Pet::after(Seconds delay, std::function<void()> block) {
    runLoop().after(delay, lifetime_.guard([this, started = token_, block = std::move(block)] {
        if (token_ == started) block();
    }));
}

void Pet::interrupt() {
    ++token_;
    begun_.endAll();
    const Point seen = position();
    const Transaction still(engine_, Transaction::withoutActions());
    node_->removeAllAnimations();
    node_->setPosition(seen);
}

void Pet::enter(StageAccess stage, Terrain terrain) {
    stage_ = std::move(stage);
    terrain_ = std::move(terrain);
}

void Pet::setTerrain(Terrain terrain) {
    terrain_ = std::move(terrain);
    events_.onGroundChanged();
}

void Pet::face(bool right) {
    facesRight_ = right;
    const Transaction still(engine_, Transaction::withoutActions());
    sprite_->setTransform(right ? Transform{} : Transform::mirrored());
}

void Pet::faceTowards(Point point) {
    face(position().x <= point.x);
}

}  // namespace quibbits
