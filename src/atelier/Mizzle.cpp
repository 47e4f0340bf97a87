// Mizzle: the round fluff that hatches first. All head, on two stubby feet, with a sprout on top
// that carries a drop of light.
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

/// It carries its face a little upwards, because it is looked down upon.
constexpr double lookingUp = 9;

constexpr Vec3 ballRadii{7.4, 6.6, 7.0};
constexpr Ellipsoid cheeks{{0, 0, 0}, {7.8, 6.7, 7.2}};
constexpr Ellipsoid muzzle{{0, -2.2, 5.3}, {2.7, 1.9, 2.5}};

constexpr EarPlace earPlace{.root = {4.0, 5.3, -0.4},
                            .near = {0, 0, 0.4},
                            .far = {0, -1.6, 0},
                            .outwards = 28,
                            .nearUp = 30};

/// A cream bib below the face and a plum stripe over the back.
Material markings(Vec3 q) {
    const double x = q.x;
    const double y = q.y + 0.5;
    if (q.z > 0.15 && q.y < -0.02 && x * x * 1.3 + y * y * 1.6 < 0.42) return Material::cream;
    if (q.z < 0.05 && std::abs(q.x) < 0.17 && q.y > -0.2) return Material::paw;
    return Material::fur;
}

void shapeFoot(Model& model, const Frame& root, Side side, const Pose& pose) {
    const auto [swing, lift] = legPose(pose, side);
    const Part part = either(side, Part::legLeft, Part::legRight);
    constexpr double apart = 2.9;
    const double height = 1.3 + lift - levelDrop(root, side, apart);
    const Frame foot = root.moved({apart * sideSign(side), height, 0.6})
                           .pitched(-swing * 0.3)
                           .moved({0, 0, swing * 0.12});
    model.ellipsoid(foot, {{0, 0, 0.6}, {2.1, 1.45, 2.8}}, Material::paw, part);
    model.chain(foot, {.points = {{0, 0.6, 0}, {0, 2.6, -0.4}}, .radii = {1.3, 1.5}}, part);
}

void shapeEar(Model& model, const Frame& head, Side side, const Pose& pose) {
    const Part part = either(side, Part::earLeft, Part::earRight);
    const Frame ear = earUpon(head, side, earPlace, pose);
    model.ellipsoid(ear, {{0, 1.6, 0}, {2.1, 3.0, 1.6}}, Material::fur, part);
    model.ellipsoid(ear, {{0, 1.6, 1.1}, {1.1, 1.8, 0.8}}, Material::skin, part);
}

void shapeSprout(Model& model, const Frame& head, const Pose& pose) {
    const Frame sprout =
        head.moved({0, 6.0, -0.5}).pitched(-pose.ear * 1.2 - 8).rolled(pose.tailSway * 0.6);
    model.chain(sprout,
                {.points = {{0, 0, 0}, {0, 2.4, -0.4}, {0, 4.6, 0.2}, {0, 5.6, 1.2}},
                 .radii = {0.75, 0.75},
                 .material = Material::paw},
                Part::sprout);
    // Rigid and on a whole pixel: so small a ball would change its shape wherever it swings.
    const Frame bulb = rigid(sprout.moved({0, 6.2, 1.9})).snapped();
    model.ellipsoid(bulb, {{}, {1.9, 1.9, 1.9}}, Material::glow, Part::bulb);
}

void shapeTail(Model& model, const Frame& root, double turn, const Pose& pose) {
    const double sway = pose.tailSway * 0.03;
    model.chain(root.yawed(turn)
                    .moved({0, 5.2 - 1.2 * pose.settled + pose.bodyY, -6.0})
                    .pitched(pose.tailPitch),
                {.points = {{0, 0, 0}, {sway, 1.4, -2.4}, {sway * 2, 4.4, -3.2}},
                 .radii = {1.5, 2.2, 2.3},
                 .materialAlong =
                     [](double t) {
                         return t > 0.75 ? Material::glow : t > 0.5 ? Material::paw : Material::fur;
                     },
                 .puff = pose.tailPuff},
                Part::tail);
}

/// Stubs that show only while they are raised.
void shapeArm(Model& model, const Frame& head, Side side, const Pose& pose) {
    const auto [swing, spread] = armPose(pose, side);
    if (swing < 30 && spread < 30) return;
    const double sign = sideSign(side);
    model.chain(
        head.moved({6.0 * sign, -2.6, 2.4}).pitched(-swing * 0.9).rolled((spread + 18) * sign),
        {.points = {{0, 0, 0}, {0, -2.0, 0}}, .radii = {1.25, 1.1}},
        either(side, Part::armLeft, Part::armRight));
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame head = stage.root.moved({0, 9.8 - 2.6 * pose.settled + pose.bodyY, 0})
                           .pitched(pose.bodyPitch)
                           .yawed(pose.headYaw + stage.faceTurn)
                           .pitched(pose.headPitch * 0.5 - lookingUp)
                           .rolled(pose.bodyRoll + pose.headRoll)
                           .moved({0, pose.headY, pose.headZ})
                           .snapped();
    model.ellipsoid(head, {{}, ballRadii}, Material::fur, Part::head, markings);
    model.ellipsoid(head, muzzle, Material::cream, Part::head);
    for (const Side side : {Side::left, Side::right}) {
        shapeFoot(model, stage.root, side, pose);
        shapeEar(model, head, side, pose);
        shapeArm(model, head, side, pose);
        const double cheek = 5.6 - 1.7 * drawnIn(head, side);
        model.ellipsoid(head, {{cheek * sideSign(side), -1.8, 1.4}, {2.8, 2.3, 2.8}}, Material::fur,
                        Part::head);
    }
    shapeSprout(model, head, pose);
    shapeTail(model, stage.root, stage.tailTurn, pose);
    return {.frame = head,
            .radii = ballRadii,
            .eyeYaw = 30,
            .eyeRise = 4,
            .muzzle = muzzle,
            .mouthRise = -10};
}

void face(Model& model, const Head& head, const Pose& pose) {
    layFurryFace(model, head.frame,
                 {.skull = ballRadii,
                  .cheeks = cheeks,
                  .muzzle = muzzle,
                  .eye = {29, 8},
                  .blush = {52, -12},
                  .noseRise = 42,
                  .mouthRise = 0,
                  .eyeFacing = 0.70,
                  .eyeHidden = 0.30,
                  .strokeHidden = 0.34},
                 pose);
}

}  // namespace

Form mizzle() {
    return {.name = "mizzle",
            .build = ball,
            .headTurn = {0, -12, -40, -8, 0, 8, 40, 12},
            .middle = 8,
            .reach = 11,
            .framing = {.headY = 27},
            .paints = mizzlePaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
