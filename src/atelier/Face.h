// Laying eyes, mouths and markings on a head.
//
// A feature is anchored at a point of an ellipsoid, given by two angles. Its place in the picture
// is rounded against the head and never by itself, so the eyes cannot drift against each other, and
// a narrower stamp takes over as the head turns away.
#pragma once

#include <optional>

#include "atelier/Rig.h"

namespace quibbits::atelier {

/// The head a form has modelled, for whoever lays the face on it.
struct Head {
    Frame frame;  // its origin on a whole pixel
    Vec3 radii;
    double eyeYaw = 30;
    double eyeRise = 8;
    std::optional<Ellipsoid> muzzle;
    double mouthRise = -20;  // on the muzzle when there is one, else on the head
};

struct Anchor {
    double yaw = 0;
    double rise = 0;
};

/// How much a feature must face the viewer (1 straight on, 0 at the rim) for its stamps.
struct Facing {
    double facing = 0.70;  // the wide stamp
    double halfway = -2;   // the middle one; below it the narrow one
    double hidden = 0.20;  // none
};

struct Spot {
    bool visible = false;
    Turn turn = Turn::facing;
    int x = 0, y = 0;  // the middle of the stamp
    double facing = 0;
    bool leansRight = false;  // right of the head's middle
    int quarters = 0;         // how far the head lies on its side
};

Spot spotOn(const Frame& head, const Ellipsoid& shape, Anchor anchor, Facing limits);

/// Lays a stamp with its middle on the spot; nothing when it is out of sight or empty.
void lay(Model& model, const Spot& spot, const Stamp& stamp, Part on = Part::head);

/// How far the cheek on that side is drawn in, from 0 to 1: in a profile the far one would stick
/// out beside the eye like a second nose. From the front and in portraits both stay full.
double drawnIn(const Frame& head, Side side);

/// The side of the picture on which the creature's own `side` of the head is seen.
Side pictureSide(const Frame& head, Side side);

/// The frame without any squash, as large as before.
Frame rigid(const Frame& frame);

/// A head that keeps its shape while the body breathes: small squashes move it but do not flatten
/// it. The frame is on whole pixels.
Frame steadied(const Frame& head, const Pose& pose);

/// Where a neck stands on a body, and the head's middle upon it.
struct Neck {
    Vec3 root;
    Vec3 toHead;
};
Frame headUpon(const Frame& hip, const Neck& neck, double faceTurn, const Pose& pose);

/// The head of a creature that is nothing but a head, at a height above the foot point.
Frame headInTheAir(const Frame& root, double height, double faceTurn, const Pose& pose);

/// The features of a furry face: eyes on the skull, a blush on the cheeks, a nose and a mouth on
/// the middle line of the muzzle.
struct FurryFace {
    Vec3 skull;  // radii
    Ellipsoid cheeks;
    Ellipsoid muzzle;
    Anchor eye;  // of the right one, as is the blush
    Anchor blush;
    double noseRise = 0;
    double mouthRise = 0;
    double eyeFacing = 0.72;  // from here on an eye is seen in full
    double eyeHidden = 0.22;  // and up to here not at all
    double strokeFacing = 0.45;
    double strokeHidden = 0.32;
    int strokeLift = 0;  // rows by which shut eyes rise, out of the way of the muzzle
    Stamp (*eyes)(Eyes, Turn, Side) = furryEye;
};
void layFurryFace(Model& model, const Frame& head, const FurryFace& face, const Pose& pose);

/// The yaw that keeps a feature of the middle line within `limit` degrees of the viewer: a mouth
/// that would be cut by the outline slides back instead.
double keptInView(const Frame& head, double limit);

}  // namespace quibbits::atelier
