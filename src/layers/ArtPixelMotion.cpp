#include "layers/ArtPixelMotion.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

constexpr double stepsPerSecond = 1 / stepInterval;
constexpr double clockError = 1e-6;  // in steps

struct Motion {
    Instant begins = 0;
    Instant ends = forever;
};

/// The stretch of time around the instant in which the same animations move the layer.
std::optional<Motion> motionAt(const AnimationList& animations, Instant now) {
    std::optional<Motion> motion;
    for (const auto& running : animations.running()) {
        if (!running.isInProgress(now)) continue;
        const auto moves = [](const Playback& p) { return movesPosition(p.animation().keyPath); };
        if (std::ranges::none_of(running.parts, moves)) continue;
        if (!motion) motion.emplace();
        motion->begins = std::max(motion->begins, running.start + running.timing().beginDelay);
        motion->ends = std::min(motion->ends, running.end);
    }
    return motion;
}

Point positionAt(Appearance values, const AnimationList& animations, Instant t) {
    animations.apply(values, {t, t});
    return values.position;
}

/// Whether the layer goes slowly before the instant or after it. A sudden leap lies on one side
/// only, so nothing changes ahead of it.
bool isSlow(const Appearance& model, const AnimationList& animations, const Motion& motion,
            Instant t) {
    constexpr Seconds difference = 1.0 / 120;
    const Instant last = motion.ends - 1e-6;
    bool isMeasured = false;
    const auto isSlowIn = [&](Instant from, Instant to) {
        from = std::max(from, motion.begins);
        to = std::min(to, last);
        if (!(to > from)) return false;
        isMeasured = true;
        const double way =
            distance(positionAt(model, animations, from), positionAt(model, animations, to));
        return way < steppingSpeed * (to - from);
    };
    return isSlowIn(t, t + difference) || isSlowIn(t - difference, t) || !isMeasured;
}

double snapped(double value, double grid) {
    return std::round(value / grid) * grid;
}

}  // namespace

bool movesPosition(KeyPath path) {
    return path == KeyPath::position || path == KeyPath::positionX || path == KeyPath::positionY;
}

std::optional<ArtStep> artStep(const Appearance& model, const AnimationList& animations,
                               double grid, Instant now) {
    const auto motion = motionAt(animations, now);
    if (!motion || !(grid > 0)) return std::nullopt;
    const Instant shared = std::floor(now * stepsPerSecond + clockError) / stepsPerSecond;
    const Instant instant = std::max(shared, motion->begins);
    // Both must be slow, or the layer would go back in time when it slows down.
    if (!isSlow(model, animations, *motion, now) || !isSlow(model, animations, *motion, instant)) {
        return std::nullopt;
    }
    const Point start = positionAt(model, animations, motion->begins);
    const auto placeAt = [&](Instant t) {
        const Vector way = positionAt(model, animations, t) - start;
        return start + Vector{snapped(way.dx, grid), snapped(way.dy, grid)};
    };
    const Point place = placeAt(instant);
    const Instant before = instant - stepInterval;
    const Instant longBefore = before - stepInterval;
    const bool waits =
        longBefore >= motion->begins && placeAt(before) == place && placeAt(longBefore) != place;
    return ArtStep{instant, waits ? before : instant, place, motion->ends};
}

Instant nextArtStep(const Appearance& model, const AnimationList& animations, double grid,
                    const ArtStep& current) {
    constexpr int lookAhead = 20;
    Instant next = current.instant;
    for (int i = 0; i < lookAhead; ++i) {
        const Instant last = next;
        next = stepAtOrAfter(last + stepInterval / 1000);
        if (next >= current.motionEnds) return current.motionEnds;
        const auto step = artStep(model, animations, grid, next);
        // Once it becomes fast, it no longer goes in steps.
        if (!step || !artStep(model, animations, grid, (last + next) / 2)) return last;
        if (step->position != current.position) break;
    }
    return next;
}

Instant stepAtOrAfter(Instant instant) {
    return std::ceil(instant * stepsPerSecond - clockError) / stepsPerSecond;
}

}  // namespace quibbits
