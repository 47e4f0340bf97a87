// What sparkles, shrinks and sways about a body.

#include <cmath>
#include <numbers>

#include "body/Pet.h"
#include "body/Pixels.h"

namespace quibbits {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double up = pi / 2;
constexpr Seconds afterglow = 2;  // longer than any particle flies on

std::vector<AnimatedValue> values(std::initializer_list<double> list) {
    return {list.begin(), list.end()};
}

}  // namespace

void Pet::squash() {
    node_->add({.keyPath = KeyPath::transformScaleY,
                .motion = KeyframeMotion{.values = values({1, 0.7, 1.1, 0.96, 1}),
                                         .keyTimes = {0, 0.25, 0.55, 0.8, 1}},
                .timing = {.duration = 0.4}},
               "squash");
}

void Pet::blink(Point to, Done done) {
    const auto fade = [this](double from, double target) {
        node_->add({.keyPath = KeyPath::opacity,
                    .motion = BasicMotion{.from = from, .to = target},
                    .timing = {.duration = 0.25,
                               .fill = FillMode::forwards,
                               .removedOnCompletion = false}},
                   "blink");
    };
    fade(1, 0);
    after(0.28, [this, to, fade, done = std::move(done)] {
        drag(to);
        fade(0, 1);
        after(0.3, done);
    });
}

void Pet::hearts() {
    emit({.image = Pixels::heart(),
          .height = 34,
          .rate = 4,
          .duration = 0.7,
          .velocity = 70,
          .spread = pi / 3,
          .lifetime = 1.4,
          .gravity = -10});
}

void Pet::stars() {
    emit({.image = Pixels::sparkle(),
          .height = 14,
          .rate = 40,
          .duration = 0.5,
          .velocity = 90,
          .spread = 2 * pi,
          .lifetime = 0.8});
}

LayerRef Pet::sparks(double rate, std::optional<Seconds> duration) {
    LayerRef layer = emit({.image = Pixels::sparkle(),
                           .height = 16,
                           .rate = rate,
                           .duration = duration,
                           .velocity = 60,
                           .spread = 2 * pi,
                           .lifetime = 0.45,
                           .area = {28, 26}});
    const Transaction still(engine_, Transaction::withoutActions());
    layer->change([&](LayerProperties& l) {
        std::get<Emitter>(l.content).cells.push_back({.image = Pixels::bolt(),
                                                      .magnification = Filter::nearest,
                                                      .birthRate = rate / 3,
                                                      .lifetime = 0.3,
                                                      .scale = scale_,
                                                      .alphaSpeed = -3});
    });
    return layer;
}

LayerRef Pet::emit(const Emission& e) {
    EmitterCell cell{.image = e.image,
                     .magnification = Filter::nearest,
                     .birthRate = e.rate,
                     .lifetime = e.lifetime,
                     .lifetimeRange = 0.3 * e.lifetime,
                     .velocity = e.velocity,
                     .velocityRange = 0.4 * e.velocity,
                     .emissionLongitude = up,
                     .emissionRange = e.spread,
                     .acceleration = {0, e.gravity},
                     .scale = e.cellScale.value_or(scale_),
                     .alphaSpeed = -1 / e.lifetime};
    LayerRef layer = engine_.makeLayer(
        {.position = {0, e.height * scale_},
         .content = Emitter{.cells = {std::move(cell)},
                            .area = {e.area.width * scale_, e.area.height * scale_}}});
    constexpr std::size_t overTheSprite = 1;
    node_->insertSublayer(layer, e.inFront ? node_->sublayers().size() : overTheSprite);
    if (e.duration) {
        runLoop().after(*e.duration, lifetime_.guard([this, layer] { stopEmitting(layer); }));
    }
    return layer;
}

void Pet::stopEmitting(const LayerRef& emitter) {
    {
        const Transaction still(engine_, Transaction::withoutActions());
        emitter->change([](LayerProperties& l) {
            if (auto* source = std::get_if<Emitter>(&l.content)) source->birthRate = 0;
        });
    }
    runLoop().after(afterglow, [emitter] { emitter->removeFromSuperlayer(); });
}

