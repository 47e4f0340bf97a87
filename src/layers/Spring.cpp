// The closed forms of a damped spring. With y the share of the way that is left, y(0) = 1 and
// m·y'' + c·y' + k·y = 0; a positive initial velocity runs towards the end of the way.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "layers/Animation.h"

namespace quibbits {

namespace {

constexpr double settled = 0.001;

struct Swing {  // y = reach · e^(−decay·t) · cos(turn·t − phase)
    double decay, turn, reach, phase;
    double at(Seconds t) const { return reach * std::exp(-decay * t) * std::cos(turn * t - phase); }
    double halfTurn() const { return std::numbers::pi / turn; }
    /// When it turns round; again after each half turn, before and after.
    Seconds turningPoint() const { return (phase - std::atan2(decay, turn)) / turn; }
};

struct Creep {  // y = a · e^(−slow·t) + b · e^(−fast·t), or (1 + b·t) · e^(−slow·t) when critical
    double slow, fast, a, b;
    bool critical;
    double at(Seconds t) const {
        if (critical) return (1 + b * t) * std::exp(-slow * t);
        return a * std::exp(-slow * t) + b * std::exp(-fast * t);
    }
    /// When it turns round, past its end or on its way away from it; 0 when it never does.
    Seconds turningPoint() const {
        if (critical) return b == 0 ? 0 : std::max(0.0, (b - slow) / (slow * b));
        const double ratio = -(b * fast) / (a * slow);
        return ratio > 0 ? std::max(0.0, std::log(ratio) / (fast - slow)) : 0;
    }
};

struct Constants {
    double own;      // the undamped angular speed
    double damping;  // 1 is critical
};

Constants constantsOf(const SpringMotion& s) {
    const double mass = s.mass > 0 ? s.mass : 1;
    const double stiffness = s.stiffness > 0 ? s.stiffness : 1;
    return {std::sqrt(stiffness / mass),
            std::max(0.0, s.damping) / (2 * std::sqrt(stiffness * mass))};
}

constexpr double nearlyCritical = 1e-6;

bool swings(const Constants& c) {
    return c.damping < 1 - nearlyCritical;
}

Swing swingOf(const SpringMotion& s, const Constants& c) {
    const double decay = c.damping * c.own;
    const double turn = c.own * std::sqrt(1 - c.damping * c.damping);
    const double side = (decay - s.initialVelocity) / turn;
    return {decay, turn, std::hypot(1, side), std::atan2(side, 1)};
}

Creep creepOf(const SpringMotion& s, const Constants& c) {
    if (c.damping < 1 + nearlyCritical) {
        return {c.own, c.own, 1, c.own - s.initialVelocity, true};
    }
    const double root = std::sqrt(c.damping * c.damping - 1);
    const double slow = c.own * (c.damping - root);
    const double fast = c.own * (c.damping + root);
    const double a = (fast - s.initialVelocity) / (fast - slow);
    return {slow, fast, a, 1 - a, false};
}

/// Where the amount left falls to the settled share, between a time when it is more and one when
/// it is less.
template <typename Curve>
Seconds crossing(const Curve& curve, Seconds more, Seconds less) {
    for (int i = 0; i < 100; ++i) {
        const Seconds middle = (more + less) / 2;
        (std::abs(curve.at(middle)) > settled ? more : less) = middle;
    }
    return less;
}

Seconds settling(const Swing& swing) {
    if (!(swing.decay > 0)) return forever;
    const double lag = std::atan2(swing.decay, swing.turn);  // of a peak before the cosine's
    const double half = swing.halfTurn();
    const Seconds first = swing.turningPoint();
    const Seconds last = std::log(swing.reach * std::cos(lag) / settled) / swing.decay;
    const Seconds peak = first + half * std::floor((last - first) / half);
    return crossing(swing, std::max(0.0, peak), peak + (std::numbers::pi / 2 + lag) / swing.turn);
}

Seconds settling(const Creep& creep) {
    Seconds calm = std::max(1.0, 2 * creep.turningPoint());
    while (std::abs(creep.at(calm)) > settled && calm < 1e9) calm *= 2;
    const Seconds turn = creep.turningPoint();
    if (turn > 0 && std::abs(creep.at(turn)) > settled) return crossing(creep, turn, calm);
    return crossing(creep, 0, turn > 0 ? turn : calm);
}

/// Swings grow smaller: after its start it is never farther away than at its first turn.
double farthestOf(const Swing& swing) {
    const double half = swing.halfTurn();
    const Seconds turn = swing.turningPoint();
    return std::max(1.0, std::abs(swing.at(turn - half * std::floor(turn / half))));
}

double farthestOf(const Creep& creep) {
    return std::max(1.0, std::abs(creep.at(creep.turningPoint())));
}

}  // namespace

double SpringMotion::at(Seconds t) const {
    const auto constants = constantsOf(*this);
    const double left =
        swings(constants) ? swingOf(*this, constants).at(t) : creepOf(*this, constants).at(t);
    return 1 - left;
}

Seconds SpringMotion::settlingDuration() const {
    const auto constants = constantsOf(*this);
    return swings(constants) ? settling(swingOf(*this, constants))
                             : settling(creepOf(*this, constants));
}

double SpringMotion::farthest() const {
    const auto constants = constantsOf(*this);
    return swings(constants) ? farthestOf(swingOf(*this, constants))
                             : farthestOf(creepOf(*this, constants));
}

}  // namespace quibbits
