// A form is one creature of the set: its shape, its face, its paints and how it is looked at.
//
// Every form is a file of its own. To add one: write its shape and face, give it paints, and enter
// it into `forms()`.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "atelier/Face.h"
#include "atelier/Palettes.h"
#include "atelier/Pose.h"

namespace quibbits::atelier {

/// What a body can do, as a set: animations are written for some builds and not for others.
using Builds = unsigned;
constexpr Builds ball = 1;
constexpr Builds squirrel = 2;
constexpr Builds wisp = 4;
constexpr Builds bell = 8;
constexpr Builds dusk = 16;
constexpr Builds tall = 32;
constexpr Builds swimmer = 64;
constexpr Builds everyone = ~0U;
constexpr Builds floating = wisp | bell | swimmer;
constexpr Builds walking = everyone & ~floating;
constexpr Builds ghosts = wisp | bell | dusk;
constexpr Builds furred = everyone & ~ghosts;
constexpr Builds tailed = squirrel | tall | swimmer;
constexpr Builds twoLegged = squirrel | tall | swimmer | dusk;

/// The eight directions in the order of a sheet's rows: towards the viewer, then turning to the
/// right of the picture.
constexpr int directionCount = 8;
constexpr int facingViewer = 0;
constexpr int facingRight = 2;

/// How a portrait is framed: the shape is drawn larger and the head put near the middle.
struct Framing {
    double scale = 1.85;
    int headX = 20;
    int headY = 24;
};

enum class FaceStyle { furry, lantern, slanted, hooded };

struct Stage {
    Frame root;              // at the foot point, y up
    double faceTurn = 0;     // how far the head is turned towards the viewer, in degrees
    Side lean = Side::left;  // the creature's side to which its cap hangs over
    double tailTurn = 0;     // how far a tail swings out of its head's way, in degrees
};

struct Form {
    std::string_view name;
    Builds build = ball;
    double cameraTilt = 24;  // how far the viewer looks down, in degrees

    /// The two views from the side are turned towards the viewer by this much, in degrees: a true
    /// profile would hide one leg and one arm behind the other.
    double sideTurn = 18;

    /// In the directions that show a profile, heads are turned towards the viewer by this much, so
    /// that the face can be read.
    std::array<double, directionCount> headTurn{};

    double middle = 8;  // height of the middle of the body, for effects
    double reach = 11;  // distance of effects from the middle
    FaceStyle faceStyle = FaceStyle::furry;

    /// It does not chew in an animation; it has one still picture in which it holds what it eats.
    bool holdsFoodStill = false;

    Framing framing;

    Paints (*paints)() = nullptr;
    Head (*shape)(Model&, const Stage&, const Pose&) = nullptr;
    void (*face)(Model&, const Head&, const Pose&) = nullptr;
};

/// Head turns for heads with a muzzle, which tells the direction by itself.
constexpr std::array<double, directionCount> muzzleTurn{0, -10, -34, -6, 0, 6, 34, 10};

Form mizzle();
Form sparrel();
Form thrummet();
Form coralis();
Form wispul();
Form gloamer();
Form umbrool();

/// All forms, in the order of a life.
std::span<const Form> forms();
const Form* formNamed(std::string_view name);

}  // namespace quibbits::atelier
