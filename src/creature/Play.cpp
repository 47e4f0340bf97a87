// Showing off: moves, dances, laps, flights.

#include <algorithm>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double playEnergy = 0.05;
constexpr double playShare = 0.04;  // of a level
constexpr double surfRadius = 300;
constexpr double headHeight = 40;    // art pixels
constexpr double tumbleWay = 16;     // art pixels
constexpr double tumbleMargin = 10;  // points
constexpr double lapWay = 90;        // points
constexpr double lapMargin = 20;     // points

}  // namespace

std::vector<std::string> Companion::playful() const {
    std::vector<std::string> names;
    for (const char* name : {"DeepBreath", "Rotate", "Tumble", "Double"}) {
        if (a().anim(name)) names.emplace_back(name);
    }
    return names;
}

std::vector<std::string> Companion::unlockedMoves() const {
    auto names = playful();
    std::erase_if(names, [this](const std::string& name) {
        return computer().defaults.onlyBoolean("move." + name) == false;
    });
    return names;
}

Step Companion::move(const std::string& name) {
    if (name == "Tumble") return [this](Done next) { tumble(std::move(next)); };
    const Anim* anim = a().anim(name);
    const double times = anim && (name == "Rotate" || name == "Double") ? 2 : 1;
    return playing(anim ? *anim : a().stretch, times);
}

void Companion::tumble(Done done) {
    const Point here = pet_.position();
    const auto under = pet_.surfaceIndex(here);
    const Range span = under ? pet_.ground()[*under].span : Range{here.x, here.x};
    const double way = tumbleWay * pet_.scale();
    const double target = here.x + (pet_.facesRight() ? way : -way);
    const Range room{span.lo + tumbleMargin, span.hi - tumbleMargin};
    const double x = room.width() > 0 ? room.clamp(target) : here.x;
    pet_.play(a().tumble, 1);
    pet_.move({x, here.y}, {.duration = a().tumble.duration}, std::move(done));
}

void Companion::play(Done done) {
    needs_.tire(playEnergy);
    const auto moves = unlockedMoves();
    if (moves.empty()) return sit(between(3, 6), std::move(done));
    const std::string& name = random().pick(moves);
    gainEXP(playShare);
    run({move(name), sitting(between(2, 4))}, std::move(done));
}

void Companion::dance(Done done) {
    auto moves = unlockedMoves();
    std::erase(moves, "DeepBreath");
    if (moves.empty()) {
        return run({playing(a().nod, 3), sitting(between(2, 4))}, std::move(done));
    }
    run({move(random().pick(moves)), sitting(between(1, 3))}, std::move(done));
}

void Companion::perform(const std::string& name) {
    if (!presence_.isAtHand()) return;
    presence_.wake();
    stop([this, name] { run({move(name), sitting(1.5)}, [this] { think(); }); });
}

void Companion::victoryLap(Done done) {
    speak({.moment = Moment::deleted, .face = Face::joyous, .thought = Pixels::bolt()});
    pet_.sparks(16, 0.4);
    const Point start = pet_.position();
    const auto under = pet_.surfaceIndex(start);
    const Range span = under ? pet_.ground()[*under].span : Range{start.x, start.x};
    const Range room{span.lo + lapMargin, span.hi - lapMargin};
    const double x = room.clamp(start.x + (pet_.facesRight() ? lapWay : -lapWay));
    const auto running = [this](Point to) {
        return going({.to = to, .speed = 140, .animSpeed = 1.6});
    };
    run({playing(a().pose), running({x, start.y}), running(start), playing(a().pose)},
        std::move(done));
}

void Companion::startChargeSparks(double rate) {
    chargeSparks_ = pet_.begin([this, sparks = pet_.sparks(rate)] { pet_.stopEmitting(sparks); });
}

void Companion::chargeUp(Done done) {
    startChargeSparks(5);
    pet_.play(a().charge);
    run({waiting(1.0), doing([this] { chargeSparks_.end(); }), playing(a().shock)},
        std::move(done));
}

void Companion::surfLaps(const std::vector<Ground>& spots, Done done) {
    const auto first = strollTarget(spots, surfRadius);
    const auto second = strollTarget(spots, surfRadius);
    if (!first || !second) return sit(3, std::move(done));
    run({going({.to = *first, .speed = 160, .animSpeed = 1.6}),
         going({.to = *second, .speed = 160, .animSpeed = 1.6}), sitting(3)},
        std::move(done));
}

Animation Companion::hoverBob() const {
    return {.keyPath = KeyPath::positionY,
            .motion = BasicMotion{.from = 0.0, .to = 3 * pet_.scale()},
            .curve = TimingFunction::easeInEaseOut(),
            .timing = {.duration = 0.9, .repeatCount = forever, .autoreverses = true}};
}

/// A hover's sign of life.
void Companion::bob() {
    bobbing_.end();
    pet_.sprite().add(hoverBob(), "bob");
    bobbing_ = pet_.begin([this] { pet_.sprite().removeAnimation("bob"); });
}

void Companion::levitate(Air air, Done done) {
    const double head = headHeight * pet_.scale();
    const auto isFreeAir = [&](Point stop) {
        return air == Air::any ||
               (pet_.stage().isVisible(stop) && pet_.stage().isVisible(stop + Vector{0, head}));
    };
    const Point here = pet_.position();
    std::vector<Point> stops{{here.x, here.y + between(70, 180)}};
    if (!isFreeAir(stops.front())) return sit(between(3, 6), std::move(done));
    for (std::size_t more = 2 + random().index(3); more > 0; --more) {
        const double x = pet_.walkArea().clamp(stops.back().x + between(-260, 260));
        const Point stop{x, stops.front().y + between(-40, 40)};
        if (isFreeAir(stop)) stops.push_back(stop);
    }

    needs_.tire(playEnergy);
    gainEXP(playShare);
    pet_.play(a().walk);
    bob();

    std::vector<Step> steps;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        steps.push_back([this, stop = stops[i], turns = i > 0](Done next) {
            if (turns) pet_.faceTowards(stop);
            pet_.move(stop,
                      {.duration = std::max(distance(pet_.position(), stop) / 55, 1.2),
                       .timing = TimingFunction::easeInEaseOut()},
                      std::move(next));
        });
        steps.push_back(waiting(between(1.5, 3.5)));
    }
    steps.push_back([this](Done next) { pet_.fall(Pet::Falling::floating, std::move(next)); });
    steps.push_back(doing([this] { bobbing_.end(); }));
    steps.push_back(sitting(between(2, 4)));
    run(std::move(steps), std::move(done));
}

void Companion::teleport(Point to, Done done) {
    needs_.tire(0.03);
    pet_.sparks(20, 0.3);
    pet_.blink(to, [this, done = std::move(done)] { arriveByTeleport(done); });
}

void Companion::arriveByTeleport(Done done) {
    pet_.sparks(20, 0.3);
    pet_.faceTowards(habitat_.pointer());
    feelIfShown(Face::happy, {.seconds = 2});
    sit(between(3, 5), std::move(done));
}

}  // namespace quibbits
