// Sparrel: a small squirrel with a charge in its tufts. Honey fur, a cream front, plum paws, and a
// tail as large as itself that carries the light at its tip.
#include <algorithm>
#include <cmath>

#include "atelier/Form.h"

namespace quibbits::atelier {
namespace {

constexpr Vec3 headRadii{7.4, 6.5, 6.7};
constexpr Ellipsoid muzzle{{0, -2.7, 4.9}, {3.2, 2.5, 3.0}};
constexpr Ellipsoid cheeks{{0, 0, 0}, {7.6, 6.5, 6.9}};

constexpr Neck neck{.root = {0, 4.7, 0.9}, .toHead = {0, 5.0, 0.7}};
constexpr LegShape legShape{
    .hip = {2.6, 6.2, 0.0}, .length = 6.2, .radius = 1.7, .foot = {1.8, 1.2, 2.7}, .level = true};
constexpr EarPlace earPlace{.root = {4.2, 4.5, -0.8},
                            .near = {0, 0.4, -0.6},
                            .far = {0, -2.0, 0.4},
                            .outwards = 22,
                            .nearUp = 30,
                            .backwards = 8};
constexpr ArmShape armShape{.shoulder = {3.4, 3.4, 1.5}, .length = 4.8, .upper = 1.25, .paw = 1.4};

Material bellyMarkings(Vec3 q) {
    if (q.z > 0.25 && std::abs(q.x) < 0.70 - 0.12 * q.y && q.y < 0.9) return Material::cream;
    if (q.z < -0.2 && std::abs(q.x) < 0.22) return Material::paw;
    return Material::fur;
}

Material chestMarkings(Vec3 q) {
    if (q.z > 0.25 && std::abs(q.x) < 0.66) return Material::cream;
    if (q.z < -0.2 && std::abs(q.x) < 0.22) return Material::paw;
    return Material::fur;
}

/// A plum stripe from the brow over the crown.
Material headMarkings(Vec3 q) {
    const bool stripe =
        q.z < 0.42 && std::abs(q.x) < 0.17 - 0.16 * std::max(0.0, q.z) && q.y > -0.3;
    return stripe ? Material::paw : Material::fur;
}

Material cheekMarkings(Vec3 q) {
    return q.y < -0.05 && q.z > 0.1 ? Material::cream : Material::fur;
}

void shapeTrunk(Model& model, const Frame& hip) {
    model.ellipsoid(hip, {{0, -0.1, 0}, {4.3, 4.0, 3.9}}, Material::fur, Part::body, bellyMarkings);
    model.ellipsoid(hip, {{0, 3.0, 0.3}, {3.5, 3.2, 3.1}}, Material::fur, Part::body,
                    chestMarkings);
}

/// The round haunch of a squirrel, carried along by the leg.
void shapeHaunch(Model& model, const Frame& root, Side side, const Pose& pose) {
    const double swing = legPose(pose, side).swing;
    const double down = 1.6 * pose.settled;
    const Frame hip =
        root.moved({2.7 * sideSign(side), 5.4 - down + pose.bodyY, -0.4}).pitched(-swing * 0.5);
    model.ellipsoid(hip, {{0.3 * sideSign(side), -1.2, 0.2}, {2.0, 2.5, 2.6}}, Material::fur,
                    either(side, Part::legLeft, Part::legRight));
}

void shapeTail(Model& model, const Frame& hip, const Stage& stage, Pose pose) {
    // Laid around a sleeper, it comes forward on the flank that is seen.
    if (stage.lean == Side::right && pose.settled > 0) pose.tailSway *= -1;
    // Out from the rump, up along the back, and over backwards at the top.
    const TailShape tail{.joints = 18, .segment = 1.85, .start = 108, .turn = [&pose](double t) {
                             if (t < 0.16) return -4.0;
                             if (t < 0.44) return -19.5 - pose.tailCurl * 0.5;
                             return t < 0.68 ? 4.0 : 29.0 + pose.tailTip;
                         }};
    model.chain(
        hip.moved({0, -2.2, -3.8}).yawed(stage.tailTurn).pitched(-pose.tailPitch),
        {.points = tailCurve(tail, pose),
         .radii = {1.4, 1.8, 2.4, 3.1, 3.7, 4.1, 4.4, 4.4, 3.9, 2.9, 1.6},
         .materialAlong =
             [](double t) {
                 return t > 0.88 ? Material::glow : t > 0.70 ? Material::paw : Material::fluff;
             },
         .puff = pose.tailPuff,
         .flatness = {0.95, 1, 1}},
        Part::tail);
}

void shapeEar(Model& model, const Frame& head, Side side, const Pose& pose) {
    const Part part = either(side, Part::earLeft, Part::earRight);
    const Frame ear = earUpon(head, side, earPlace, pose);
    // Round below, with a tuft standing up from it.
    model.chain(
        ear,
        {.points = {{0, -1, 0}, {0, 1.4, 0}, {0, 3.0, 0}, {0, 5.8, 0}},
         .radii = {2.3, 2.6, 1.7, 0.8},
         .materialAlong = [](double t) { return t > 0.62 ? Material::glow : Material::fur; },
         .flatness = {1, 1, 0.6}},
        part);
    model.ellipsoid(ear, {{0, 0.9, 1.0}, {1.35, 1.8, 0.8}}, Material::skin, part);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const Frame hip = hipFrame(stage.root, {0, 7.0, -0.2}, 2.6, pose);
    for (const Side side : {Side::left, Side::right}) {
        leg(model, stage.root, side, legShape, pose);
        shapeHaunch(model, stage.root, side, pose);
        arm(model, hip, side, armShape, pose);
    }
    shapeTrunk(model, hip);
    shapeTail(model, hip, stage, pose);

    const Frame head = headUpon(hip, neck, stage.faceTurn, pose);
    model.ellipsoid(head, {{}, headRadii}, Material::fur, Part::head, headMarkings);
    model.ellipsoid(head, muzzle, Material::cream, Part::head);
    for (const Side side : {Side::left, Side::right}) {
        model.ellipsoid(head, {{5.0 * sideSign(side), -2.3, 1.9}, {3.4, 3.0, 3.2}}, Material::fur,
                        Part::head, cheekMarkings);
        shapeEar(model, head, side, pose);
    }
    return {.frame = head,
            .radii = headRadii,
            .eyeYaw = 30,
            .eyeRise = 6,
            .muzzle = muzzle,
            .mouthRise = -2};
}

void face(Model& model, const Head& head, const Pose& pose) {
    layFurryFace(model, head.frame,
                 {.skull = headRadii,
                  .cheeks = cheeks,
                  .muzzle = muzzle,
                  .eye = {30, 9},
                  .blush = {54, -20},
                  .noseRise = 44,
                  .mouthRise = 14},
                 pose);
}

}  // namespace

Form sparrel() {
    return {.name = "sparrel",
            .build = squirrel,
            .headTurn = muzzleTurn,
            .middle = 12,
            .reach = 12,
            .paints = sparrelPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
