// Going places on foot, visiting files, sitting and napping.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double pointsPerEnergy = 3000;  // of a stroll
constexpr double trudgeRadius = 120;

constexpr std::size_t nearestFiles = 3;
constexpr double climbReach = 150;  // points between the middles of stacked files
constexpr double climbEnergy = 0.6;

constexpr Seconds longestSit = 30;
constexpr Seconds lookAgain = 2;

}  // namespace

std::optional<Point> Companion::strollTarget(const std::vector<Ground>& spots,
                                             double within) const {
    return quibbits::strollTarget(pet_.position(), pet_.ground(), spots, within, random());
}

void Companion::go(const Walk& walk, Done done) {
    const double pace = identity_.nature.walkSpeed() * paceBoost();
    pet_.travel(walk.to,
                {.walk = a().walk,
                 .hop = a().hop,
                 .leap = a().leap,
                 .speed = walk.speed * pace,
                 .animSpeed = walk.animSpeed * pace},
                std::move(done));
}

void Companion::stroll(Point to, Done done) {
    needs_.tire(std::abs(to.x - pet_.position().x) / pointsPerEnergy);
    run({going({.to = to, .speed = 45}), sitting(between(3, 6))}, std::move(done));
}

void Companion::trudge(Done done) {
    const auto target = strollTarget(pet_.stage().openSpots(), trudgeRadius);
    if (target) return go({.to = *target, .speed = 25, .animSpeed = 0.5}, std::move(done));
    rest(std::move(done));
}

void Companion::rest(Done done) {
    needs_.rest(0.35);
    sit(between(10, 18), std::move(done));
}

void Companion::sitQuietly(Done done) {
    needs_.rest(0.03);
    needs_.bore(0.12);
    sit(between(5, 10), std::move(done));
}

void Companion::daydream(Done done) {
    const std::array thoughts{Pixels::heart(), Pixels::note(), Pixels::sparkle(), Pixels::bolt(),
                              Pixels::item(favorite(identity_.nature).value_or(Item::azurine))};
    muse(Face::happy, {.thought = random().pick(thoughts), .seconds = 3.0});
    sit(between(6, 10), std::move(done));
}

void Companion::yawn(Done done) {
    muse(Face::sigh, {.thought = Pixels::zzz(), .seconds = 2.0});
    needs_.rest(0.05);
    run({playing(a().stretch), sitting(between(4, 6))}, std::move(done));
}

void Companion::hum(Done done) {
    muse(Face::joyous, {.thought = Pixels::note(), .seconds = 2.5});
    run({playing(a().nod, 4), sitting(3)}, std::move(done));
}

void Companion::bask(Done done) {
    muse(Face::happy, {.thought = Pixels::sparkle(), .seconds = 2.0});
    const Anim* lying = a().role("bask");
    pet_.play(lying ? *lying : a().sleep);
    run({waiting(between(15, 30)), doing([this] { needs_.rest(0.1); }), playing(a().wake)},
        std::move(done));
}

void Companion::sit(Seconds seconds, Done done) {
    pet_.hold(a().idle, 0);
    attention_.sit(pet_.token());
    pet_.after(seconds, [this, start = now(), done = std::move(done)]() mutable {
        finishSit(start, std::move(done));
    });
}

void Companion::finishSit(Instant start, Done done) {
    if (attention_.isWatching(now()) && now() - start < longestSit) {
        pet_.after(lookAgain, [this, start, done = std::move(done)]() mutable {
            finishSit(start, std::move(done));
        });
        return;
    }
    attention_.getUp();
    done();
}

void Companion::nap(Done done) {
    const Seconds seconds = isNight(hour()) ? between(60, 180) : between(30, 90);
    const Anim* curled = a().role("nap");
    pet_.play(curled ? *curled : a().sleep);
    run({waiting(seconds), playing(a().wake), playing(a().stretch), doing([this] {
             needs_.sleepOff();
             speak({.moment = Moment::woke, .face = Face::happy});
         })},
        std::move(done));
}

void Companion::inspect(const Ground& file, Done done) {
    needs_.tire(0.1);
    files_.visit(file, now());
    run({going({.to = file.middle(), .speed = 90, .animSpeed = 1.2}), doing([this] {
             feelIfShown(Face::surprised, {.thought = Pixels::file(), .seconds = 2.5});
         }),
         playing(a().nod, 2), sitting(between(4, 8))},
        std::move(done));
}

void Companion::explore(const Ground& file, Done done) {
    needs_.tire(0.15);
    files_.visit(file, now());
    run({going({.to = file.middle(), .speed = 70}), sitting(between(3, 6)),
         [this, file](Done next) { climbOn(file, std::move(next)); }},
        std::move(done));
}

void Companion::climbOn(const Ground& from, Done done) {
    if (needs().energy <= climbEnergy || !random().coin()) return done();
    std::vector<Ground> higher;
    for (const Ground& spot : pet_.stage().openSpots()) {
        if (spot.solid || spot.y <= from.y + 1) continue;
        if (distance(spot.middle(), from.middle()) < climbReach) higher.push_back(spot);
    }
    const auto reach = canReach(higher);
    const Ground* next = nullptr;
    for (std::size_t i = 0; i < higher.size(); ++i) {
        if (reach[i] && (!next || higher[i].y < next->y)) next = &higher[i];
    }
    if (!next) return done();
    needs_.tire(0.1);
    files_.visit(*next, now());
    run({going({.to = next->middle(), .speed = 70}), sitting(between(3, 6))}, std::move(done));
}

std::vector<bool> Companion::canReach(const std::vector<Ground>& files) const {
    std::vector<bool> answers(files.size(), false);
    const auto here = pet_.surfaceIndex(pet_.position());
    if (!here || files.empty()) return answers;
    const auto found = reachable(pet_.ground(), *here, pet_.jumpAbility());
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto surface = pet_.surfaceIndex(files[i].middle());
        answers[i] = surface && found[*surface];
    }
    return answers;
}

std::optional<Ground> Companion::noticeNewFiles(const std::vector<Ground>& tiles) {
    if (!pet_.terrain().iconsKnown) return std::nullopt;
    const std::vector<Ground> fresh = files_.look(pet_.ground());
    const auto reach = canReach(fresh);
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        const bool inSight = std::ranges::any_of(tiles, [&](const Ground& tile) {
            return tile.y == fresh[i].y && tile.span.lo <= fresh[i].span.hi &&
                   fresh[i].span.lo <= tile.span.hi;
        });
        if (reach[i] && inSight) return fresh[i];
    }
    return std::nullopt;
}

std::optional<Ground> Companion::fileToExplore(const std::vector<Ground>& tiles) {
    std::vector<Ground> due;
    std::ranges::copy_if(tiles, std::back_inserter(due),
                         [this](const Ground& tile) { return files_.isDue(tile, now()); });
    const auto reach = canReach(due);
    std::vector<Ground> near;
    for (std::size_t i = 0; i < due.size(); ++i) {
        if (reach[i]) near.push_back(due[i]);
    }
    if (near.empty()) return std::nullopt;
    const Point here = pet_.position();
    std::ranges::stable_sort(near, {}, [&](const Ground& g) { return distance(g.middle(), here); });
    near.resize(std::min(near.size(), nearestFiles));
    return random().pick(near);
}

}  // namespace quibbits
