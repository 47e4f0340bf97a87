// Umbrool: dusk in the shape of a pear, with a night cap that ends in a lantern. It carries a moon
// on its belly and a grin that shows from far off.
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

constexpr Vec3 headRadii{8.6, 6.6, 7.2};
constexpr Ellipsoid belly{{0, -0.2, 0}, {7.0, 5.2, 6.0}};
constexpr Neck neck{.root = {0, 3.6, 0.2}, .toHead = {0, 5.2, 0.6}};
constexpr LegShape legShape{
    .hip = {3.4, 4.4, 0.6}, .length = 4.4, .radius = 2.2, .foot = {2.3, 1.5, 3.2}};
constexpr ArmShape armShape{.shoulder = {5.8, 3.6, 0.8}, .length = 6.0, .upper = 1.5, .paw = 1.8};

void shapeArm(Model& model, const Frame& hip, Side side, Pose pose) {
    (side == Side::right ? pose.spreadRight : pose.spreadLeft) += 22;
    pose.bend += 35;
    arm(model, hip, side, armShape, pose);
}

/// Tufts that stand off the cheeks like a collar turned up.
void shapeCheek(Model& model, const Frame& head, Side side) {
    const double sign = sideSign(side);
    model.chain(
        head,
        {.points = {{6.2 * sign, -1.4, 0}, {8.6 * sign, -2.6, -0.6}, {10.4 * sign, -2.0, -1.4}},
         .radii = {3.0, 2.0, 0.7}},
        Part::head);
}

/// The cap hangs over backwards and to one side, so that its lantern shows from the front.
void shapeCap(Model& model, const Frame& head, Side lean, const Pose& pose) {
    const double sign = sideSign(lean);
    const double drift = std::sin(pose.phase) * 0.6;
    const Frame cap = head.moved({0.2 * sign, 4.4, -0.8})
                          .pitched(-pose.tailPitch - pose.ear * 0.4)
                          .rolled(pose.tailSway * 0.4 - 6 * sign);
    model.chain(cap,
                {.points = {{0, -1.5, 0},
                            {0, 1.6, -0.8},
                            {1.0 * sign + drift, 4.0, -2.8},
                            {3.4 * sign + drift, 4.6, -6.4},
                            {5.4 * sign + drift, 2.4, -9.0}},
                 .radii = {5.0, 3.6, 2.6, 1.9, 1.2}},
                Part::head);
    model.ellipsoid(cap, {{6.6 * sign + drift, -0.2, -9.8}, {2.3, 2.3, 2.3}}, Material::glow,
                    Part::bulb);
}

void shapeTongue(Model& model, const Frame& head, const Pose& pose) {
    if (pose.tongue <= 0.05) return;
    const double out = pose.tongue * 1.2;
    model.chain(head,
                {.points = {{0, -3.2, 5.8},
                            {0, -4.8, 7.0 + 2.4 * out},
                            {0, -5.4 - 0.6 * out, 7.0 + 6.0 * out}},
                 .radii = {2.0, 1.8, 1.6},
                 .material = Material::skin,
                 .flatness = {1.15, 0.7, 1}},
                Part::tongue);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame hip = hipFrame(stage.root, {0, 7.6, 0}, 2.6, pose);
    for (const Side side : {Side::left, Side::right}) {
        leg(model, stage.root, side, legShape, pose);
        shapeArm(model, hip, side, pose);
    }
    model.ellipsoid(hip, belly, Material::fur, Part::body);
    const Spot moon =
        spotOn(hip, belly, {keptInView(hip, 52), -6}, {.facing = 0.8, .hidden = 0.35});
    lay(model, moon,
        moon.turn == Turn::facing ? Stamp{{".ss.", "sS..", "sS..", "sSSs", ".ss."}}
                                  : Stamp{{".s", "sS", "sS", ".s"}},
        Part::body);

    const Frame head = headUpon(hip, neck, stage.faceTurn, pose);
    model.ellipsoid(head, {{}, headRadii}, Material::fur, Part::head);
    for (const Side side : {Side::left, Side::right}) shapeCheek(model, head, side);
    shapeCap(model, head, stage.lean, pose);
    shapeTongue(model, head, pose);
    return {.frame = head, .radii = headRadii, .eyeYaw = 29, .eyeRise = 12, .mouthRise = -22};
}

/// A head turned aside leaves the eyes and the grin less width: the grin is a narrower one, and the
/// eyes make way.
constexpr int eyesRaised = 2;
constexpr double turnedAside = 0.25;  // the sine of the turn

void face(Model& model, const Head& head, const Pose& pose) {
    Spot mouth = spotOn(head.frame, {{}, headRadii}, {keptInView(head.frame, 34), -14},
                        {.facing = 0.80, .halfway = 0.5, .hidden = 0.02});
    const bool turned = std::abs(normalised(head.frame.axes.z).x) > turnedAside;
    if (mouth.turn == Turn::facing && turned) mouth.turn = Turn::halfway;
    const bool aside = mouth.turn != Turn::facing && mouth.quarters == 0;
    for (const Side side : {Side::left, Side::right}) {
        Spot eye =
            spotOn(head.frame, {{}, headRadii}, {29 * sideSign(side), 20},
                   {.facing = 0.70, .halfway = 0.60, .hidden = isStroke(pose.eyes) ? 0.42 : 0.26});
        if (aside) eye.y += eyesRaised;
        lay(model, eye, duskEye(pose.eyes, eye.turn, pictureSide(head.frame, side)));
    }
    lay(model, mouth,
        duskMouth(pose.mouth, mouth.turn, mouth.leansRight ? Side::right : Side::left,
                  pose.tongue));
}

}  // namespace

Form umbrool() {
    return {.name = "umbrool",
            .build = dusk,
            .cameraTilt = 16,
            .headTurn = {0, -13, -50, -10, 0, 10, 50, 13},
            .middle = 12,
            .reach = 14,
            .faceStyle = FaceStyle::slanted,
            .framing = {.scale = 1.62, .headX = 17, .headY = 25},
            .paints = umbroolPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