LayerRef Pet::holdFood(const Food& food) {
    const double width = food.image.width() * scale_;
    const double height = food.image.height() * scale_;
    LayerRef layer = engine_.makeLayer({.bounds = {0, 0, width, height},
                                        .position = {0, food.at * scale_},
                                        .content = Picture{food.image, Filter::nearest}});
    node_->addSublayer(layer);

    std::vector<AnimatedValue> sizes;
    for (int i = 0; i <= food.bites; ++i) {
        sizes.emplace_back(1 - static_cast<double>(i) / food.bites);
    }
    layer->add(
        {.keyPath = KeyPath::transformScale,
         .motion = KeyframeMotion{.values = std::move(sizes), .calculation = Calculation::discrete},
         .timing = {.duration = food.over,
                    .fill = FillMode::forwards,
                    .removedOnCompletion = false}},
        "bites");
    return layer;
}

LayerRef Pet::munch(Layer& food, const Meal& meal) {
    const std::vector<double> beat{0, 0.25, 0.45, 0.7, 1};
    const AnimationTiming timing{.duration = meal.chew, .repeatCount = meal.duration / meal.chew};
    food.add({.keyPath = KeyPath::positionY,
              .motion = KeyframeMotion{.values = values({0, 4 * scale_, 4 * scale_, 0, 0}),
                                       .keyTimes = beat},
              .timing = timing,
              .additive = true},
             "munch");
    node_->add(
        {.keyPath = KeyPath::transformScaleY,
         .motion = KeyframeMotion{.values = values({1, 0.95, 0.97, 1.01, 1}), .keyTimes = beat},
         .timing = timing},
        "munch");

    const Image& whole = meal.crumbs;
    const Image crumb = whole.cropped(whole.width() / 2 - 1, whole.height() / 2 - 1, 2, 2);
    const double foodY = food.model().position.y;
    return emit({.image = crumb ? crumb : whole,
                 .height = foodY / scale_ + 5,
                 .rate = 2 / meal.chew,
                 .duration = meal.duration,
                 .velocity = 25,
                 .spread = pi / 2,
                 .lifetime = 0.7,
                 .gravity = -160,
                 .cellScale = 0.8 * scale_,
                 .inFront = true});
}

void Pet::dizzy(Seconds duration, double head) {
    node_->add({.keyPath = KeyPath::transformRotation,
                .motion = KeyframeMotion{.values = values({0, 0.14, -0.12, 0.1, -0.08, 0.05, 0})},
                .timing = {.duration = 0.9, .repeatCount = duration / 0.9}},
               "dizzy");

    LayerRef ring = engine_.makeLayer(
        {.position = {0, (head - 2) * scale_}, .transform = Transform::scaled(1, 0.35)});
    LayerRef wheel = engine_.makeLayer();
    for (int i = 0; i < 3; ++i) {
        const double angle = 2 * pi * i / 3;
        const double radius = 9 * scale_;
        wheel->addSublayer(
            engine_.makeLayer({.bounds = {0, 0, 5 * scale_, 5 * scale_},
                               .position = {radius * std::cos(angle), radius * std::sin(angle)},
                               .content = Picture{Pixels::sparkle(), Filter::nearest}}));
    }
    wheel->add({.keyPath = KeyPath::transformRotation,
                .motion = BasicMotion{.from = 0.0, .to = 2 * pi},
                .timing = {.duration = 0.8, .repeatCount = forever}},
               "spin");
    ring->addSublayer(wheel);
    node_->addSublayer(ring);
    runLoop().after(duration, [ring] { ring->removeFromSuperlayer(); });
}

LayerRef Pet::silhouette(Color color) {
    const Transaction still(engine_, Transaction::withoutActions());
    const LayerProperties seen = sprite_->presentation();
    const Rect bounds = sprite_->model().bounds;
    const LayerProperties place{.bounds = bounds, .position = {bounds.midX(), bounds.midY()}};

    LayerProperties filled = place;
    filled.background = color;
    LayerProperties shape = place;
    shape.content = seen.content;
    shape.contentsRect = seen.contentsRect;

    LayerRef layer = engine_.makeLayer(filled);
    layer->setMask(engine_.makeLayer(shape));
    sprite_->addSublayer(layer);
    return layer;
}

}  // namespace quibbits
