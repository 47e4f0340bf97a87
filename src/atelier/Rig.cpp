#include "atelier/Rig.h"

#include <algorithm>
#include <cmath>

namespace quibbits::atelier {
namespace {

constexpr double chainStep = 0.5;  // between the balls of a chain; wider shows as beads

Vec3 catmullRom(std::span<const Vec3> points, double share) {
    const auto last = static_cast<int>(points.size()) - 1;
    const double position = share * last;
    const int from = std::min(static_cast<int>(position), last - 1);
    const double w = position - from;
    const auto point = [&](int i) {
        return points[static_cast<std::size_t>(std::clamp(i, 0, last))];
    };
    const Vec3 a = point(from - 1);
    const Vec3 b = point(from);
    const Vec3 c = point(from + 1);
    const Vec3 d = point(from + 2);
    return (b * 2 + (c - a) * w + (a * 2 - b * 5 + c * 4 - d) * (w * w) +
            (b * 3 - a - c * 3 + d) * (w * w * w)) *
           0.5;
}

Mat3 scaled(const Mat3& m, Vec3 by) {
    return {m.x * by.x, m.y * by.y, m.z * by.z};
}

}  // namespace

double along(std::span<const double> table, double share) {
    const double position = share * static_cast<double>(table.size() - 1);
    const auto from = std::min(static_cast<std::size_t>(position), table.size() - 2);
    return table[from] + (table[from + 1] - table[from]) * (position - static_cast<double>(from));
}

void Model::ellipsoid(const Frame& frame, const Ellipsoid& shape, Material material, Part part,
                      Markings markings) {
    const Mat3 axes = scaled(frame.axes, shape.radii);
    const Mat3 rows = transposed(axes);
    Primitive primitive;
    primitive.toUnit = inverse(axes);
    primitive.normalToWorld = transposed(primitive.toUnit);
    primitive.centre = frame.at(shape.centre);
    primitive.material = material;
    primitive.part = part;
    primitive.markings = std::move(markings);
    primitive.left = primitive.centre.x - length(rows.x);
    primitive.right = primitive.centre.x + length(rows.x);
    primitive.bottom = primitive.centre.y - length(rows.y);
    primitive.top = primitive.centre.y + length(rows.y);
    primitive.back = primitive.centre.z - length(rows.z);
    primitive.front = primitive.centre.z + length(rows.z);
    primitives_.push_back(std::move(primitive));
}

void Model::chain(const Frame& frame, const Chain& chain, Part part) {
    double total = 0;
    for (std::size_t i = 1; i < chain.points.size(); ++i) {
        total += length(chain.points[i] - chain.points[i - 1]);
    }
    const int steps = std::max(2, static_cast<int>(total / chainStep));
    for (int i = 0; i <= steps; ++i) {
        const double share = static_cast<double>(i) / steps;
        const double radius = along(chain.radii, share) * chain.puff;
        ellipsoid(frame, {catmullRom(chain.points, share), chain.flatness * radius},
                  chain.materialAlong ? chain.materialAlong(share) : chain.material, part);
    }
}

double turnedToViewer(const Frame& frame, Side side) {
    return normalised(frame.axes.x).z * sideSign(side);
}

PairCheat pairCheat(const Frame& frame, Side side) {
    const double turned = turnedToViewer(frame, side);
    return {.near = std::max(0.0, turned), .far = std::max(0.0, -turned)};
}

double levelDrop(const Frame& frame, Side side, double x) {
    constexpr double profile = 0.8;  // from here on a flank is seen as in a view from the side
    if (turnedToViewer(frame, side) > -profile) return 0;
    return 2 * x * std::abs(frame.axes.x.y) / std::max(0.5, frame.axes.y.y);
}

Frame hipFrame(const Frame& root, Vec3 standing, double drop, const Pose& pose) {
    return root.moved(standing)
        .moved({0, pose.bodyY - drop * pose.settled, 0})
        .pitched(pose.bodyPitch)
        .rolled(pose.bodyRoll);
}

LegPose legPose(const Pose& pose, Side side) {
    return side == Side::right ? LegPose{pose.legRight, pose.liftRight}
                               : LegPose{pose.legLeft, pose.liftLeft};
}

ArmPose armPose(const Pose& pose, Side side) {
    return side == Side::right ? ArmPose{pose.armRight, pose.spreadRight}
                               : ArmPose{pose.armLeft, pose.spreadLeft};
}

void leg(Model& model, const Frame& body, Side side, const LegShape& shape, const Pose& pose) {
    const auto [swing, lift] = legPose(pose, side);
    const Part part = either(side, Part::legLeft, Part::legRight);
    const double stretch = std::max(0.78, std::cos(radians(std::min(50.0, std::abs(swing)))));
    const double ankle = -shape.length / stretch + shape.foot.y + lift;
    const double drop = 1.6 * pose.settled + (shape.level ? levelDrop(body, side, shape.hip.x) : 0);
    const Frame hip =
        body.moved({shape.hip.x * sideSign(side), shape.hip.y - drop, shape.hip.z}).pitched(-swing);
    // The shin ends where its round end does not reach below the sole.
    const double end = shape.radius * 0.9;
    const double shin = ankle + std::max(0.0, end - shape.foot.y + 0.3);
    model.chain(hip, {.points = {{0, 0, 0}, {0, shin, 0}}, .radii = {shape.radius, end}}, part);
    model.ellipsoid(hip.moved({0, ankle, 0}).pitched(swing * 0.6),
                    {{0, 0, shape.foot.z * 0.35}, shape.foot}, shape.footMaterial, part);
}

void arm(Model& model, const Frame& body, Side side, const ArmShape& shape, const Pose& pose) {
    const auto [swing, spread] = armPose(pose, side);
    const Part part = either(side, Part::armLeft, Part::armRight);
    const double half = shape.length / 2;
    const Frame upper =
        body.moved({shape.shoulder.x * sideSign(side), shape.shoulder.y, shape.shoulder.z})
            .pitched(-swing)
            .rolled(spread * sideSign(side));
    model.chain(upper, {.points = {{0, 0, 0}, {0, -half, 0}}, .radii = {shape.upper, shape.upper}},
                part);
    const Frame lower = upper.moved({0, -half, 0}).pitched(-pose.bend);
    model.chain(lower, {.points = {{0, 0, 0}, {0, -half, 0}}, .radii = {shape.upper, shape.paw}},
                part);
    const double round = shape.paw + 0.15;
    model.ellipsoid(lower.moved({0, -half, 0}), {{0, -0.2, 0}, {round, shape.paw + 0.1, round}},
                    Material::paw, part);
}

Frame earUpon(const Frame& head, Side side, const EarPlace& place, const Pose& pose) {
    const double sign = sideSign(side);
    const auto [near, far] = pairCheat(head, side);
    const Vec3 root = place.root + place.near * near + place.far * far;
    return head.moved({root.x * sign, root.y, root.z})
        .rolled(-sign * (place.outwards - place.nearUp * near + pose.earSpread))
        .pitched(-pose.ear - place.backwards);
}

std::vector<Vec3> tailCurve(const TailShape& shape, const Pose& pose) {
    std::vector<Vec3> points{{}};
    double heading = shape.start;
    double sway = 0;
    for (int i = 0; i < shape.joints; ++i) {
        const double share = (i + 0.5) / shape.joints;
        heading += shape.turn(share);
        sway +=
            pose.tailSway * (0.4 + share) / shape.joints * 1.6 * std::cos(pose.phase - share * 2.2);
        const double up = std::cos(radians(heading));
        const double back = std::sin(radians(heading));
        const double straight = std::cos(radians(sway));
        points.push_back(points.back() +
                         Vec3{std::sin(radians(sway)), up * straight, -back * straight} *
                             shape.segment);
    }
    return points;
}

}  // namespace quibbits::atelier
