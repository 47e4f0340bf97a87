#pragma once
// Animations as plain values. A layer holds them by key; what they show at an instant is a pure
// function of the instant at which they were added.

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "layers/Path.h"
#include "platform/Color.h"
#include "platform/Geometry.h"

namespace quibbits {

/// What an animation changes.
enum class KeyPath {
    position,              // Point
    positionX,             // double
    positionY,             // double
    bounds,                // Rect
    contentsRect,          // Rect, in unit coordinates
    opacity,               // double
    transformScale,        // double, both axes
    transformScaleX,       // double
    transformScaleY,       // double
    transformRotation,     // double, radians counter-clockwise
    transformTranslation,  // Point
    cornerRadius,          // double
    backgroundColor,       // Color
    borderWidth,           // double
    borderColor,           // Color
    shadowOpacity,         // double
    shadowRadius,          // double
    strokeStart,           // double, 0 to 1
    strokeEnd,             // double, 0 to 1
    strokeColor,           // Color
    fillColor,             // Color
    lineWidth,             // double
};

using AnimatedValue = std::variant<double, Point, Rect, Color>;

/// How the share of time turns into the share of change: a cubic curve from (0, 0) to (1, 1).
struct TimingFunction {
    std::array<double, 4> control{0, 0, 1, 1};  // x1, y1, x2, y2; the x within 0 to 1
    bool operator==(const TimingFunction&) const = default;

    static constexpr TimingFunction linear() { return {{0, 0, 1, 1}}; }
    static constexpr TimingFunction easeIn() { return {{0.42, 0, 1, 1}}; }
    static constexpr TimingFunction easeOut() { return {{0, 0, 0.58, 1}}; }
    static constexpr TimingFunction easeInEaseOut() { return {{0.42, 0, 0.58, 1}}; }
    static constexpr TimingFunction defaultCurve() { return {{0.25, 0.1, 0.25, 1}}; }

    double at(double share) const;
};

constexpr double forever = std::numeric_limits<double>::infinity();

/// What shows before an animation begins and after it has ended.
enum class FillMode { removed, forwards, backwards, both };

struct AnimationTiming {
    Seconds duration = 0.25;  // of one run, at speed 1
    double repeatCount = 1;   // may be a fraction, or forever
    double speed = 1;         // above 0
    bool autoreverses = false;
    Seconds beginDelay = 0;
    FillMode fill = FillMode::removed;
    bool removedOnCompletion = true;  // false keeps it for its fill mode until it is removed
    bool operator==(const AnimationTiming&) const = default;

    /// From the moment of adding to the end of the last run; forever when it never ends.
    Seconds total() const;
};

/// From one value to another. An end that is left out is the layer's own value.
struct BasicMotion {
    std::optional<AnimatedValue> from;
    std::optional<AnimatedValue> to;
    bool operator==(const BasicMotion&) const = default;
};

enum class Calculation { linear, discrete };

/// Through a list of values. Key times run from 0 to 1; none spreads the values evenly. A discrete
/// list of n values shows each for an equal share, and may name n + 1 key times. A path, for a
/// position, takes the place of the values.
struct KeyframeMotion {
    std::vector<AnimatedValue> values;
    std::vector<double> keyTimes;
    Calculation calculation = Calculation::linear;
    std::optional<Path> path;
    bool operator==(const KeyframeMotion&) const = default;
};

/// A damped spring let go at `from`, coming to rest at `to`.
struct SpringMotion {
    AnimatedValue from = 0.0;
    AnimatedValue to = 1.0;
    double damping = 10;
    double stiffness = 100;
    double mass = 1;
    double initialVelocity = 0;
    bool operator==(const SpringMotion&) const = default;

    /// Seconds until it stays within 0.1 % of its way.
    Seconds settlingDuration() const;
    /// The share of the way after t seconds, which may pass 1 while it swings.
    double at(Seconds t) const;
    /// How far it ever is from its end, as a share of the way; 1 when it never is farther than at
    /// the start.
    double farthest() const;
};

struct Animation {
    KeyPath keyPath = KeyPath::opacity;
    std::variant<BasicMotion, KeyframeMotion, SpringMotion> motion;
    TimingFunction curve = TimingFunction::linear();
    AnimationTiming timing;
    bool additive = false;  // added to the layer's value instead of taking its place
    bool operator==(const Animation&) const = default;
};

/// Animations that run together and end together, under one key. Each keeps its own timing, cut at
/// the group's end.
struct AnimationGroup {
    std::vector<Animation> animations;
    AnimationTiming timing;
    bool operator==(const AnimationGroup&) const = default;
};

}  // namespace quibbits
