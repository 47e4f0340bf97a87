// How a ghost gets about: in arcs through the air, and only the oldest of them on foot, for a few
// steps.

#include <algorithm>
#include <cmath>

#include "species/Umbrool.h"

namespace quibbits {

namespace {

constexpr double footpath = 220;  // points that the third stage walks
constexpr double negligible = 2;  // points of height that count as none
constexpr double slowestGlide = 140;
constexpr double turnsBeyond = 4;  // points to the side
constexpr Range arch{30, 140};     // points that a glide swoops upward
constexpr double archShare = 0.35;
constexpr Seconds shortestGlide = 0.6;
constexpr double trailBeyond = 160;  // points

constexpr double lowestFlight = 40;
constexpr double lowestCeiling = 200;
constexpr double headHeight = 30;  // art pixels that are seen above a spot
constexpr int triedSpots = 8;
constexpr double flightEnergy = 0.06;
constexpr double flightShare = 0.04;  // of a level

constexpr Color shadeColor{0.17, 0.06, 0.27, 1};
constexpr Seconds longestShade = 10;
constexpr Seconds shadeFade = 0.6;

}  // namespace

void Umbrool::go(const Walk& walk, Done done) {
    const Point here = pet_.position();
    const auto under = pet_.surfaceIndex(here);
    const bool walks = stage() == Stage::umbrool && std::abs(walk.to.y - here.y) < negligible &&
                       std::abs(walk.to.x - here.x) < footpath && under &&
                       pet_.ground()[*under].span.contains(walk.to.x);
    if (walks) return Companion::go(walk, std::move(done));
    glide(walk.to, std::max(slowestGlide, 2 * walk.speed) * identity_.nature.walkSpeed(),
          [this, done = std::move(done)] {
              // On the ground it comes to rest; in the air it goes on bobbing.
              if (!pet_.isAirborne()) bobbing_.end();
              done();
          });
}

const Anim& Umbrool::glideAnim() const {
    const Anim* own = a().role("glide");
    return own ? *own : a().walk;
}

void Umbrool::glide(Point to, double speed, Done done) {
    const Point here = pet_.position();
    const double way = distance(here, to);
    if (way <= negligible) return done();
    if (std::abs(to.x - here.x) > turnsBeyond) pet_.face(here.x < to.x);
    const Anim& anim = glideAnim();
    pet_.play(anim, forever, 1.4);
    bob();
    const Point control{(here.x + to.x) / 2, std::max(here.y, to.y) + arch.clamp(way * archShare)};
    const Seconds flight = std::max(way / speed, shortestGlide);
    if (stage() == Stage::umbrool && isOn("umbrool.shadowTricks") && way > trailBeyond) {
        trail(anim, flight);
    }
    pet_.move(to,
              {.duration = flight,
               .timing = TimingFunction::easeInEaseOut(),
               .path = Path::quad(here, to, control)},
              std::move(done));
}

void Umbrool::trail(const Anim& anim, Seconds flight) {
    for (const int i : {1, 2, 3, 4}) {
        pet_.after(flight * i / 5, [this, anim] {
            vanish(shade(anim, pet_.position(), pet_.facesRight(), 0.4), {.over = 0.5});
        });
    }
}

Step Umbrool::gliding(Point to, double speed) {
    return [this, to, speed](Done next) { glide(to, speed, std::move(next)); };
}

Step Umbrool::hovering(Seconds seconds) {
    return [this, seconds](Done next) {
        pet_.play(front("Idle", a().idle));
        bob();
        pet_.after(seconds, [this, next = std::move(next)] {
            bobbing_.end();
            next();
        });
    };
}

Point Umbrool::randomSpot() const {
    const double highest = std::max(lowestCeiling, pet_.terrain().ceiling);
    std::optional<Point> first;
    for (int i = 0; i < triedSpots; ++i) {
        const Point spot{between(pet_.walkArea().lo, pet_.walkArea().hi),
                         between(lowestFlight, highest)};
        const Point head = spot + Vector{0, headHeight * pet_.scale()};
        if (pet_.stage().isVisible(spot) && pet_.stage().isVisible(head)) return spot;
        if (!first) first = spot;
    }
    return *first;
}

void Umbrool::fly(Done done) {
    needs_.tire(flightEnergy);
    gainEXP(flightShare);
    std::vector<Step> steps;
    for (std::size_t legs = 2 + random().index(3); legs > 0; --legs) {
        steps.push_back(gliding(randomSpot(), between(220, 340) * identity_.nature.walkSpeed()));
        steps.push_back(hovering(between(0.8, 2.5)));
    }
    steps.push_back([this](Done next) {
        pet_.play(glideAnim());
        pet_.fall(Pet::Falling::floating, std::move(next));
    });
    steps.push_back(doing([this] { bobbing_.end(); }));
    run(std::move(steps), std::move(done));
}

// Shades ----------------------------------------------------------------------------------------

LayerRef Umbrool::shade(const Anim& anim, Point at, bool right, double opacity) {
    LayerEngine& engine = pet_.node().engine();
    const Transaction still(engine, Transaction::withoutActions());
    const double scale = pet_.scale();
    const Rect bounds{0, 0, anim.frameSize.width * scale, anim.frameSize.height * scale};
    const double height = std::max(anim.frameSize.height, 1.0);

    const LayerRef shape = engine.makeLayer(
        {.bounds = bounds,
         .position = bounds.center(),
         .content = Picture{anim.image, Filter::nearest},
         .contentsRect = anim.frames.empty() ? Rect{0, 0, 1, 1} : anim.frames.front()});
    shape->add({.keyPath = KeyPath::contentsRect,
                .motion = KeyframeMotion{.values = {anim.frames.begin(), anim.frames.end()},
                                         .calculation = Calculation::discrete},
                .timing = {.duration = anim.duration, .repeatCount = forever}},
               "frames");
    const LayerRef layer =
        engine.makeLayer({.bounds = bounds,
                          .position = at,
                          .anchorPoint = {0.5, (height / 2 - anim.feet) / height},
                          .transform = right ? Transform{} : Transform::mirrored(),
                          .opacity = opacity,
                          .background = shadeColor});
    layer->setMask(shape);
    if (Layer* home = pet_.node().superlayer()) {
        const auto& all = home->sublayers();
        const auto body = std::ranges::find(all, pet_.nodeRef());
        home->insertSublayer(layer, static_cast<std::size_t>(body - all.begin()));
    }
    pet_.runLoop().after(longestShade, pet_.lifetime().guard([this, layer] {
        if (layer->superlayer()) vanish(layer, {.over = shadeFade});
    }));
    return layer;
}

void Umbrool::vanish(const LayerRef& shade, const Vanishing& how) {
    pet_.runLoop().after(how.after, [shade, how] {
        const AnimationTiming timing{
            .duration = how.over, .fill = FillMode::forwards, .removedOnCompletion = false};
        const double opacity = shade->presentation().opacity;
        AnimationGroup group{.timing = timing};
        group.animations.push_back({.keyPath = KeyPath::opacity,
                                    .motion = BasicMotion{.from = opacity, .to = 0.0},
                                    .timing = timing});
        if (how.shrinks) {
            group.animations.push_back({.keyPath = KeyPath::transformScaleY,
                                        .motion = BasicMotion{.from = 1.0, .to = 0.1},
                                        .timing = timing});
        }
        // Weak, or the layer would keep itself alive when the program ends meanwhile.
        shade->add(std::move(group), "vanish", [layer = std::weak_ptr(shade)](bool) {
            if (const LayerRef seen = layer.lock()) seen->removeFromSuperlayer();
        });
    });
}

/// Dark copies from here on, to the end of the trick.
void Umbrool::beginShades() {
    shading_ = pet_.begin([this] {
        for (const LayerRef& layer : shades_) layer->removeFromSuperlayer();
        shades_.clear();
    });
}

}  // namespace quibbits
