#include "body/Ground.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

// Lengths in art pixels.
constexpr double margin = 6;  // kept from the ends of a surface
constexpr double highestLeap = 100;
constexpr double highestHop = 30;
constexpr double widestGap = 30;

/// The x kept a margin away from the ends, or the middle of a surface too narrow for that.
double inset(const Ground& surface, double x, double m) {
    if (2 * m >= surface.span.width()) return surface.span.middle();
    return Range{surface.span.lo + m, surface.span.hi - m}.clamp(x);
}

/// Off an end of the upper surface onto the lower one beneath it.
std::optional<Leg> stepDown(const Ground& a, const Ground& b, double m) {
    for (const double x : {a.span.lo - m, a.span.hi + m}) {
        if (b.span.contains(x)) return Leg{inset(a, x, m), {x, b.y}};
    }
    return std::nullopt;
}

/// Up past an end of the upper surface and down onto it.
Leg jumpUp(const Ground& a, const Ground& b, double m) {
    for (const double x : {b.span.lo - m, b.span.hi + m}) {
        if (a.span.contains(x)) return {x, {inset(b, x, m), b.y}};
    }
    return {inset(a, b.span.lo, m), {inset(b, b.span.lo, m), b.y}};
}

Leg jumpAcross(const Ground& a, const Ground& b, double m) {
    if (a.span.hi <= b.span.lo) {
        return {inset(a, a.span.hi, m), {inset(b, b.span.lo, m), b.y}};
    }
    return {inset(a, a.span.lo, m), {inset(b, b.span.hi, m), b.y}};
}

/// Breadth first from one surface. `visit` hears of every surface that is found, with the one it
/// was found from, and ends the search by answering true.
template <typename Visit>
void search(std::span<const Ground> ground, std::size_t from, JumpAbility ability, Visit visit) {
    std::vector<bool> seen(ground.size(), false);
    seen[from] = true;
    std::vector<std::size_t> queue{from};
    for (std::size_t head = 0; head < queue.size(); ++head) {
        const std::size_t current = queue[head];
        for (std::size_t next = 0; next < ground.size(); ++next) {
            if (seen[next]) continue;
            const auto leg = jumpLeg(ground[current], ground[next], ability);
            if (!leg) continue;
            seen[next] = true;
            if (visit(current, next, *leg)) return;
            queue.push_back(next);
        }
    }
}

}  // namespace

double floorY(std::span<const Ground> ground, double x) {
    double y = 0;
    bool found = false;
    for (const Ground& g : ground) {
        if (!g.solid || !g.span.contains(x)) continue;
        y = found ? std::max(y, g.y) : g.y;
        found = true;
    }
    return y;
}

std::optional<std::size_t> surfaceIndex(std::span<const Ground> ground, Point under) {
    constexpr double tolerance = 1;
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < ground.size(); ++i) {
        const Ground& g = ground[i];
        if (!g.span.contains(under.x) || g.y > under.y + tolerance) continue;
        if (!best || g.y > ground[*best].y) best = i;
    }
    return best;
}

std::optional<Leg> jumpLeg(const Ground& from, const Ground& to, JumpAbility ability) {
    const double s = ability.scale;
    const double m = margin * s;
    const double rise = to.y - from.y;
    if (rise > s * (ability.canLeap ? highestLeap : highestHop)) return std::nullopt;
    if (std::abs(rise) <= 1 && from.span == to.span) return std::nullopt;

    const double overlap = std::min(from.span.hi, to.span.hi) - std::max(from.span.lo, to.span.lo);
    if (overlap > 0) return rise <= 0 ? stepDown(from, to, m) : jumpUp(from, to, m);
    if (-overlap > s * widestGap) return std::nullopt;
    return jumpAcross(from, to, m);
}

std::optional<Route> route(std::span<const Ground> ground, std::size_t from, std::size_t to,
                           JumpAbility ability) {
    if (from == to) return Route{};
    struct Arrival {
        std::size_t previous = 0;
        Leg leg;
    };
    std::vector<Arrival> came(ground.size());
    bool found = false;
    search(ground, from, ability, [&](std::size_t previous, std::size_t next, const Leg& leg) {
        came[next] = {previous, leg};
        found = next == to;
        return found;
    });
    if (!found) return std::nullopt;

    Route legs;
    for (std::size_t at = to; at != from; at = came[at].previous) legs.push_back(came[at].leg);
    std::ranges::reverse(legs);
    return legs;
}

std::vector<bool> reachable(std::span<const Ground> ground, std::size_t from, JumpAbility ability) {
    std::vector<bool> found(ground.size(), false);
    found[from] = true;
    search(ground, from, ability, [&](std::size_t, std::size_t next, const Leg&) {
        found[next] = true;
        return false;
    });
    return found;
}

}  // namespace quibbits
