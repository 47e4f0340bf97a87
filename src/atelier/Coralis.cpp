// Thrummet of the coral kind: it swims through the air, with antlers of coral and a tail that rolls
// up like a sea horse's and sheds drops of water.
#include <cmath>

#include "atelier/TallBody.h"

namespace quibbits::atelier {
namespace {

constexpr EarPlace antlerPlace{.root = {4.2, 3.8, -1.2},
                               .near = {0, 0.6, 0.8},
                               .far = {0, -2.0, -1.0},
                               .outwards = 30,
                               .nearUp = 30,
                               .backwards = 26};

/// It does not stand: its legs trail, one lower than the other.
Pose swimming(Pose pose) {
    if (pose.footing == Footing::lying) return pose;
    pose.legLeft -= 23;
    pose.legRight -= 11;
    pose.liftLeft += 0.6;
    pose.liftRight += 1.4;
    return pose;
}

void shapeTail(Model& model, const Frame& hip, double turn, const Pose& pose) {
    const TailShape tail{.joints = 16, .segment = 1.75, .start = 118, .turn = [&pose](double t) {
                             if (t < 0.16) return -4.0;
                             if (t < 0.5) return -22.0 - pose.tailCurl * 0.3;
                             return t < 0.64 ? 2.0 : 46.0 + pose.tailTip;
                         }};
    model.chain(
        tallTailRoot(hip, turn, pose),
        {.points = tailCurve(tail, pose),
         .radii = {1.8, 2.4, 3.0, 3.4, 3.2, 2.4, 1.4},
         .materialAlong =
             [](double t) {
                 return t > 0.84 ? Material::cream : t > 0.62 ? Material::glow : Material::paw;
             },
         .puff = pose.tailPuff,
         .flatness = {1.15, 1, 1}},
        Part::tail);
}

void shapeAntler(Model& model, const Frame& head, Side side, const Pose& pose) {
    const double sign = sideSign(side);
    const Part part = either(side, Part::earLeft, Part::earRight);
    const Frame antler = earUpon(head, side, antlerPlace, pose);
    model.chain(
        antler,
        {.points = {{0, -1, 0}, {0, 2, 0}, {0.8 * sign, 4.6, 0}, {0.4 * sign, 8.0, 0}},
         .radii = {1.9, 1.7, 1.4, 1.2},
         .materialAlong = [](double t) { return t > 0.15 ? Material::glow : Material::fur; }},
        part);
    model.chain(antler,
                {.points = {{0.5 * sign, 3.4, 0}, {3.2 * sign, 6.0, 0}},
                 .radii = {1.1, 1.1},
                 .material = Material::glow},
                part);
}

/// Drops that come off its tail one after the other, rise and shrink: clear of the body, over which
/// they would be noise.
void shapeDrops(Model& model, const Frame& root, double turn, const Pose& pose) {
    // From the front and from behind the head stands where they rise.
    const bool fromTheSide = std::abs(normalised(root.axes.z).x) > 0.6;
    if (pose.footing == Footing::lying || !fromTheSide) return;
    for (int i = 0; i < 2; ++i) {
        const double turns = pose.phase / fullTurn + i / 2.0;
        const double age = turns - std::floor(turns);
        const Frame place =
            root.yawed(turn).moved({0, 21 + 14 * age, -15 + 1.5 * std::cos(age * fullTurn)});
        // Rigid and on a whole pixel: so small a ball would change its shape on its way.
        const double radius = age < 0.6 ? 1.9 : 1.4;
        model.ellipsoid(rigid(place).snapped(), {{}, {radius, radius, radius}}, Material::fluff,
                        Part::sprout);
    }
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const auto [hip, head] = shapeTallBody(model, stage, swimming(pose));
    shapeTail(model, hip, stage.tailTurn, pose);
    for (const Side side : {Side::left, Side::right}) shapeAntler(model, head, side, pose);
    shapeDrops(model, stage.root, stage.tailTurn, pose);
    return tallHead(head);
}

void face(Model& model, const Head& head, const Pose& pose) {
    layTallFace(model, head, pose, Brow::soft);
}

}  // namespace

Form coralis() {
    return {.name = "thrummet-coralis",
            .build = swimmer,
            .headTurn = tallHeadTurn,
            .middle = 12,
            .reach = 14,
            .holdsFoodStill = true,
            .paints = coralisPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
