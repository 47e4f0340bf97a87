// What only ghosts do: float, lie about, sink into the ground, lick.
#include "atelier/Animations.h"
#include "atelier/Vector.h"

namespace quibbits::atelier {

using namespace joint;
using enum Eyes;

namespace {

Animation floatInAir() {
    return {.name = "Float",
            .ticks = {8, 8, 8, 8, 8, 8, 8, 8},
            .tracks = {{y, wave(8, {.size = 1, .middle = 1})},
                       {tailSway, wave(8, {.size = 14, .ahead = 0.25})},
                       {arms, wave(8, {.size = 10, .middle = 20, .ahead = 0.16})},
                       {spreads, {30}},
                       {legLeft, {20}},
                       {legRight, {8}}},
            .drift = fullTurn / 8,
            .builds = ghosts};
}

// Peeks: draws its head in, then shoots it out.
Animation headOut() {
    return {.name = "Head",
            .ticks = {4, 5, 3, 6, 5},
            .tracks = {{headPitch, {-10, -16, 12, 12, 4}},
                       {headY, {1, 1, -1, -1, 0}},
                       {headZ, {-1, -1.5, 2.5, 2, 0}},
                       {bodyPitch, {-4, -8, 4, 4, 2}},
                       {z, {0, -1, 2, 2, 0}},
                       {tailPitch, {-10, -20, 24, 14, 0}}},
            .eyes = {open, closed, wide, wide, open},
            .mouths = {Mouth::flat, Mouth::flat, Mouth::open, Mouth::open, Mouth::smile},
            .drift = 0.6,
            .builds = ghosts};
}

// Sits with its legs stretched out, leaning back upon its hands. Who has no legs lies on its belly,
// its chin on its hands.
Animation laying() {
    return {.name = "Laying",
            .ticks = {40, 12, 40, 12},
            .tracks = {{squash, {1, 0.985, 0.965, 0.985}, dusk},
                       {settled, {1.3}, dusk},
                       {bodyPitch, {-12}, dusk},
                       {headPitch, {6}, dusk},
                       {headY, {-1, -1, -2, -1}, dusk},
                       {legLeft, {84}, dusk},
                       {legRight, {96}, dusk},
                       {arms, {-74}, dusk},
                       {bend, {-20}, dusk},
                       {spreads, {6}, dusk},
                       {squash, {0.86, 0.84, 0.81, 0.84}, wisp | bell},
                       {settled, {0.6}, wisp | bell},
                       {face, {14}, wisp | bell},
                       {headPitch, {-6}, wisp | bell},
                       {arms, {66}, bell},
                       {spreads, {-6}, bell},
                       {tailPitch, {-12}},
                       {tailSway, {6, 8, 10, 8}},
                       {ear, {16}}},
            .eyes = {half, closed, half, half},
            .mouths = {Mouth::smile},
            .drift = 0.4,
            .lyingFrom = 0,
            .builds = ghosts};
}

// The deep sleep: sunk back against nothing with legs, a puddle of itself without.
Animation eventSleep() {
    return {.name = "EventSleep",
            .ticks = {44, 16, 44, 16},
            .tracks = {{tilt, {14}, dusk},
                       {squash, {0.90, 0.88, 0.85, 0.88}, dusk},
                       {settled, {1.5}, dusk},
                       {headRoll, {-6}, dusk},
                       {headY, {-1.5, -1.5, -2.5, -1.5}, dusk},
                       {legLeft, {84}, dusk},
                       {legRight, {96}, dusk},
                       {arms, {20}, dusk},
                       {squash, {0.82, 0.79, 0.75, 0.79}, wisp | bell},
                       {settled, {0.6}, wisp | bell},
                       {face, {14}},
                       {arms, {30}, wisp | bell},
                       {spreads, {-6}},
                       {tailPitch, {-14}},
                       {ear, {24}}},
            .eyes = {closed},
            .mouths = {Mouth::flat},
            .lyingFrom = 0,
            .builds = ghosts};
}

Animation sink() {
    return {.name = "Sink",
            .ticks = {5, 5, 5, 5, 5, 6},
            .tracks = {{joint::sunk, {0, 4, 10, 16, 22, 28}},
                       {squash, {1, 0.94, 0.96, 1, 1.04, 1.04}},
                       {arms, {20, 60, 120, 160, 170}},
                       {spreads, {20, 30, 20, 10}}},
            .eyes = {open, open, half},
            .drift = 0.9,
            .builds = ghosts};
}

// The tongue is at its longest from 14 to 24 ticks; a berry in the air is bitten off in between.
Animation lick() {
    return {.name = "Lick",
            .ticks = {6, 4, 4, 6, 4, 4, 6},
            .tracks = {{face, {-24}},
                       {face, {-32}, bell},
                       {face, {-34}, dusk},
                       {joint::tongue, {0.08, 0.45, 0.85, 1, 1, 0.5, 0.1}},
                       {bodyPitch, {-8, 2, 8, 10, 8, 4, 0}},
                       {headPitch, {0, 0, 0, -6, -6, 0}},
                       {z, {-1, 1, 2, 3, 3, 2, 0}},
                       {arms, {20}},
                       {spreads, {34}}},
            .eyes = {open, open, open, happy, happy, happy, open},
            .mouths = {Mouth::open},
            .drift = 0.5,
            .builds = ghosts};
}

// Digs its heels in, throws its weight back and slips forward again.
Animation pull() {
    return {.name = "Pull",
            .ticks = {6, 6, 6, 6},
            .tracks = {{tilt, {2, 10, 18, 12}},
                       {pivot, {0}},
                       {bodyPitch, {4, -8, -14, -10}},
                       {headPitch, {0, 8, 14, 10}},
                       {z, {2, 0, -2, -1}},
                       {squash, {0.96, 1.02, 1.05, 1.02}},
                       {arms, {66, 70, 76, 72}},
                       {bend, {-30}},
                       {spreads, {-24}},
                       {legLeft, {10, 24, 34, 28}},
                       {legRight, {-6, 6, 14, 10}}},
            .eyes = {angry, angry, closed, angry},
            .mouths = {Mouth::wavy},
            .builds = dusk};
}

}  // namespace

std::vector<Animation> ghostlyAnimations() {
    return {floatInAir(), headOut(), laying(), eventSleep(), sink(), lick(), pull()};
}

}  // namespace quibbits::atelier
