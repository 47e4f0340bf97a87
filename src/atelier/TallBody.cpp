#include "atelier/TallBody.h"

#include <cmath>

namespace quibbits::atelier {
namespace {

constexpr Vec3 headRadii{7.0, 6.0, 6.4};
constexpr Ellipsoid muzzle{{0, -2.6, 4.7}, {3.4, 2.5, 3.5}};
constexpr Ellipsoid cheeks{{0, 0, 0}, {7.4, 6.0, 6.6}};
constexpr Neck neck{.root = {0, 7.2, 0.5}, .toHead = {0, 5.0, 1.0}};
constexpr LegShape legShape{
    .hip = {3.1, 7.2, 0.0}, .length = 7.2, .radius = 2.2, .foot = {2.1, 1.35, 2.8}, .level = true};
constexpr ArmShape armShape{.shoulder = {5.2, 6.4, 0.4}, .length = 6.2, .upper = 1.75, .paw = 2.0};

Material bellyMarkings(Vec3 q) {
    if (q.z > 0.25 && std::abs(q.x) < 0.62 - 0.1 * q.y && q.y < 0.9) return Material::cream;
    if (q.z < -0.2 && std::abs(q.x) < 0.2) return Material::paw;
    return Material::fur;
}

Material backMarkings(Vec3 q) {
    return q.z < -0.2 && std::abs(q.x) < 0.2 ? Material::paw : Material::fur;
}

Material crownMarkings(Vec3 q) {
    return q.z < 0.45 && std::abs(q.x) < 0.17 && q.y > -0.3 ? Material::paw : Material::fur;
}

Material cheekMarkings(Vec3 q) {
    return q.y < -0.1 && q.z > 0.1 ? Material::cream : Material::fur;
}

void shapeTrunk(Model& model, const Frame& hip) {
    model.ellipsoid(hip, {{0, -0.2, 0}, {5.0, 5.0, 4.5}}, Material::fur, Part::body, bellyMarkings);
    model.ellipsoid(hip, {{0, 4.6, 0.3}, {5.0, 4.2, 4.0}}, Material::fur, Part::body, backMarkings);
    model.ellipsoid(hip, {{0, 5.6, 2.6}, {3.6, 2.8, 2.4}}, Material::cream, Part::chest);
    model.ellipsoid(hip, {{0, 3.2, 3.4}, {2.2, 2.4, 1.6}}, Material::cream, Part::chest);
}

/// Open eyes with a corner cut off towards the brow.
Stamp keenEye(Eyes eyes, Turn turn, Side side) {
    if (eyes != Eyes::open || turn != Turn::facing) return furryEye(eyes, turn, side);
    return side == Side::left ? Stamp{{"KK.", "WKK", "KKK", ".IK"}}
                              : Stamp{{".KK", "WKK", "KKK", "KI."}};
}

}  // namespace

TallFrames shapeTallBody(Model& model, const Stage& stage, const Pose& pose) {
    const Frame hip = hipFrame(stage.root, {0, 8.0, -0.2}, 2.4, pose);
    Pose arms = pose;
    arms.spreadLeft += 4;
    arms.spreadRight += 4;
    arms.armLeft += 12;
    arms.armRight += 12;
    arms.bend += 34;
    for (const Side side : {Side::left, Side::right}) {
        leg(model, stage.root, side, legShape, pose);
        arm(model, hip, side, armShape, arms);
    }
    shapeTrunk(model, hip);

    const Frame head = headUpon(hip, neck, stage.faceTurn, pose);
    model.ellipsoid(head, {{}, headRadii}, Material::fur, Part::head, crownMarkings);
    model.ellipsoid(head, muzzle, Material::cream, Part::head);
    for (const Side side : {Side::left, Side::right}) {
        const double in = drawnIn(head, side);
        model.ellipsoid(
            head, {{(4.6 - 1.6 * in) * sideSign(side), -2.2 - 0.6 * in, 1.6}, {3.6, 2.6, 3.2}},
            Material::fur, Part::head, cheekMarkings);
    }
    return {hip, head};
}

Frame tallTailRoot(const Frame& hip, double turn, const Pose& pose) {
    return hip.moved({0, -2.4, -3.8}).yawed(turn).pitched(-pose.tailPitch);
}

Head tallHead(const Frame& frame) {
    return {.frame = frame,
            .radii = headRadii,
            .eyeYaw = 31,
            .eyeRise = 6,
            .muzzle = muzzle,
            .mouthRise = -2};
}

void layTallFace(Model& model, const Head& head, const Pose& pose, Brow brow) {
    layFurryFace(model, head.frame,
                 {.skull = headRadii,
                  .cheeks = cheeks,
                  .muzzle = muzzle,
                  .eye = {31, 6},
                  .blush = {56, -18},
                  .noseRise = 46,
                  .mouthRise = 12,
                  .strokeLift = 1,
                  .eyes = brow == Brow::keen ? keenEye : furryEye},
                 pose);
}

}  // namespace quibbits::atelier
