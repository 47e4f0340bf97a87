// What a creature does all day: stand, walk, eat, sleep, wake.
#include <algorithm>
#include <utility>

#include "atelier/Animations.h"
#include "atelier/Vector.h"

namespace quibbits::atelier {

using namespace joint;
using enum Eyes;

namespace {

// Breathes in and out once, sways its tail, blinks, flicks an ear.
Animation idle() {
    return {.name = "Idle",
            .ticks = {24, 10, 24, 10, 6, 5, 6, 12},
            .tracks = {{squash, {1, 0.985, 0.965, 0.985, 1}, walking},
                       {headY, {0, 0, -1, -1, 0}, twoLegged & walking},
                       {tailSway, wave(8, {.size = 8})},
                       {arms, {12, 12, 17, 12}, everyone & ~dusk},
                       {armLeft, {-46, -46, -42, -46}, dusk},
                       {armRight, {34, 34, 40, 34}, dusk},
                       {ear, {0, 0, 0, 0, 0, 0, 14, 0}}},
            .eyes = {open, open, open, open, open, closed, open},
            .drift = fullTurn / 8};
}

// The body rises as the legs pass each other; the root stays, so the standing foot does too.
Animation walkOnFeet() {
    const std::vector<double> liftOne{1.8, 1.3, 0, 0, 0, 0, 0, 1.3};
    const std::vector<double> liftOther{0, 0, 0, 1.3, 1.8, 1.3, 0, 0};
    return {.name = "Walk",
            .ticks = {5, 5, 5, 5, 5, 5, 5, 5},
            .tracks = {{legLeft, wave(8, {.size = 30})},
                       {legRight, wave(8, {.size = -30})},
                       {legLeft, wave(8, {.size = 40}), squirrel},
                       {legRight, wave(8, {.size = -40}), squirrel},
                       {legLeft, wave(8, {.size = 38}), tall},
                       {legRight, wave(8, {.size = -38}), tall},
                       {liftLeft, liftOne},
                       {liftRight, liftOther},
                       {bodyY, {1, 1, 0, 0, 1, 1, 0, 0}},
                       {bodyY, {1, 1, -1, 0, 1, 1, -1, 0}, tall},
                       {armLeft, wave(8, {.size = -30, .middle = 10})},
                       {armRight, wave(8, {.size = 30, .middle = 10})},
                       {armLeft, wave(8, {.size = -24, .middle = -24}), dusk},
                       {spreads, {12}},
                       {bodyPitch, {5}, ball | squirrel},
                       {bodyPitch, {3}, tall | dusk},
                       {bodyRoll, wave(8, {.size = 6, .ahead = 0.25}), ball},
                       {bodyRoll, wave(8, {.size = 2.5, .ahead = 0.25}), tall},
                       {bodyRoll, wave(8, {.size = 1.2, .ahead = 0.25}), dusk},
                       {tailSway, wave(8, {.size = 12})},
                       {tailPitch, wave(8, {.size = 4, .ahead = 0.25, .turns = 2})},
                       {ear, wave(8, {.size = 6, .middle = 6, .ahead = 0.25, .turns = 2})}},
            .drift = fullTurn / 8,
            .builds = walking};
}

Animation drifting() {
    return {.name = "Walk",
            .ticks = {6, 6, 6, 6, 6, 6, 6, 6},
            .tracks = {{bodyPitch, {10}},
                       {legLeft, wave(8, {.size = 16, .middle = -12}), swimmer},
                       {legRight, wave(8, {.size = -16, .middle = 10}), swimmer},
                       {tailPitch, wave(8, {.size = 6, .middle = 16})},
                       {tailSway, wave(8, {.size = 16})},
                       {armLeft, wave(8, {.size = 16, .middle = 20})},
                       {armRight, wave(8, {.size = -16, .middle = 20})},
                       {ear, {8}}},
            .drift = fullTurn / 8,
            .builds = floating};
}

Animation sleep() {
    return {.name = "Sleep",
            .ticks = {34, 14, 34, 14},
            .tracks = {{settled, {1}},
                       {settled, {1.4}, squirrel | ball},
                       {face, {12}},
                       {face, {40}, ball},
                       {squash, {0.86, 0.85, 0.84, 0.85}, ball},
                       {headY, {1, 0, -1, 0}, ball},
                       {headPitch, {-16}, ball},
                       {bodyPitch, {0}, ball},
                       {legs, {12}, ball},
                       {ear, {24}, ball},
                       {tailPitch, {20}, ball},
                       {squash, {0.95, 0.935, 0.92, 0.935}, squirrel},
                       {face, {44}, squirrel},
                       {bodyPitch, {22}, squirrel},
                       {headPitch, {-20}, squirrel},
                       {headY, {-2.4, -2.4, -3.4, -2.4}, squirrel},
                       {headZ, {1}, squirrel},
                       {headRoll, {-4}, squirrel},
                       {legs, {62}, squirrel},
                       {lifts, {1}, squirrel},
                       {arms, {48}, squirrel},
                       {spreads, {0}, squirrel},
                       {tailPitch, {-22}, squirrel},
                       {tailCurl, {-40}, squirrel},
                       {tailTip, {-22}, squirrel},
                       {tailSway, {-185}, squirrel},
                       {phase, {0.8}, squirrel},
                       {ear, {26}, squirrel},
                       {settled, {1.8}, tall | swimmer},
                       {squash, {0.95, 0.935, 0.92, 0.935}, tall | swimmer},
                       {face, {40}, tall | swimmer},
                       {bodyPitch, {30}, tall | swimmer},
                       {headPitch, {-32}, tall | swimmer},
                       {headY, {-2.4, -2.4, -3.4, -2.4}, tall | swimmer},
                       {headZ, {1}, tall | swimmer},
                       {legs, {94}, tall | swimmer},
                       {lifts, {1}, tall | swimmer},
                       {arms, {48}, tall | swimmer},
                       {spreads, {0}, tall | swimmer},
                       {tailPitch, {20}, tall},
                       {tailCurl, {-52}, tall},
                       {tailTip, {-3}, tall},
                       {tailPitch, {14}, swimmer},
                       {tailCurl, {-46}, swimmer},
                       {tailTip, {-66}, swimmer},
                       {tailSway, {0}, tall | swimmer},
                       {ear, {24}, tall | swimmer},
                       {squash, {0.88, 0.86, 0.83, 0.86}, dusk},
                       {face, {14}, dusk},
                       {headRoll, {2}, dusk},
                       {bodyPitch, {6}, dusk},
                       {headPitch, {2}, dusk},
                       {headY, {-1.5}, dusk},
                       {settled, {1.5}, dusk},
                       {legs, {94}, dusk},
                       {arms, {34}, dusk},
                       {spreads, {-6}, dusk},
                       {tailSway, {10}, dusk},
                       {squash, {0.94, 0.91, 0.875, 0.91}, wisp},
                       {squash, {0.88, 0.85, 0.81, 0.85}, bell},
                       {face, {32}, wisp},
                       {headPitch, {8}, wisp | bell},
                       {tailPitch, {-10}, wisp | bell},
                       {tailSway, {20}, wisp | bell},
                       {arms, {20}, wisp | bell}},
            .eyes = {closed},
            .mouths = {Mouth::flat},
            .drift = fullTurn / 8,
            .lyingFrom = 0};
}

/// A track of the sleeper, given up little by little; then the keys of the stretch, where there are
/// any for its joint.
Track wakingFrom(const Track& asleep, const std::vector<Track>& stretch) {
    const double lying = asleep.keys.front();
    const double rest = Pose{}.*asleep.joint.first;
    Track track{asleep.joint, {}, asleep.builds};
    for (const double share : {1.0, 0.7, 0.3}) track.keys.push_back(rest + (lying - rest) * share);
    const auto stretched = std::ranges::find_if(
        stretch, [&](const Track& other) { return other.joint.first == asleep.joint.first; });
    if (stretched == stretch.end()) {
        track.keys.push_back(rest);
    } else {
        track.keys.insert(track.keys.end(), stretched->keys.begin(), stretched->keys.end());
    }
    return track;
}

// Opens its eyes where it lies, gets up, stretches and yawns.
Animation wake() {
    const std::vector<Track> stretch{{squash, {1.06, 1.10, 1}},
                                     {headPitch, {-8, -14, 0}},
                                     {arms, {-30, -40, 12}},
                                     {spreads, {50, 60, 14}},
                                     {ear, {-6, -12, 0}}};
    std::vector<Track> tracks{{y, {0, 0, 0, -2, -1, 0}, floating}};
    for (const auto& track : stretch) {
        const double rest = Pose{}.*track.joint.first;
        tracks.push_back(wakingFrom({track.joint, {rest}}, stretch));
    }
    for (const auto& track : sleep().tracks) tracks.push_back(wakingFrom(track, stretch));
    return {
        .name = "Wake",
        .ticks = {16, 8, 10, 6, 14, 8},
        .tracks = std::move(tracks),
        .eyes = {closed, closed, half, open, closed, open},
        .mouths = {Mouth::flat, Mouth::flat, Mouth::flat, Mouth::open, Mouth::open, Mouth::smile},
        .lyingFrom = 0,
        .lyingTo = 3};
}

Animation nod() {
    return {
        .name = "Nod",
        .ticks = {6, 6, 8, 6},
        .tracks = {{headPitch, {-4, 12, 12, 4}}, {headY, {0, -1, -2, 0}}, {ear, {-4, 6, 10, 0}}},
        .eyes = {open, open, closed, open}};
}

// In within the first quarter, as long as its words to breathe in stand; then out, and a rest.
Animation deepBreath() {
    return {
        .name = "DeepBreath",
        .ticks = {8, 8, 8, 8, 14, 12, 12, 12, 12, 16, 18, 16},
        .tracks = {{squash, {1.02, 1.05, 1.07, 1.09, 1.09, 1.05, 1.0, 0.96, 0.93, 0.95, 0.98, 1.0}},
                   {bodyPitch, {-2, -4, -5, -6, -6, -2, 2, 6, 8, 5, 2, 0}},
                   {headPitch, {-3, -5, -7, -8, -8, -4, 0, 3, 4, 3, 1, 0}},
                   {spreads, {20, 26, 30, 34, 34, 28, 20, 14, 14, 14, 14, 14}},
                   {tailPuff, {1.02, 1.04, 1.06, 1.08, 1.08, 1.04, 1, 0.97, 0.96, 0.98, 1, 1}},
                   {ear, {-1, -3, -5, -6, -6, 0, 8, 16, 20, 12, 5, 0}}},
        .eyes = {open, half, closed, closed, closed, closed, closed, closed, closed, half, open,
                 open},
        .mouths = {Mouth::flat, Mouth::flat, Mouth::flat, Mouth::flat, Mouth::flat, Mouth::round,
                   Mouth::round, Mouth::round, Mouth::round, Mouth::flat, Mouth::smile,
                   Mouth::smile}};
}

}  // namespace

Animation chewing() {
    return {.name = "Eat",
            .ticks = {8, 8, 8, 8, 8, 8},
            .tracks = {{headPitch, {2, 12, 2, 12, 2, 12}},
                       {headPitch, {-4, 4, -4, 4, -4, 4}, tall | swimmer},
                       {headY, {0, -1, 0, -1, 0, -1}},
                       {arms, {62}},
                       {spreads, {-22}},
                       {bend, {26}},
                       {arms, {34}, tall | swimmer},
                       {spreads, {-10}, tall | swimmer},
                       {bend, {8}, tall | swimmer},
                       {arms, {66}, squirrel},
                       {spreads, {-6}, squirrel},
                       {bend, {4}, squirrel},
                       {squash, {1, 0.97, 1, 0.97, 1, 0.97}},
                       {ear, {0, 8, 0, 8, 0, 8}},
                       {tailSway, wave(6, {.size = 8})}},
            .eyes = {open, closed, open, closed, happy, closed},
            .mouths = {Mouth::chewing, Mouth::round, Mouth::chewing, Mouth::round, Mouth::chewing,
                       Mouth::round},
            .drift = 0.5,
            .builds = everyone & ~(wisp | bell | swimmer)};
}

std::vector<Animation> dailyAnimations() {
    return {walkOnFeet(), drifting(), idle(), sleep(), chewing(), wake(), nod(), deepBreath()};
}

}  // namespace quibbits::atelier
