// Thrummet: tall and keen, with a tail like a tuning fork whose prongs carry the charge.
#include <algorithm>

#include "atelier/TallBody.h"

namespace quibbits::atelier {
namespace {

constexpr EarPlace earPlace{.root = {4.2, 3.8, -1.2},
                            .near = {0, 0.6, 1.2},
                            .far = {0, -2.6, -1.2},
                            .outwards = 30,
                            .nearUp = 40,
                            .backwards = 26};

/// The tail leans to one side as it rises, so that the head does not hide it from the front.
constexpr double tailLean = 5.0;
/// More of it when seen from behind, where the whole fork stands before the head.
constexpr double tailLeanBehind = 5.5;

/// How far it leans in this view. Seen from behind, it leans to where it is already heading in the
/// picture.
double leanOf(const Frame& hip) {
    const double behind = std::max(0.0, -normalised(hip.axes.z).z);
    const bool againstItself = behind > 0 && hip.axes.x.x * hip.axes.z.x > 0.1;
    return (againstItself ? -1 : 1) * (tailLean + behind * tailLeanBehind);
}

std::vector<Vec3> forkStem(const Pose& pose, double lean) {
    const TailShape tail{.joints = 11, .segment = 1.95, .start = 106, .turn = [&pose](double t) {
                             return t < 0.5 ? -17.5 - pose.tailCurl * 0.3 : -1.0 + pose.tailTip;
                         }};
    auto points = tailCurve(tail, pose);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double share = static_cast<double>(i) / tail.joints;
        points[i].x += share * share * lean;
    }
    return points;
}

/// The two prongs stand askew, so that neither view sees one behind the other.
void shapeProngs(Model& model, const Frame& root, const std::vector<Vec3>& stem, const Pose& pose) {
    const Vec3 end = stem.back();
    const Vec3 on = normalised(end - stem[stem.size() - 2]);
    for (const Side side : {Side::left, Side::right}) {
        const double sign = sideSign(side);
        const Vec3 out{sign * 0.78, -sign * 0.2, sign * 0.62};
        model.chain(
            root,
            {.points = {end, end + out * 3.0 + on * 1.6, end + out * 3.9 + on * 4.6,
                        end + out * 3.3 + on * 8.2},
             .radii = {2.4, 2.3, 2.1, 1.5},
             .materialAlong =
                 [](double t) {
                     return t > 0.70 ? Material::glow : t > 0.55 ? Material::paw : Material::fluff;
                 },
             .puff = pose.tailPuff},
            either(side, Part::puffLeft, Part::puffRight));
    }
}

void shapeTail(Model& model, const Frame& hip, double turn, const Pose& pose) {
    const Frame root = tallTailRoot(hip, turn, pose);
    const auto stem = forkStem(pose, leanOf(hip));
    model.chain(root,
                {.points = stem,
                 .radii = {1.9, 2.3, 2.5, 2.6, 2.7},
                 .materialAlong =
                     [](double t) {
                         const bool ring = (t > 0.30 && t < 0.42) || (t > 0.58 && t < 0.70);
                         return ring ? Material::paw : Material::fluff;
                     },
                 .puff = pose.tailPuff},
                Part::tail);
    shapeProngs(model, root, stem, pose);
}

void shapeEar(Model& model, const Frame& head, Side side, const Pose& pose) {
    const Part part = either(side, Part::earLeft, Part::earRight);
    const Frame ear = earUpon(head, side, earPlace, pose);
    model.chain(
        ear,
        {.points = {{0, -1, 0}, {0, 2, 0}, {0, 5, 0.3}, {0, 8.8, 1.0}},
         .radii = {2.4, 2.6, 2.0, 1.4, 0.7},
         .materialAlong = [](double t) { return t > 0.72 ? Material::glow : Material::fur; },
         .flatness = {1, 1, 0.6}},
        part);
    model.ellipsoid(ear, {{0, 1.4, 1.1}, {1.3, 2.2, 0.8}}, Material::skin, part);
}

Head shape(Model& model, const Stage& stage, const Pose& pose) {
    const auto [hip, head] = shapeTallBody(model, stage, pose);
    shapeTail(model, hip, stage.tailTurn, pose);
    for (const Side side : {Side::left, Side::right}) shapeEar(model, head, side, pose);
    return tallHead(head);
}

void face(Model& model, const Head& head, const Pose& pose) {
    layTallFace(model, head, pose, Brow::keen);
}

}  // namespace

Form thrummet() {
    return {.name = "thrummet",
            .build = tall,
            .headTurn = tallHeadTurn,
            .middle = 12,
            .reach = 14,
            .paints = thrummetPaints,
            .shape = shape,
            .face = face};
}

}  // namespace quibbits::atelier
