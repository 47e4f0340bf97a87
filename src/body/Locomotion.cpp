// How a body gets from one place to another.

#include <algorithm>
#include <cmath>

#include "body/Pet.h"

namespace quibbits {

namespace {

constexpr double standing = 1;  // points within which a body counts as being there

// Jumps, in art pixels where nothing else is said.
constexpr double bigJump = 35;
constexpr double bigApex = 6;  // above the higher end
constexpr double smallApex = 10;
constexpr double jumpSpeed = 600;  // points a second
constexpr Seconds shortestJump = 0.45;

constexpr double gravity = 2400;    // points a second, a second
constexpr double floatSpeed = 220;  // points a second
constexpr Seconds shortestFloat = 0.8;
constexpr TimingFunction fallingCurve{{0.55, 0.085, 0.68, 0.53}};

constexpr double shortestSwing = 8;  // points of a drag step that counts

}  // namespace

bool Pet::isAirborne() const {
    const Point at = position();
    const auto below = surfaceIndex(at);
    return at.y > (below ? ground()[*below].y : 0) + standing;
}

void Pet::travel(Point to, const Gait& gait, Done done) {
    const auto from = surfaceIndex(position());
    const auto target = surfaceIndex(to);
    const auto way = from && target ? route(*from, *target) : std::nullopt;
    if (!way) return done();

    std::vector<Step> steps;
    for (const Leg& leg : *way) {
        steps.push_back(lifetime_.guard([this, leg, gait](Done next) {
            walk(leg.takeoff, gait.walk, gait.speed, gait.animSpeed, std::move(next));
        }));
        steps.push_back(lifetime_.guard([this, leg, gait](Done next) {
            jump(leg.landing, gait.hop, gait.leap, std::move(next));
        }));
    }
    steps.push_back(lifetime_.guard([this, to, gait](Done next) {
        walk(to.x, gait.walk, gait.speed, gait.animSpeed, std::move(next));
    }));
    run(std::move(steps), std::move(done));
}

void Pet::walk(double toX, const Anim& anim, double speed, double animSpeed, Done done) {
    const Point here = position();
    const double x = walkArea().clamp(toX);
    const double way = std::abs(x - here.x);
    if (way <= standing) return done();
    face(here.x < x);
    play(anim, forever, animSpeed);
    move({x, here.y}, {.duration = way / speed}, std::move(done));
}

void Pet::jump(Point to, const Anim& hop, const Anim& leap, Done done) {
    const Point from = position();
    face(from.x <= to.x);
    const bool big = to.y - from.y > bigJump * scale_;
    play(big ? leap : hop, 1, 1);
    if (big) sparks(20, 0.35);
    const double apex = std::max(from.y, to.y) + (big ? bigApex : smallApex) * scale_;
    const Point control{(from.x + to.x) / 2, 2 * apex - (from.y + to.y) / 2};
    move(to,
         {.duration = std::max(distance(from, to) / jumpSpeed, shortestJump),
          .path = Path::quad(from, to, control)},
         std::move(done));
}

void Pet::move(Point to, Motion motion, Done done) {
    glideSpeech(keepSpeechInSight(to), motion.duration);
    KeyframeMotion frames{.values = {position(), to}, .path = std::move(motion.path)};
    const Transaction still(engine_, Transaction::withoutActions());
    node_->setPosition(to);
    node_->add(
        {.keyPath = KeyPath::position,
         .motion = std::move(frames),
         .curve = motion.timing,
         .timing = {.duration = motion.duration}},
        "move", lifetime_.guard([this, started = token_, done = std::move(done)](bool finished) {
            if (!finished || token_ != started) return;
            constexpr Seconds toTheOtherSide = 0.3;  // of the head, where it has got too high
            glideSpeech(keepSpeechInSight(position()), toTheOtherSide);
            if (!events_.onMoved()) return;
            if (done) done();
        }));
}

double Pet::fall(Falling how, Done done) {
    const Point from = position();
    const double x = walkArea().clamp(from.x);
    const auto below = surfaceIndex({x, from.y});
    const Point floor{x, below ? ground()[*below].y : 0};
    const double height = from.y - floor.y;
    if (height <= standing) {
        move(floor, {.duration = 0.1}, std::move(done));
        return 0;
    }
    if (how == Falling::floating) {
        move(floor,
             {.duration = std::max(height / floatSpeed, shortestFloat),
              .timing = TimingFunction::easeInEaseOut()},
             std::move(done));
    } else {
        move(floor, {.duration = std::sqrt(2 * height / gravity), .timing = fallingCurve},
             std::move(done));
    }
    return height;
}

Point Pet::inFront(Vector artPixels) const {
    const Point here = position();
    const double side = (facesRight_ ? artPixels.dx : -artPixels.dx) * scale_;
    const double x = screen().contains(here.x + side) ? here.x + side : here.x - side;
    return {x, here.y + artPixels.dy * scale_};
}

void Pet::drag(Point to) {
    if (lastDrag_) {
        const Vector step = to - *lastDrag_;
        if (step.length() > shortestSwing) {
            if (dot(step, lastSwing_) < 0) ++swings_;
            lastSwing_ = step;
        }
    }
    lastDrag_ = to;
    const Transaction still(engine_, Transaction::withoutActions());
    node_->setPosition(to);
    keepSpeechInSight(to);
}

void Pet::forgetSwings() {
    swings_ = 0;
    lastDrag_.reset();
    lastSwing_ = {};
}

}  // namespace quibbits
