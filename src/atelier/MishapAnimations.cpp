// What goes wrong: falls, knocks, aches.
//
// Who falls over turns in the plane of the picture, whichever way it faces: turned about its own
// axis, its face would be hidden in the side views.
#include "atelier/Animations.h"

namespace quibbits::atelier {

using namespace joint;
using enum Eyes;

namespace {

Animation hurtByBlow() {
    return {.name = "Hurt",
            .ticks = {3, 10, 5},
            .tracks = {{z, {-2, -4, -2}},
                       {y, {0, 2, 0}},
                       {bodyPitch, {-16, -22, -8}},
                       {headPitch, {8, 12, 6}},
                       {face, {16}, furred},
                       {arms, {40}},
                       {spreads, {60}},
                       {legLeft, {30}},
                       {legRight, {18}},
                       {ear, {-18}},
                       {tailPitch, {-14}}},
            .eyes = {hurt},
            .mouths = {Mouth::round}};
}

Animation hitGround() {
    return {.name = "HitGround",
            .ticks = {2, 3, 10, 6, 6},
            .tracks = {{y, {6, 0, 0, 1, 0}},
                       {squash, {1.12, 0.66, 0.78, 1.05, 1}},
                       {squash, {1.12, 0.74, 0.84, 1.05, 1}, furred},
                       {face, {10, 18, 18, 6, 0}, furred},
                       {spreads, {70, 70, 70, 30, 14}},
                       {arms, {40, 40, 40, 20, 12}},
                       {legLeft, {30, 30, 30, 0}},
                       {legRight, {-30, -30, -30, 0}},
                       {ear, {-26, 30, 20, 0}},
                       {tailPitch, {-20, 16, 8, 0}}},
            .eyes = {hurt, hurt, hurt, open},
            .mouths = {Mouth::round, Mouth::round, Mouth::wavy, Mouth::flat}};
}

Animation faint() {
    return {.name = "Faint",
            .ticks = {4, 6, 5, 4, 4, 5, 40, 8},
            .tracks = {{tilt, {0, -8, 10, 34, 66, 84, 82, 82}},
                       {pivot, {4.5}},
                       {pivot, {7}, ball},
                       {pivot, {6}, floating},
                       {face, {0, 0, 0, 14}},
                       {face, {10, 12, 12, 14}, furred},
                       {y, {0, 1, 0}},
                       {arms, {30, 30, 30, 10}},
                       {spreads, {50, 50, 50, 40}},
                       {legLeft, {0, 0, 0, 0, 18}},
                       {legRight, {0, 0, 0, 0, -10}},
                       {squash, {1, 1, 1, 1, 1, 0.94, 1}},
                       {ear, {0, 0, 0, 20}},
                       {tailPitch, {0, 0, 0, -24}},
                       {tailPitch, {0, 0, 0, 10}, ghosts},
                       {tailSway, {0, 0, 0, 10}},
                       {tailCurl, {0, 0, 0, -8}},
                       // Who has a long tail sways and flops onto its belly, the tail limp behind.
                       {tilt, {0, 8, 12, -8, -4, 0}, tailed},
                       {settled, {0, 0, 0, 0.6, 1.4, 1.8}, tailed},
                       {squash, {1, 1.05, 1, 0.98, 0.95, 0.84, 0.92, 0.94}, tailed},
                       {bodyPitch, {-4, -8, -6, 12, 26, 30}, tailed},
                       {headPitch, {0, 2, 2, -12, -26, -32}, tailed},
                       {headY, {0, 0, 0, -1, -2.4, -3.4, -2.9, -2.6}, tailed},
                       {headZ, {0, 0, 0, 0.5, 1}, tailed},
                       {headRoll, {0, 0, 0, -4, -8}, tailed},
                       {face, {10, 12, 12, 24, 40}, tailed},
                       {legs, {0, 0, 0, 40, 94}, tailed},
                       {legs, {0, 0, 0, 40, 104}, squirrel},
                       {lifts, {0, 0, 0, 0.6, 1}, tailed},
                       {arms, {30, 30, 30, 50, 54}, tailed},
                       {spreads, {50, 50, 50, 40, 6}, tailed},
                       {ear, {0, 0, 0, 20, 34}, tailed},
                       {tailSway, {0}, tailed},
                       {tailPitch, {0, 8, 14, 4, 14, 20}, tailed},
                       {tailCurl, {0, 0, 0, -24, -40}, squirrel},
                       {tailTip, {0, 0, 0, -14, -26}, squirrel},
                       {tailCurl, {0, 0, 0, -26, -52}, tall},
                       {tailTip, {0, 0, 0, 0, -3}, tall},
                       {tailPitch, {0, 8, 14, 4, 10, 14}, swimmer},
                       {tailCurl, {0, 0, 0, -24, -46}, swimmer},
                       {tailTip, {0, 0, 0, -30, -66}, swimmer},
                       // Who has no bones melts.
                       {tilt, {0, -8, 6, 8, 4, 0}, wisp | bell},
                       // A ball does the same, and spreads on the ground.
                       {tilt, {0, 8, 12, -10, -4, 4, 6, 6}, ball},
                       {settled, {0, 0, 0, 0.5, 1, 1.4}, ball},
                       {squash, {1, 1.05, 1, 0.94, 0.84, 0.72, 0.79, 0.80}, ball},
                       {face, {10, 12, 12, 24, 40}, ball},
                       {headPitch, {0, 0, 0, -6, -16}, ball},
                       {legs, {0, 0, 0, 12}, ball},
                       {ear, {0, 0, 0, 20, 34}, ball},
                       {arms, {30, 30, 30, 0}, ball},
                       {spreads, {50, 50, 50, 20}, ball},
                       {tailPitch, {0, 0, 0, 10, 24}, ball},
                       // Who is mostly head sinks into a heap under it.
                       {tilt, {0, -8, 10, -10, -4, 0}, dusk},
                       {settled, {0, 0, 0, 0.6, 1.2, 1.6}, dusk},
                       {squash, {1, 1.05, 1, 0.94, 0.84, 0.70, 0.77, 0.78}, dusk},
                       {headPitch, {0, 0, 0, 2}, dusk},
                       {headY, {0, 0, 0, -1, -1.5}, dusk},
                       {legs, {0, 0, 0, 50, 94}, dusk},
                       {arms, {30, 30, 30, 40, 34}, dusk},
                       {spreads, {50, 50, 50, 30, 10}, dusk},
                       {squash, {1, 1.08, 1, 0.84, 0.64, 0.54, 0.58}, wisp | bell},
                       {face, {0, 4, 8, 14}, wisp | bell}},
            .eyes = {hurt, hurt, hurt, dizzy},
            .mouths = {Mouth::round, Mouth::round, Mouth::round, Mouth::wavy},
            .lyingFrom = 3};
}

Animation pain() {
    return {.name = "Pain",
            .ticks = {4, 4, 4, 4, 14, 6},
            .tracks = {{x, {-1, 1, -1, 1, 0, 0}},
                       {bodyPitch, {8, 10, 12, 12, 14, 6}},
                       {headPitch, {2, 2, 0, 0, -2, 2}},
                       {headPitch, {-8, -10, -12, -12, -14, -6}, tall | swimmer},
                       {headY, {-0.5, -1, -1, -1, -1, 0}},
                       {face, {16}, furred},
                       {squash, {0.93}},
                       {arms, {60}},
                       {spreads, {-30}},
                       {bend, {40}},
                       {ear, {30}},
                       {tailPitch, {12}}},
            .eyes = {hurt},
            .mouths = {Mouth::wavy}};
}

Animation cringe() {
    return {.name = "Cringe",
            .ticks = {4, 6, 14, 6},
            .tracks = {{squash, {0.95, 0.86, 0.84, 0.96}},
                       {bodyPitch, {-6, -10, -10, 0}},
                       {headPitch, {6, 12, 12, 4}},
                       {arms, {60, 100, 104, 30}},
                       {spreads, {-16}},
                       {z, {-1}},
                       {y, {-2}, floating},
                       {ear, {34}}},
            .eyes = {closed, closed, closed, half},
            .mouths = {Mouth::wavy}};
}

Animation lostBalance() {
    return {.name = "LostBalance",
            .ticks = {4, 4, 4, 4, 4, 4},
            .tracks = {{tilt, {6, 14, 4, -10, -14, -4}},
                       {pivot, {0}},
                       {armLeft, {80, 140, 60, 20, 60, 100}},
                       {armRight, {60, 20, 80, 140, 100, 60}},
                       {spreads, {70}},
                       {legLeft, {0, 20, 0, -10, 20, 0}},
                       {legRight, {0, -10, 10, 20, -10, 0}},
                       {tailPitch, {-6, -16, -4, 12, 16, 4}},
                       {ear, {-10, -20, -6, 12, 20, 6}}},
            .eyes = {wide},
            .mouths = {Mouth::round}};
}

Animation trip() {
    return {.name = "Trip",
            .ticks = {4, 3, 3, 4, 16, 6},
            .tracks = {{z, {0, 1, 2, 2, 2, 1}},
                       {tilt, {-8, -24, -50, -68, -72, -40}},
                       {pivot, {5}},
                       {arms, {40, 90, 130, 150, 150, 90}},
                       {legLeft, {20, -10, -20, -10, -10, 0}},
                       {legRight, {-10}},
                       {headPitch, {0, -6, -10, -14, -14, -6}},
                       {arms, {40, 60, 60, 50}, tall | swimmer | dusk},
                       {headPitch, {0, -10, -26, -44, -46, -16}, tall | swimmer},
                       // The round ones cannot lie: they stand on their chins.
                       {tilt, {-8, -22, -36, -42, -43, -24}, ball},
                       // Ghosts land flat on their faces.
                       {tilt, {-8, -22, -34, -16, -10, -4}, ghosts},
                       {squash, {1, 1.04, 1.04, 0.62, 0.68, 0.92}, ghosts},
                       {settled, {0, 0, 0, 1.4, 1.4, 0.4}, dusk},
                       {legs, {0, -20, -40, -70, -70, -10}, dusk},
                       {face, {0, 4, 10, 14, 14, 6}},
                       {ear, {0, -20, -10, 20, 20, 0}}},
            .eyes = {wide, wide, wide, hurt, hurt, half},
            .mouths = {Mouth::round, Mouth::round, Mouth::round, Mouth::wavy},
            .lyingFrom = 1};
}

Animation tumbleBack() {
    return {.name = "TumbleBack",
            .ticks = {3, 3, 3, 3, 3, 3, 3, 3},
            .tracks = {{tilt, {0, 45, 90, 135, 180, 225, 270, 315}},
                       {face, {14}, furred},
                       {pivot, {8}},
                       {pivot, {12}, bell | dusk},
                       {squash, {0.96}},
                       {legs, {60}},
                       {arms, {60}},
                       {tailCurl, {20}}},
            .eyes = {hurt},
            .mouths = {Mouth::round},
            .lyingFrom = 0};
}

}  // namespace

std::vector<Animation> mishapAnimations() {
    return {hurtByBlow(), hitGround(),   faint(), pain(),
            cringe(),     lostBalance(), trip(),  tumbleBack()};
}

}  // namespace quibbits::atelier
