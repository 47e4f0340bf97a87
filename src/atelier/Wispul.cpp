// Wispul: a ball of fog with lantern eyes. Its crown curls over, its hem trails away, and small
// puffs come loose from it and fade.
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

constexpr Vec3 ballRadii{7.2, 6.4, 6.8};
constexpr Ellipsoid cheeks{{0, 0, 0}, {7.4, 6.4, 7.0}};

Material markings(Vec3 q) {
    return q.z > 0 && q.y < -0.62 ? Material::fluff : Material::fur;
}

void shapeCrown(Model& model, const Frame& head, const Pose& pose) {
    const double drift = std::sin(pose.phase) * 0.7;
    model.chain(
        head.moved({0, 4.2, -0.6}).pitched(-pose.tailPitch).rolled(pose.tailSway * 0.5),
        {.points = {{0, -1, 0},
                    {-0.8, 2.0, -0.4},
                    {-0.6 + drift, 4.6, -1.2},
                    {1.4 + drift, 6.4, -1.4},
                    {3.4 + drift * 0.5, 5.6, -1.2}},
         .radii = {4.6, 3.2, 2.2, 1.7, 1.0},
         .materialAlong = [](double t) { return t > 0.62 ? Material::fluff : Material::fur; },
         .puff = pose.tailPuff},
        Part::head);
}

/// A hem of small billows that rise and fall in turn, and a wisp that trails behind them.
void shapeHem(Model& model, const Frame& head, const Pose& pose) {
    for (int i = 0; i < 6; ++i) {
        const double angle = (i + 0.5) * fullTurn / 6;
        const double rise = 0.7 * std::sin(pose.phase + i * 2.1);
        const double x = std::sin(angle);
        const double z = std::cos(angle);
        model.chain(
            head,
            {.points = {{3.4 * x, -3.4, 3.2 * z}, {4.2 * x, -6.2 + rise, 4.0 * z - 0.8}},
             .radii = {3.4, 2.1},
             .materialAlong = [](double t) { return t > 0.8 ? Material::fluff : Material::fur; }},
            Part::head);
    }
    const double drift = std::sin(pose.phase) * 0.8;
    model.chain(
        head,
        {.points = {{0, -5.0, -3.4}, {drift, -6.6, -6.2}, {-drift, -5.6, -8.8}},
         .radii = {2.8, 2.2, 1.2},
         .materialAlong = [](double t) { return t > 0.45 ? Material::fluff : Material::fur; }},
        Part::head);
}

/// Puffs at both sides, like hands.
void shapePuffs(Model& model, const Frame& head, const Pose& pose) {
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        const double turn = pose.phase + sign * 1.3;
        model.ellipsoid(head,
                        {{(7.4 + 0.5 * std::cos(turn)) * sign, -3.0 + 0.9 * std::sin(turn), -0.8},
                         {1.9, 2.0, 1.9}},
                        Material::fluff, either(side, Part::puffLeft, Part::puffRight));
    }
}

/// Two puffs that come loose behind, rise and shrink. One that lies down has none: they would lift
/// it off the ground.
void shapeLoosePuffs(Model& model, const Frame& head, const Pose& pose) {
    if (pose.footing == Footing::lying) return;
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        const double turns = pose.phase / fullTurn + 0.25 * sign;
        const double age = turns - std::floor(turns);
        const double radius = 2.3 - 0.7 * age;
        model.ellipsoid(head,
                        {{(2.6 + 2.4 * age) * sign, -3.4 + 10.5 * age, -9.4 - 2.2 * age},
                         {radius, radius, radius}},
                        Material::fluff, Part::tail);
    }
}

/// Long enough to the side to take a berry from the air; towards the viewer it hangs.
void shapeTongue(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    if (pose.tongue <= 0.05) return;
    const double sideways = std::abs(stage.root.axes.z.x);
    const double reach = (4 + 14 * sideways) * pose.tongue;
    const double drop = (1.2 + 2.0 * (1 - sideways)) * pose.tongue;
    model.chain(head,
                {.points = {{0, -2.4, 5.6},
                            {0, -3.4, 6.4 + reach * 0.4},
                            {0, -3.0 - drop, 6.4 + reach * 0.75},
                            {0, -2.4 - drop, 6.4 + reach}},
                 .radii = {1.4, 1.4, 1.3, 1.5},
                 .material = Material::skin,
                 .flatness = {1.1, 0.8, 1}},
                Part::tongue);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame head = stage.root.moved({0, 9.0 - 3 * pose.settled, 0})
                           .pitched(pose.bodyPitch + pose.headPitch)
                           .yawed(pose.headYaw + stage.faceTurn)
                           .rolled(pose.bodyRoll + pose.headRoll)
                           .moved({0, pose.headY, pose.headZ})
                           .snapped();
    model.ellipsoid(head, {{}, ballRadii}, Material::fur, Part::head, markings);
    shapeCrown(model, head, pose);
    shapeHem(model, head, pose);
    shapePuffs(model, head, pose);
    shapeLoosePuffs(model, head, pose);
    shapeTongue(model, stage, head, pose);
    return {.frame = head, .radii = ballRadii, .eyeYaw = 30, .eyeRise = 8, .mouthRise = -24};
}

void face(Model& model, const Head& head, const Pose& pose) {
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        const Spot eye =
            spotOn(head.frame, {{}, ballRadii}, {30 * sign, 10},
                   {.facing = 0.70, .halfway = 0.62, .hidden = isStroke(pose.eyes) ? 0.42 : 0.18});
        lay(model, eye, wispEye(pose.eyes, eye.turn, pictureSide(head.frame, side)));
        lay(model, spotOn(head.frame, cheeks, {54 * sign, -14}, {.hidden = 0.30}), {{"RR"}});
    }
    const Spot mouth = spotOn(head.frame, {{}, ballRadii}, {keptInView(head.frame, 40), -24},
                              {.facing = 0.72, .hidden = 0.15});
    lay(model, mouth, wispMouth(pose.mouth, mouth.turn, pose.tongue));
    // A curl of darker fog on the back.
    const Spot back =
        spotOn(head.frame, {{}, ballRadii}, {180, 4}, {.facing = 0.8, .hidden = 0.35});
    lay(model, back,
        back.turn == Turn::facing
            ? Stamp{{".PPPPP.", "PP...PP", "P..P..P", "P.P.P.P", "P.P...P", "PP....P", ".PPPPP."}}
            : Stamp{{".PPP.", "P...P", "P.P.P", "..P.P", "PP.P."}});
}

}  // namespace

Form wispul() {
    return {.name = "wispul",
            .build = wisp,
            .cameraTilt = 16,
            .headTurn = roundTurn,
            .middle = 9,
            .reach = 12,
            .faceStyle = FaceStyle::lantern,
            .paints = wispulPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
