#pragma once
// Numbers on which more than one place must agree: what a creature does, and what is told of it.

namespace quibbits {

inline constexpr double mostFriendship = 255;
/// Friendship at which the electric line's first stage is ready to evolve.
inline constexpr double readyFriendship = 220;
/// Level from which a Storm Pebble evolves the electric line's second stage.
inline constexpr int pebbleLevel = 20;
/// Level at which the ghost line's first stage is ready to evolve.
inline constexpr int gloamerLevel = 25;
/// One creature in so many hatches shiny.
inline constexpr int shinyOdds = 4096;

/// The hours in which creatures sleep long.
constexpr bool isNight(int hour) {
    return hour >= 23 || hour < 6;
}

}  // namespace quibbits
