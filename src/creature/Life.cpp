#include "creature/Life.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "rules/Thresholds.h"

namespace quibbits {

namespace {

constexpr double insideMargin = 20;  // points kept from a stretch's ends when walking inside it
constexpr double ontoMargin = 40;    // when walking onto another one
constexpr double besideCursor = 40;
constexpr double nearEnough = 60;

/// The item with the smallest measure; the first of equals.
template <typename Range, typename Measure>
const Ground* nearest(const Range& grounds, Measure measure) {
    const Ground* best = nullptr;
    double least = 0;
    for (const Ground* g : grounds) {
        const double d = measure(*g);
        if (best && d >= least) continue;
        best = g;
        least = d;
    }
    return best;
}

std::vector<const Ground*> solidOnes(std::span<const Ground> spots) {
    std::vector<const Ground*> solid;
    for (const Ground& spot : spots) {
        if (spot.solid) solid.push_back(&spot);
    }
    return solid;
}

Point onto(const Ground& spot, double x) {
    const Range room{spot.span.lo + ontoMargin, spot.span.hi - ontoMargin};
    return {room.clamp(x), spot.y};
}

}  // namespace

std::string_view rawValue(Mood mood) {
    constexpr std::array<std::string_view, 4> names{"happy", "charging", "tired", "fainted"};
    return names[static_cast<std::size_t>(mood)];
}

Mood moodFor(const Condition& c) {
    if (c.feelsHeat && c.thermalState == ThermalState::critical) return Mood::fainted;
    if (c.feelsHeat && c.thermalState == ThermalState::serious) return Mood::tired;
    if (c.charging) return Mood::charging;
    if (c.level < 6) return Mood::fainted;
    if (c.level <= 20) return Mood::tired;
    return Mood::happy;
}

double expShare(const TimedExp& earned) {
    const double pace = earned.tired ? 0.5 : 1.0;
    const double fondness = std::clamp(earned.friendship / mostFriendship, 0.0, 1.0);
    const double lineFactor = 1000000 / expForLevel(earned.rate, maxLevel);
    return earned.minutes * pace * lineFactor * 0.02 * (0.3 + 0.7 * fondness);
}

std::string fileKey(const Ground& file) {
    return std::to_string(static_cast<long>(file.span.lo)) + "," +
           std::to_string(static_cast<long>(file.y));
}

std::optional<Point> strollTarget(Point here, std::span<const Ground> ground,
                                  std::span<const Ground> spots, double within, Random& random) {
    const auto byMiddle = [&](const Ground& g) { return std::abs(g.span.middle() - here.x); };
    const auto index = surfaceIndex(ground, here);
    const Ground* under = index ? &ground[*index] : nullptr;

    if (under && !under->solid && random.coin()) {
        // About every other time it climbs back down from an icon.
        if (const Ground* floor = nearest(solidOnes(spots), byMiddle)) return onto(*floor, here.x);
    }

    std::vector<const Ground*> candidates;
    for (const Ground& spot : spots) {
        const bool standsOnIt = under && spot.y == under->y && spot.span.contains(here.x);
        if (spot.solid || standsOnIt) candidates.push_back(&spot);
    }
    if (candidates.empty()) return std::nullopt;

    const auto holdsIt = [&](const Ground* g) {
        return g->span.contains(here.x) && std::abs(g->y - here.y) < 2;
    };
    const auto own = std::ranges::find_if(candidates, holdsIt);
    if (own == candidates.end()) return onto(*nearest(candidates, byMiddle), here.x);

    const Ground& span = **own;
    const double lo = std::max(here.x - within, span.span.lo + insideMargin);
    const double hi = std::min(here.x + within, span.span.hi - insideMargin);
    if (lo >= hi) return std::nullopt;
    return Point{random.uniform(lo, hi), span.y};
}

std::optional<Point> spotNearCursor(Point here, Point cursor, std::span<const Ground> spots) {
    const auto spot = std::ranges::find_if(
        spots, [&](const Ground& g) { return g.solid && g.span.contains(cursor.x); });
    if (spot == spots.end() || std::abs(cursor.x - here.x) <= nearEnough) return std::nullopt;
    const double x = cursor.x <= here.x ? cursor.x + besideCursor : cursor.x - besideCursor;
    const Range room{spot->span.lo + insideMargin, spot->span.hi - insideMargin};
    return Point{room.clamp(x), spot->y};
}

}  // namespace quibbits
