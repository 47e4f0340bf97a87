#pragma once
// The rules of a creature's life that are rules and not acts: pure functions on plain values.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "body/Ground.h"
#include "platform/Machine.h"
#include "platform/Random.h"
#include "rules/Growth.h"

namespace quibbits {

/// A creature's standing condition.
enum class Mood { happy, charging, tired, fainted };
std::string_view rawValue(Mood mood);

/// What a mood follows from.
struct Condition {
    bool feelsHeat = true;  // the setting
    ThermalState thermalState = ThermalState::nominal;
    bool charging = false;
    int level = 100;  // percent of the battery
};
Mood moodFor(const Condition& condition);

/// Friendship counts as this while feelings are switched off.
inline constexpr double indifferentFriendship = 180;

/// The share of a level that a creature earns by the minutes alone.
struct TimedExp {
    double minutes = 0;
    double friendship = 0;
    GrowthRate rate = GrowthRate::mediumFast;
    bool tired = false;
};
double expShare(const TimedExp& earned);

/// A file is known only by where its icon stands: "x0,y", cut to whole points.
std::string fileKey(const Ground& file);

/// Where a stroll leads from a point, within a radius: inside the stretch that holds the creature,
/// or to the nearest reachable one. Nothing when there is no room.
std::optional<Point> strollTarget(Point here, std::span<const Ground> ground,
                                  std::span<const Ground> spots, double within, Random& random);

/// Where to stand next to the cursor; nothing when it is out of reach or near enough already.
std::optional<Point> spotNearCursor(Point here, Point cursor, std::span<const Ground> spots);

}  // namespace quibbits
