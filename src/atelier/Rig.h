// What a creature is made of: ellipsoids, in chains where it bends, with stamps laid upon them.
//
// A form builds a model from a pose; the model lies in the coordinates of the picture, ready to be
// cast. It knows nothing of animations or colours.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "atelier/Ink.h"
#include "atelier/Stamps.h"
#include "atelier/Vector.h"

namespace quibbits::atelier {

/// Parts are told apart by inner outlines, and each shades the others.
enum class Part : std::uint8_t {
    body,
    head,
    earLeft,
    earRight,
    armLeft,
    armRight,
    legLeft,
    legRight,
    tail,
    sprout,
    bulb,
    tongue,
    puffLeft,
    puffRight,
    chest
};

/// Sides are the creature's own: its right hand is at positive x.
constexpr double sideSign(Side side) {
    return side == Side::right ? 1 : -1;
}
constexpr Part either(Side side, Part left, Part right) {
    return side == Side::right ? right : left;
}

/// How a creature's flank is seen: 1 when it faces the viewer, -1 when it is turned away.
double turnedToViewer(const Frame& frame, Side side);

/// How far the pair's two sides part in a view from the side. Seen from above, the ear on the near
/// flank would fold towards the viewer and the far one stand up like a horn: the near one rises and
/// comes forward, the far one sinks behind it.
struct PairCheat {
    double near = 0;  // 0 to 1
    double far = 0;   // 0 to 1
};
PairCheat pairCheat(const Frame& frame, Side side);

/// How far a limb at `x` on that side is let down in a view from the side: seen from above, the far
/// foot would stand higher in the picture than the near one, and whoever walks on it would limp.
double levelDrop(const Frame& frame, Side side, double x);

/// Markings: the material at a point of an ellipsoid, given on the unit sphere.
using Markings = std::function<Material(Vec3)>;

struct Ellipsoid {
    Vec3 centre;
    Vec3 radii;
};

/// An ellipsoid in the picture, ready for rays.
struct Primitive {
    Mat3 toUnit;         // from the picture to the unit sphere, about the centre
    Mat3 normalToWorld;  // turns a normal of the unit sphere back
    Vec3 centre;
    Material material = Material::fur;
    Part part = Part::body;
    Markings markings;
    double left = 0, right = 0, bottom = 0, top = 0, back = 0, front = 0;
};

/// A stamp at a place of the picture: x of its left column, y of its top row. It shows only where
/// the part it lies on is seen.
struct Decal {
    int x = 0;
    int y = 0;
    Stamp stamp;
    Part on = Part::head;
};

/// A spark or a star in the air, over the creature or behind it.
struct Mote {
    int x = 0;
    int y = 0;
    Stamp stamp;
    bool behind = false;
};

struct Chain {
    std::vector<Vec3> points;   // the curve goes through them
    std::vector<double> radii;  // along the curve, evenly spread
    Material material = Material::fur;
    std::function<Material(double)> materialAlong;  // by the share of the way; replaces `material`
    double puff = 1;                                // of all radii
    Vec3 flatness{1, 1, 1};                         // of every ball of the chain
};

class Model {
public:
    void ellipsoid(const Frame& frame, const Ellipsoid& shape, Material material, Part part,
                   Markings markings = {});
    void chain(const Frame& frame, const Chain& chain, Part part);
    void decal(Decal decal) { decals_.push_back(std::move(decal)); }
    void mote(Mote mote) { motes_.push_back(std::move(mote)); }

    [[nodiscard]] const std::vector<Primitive>& primitives() const { return primitives_; }
    [[nodiscard]] const std::vector<Decal>& decals() const { return decals_; }
    [[nodiscard]] const std::vector<Mote>& motes() const { return motes_; }

private:
    std::vector<Primitive> primitives_;
    std::vector<Decal> decals_;
    std::vector<Mote> motes_;
};

/// A body's frame upon its hips, which lie at `standing` above the foot point and `drop` lower once
/// it has settled down.
Frame hipFrame(const Frame& root, Vec3 standing, double drop, const Pose& pose);

/// What the pose asks of one leg or arm.
struct LegPose {
    double swing = 0;
    double lift = 0;
};
LegPose legPose(const Pose& pose, Side side);
struct ArmPose {
    double swing = 0;
    double spread = 0;
};
ArmPose armPose(const Pose& pose, Side side);

struct LegShape {
    Vec3 hip;  // of the right leg
    double length = 0;
    double radius = 0;
    Vec3 foot;  // radii
    Material footMaterial = Material::paw;
    bool level = false;  // both feet stand on one line in the views from the side
};
/// A leg that swings from the hip and keeps its foot on the ground while it does.
void leg(Model& model, const Frame& body, Side side, const LegShape& shape, const Pose& pose);

struct ArmShape {
    Vec3 shoulder;  // of the right arm
    double length = 0;
    double upper = 0, paw = 0;  // radii
};
/// An arm of two pieces with a paw.
void arm(Model& model, const Frame& body, Side side, const ArmShape& shape, const Pose& pose);

/// Where a pair of ears grows and how it leans.
struct EarPlace {
    Vec3 root;             // of the right one, on the head
    Vec3 near;             // how much farther the near one of a view from the side is moved
    Vec3 far;              // and the far one
    double outwards = 0;   // degrees
    double nearUp = 0;     // degrees by which the near one leans less
    double backwards = 0;  // degrees
};
/// The frame of one ear: its y runs along the ear.
Frame earUpon(const Frame& head, Side side, const EarPlace& place, const Pose& pose);

struct TailShape {
    int joints = 0;
    double segment = 0;                  // length between joints
    double start = 0;                    // angle at the root: 0 straight up, 90 straight back
    std::function<double(double)> turn;  // degrees a joint adds, by the share of the way
};
/// The curve of a tail that sways with the pose.
std::vector<Vec3> tailCurve(const TailShape& shape, const Pose& pose);

/// A value of an evenly spread table, with straight lines in between.
double along(std::span<const double> table, double share);

}  // namespace quibbits::atelier
