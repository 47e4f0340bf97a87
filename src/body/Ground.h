#pragma once
// The surfaces that a body walks on, and which of them can be reached from which. A surface is a
// horizontal line without height, so the whole world is a list of spans and a graph of jumps.

#include <optional>
#include <span>
#include <vector>

#include "platform/Geometry.h"

namespace quibbits {

struct Ground {
    Range span;          // in stage points
    double y = 0;        // height of the walking line
    bool solid = false;  // bounds dragging and placing; a desktop icon is only stood on
    bool operator==(const Ground&) const = default;
    Point middle() const { return {span.middle(), y}; }
};

/// How far a body can jump. Lengths are given in art pixels and grow with the scale.
struct JumpAbility {
    double scale = 3;
    bool canLeap = true;  // may jump up 100 art pixels instead of 30
};

/// A jump: where it takes off on the current surface, and where it lands on the next one.
struct Leg {
    double takeoff = 0;
    Point landing;
    bool operator==(const Leg&) const = default;
};
using Route = std::vector<Leg>;

/// The height of the highest solid surface under an x; 0 without one.
double floorY(std::span<const Ground> ground, double x);
/// The highest surface at or below a point's feet, with a point's tolerance; the first of equals.
std::optional<std::size_t> surfaceIndex(std::span<const Ground> ground, Point under);
/// The single jump from one surface to another, or nothing when it is too far or too high.
std::optional<Leg> jumpLeg(const Ground& from, const Ground& to, JumpAbility ability);
/// The route with the fewest jumps; lower indices first. From a surface to itself it is empty.
std::optional<Route> route(std::span<const Ground> ground, std::size_t from, std::size_t to,
                           JumpAbility ability);
/// For every surface, whether a route leads there: one search for many questions.
std::vector<bool> reachable(std::span<const Ground> ground, std::size_t from, JumpAbility ability);

}  // namespace quibbits
