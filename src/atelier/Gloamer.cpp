// Gloamer: a hood of evening with a scalloped hem. Two mittens float beside it, and its tongue is
// never quite in.
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

constexpr Vec3 hoodRadii{8.2, 7.2, 7.4};

/// Five scallops that swing in turn and fade at the hem.
void shapeSkirt(Model& model, const Frame& head, const Pose& pose) {
    for (int i = 0; i < 5; ++i) {
        const double angle = radians(i * 72 + 20);
        const double wave = 0.6 * std::sin(pose.phase + i * 1.7);
        const double x = std::sin(angle);
        const double z = std::cos(angle);
        model.chain(
            head,
            {.points = {{3.0 * x, -3, 3.0 * z - 0.5},
                        {5.2 * x, -6.6, 5.0 * z - 1},
                        {6.0 * x + wave, -9.6 + wave, 5.8 * z - 2}},
             .radii = {4.0, 2.9, 1.6},
             .materialAlong = [](double t) { return t > 0.62 ? Material::fluff : Material::fur; }},
            Part::head);
    }
}

/// Its tip hangs over backwards, however far the face is turned to the viewer.
void shapeHoodTip(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    const double sway = std::sin(pose.phase) * 0.8;
    const double late = std::sin(pose.phase - 1.2) * 2;
    model.chain(
        head.yawed(stage.tailTurn - stage.faceTurn)
            .moved({0, 5.2, -0.6})
            .pitched(-pose.tailPitch)
            .rolled(pose.tailSway * 0.4),
        {.points = {{0, -1, 0}, {0, 2.0, -0.6}, {sway, 4.0, -2.4}, {late, 4.4, -4.6}},
         .radii = {4.4, 2.9, 2.0, 1.2},
         .materialAlong = [](double t) { return t > 0.8 ? Material::fluff : Material::fur; }},
        Part::head);
}

/// A mitten goes where the hand of an arm would be, were there an arm.
void shapeMitten(Model& model, const Frame& head, Side side, const Pose& pose) {
    constexpr double reach = 5;
    const double sign = sideSign(side);
    const auto [swing, spread] = armPose(pose, side);
    const Part part = either(side, Part::puffLeft, Part::puffRight);
    const double bob = 0.9 * std::sin(pose.phase + sign);
    const bool facesAway = head.axes.z.z < -0.2;
    const auto [near, far] = facesAway ? PairCheat{} : pairCheat(head, side);
    const Frame hand =
        head.moved({8.2 * sign, 0.2 + bob - 0.8 * near - 3.0 * far, 0.0 - 1.6 * near + 5.6 * far})
            .pitched(0.9 * pose.bend - swing)
            .rolled(spread * 0.8 * sign)
            .moved({0, -reach, 0});
    model.ellipsoid(hand, {{0, 0, 0}, {2.0, 1.9, 1.9}}, Material::paw, part);
    model.ellipsoid(hand, {{-1.7 * sign, 1.0, 0.6}, {0.9, 1.1, 0.9}}, Material::paw, part);
    for (const double finger : {-1.4, 0.0, 1.4}) {
        model.ellipsoid(hand, {{finger, -1.6, 0.6}, {0.85, 1.1, 0.85}}, Material::paw, part);
    }
}

/// Hangs out a little from a mouth that smiles or laughs; to the side it reaches far enough for a
/// berry.
void shapeTongue(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    const bool hangs =
        (pose.mouth == Mouth::smile || pose.mouth == Mouth::open) && head.axes.z.z >= 0.2;
    if (!hangs && pose.tongue <= 0.05) return;
    const double sideways = std::abs(stage.root.axes.z.x);
    const double reach = 2.0 + (4 + 10 * sideways) * pose.tongue;
    const double drop = (1.2 - 3.4 * sideways) * pose.tongue;
    const double sway = 0.4 * std::sin(pose.phase);
    model.chain(
        head,
        {.points = {{0, -4.6, 5.6}, {0, -5.8, 6.4 + reach * 0.4}, {sway, -6.8 - drop, 6.4 + reach}},
         .radii = {1.6, 1.5, 1.4},
         .material = Material::skin,
         .flatness = {1.1, 0.9, 0.8}},
        Part::tongue);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame head =
        steadied(headInTheAir(stage.root, 14.0 - 5 * pose.settled, stage.faceTurn, pose), pose);
    model.ellipsoid(head, {{}, hoodRadii}, Material::fur, Part::head);
    shapeSkirt(model, head, pose);
    shapeHoodTip(model, stage, head, pose);
    for (const Side side : {Side::left, Side::right}) shapeMitten(model, head, side, pose);
    shapeTongue(model, stage, head, pose);
    return {.frame = head, .radii = hoodRadii, .eyeYaw = 31, .eyeRise = 16, .mouthRise = -18};
}

/// Two rows of stars down the back.
void layBack(Model& model, const Head& head) {
    for (const double yaw : {150.0, 180.0, 210.0}) {
        const double rise = yaw == 180 ? -14 : 14;
        const Spot spot = spotOn(head.frame, {{}, hoodRadii}, {yaw, rise}, {.hidden = 0.45});
        lay(model, spot, {{".P.", "PpP", ".P."}});
    }
}

void face(Model& model, const Head& head, const Pose& pose) {
    for (const Side side : {Side::left, Side::right}) {
        const Spot eye =
            spotOn(head.frame, {{}, hoodRadii}, {29 * sideSign(side), 20},
                   {.facing = 0.70, .halfway = 0.62, .hidden = isStroke(pose.eyes) ? 0.42 : 0.34});
        lay(model, eye, bellEye(pose.eyes, eye.turn, pictureSide(head.frame, side)));
    }
    const Spot mouth = spotOn(head.frame, {{}, hoodRadii}, {keptInView(head.frame, 34), -16},
                              {.facing = 0.80, .halfway = 0.5, .hidden = 0.05});
    lay(model, mouth,
        bellMouth(pose.mouth, mouth.turn, mouth.leansRight ? Side::right : Side::left));
    layBack(model, head);
}

}  // namespace

Form gloamer() {
    return {.name = "gloamer",
            .build = bell,
            .cameraTilt = 16,
            .headTurn = {0, -13, -44, -10, 0, 10, 44, 13},
            .middle = 12,
            .reach = 12,
            .faceStyle = FaceStyle::hooded,
            .framing = {.scale = 1.75},
            .paints = gloamerPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
