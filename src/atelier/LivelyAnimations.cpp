// High spirits: hops, leaps, rolls, turns, dances.
//
// Travel over the ground is left to whoever plays the animation; here everything happens in place.
#include "atelier/Animations.h"
#include "atelier/Vector.h"

namespace quibbits::atelier {

using namespace joint;
using enum Eyes;

namespace {

// Crouches, springs, opens up at the top, and lands with a squash that settles.
Animation hop() {
    return {.name = "Hop",
            .ticks = {5, 3, 3, 3, 4, 4, 3, 3, 4, 5},
            .tracks = {{y, {0, 1, 6, 10, 12, 12, 10, 5, 0, 0}},
                       {y, {0, 1, 5, 8, 10, 10, 8, 4, 0, 0}, tall | dusk | swimmer},
                       {squash, {0.82, 1, 1.12, 1.08, 1.02, 1, 1.02, 1.08, 0.80, 0.94}},
                       {face, {0, 0, 6, 14, 14, 14, 14, 8, 0}, furred},
                       {arms, {-24, 20, 20, 20, 60, 60, 60, 60, 20}},
                       {spreads, {16, 16, 62, 62, 62, 62, 62, 62, 16}},
                       {legLeft, {-9, -9, -16, -16, 26, 26, 26, 26, 0}},
                       {legRight, {10, 10, 8, 8, 34, 34, 34, 34, 0}},
                       {lifts, {0, 0, 0.6, 0.6, 0.6, 0.6, 0.6, 0.6, 0}},
                       {tailPitch, {8, 8, -14, -14, 0, 0, 14, 14, 8}},
                       {ear, {0, 0, 22, 22, 0, 0, -22, -22, 0}}},
            .eyes = {open, open, open, happy, happy, happy, happy, open},
            .mouths = {Mouth::smile, Mouth::smile, Mouth::open, Mouth::open, Mouth::open,
                       Mouth::open, Mouth::open, Mouth::open, Mouth::smile}};
}

Animation leapForth() {
    return {
        .name = "LeapForth",
        .ticks = {5, 3, 3, 4, 3, 4, 5},
        .tracks = {{y, {0, 3, 9, 11, 6, 0, 0}},
                   {squash, {0.82, 1.1, 1.06, 1, 1.05, 0.82, 0.96}},
                   {bodyPitch, {8, -12, 2, 12, 16, 6, 0}},
                   {headPitch, {0, -4, -4, -6, -8, 0}},
                   {face, {4, 12, 16, 16, 16, 10, 4}, furred},
                   {legLeft, {0, -24, -34, 8, 36, 0}},
                   {legRight, {0, -34, -24, 24, 42, 0}},
                   {arms, {-30, 20, 80, 105, 80, 10}},
                   // Longer arms would reach before the face.
                   {arms, {-30, 10, 36, 46, 36, 0}, tall | swimmer},
                   {spreads, {20, 30, 44, 44, 36, 20}, tall | swimmer},
                   {tailPitch, {0, 12, 24, 14, -8, -14, 0}},
                   {ear, {0, 20, 26, 10, -12, 0}}},
        .eyes = {angry},
        .mouths = {Mouth::flat, Mouth::open, Mouth::open, Mouth::open, Mouth::open, Mouth::flat}};
}

// Stands proud: round forms with both arms up, the others with the far one held out
// below the face.
Animation pose() {
    return {.name = "Pose",
            .ticks = {6, 6, 30, 8},
            .tracks = {{y, {0, 3, 0}},
                       {squash, {0.92, 1.05, 1.02, 1}},
                       {arms, {50, 112, 120, 60}},
                       {spreads, {20, 44, 50, 24}},
                       {armLeft, {30, 6, 0, 10}, tall | swimmer | dusk},
                       {spreadLeft, {20, 44, 50, 24}, tall | swimmer | dusk},
                       {armRight, {40, 58, 64, 46}, tall | swimmer | dusk},
                       {spreadRight, {20, 10, 4, 10}, tall | swimmer | dusk},
                       {armLeft, {30, 20, 14, 14}, squirrel},
                       {spreadLeft, {10, 30, 40, 20}, squirrel},
                       {armRight, {50, 76, 82, 50}, squirrel},
                       {spreadRight, {10, 6, 0, 10}, squirrel},
                       {bodyPitch, {4, -6, -8, -3}},
                       {headPitch, {2, -5, -6, -2}},
                       {headRoll, {-2, -5, -6, -2}},
                       {face, {0, 8, 16, 6}, furred},
                       {tailPitch, {4, -6, -8, -3}},
                       {ear, {8, -6, -8, 0}}},
            .eyes = {open, open, happy, open},
            .mouths = {Mouth::smile, Mouth::open, Mouth::open, Mouth::smile},
            .drift = 0.7};
}

Animation rotate() {
    return {.name = "Rotate",
            .ticks = {3, 3, 3, 3, 3, 3, 3, 3},
            .tracks = {{yaw, {0, 45, 90, 135, 180, 225, 270, 315}},
                       {y, {0, 1, 2, 2, 2, 2, 1, 0}},
                       {spreads, {50}},
                       {arms, {10}},
                       {tailSway, {-24}}},
            .eyes = {happy},
            .mouths = {Mouth::open}};
}

Animation twirl() {
    return {.name = "Twirl",
            .ticks = {3, 3, 3, 3, 3, 3, 3, 3},
            .tracks = {{yaw, {0, -45, -90, -135, -180, -225, -270, -315}},
                       {y, {0, 2, 4, 6, 6, 4, 2, 0}},
                       {squash, {0.96, 1.06, 1.06, 1.06, 1.06, 1.06, 1.04, 0.96}},
                       {spreads, {80}},
                       {arms, {10}},
                       {tailSway, {-40}}},
            .eyes = {happy},
            .mouths = {Mouth::open}};
}

// A head over heels roll, tucked in. It turns in the plane of the picture, which keeps the face in
// view.
Animation tumble() {
    return {.name = "Tumble",
            .ticks = {3, 3, 3, 3, 3, 3, 3, 3},
            .tracks = {{tilt, {0, -45, -90, -135, -180, -225, -270, -315}},
                       {face, {14}, furred},
                       {pivot, {8}},
                       {pivot, {12}, bell | dusk},
                       {squash, {0.96}},
                       {legs, {70}},
                       {arms, {50}},
                       {settled, {1}, tall | swimmer},
                       {tailPitch, {-20}},
                       {tailCurl, {20}}},
            .eyes = {happy},
            .mouths = {Mouth::open},
            .lyingFrom = 0};
}

// A two-step from side to side, arms up in turn.
Animation doubleStep() {
    return {.name = "Double",
            .ticks = {4, 4, 4, 4, 4, 4, 4, 4},
            .tracks = {{z, {0, 1.5, 3, 1.5, 0, -1.5, -3, -1.5}},
                       {y, {0, 2, 0, 2, 0, 2, 0, 2}},
                       {squash, {0.94, 1.05, 0.94, 1.05, 0.94, 1.05, 0.94, 1.05}},
                       {bodyRoll, {0, 6, 8, 4, 0, -6, -8, -4}},
                       {bodyPitch, {0, 5, 7, 3, 0, -5, -7, -3}},
                       {headRoll, {0, -5, -8, -5, 0, 5, 8, 5}},
                       {face, {14}, furred},
                       {armLeft, {30, 90, 140, 90, 30, 10, 0, 10}},
                       {armRight, {30, 10, 0, 10, 30, 90, 140, 90}},
                       {spreads, {40}},
                       {tailSway, {0, 14, 24, 14, 0, -14, -24, -14}},
                       {ear, {10, -8, 10, -8, 10, -8, 10, -8}}},
            .eyes = {happy},
            .mouths = {Mouth::open}};
}

}  // namespace

std::vector<Animation> livelyAnimations() {
    return {hop(), leapForth(), pose(), rotate(), twirl(), tumble(), doubleStep()};
}

}  // namespace quibbits::atelier
