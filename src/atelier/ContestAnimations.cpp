// Strength: charging up, striking, letting go.
//
// The left arm leads: it is the near one in the view that faces right.
#include "atelier/Animations.h"

namespace quibbits::atelier {

using namespace joint;
using enum Eyes;

namespace {

constexpr Effect no = Effect::none;
constexpr Effect star = Effect::impact;
constexpr Effect spark = Effect::sparks;

// Crouches and bristles while the charge runs over it.
Animation charge() {
    return {.name = "Charge",
            .ticks = {4, 4, 3, 3, 3, 3, 3, 3, 3, 3},
            .tracks = {{squash, {0.96, 0.90}},
                       {x, {0, 0, -0.6, 0.6, -0.6, 0.6, -0.6, 0.6, -0.6, 0.6}},
                       {bodyPitch, {6, 12}},
                       {bodyPitch, {2}, ball},
                       {bodyPitch, {4, 8}, tall | swimmer | dusk},
                       {headPitch, {-4}},
                       {arms, {-18}},
                       {spreads, {38}},
                       {legLeft, {8}},
                       {legRight, {-8}},
                       {tailPitch, {0, 0, -10}},
                       {tailPitch, {0, 0, 4}, tall},
                       {tailPuff, {1, 1, 1.12, 1.17, 1.12, 1.17, 1.12, 1.17, 1.12, 1.17}},
                       {tailSway, {0, 0, -6, 6, -6, 6, -6, 6, -6, 6}},
                       {ear, {6, 6, -12}},
                       {earSpread, {0, 0, 10}}},
            .eyes = {open, open, angry},
            .mouths = {Mouth::flat},
            .effects = {no, no, spark},
            .drift = 0.8};
}

Animation shock() {
    return {.name = "Shock",
            .ticks = {3, 3, 3, 3, 3, 3, 3, 8},
            .tracks = {{squash, {0.94, 1.08, 0.94, 1.08, 0.94, 1.08, 0.94, 1}},
                       {x, {-1, 1, -1, 1, -1, 1, -1, 0}},
                       {spreads, {60, 80, 60, 80, 60, 80, 60, 40}},
                       {arms, {20}},
                       {ear, {-10, -24, -10, -24, -10, -24, -10, 16}},
                       {earSpread, {14}},
                       {face, {0, 0, 0, 0, 0, 0, 0, 16}, furred},
                       {tailPuff, {1.05, 1.22, 1.05, 1.22, 1.05, 1.22, 1.05, 1}},
                       {tailPitch, {-12}},
                       {tailPitch, {4}, tall}},
            .eyes = {wide, wide, wide, wide, wide, wide, wide, dizzy},
            .mouths = {Mouth::wavy},
            .effects = {spark, spark, spark, spark, spark, spark, spark, no}};
}

Animation shoot() {
    return {.name = "Shoot",
            .ticks = {5, 6, 2, 3, 8, 5},
            .tracks = {{bodyPitch, {-6, -14, 10, 16, 10, 2}},
                       {headPitch, {-4, -8, -4, -10, -8, 0}},
                       {z, {-1, -2, 1, -1, -1, 0}},
                       {squash, {0.96, 0.90, 1.06, 1}},
                       {arms, {20, -10, 80, 90, 80, 30}},
                       {spreads, {30, 30, -8}},
                       {tailPitch, {0, -18, 10, 24, 14, 0}},
                       {ear, {0, -10, 16, 24, 14, 0}}},
            .eyes = {closed, closed, angry, angry, angry, open},
            .mouths = {Mouth::flat, Mouth::flat, Mouth::open},
            .effects = {no, no, star, star, no}};
}

// Winds up, lunges, holds on the hit.
Animation attack() {
    return {.name = "Attack",
            .ticks = {5, 5, 2, 2, 2, 6, 3, 3, 4},
            .tracks = {{z, {-1, -2.5, 2, 5, 6, 6, 4, 2, 0}},
                       {y, {0, 0, 2, 3, 1, 0, 0, 0, 0}},
                       {squash, {0.94, 0.90, 1.04, 1.06, 0.96, 0.92, 0.96, 1}},
                       {bodyPitch, {-10, -16, 12, 24, 26, 24, 14, 6, 0}},
                       {bodyPitch, {-4, -6, 4, 8, 9, 8, 5, 2, 0}, ball | wisp},
                       {headPitch, {5, 8, -6, -12, -13, -12, -7, -3, 0}},
                       {armLeft, {-40, -40, 40, 100, 100, 100, 40}},
                       {armRight, {-30, -30, 30, 70, 70, 70, 30}},
                       {spreads, {40, 40, 10}},
                       {legLeft, {-6, -6, 0, -34, -34, -34, 0}},
                       {legRight, {10, 10, 0, 26, 26, 26, 0}},
                       {tailPitch, {-8, -8, -8, 26, 26, 26, -8}},
                       {ear, {-6, -6, -6, 30, 30, 30, -6}}},
            .eyes = {angry, angry, angry, angry, angry, angry, angry, angry, open},
            .mouths = {Mouth::flat, Mouth::flat, Mouth::flat, Mouth::open, Mouth::open, Mouth::open,
                       Mouth::flat},
            .effects = {no, no, no, no, star, star, no}};
}

Animation swing() {
    return {.name = "Swing",
            .ticks = {5, 4, 2, 2, 4, 5},
            .tracks = {{yaw, {-6, -2, -22, -46, -50, -16}},
                       {arms, {40, 60, 90, 90, 60, 20}},
                       {spreadLeft, {60, 80, 60, 10, 0, 14}},
                       {spreadRight, {20}},
                       {bodyRoll, {6, 10, 0, -10, -8, 0}},
                       {tailSway, {-20, -34, 0, 40, 46, 14}}},
            .eyes = {angry},
            .mouths = {Mouth::flat, Mouth::flat, Mouth::open, Mouth::open, Mouth::flat},
            .effects = {no, no, star, star, no}};
}

Animation strike() {
    return {.name = "Strike",
            .ticks = {4, 5, 2, 6, 4},
            .tracks = {{armLeft, {120, 170, 40, 20, 12}},
                       {spreadLeft, {10}},
                       {bodyPitch, {-8, -14, 18, 22, 6}},
                       {headPitch, {4, 8, -8, -10, 0}},
                       {y, {1, 3, 0, 0, 0}},
                       {z, {0, -1, 3, 4, 1}},
                       {squash, {1.02, 1.06, 0.9, 0.88, 1}}},
            .eyes = {angry},
            .mouths = {Mouth::flat, Mouth::flat, Mouth::open},
            .effects = {no, no, star, star, no}};
}

Animation multiStrike() {
    return {.name = "MultiStrike",
            .ticks = {3, 2, 3, 2, 3, 2, 3, 5},
            .tracks = {{armRight, {20, 110, 20, 20, 20, 110, 20, 20}},
                       {armLeft, {20, 20, 20, 110, 20, 20, 20, 110}},
                       {headYaw, {0, 14, 0, -14, 0, 14, 0, -14}},
                       {z, {1, 3, 1, 3, 1, 3, 1, 3}},
                       {bodyPitch, {6, 16, 6, 16, 6, 16, 6, 16}},
                       {headPitch, {-8}}},
            .eyes = {angry},
            .mouths = {Mouth::flat, Mouth::open, Mouth::flat, Mouth::open, Mouth::flat, Mouth::open,
                       Mouth::flat, Mouth::open},
            .effects = {no, star, no, star, no, star, no, no},
            .builds = ghosts};
}

}  // namespace

std::vector<Animation> contestAnimations() {
    return {charge(), shock(), shoot(), attack(), swing(), strike(), multiStrike()};
}

}  // namespace quibbits::atelier
