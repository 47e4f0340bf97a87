#include "atelier/Face.h"

#include <algorithm>
#include <cmath>

namespace quibbits::atelier {
namespace {

/// Quarter turns to the left that the head lies over in the picture; stamps turn in quarters only.
int quartersOf(const Frame& head) {
    const Vec3 up = head.axes.y;
    if (up.x * up.x + up.y * up.y < 0.12) return 0;  // seen from its top or from below
    const double leftwards = degrees(std::atan2(-up.x, up.y));
    return static_cast<int>(std::lround(leftwards / 90)) & 3;
}

constexpr double largestSteadySquash = 0.085;  // more than that is meant to be seen

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

}  // namespace

Spot spotOn(const Frame& head, const Ellipsoid& shape, Anchor anchor, Facing limits) {
    const double flat = std::cos(radians(anchor.rise));
    const Vec3 unit{std::sin(radians(anchor.yaw)) * flat, std::sin(radians(anchor.rise)),
                    std::cos(radians(anchor.yaw)) * flat};
    const Vec3 r = shape.radii;
    const Vec3 slope{unit.x / r.x, unit.y / r.y, unit.z / r.z};
    const Vec3 normal = normalised(transposed(inverse(head.axes)) * slope);
    const Vec3 offset = head.axes * (shape.centre + Vec3{unit.x * r.x, unit.y * r.y, unit.z * r.z});

    Spot spot;
    spot.facing = normal.z;
    spot.visible = normal.z > limits.hidden;
    spot.turn = normal.z > limits.facing    ? Turn::facing
                : normal.z > limits.halfway ? Turn::halfway
                                            : Turn::aside;
    spot.x = rounded(head.origin.x) + rounded(offset.x);
    spot.y = rounded(head.origin.y) + rounded(offset.y);
    spot.leansRight = normal.x > 0.02;
    spot.quarters = quartersOf(head);
    return spot;
}

void lay(Model& model, const Spot& spot, const Stamp& stamp, Part on) {
    if (!spot.visible || stamp.empty()) return;
    Stamp upright = spot.quarters != 0 ? turned(stamp, spot.quarters) : stamp;
    const int width = upright.width();
    // A stamp of even width has no middle column: it leans towards the middle of the head.
    const int lean = width % 2 == 0 && !spot.leansRight ? 1 : 0;
    model.decal({.x = spot.x - width / 2 + lean,
                 .y = spot.y + (upright.height() - 1) / 2,
                 .stamp = std::move(upright),
                 .on = on});
}

Frame rigid(const Frame& frame) {
    const double size = std::cbrt(std::abs(determinant(frame.axes)));
    const Vec3 x = normalised(frame.axes.x);
    const Vec3 y = normalised(frame.axes.y - x * dot(x, frame.axes.y));
    return {{x * size, y * size, cross(x, y) * size}, frame.origin};
}

Frame steadied(const Frame& head, const Pose& pose) {
    const bool slight = std::abs(pose.squash - 1) <= largestSteadySquash;
    return slight ? rigid(head).snapped() : head.snapped();
}

double drawnIn(const Frame& head, Side side) {
    constexpr double beginning = 0.40;
    constexpr double complete = 0.50;
    return std::clamp((pairCheat(head, side).far - beginning) / (complete - beginning), 0.0, 1.0);
}

Side pictureSide(const Frame& head, Side side) {
    return sideSign(side) * head.axes.x.x < 0 ? Side::left : Side::right;
}

Frame headUpon(const Frame& hip, const Neck& neck, double faceTurn, const Pose& pose) {
    return steadied(hip.moved(neck.root)
                        .pitched(pose.headPitch)
                        .yawed(pose.headYaw + faceTurn)
                        .rolled(pose.headRoll)
                        .moved(neck.toHead)
                        .moved({0, pose.headY, pose.headZ}),
                    pose);
}

Frame headInTheAir(const Frame& root, double height, double faceTurn, const Pose& pose) {
    return root.moved({0, height, 0})
        .pitched(pose.bodyPitch + pose.headPitch)
        .yawed(pose.headYaw + faceTurn)
        .rolled(pose.bodyRoll + pose.headRoll)
        .moved({0, pose.headY, pose.headZ});
}

void layFurryFace(Model& model, const Frame& head, const FurryFace& face, const Pose& pose) {
    const bool stroke = isStroke(pose.eyes);
    const Facing limits{.facing = stroke ? face.strokeFacing : face.eyeFacing,
                        .hidden = stroke ? face.strokeHidden : face.eyeHidden};
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        Spot eye = spotOn(head, {{}, face.skull}, {face.eye.yaw * sign, face.eye.rise}, limits);
        if (stroke && eye.quarters == 0) eye.y += face.strokeLift;
        lay(model, eye, face.eyes(pose.eyes, eye.turn, pictureSide(head, side)));
        lay(model,
            spotOn(head, face.cheeks, {face.blush.yaw * sign, face.blush.rise}, {.hidden = 0.32}),
            {{"RR"}});
    }
    const Spot mouth = spotOn(head, face.muzzle, {0, face.mouthRise},
                              {.facing = pose.mouth == Mouth::smile ? 0.90 : 0.70, .hidden = 0.12});
    Spot nose = spotOn(head, face.muzzle, {0, face.noseRise}, {.hidden = 0.03});
    // With no row between them, the two would run together into a cross.
    if (nose.quarters == 0) nose.y = std::max(nose.y, mouth.y + 2);
    lay(model, nose, {{"N"}});
    lay(model, mouth, furryMouth(pose.mouth, mouth.turn));
}

double keptInView(const Frame& head, double limit) {
    const Vec3 forward = head.axes.z;
    if (forward.z < 0) return 0;
    const double turn = degrees(std::atan2(forward.x, forward.z));
    if (turn > limit) return limit - turn;
    if (turn < -limit) return -limit - turn;
    return 0;
}

}  // namespace quibbits::atelier
