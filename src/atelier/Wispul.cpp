// Wispul: a ball of fog with lantern eyes. Its crown curls over, its hem trails away, and small
// puffs come loose from it and fade.
#include <algorithm>
#include <array>
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

constexpr Vec3 ballRadii{7.2, 6.4, 6.8};
constexpr Ellipsoid cheeks{{0, 0, 0}, {7.4, 6.4, 7.0}};

Material markings(Vec3 q) {
    return q.z > 0 && q.y < -0.62 ? Material::fluff : Material::fur;
}

/// It curls over to where its curl is seen: sideways from the front, backwards from the side.
void shapeCrown(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    const double drift = std::sin(pose.phase) * 0.7;
    const double backwards = std::min(1.0, std::abs(normalised(stage.root.axes.z).x));
    const double sideways = std::sqrt(1 - backwards * backwards);
    const auto at = [&](double over, double up) {
        return Vec3{sideways * over, up, -backwards * over};
    };
    model.chain(
        head.yawed(stage.tailTurn - stage.faceTurn)
            .moved({0, 4.2, -0.6})
            .pitched(-pose.tailPitch)
            .rolled(pose.tailSway * 0.5),
        {.points = {at(0, -1), at(-0.8, 2.2), at(-0.4 + drift, 5.0), at(2.2 + drift, 6.8),
                    at(4.8 + drift * 0.5, 5.4)},
         .radii = {4.6, 3.1, 2.1, 1.6, 1.1},
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

/// Two flippers of fog at the sides that trail backwards and flap in turn. They rise with the arms
/// that others have.
void shapeFlippers(Model& model, const Frame& head, const Pose& pose) {
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        const double flap = std::sin(pose.phase + sign * 1.3);
        const auto [swing, spread] = armPose(pose, side);
        const double raised = std::clamp(swing - Pose{}.armLeft, 0.0, 85.0) * 0.8;
        const auto [near, far] = pairCheat(head, side);
        if (far > 0.6 && raised < 30) continue;  // only its tip would stick out
        const double outwards = (spread - Pose{}.spreadLeft) * 0.6 * (1 - near - far);
        const Frame flipper =
            head.moved({6.4 * sign, -2.2 + 0.02 * raised, 0.8 + 0.05 * raised * far})
                .rolled(sign * outwards)
                .pitched(raised);
        model.chain(flipper,
                    {.points = {{0, 0, 0},
                                {1.6 * sign, -0.8 + 0.5 * flap, -1.8},
                                {2.2 * sign, -0.4 + 1.3 * flap, -4.2 - 0.02 * raised}},
                     .radii = {1.9, 1.9, 0.9},
                     .material = Material::fluff},
                    either(side, Part::puffLeft, Part::puffRight));
    }
}

/// Scraps of fog that come loose behind, rise and thin out. They have no outline: with one, they
/// would look like bubbles.
void shedFog(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    // One that lies down sheds none, nor does an enlarged one: scraps do not grow with it.
    if (pose.footing == Footing::lying || length(head.axes.x) > 1.4) return;
    static const std::array<Stamp, 5> scraps{
        Stamp{{"..vV.", ".vvVV", "vvVVV", "VVVV."}}, Stamp{{".vV.", "vvVV", "vVVV", ".VV."}},
        Stamp{{".vV", "vVV", "VV."}}, Stamp{{"vV", "VV"}}, Stamp{}};
    const Frame behind = head.yawed(stage.tailTurn - stage.faceTurn);
    for (int i = 0; i < 2; ++i) {
        const double turns = pose.phase / fullTurn + i / 2.0;
        const double age = turns - std::floor(turns);
        const Vec3 at = behind.at({0, -5.0 + 13.0 * age, -12.0 - 2.5 * std::sin(age * 3)});
        model.mote({.x = static_cast<int>(std::lround(at.x)) - 1,
                    .y = static_cast<int>(std::lround(at.y)) + 1,
                    .stamp = scraps[static_cast<std::size_t>(age * scraps.size())],
                    .behind = true});
    }
}

/// Long enough to the side to take a berry from the air; towards the viewer it hangs.
void shapeTongue(Model& model, const Stage& stage, const Frame& head, const Pose& pose) {
    if (pose.tongue <= 0.05) return;
    const double sideways = std::abs(stage.root.axes.z.x);
    const double reach = (4 + 14 * sideways) * pose.tongue;
    const double drop = (1.2 + 2.0 * (1 - sideways)) * pose.tongue;
    const double thickness = std::min(1.0, 0.7 + pose.tongue);
    model.chain(head,
                {.points = {{0, -2.4, 5.6},
                            {0, -3.4, 6.4 + reach * 0.4},
                            {0, -3.0 - drop, 6.4 + reach * 0.75},
                            {0, -2.4 - drop, 6.4 + reach}},
                 .radii = {1.4 * thickness, 1.4 * thickness, 1.3 * thickness, 1.5 * thickness},
                 .material = Material::skin,
                 .flatness = {1.1, 0.8, 1}},
                Part::tongue);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame head =
        headInTheAir(stage.root, 9.0 - 3 * pose.settled, stage.faceTurn, pose).snapped();
    model.ellipsoid(head, {{}, ballRadii}, Material::fur, Part::head, markings);
    shapeCrown(model, stage, head, pose);
    shapeHem(model, head, pose);
    shapeFlippers(model, head, pose);
    shedFog(model, stage, head, pose);
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
            ? Stamp{{"..PPP..", ".P...P.", "P..P..P", "P.P.P.P", "P...P..", ".P..P..", "..PP..."}}
            : Stamp{{".PPP.", "P...P", "P.P.P", "..P.P", "PP.P."}});
}

}  // namespace

Form wispul() {
    return {.name = "wispul",
            .build = wisp,
            .cameraTilt = 16,
            .headTurn = {0, -13, -42, -10, 0, 10, 42, 13},
            .middle = 9,
            .reach = 12,
            .faceStyle = FaceStyle::lantern,
            .paints = wispulPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
