// A ghost inside the window in front: it sinks in, looks out over the edges, and climbs out again.
// While it is in there the mouse cannot reach it, and any interruption brings it out at once.

#include <algorithm>

#include "body/Pixels.h"
#include "species/Umbrool.h"

namespace quibbits {

namespace {

constexpr double windowMargin = 40;  // art pixels
constexpr double booMargin = 30;     // art pixels inside the window
constexpr double underCursor = 28;   // art pixels
constexpr double bottomEdge = 4;     // points
constexpr double peekShare = 0.3;    // of the body that stays below the edge
constexpr double hauntingEnergy = 0.05;
constexpr double hauntingShare = 0.04;  // of a level
constexpr Seconds sinking = 0.5;

}  // namespace

double Umbrool::along(const Rect& window) const {
    const double margin = windowMargin * pet_.scale();
    const double left = window.minX() + margin;
    return between(left, std::max(left, window.maxX() - margin));
}

void Umbrool::phase(Done done) {
    const auto window = pet_.stage().frontWindow();
    if (!isOn("umbrool.phaseThroughWindows") || !window) return fly(std::move(done));
    const double top = lookout(*window, 1);
    muse(Face::happy, {.thought = Pixels::exclaim(), .seconds = 1.6});
    needs_.tire(hauntingEnergy);
    gainEXP(hauntingShare);

    std::vector<Step> steps{going({.to = {along(*window), top}, .speed = 160}), sinkIn()};
    for (std::size_t rounds = 1 + random().index(2); rounds > 0; --rounds) {
        steps.push_back(waiting(between(1.5, 4)));
        steps.push_back(appearing(*window));
    }
    steps.push_back(waiting(between(1, 2.5)));
    steps.push_back([this, window = *window, top](Done next) {
        climbOut({along(window), top}, std::move(next));
    });
    steps.push_back(sitting(1.0));
    run(std::move(steps), std::move(done));
}

double Umbrool::lookout(const Rect& window, double share) const {
    const double body = share * (a().idle.height + 2) * pet_.scale();
    return std::max(std::min(window.maxY(), pet_.terrain().skyline - body), window.minY());
}

Step Umbrool::appearing(const Rect& window) {
    const double edge =
        random().coin() ? window.minY() + bottomEdge : lookout(window, 1 - peekShare);
    return [this, window, edge](Done next) {
        const Point pointer = habitat_.pointer();
        const bool inside = window.inset(booMargin * pet_.scale()).contains(pointer);
        if (a().role("peek") && inside && random().coin()) {
            return boo({pointer.x, pointer.y - underCursor * pet_.scale()}, std::move(next));
        }
        peek({along(window), edge}, std::move(next));
    };
}

Step Umbrool::sinkIn() {
    return [this](Done next) {
        beginHaunting();
        bobbing_.end();  // it moves the sprite, which sinks and rises from here on
        const Anim* sinks = a().anim("Sink");
        if (sinks)
            pet_.play(*sinks, 1);
        else
            fade(0, sinking);
        pet_.after(sinks ? sinks->duration : sinking, [this, next = std::move(next)] {
            hide();
            next();
        });
    };
}

Umbrool::Appearance Umbrool::comeUp(Point at, const Anim& anim) {
    pet_.drag(at);
    pet_.forgetSwings();
    pet_.play(anim);
    clipBelowFeet(true);
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    pet_.sprite().removeAnimation("fade");
    pet_.sprite().setOpacity(1);
    return {anim, (anim.height + 2) * pet_.scale()};
}

void Umbrool::peek(Point at, Done done) {
    const double h = comeUp(at, front("Idle", a().idle)).height;
    rise(-h, -peekShare * h, 0.6);
    feelIfShown(Face::happy, {.seconds = 2.4});
    const Step down = [this, h](Done next) {
        rise(-peekShare * h, -h, 0.4);
        pet_.after(0.45, std::move(next));
    };
    run({waiting(between(2.5, 4)), down, doing([this] { hide(); })}, std::move(done));
}

void Umbrool::boo(Point at, Done done) {
    const std::string* name = a().roleName("peek");
    if (!name) return peek(at, std::move(done));
    const double h = comeUp(at, front(name->c_str(), a().idle)).height;
    rise(-h, 0, 0.35);
    feel(Face::joyous, {.caption = "Boo!", .seconds = 2});
    const Step down = [this, h](Done next) {
        rise(0, -h, 0.5);
        pet_.after(0.55, std::move(next));
    };
    run({waiting(between(1.8, 2.6)), down, doing([this] { hide(); })}, std::move(done));
}

void Umbrool::climbOut(Point at, Done done) {
    const double h = comeUp(at, a().idle).height;
    rise(-h, 0, 0.8);
    run({waiting(0.85), doing([this] { haunting_.end(); })}, std::move(done));
}

void Umbrool::rise(double from, double to, Seconds over) {
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    pet_.sprite().setPosition({0, to});
    pet_.sprite().add({.keyPath = KeyPath::positionY,
                       .motion = BasicMotion{.from = from, .to = to},
                       .curve = TimingFunction::easeOut(),
                       .timing = {.duration = over}},
                      "rise");
}

void Umbrool::fade(double to, Seconds over) {
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    const double from = pet_.sprite().presentation().opacity;
    pet_.sprite().setOpacity(to);
    pet_.sprite().add({.keyPath = KeyPath::opacity,
                       .motion = BasicMotion{.from = from, .to = to},
                       .timing = {.duration = over}},
                      "fade");
}

void Umbrool::hide() {
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    pet_.sprite().setOpacity(0);
}

void Umbrool::clipBelowFeet(bool on) {
    LayerEngine& engine = pet_.node().engine();
    const Transaction still(engine, Transaction::withoutActions());
    pet_.figure().setMask(on ? engine.makeLayer({.bounds = {0, 0, 4000, 4000},
                                                 .position = {0, 2000},
                                                 .background = Color::black()})
                             : nullptr);
}

/// From here on it is inside a window: neither drawn as usual nor touched by the mouse.
void Umbrool::beginHaunting() {
    pet_.setInteractive(false);
    haunting_ = pet_.begin([this] { showWhole(); });
}

void Umbrool::showWhole() {
    clipBelowFeet(false);
    const Transaction still(pet_.node().engine(), Transaction::withoutActions());
    pet_.sprite().removeAnimation("rise");
    pet_.sprite().removeAnimation("fade");
    pet_.sprite().setPosition({});
    pet_.sprite().setOpacity(1);
    pet_.setInteractive(!presence_.isBusy());
}

}  // namespace quibbits
