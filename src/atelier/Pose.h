// The pose of a creature in one frame of an animation.
//
// Every form is drawn from the same pose: a joint that a form does not have is left unused, so one
// table of animations moves all of them.
#pragma once

namespace quibbits::atelier {

enum class Eyes { open, closed, happy, hurt, angry, half, dizzy, wide };
enum class Mouth { smile, open, flat, round, grin, wavy, chewing };
enum class Effect { none, sparks, impact };

/// How a frame meets the ground.
enum class Footing {
    feet,   ///< where the feet put it; `y` lifts it off the ground
    lying,  ///< the lowest point of whatever is lowest touches the ground
};

/// Angles in degrees, lengths in sprite pixels. Positive pitch leans forward, positive swing moves
/// a limb forward, positive spread moves it away from the body.
struct Pose {
    // The whole creature. `tilt` turns it in the plane of the picture about the height `pivot`,
    // away from the way it faces: lying poses use it, because the face stays in view.
    double x = 0, y = 0, z = 0;
    double pitch = 0, roll = 0, yaw = 0, tilt = 0;
    double pivot = 8;
    double squash = 1;  // height against rest; the width makes up for it
    Footing footing = Footing::feet;

    // The body upon the hips, and how far it has settled down (0 standing, 1 lying curled up).
    double bodyPitch = 0, bodyRoll = 0, bodyY = 0;
    double settled = 0;

    // The head upon the body. `face` turns it further towards the viewer in every direction.
    double headPitch = 0, headYaw = 0, headRoll = 0, headY = 0, headZ = 0;
    double face = 0;

    double legLeft = 0, legRight = 0, liftLeft = 0, liftRight = 0;
    double armLeft = 12, armRight = 12, spreadLeft = 14, spreadRight = 14;
    double bend = 0;  // of both elbows

    double tailPitch = 0, tailCurl = 0, tailTip = 0, tailSway = 0, tailPuff = 1;
    double phase = 0;  // radians; drives what drifts by itself
    double ear = 0, earSpread = 0;

    Eyes eyes = Eyes::open;
    Mouth mouth = Mouth::smile;
    double tongue = 0;  // 0 in, 1 out at full length
    double sunk = 0;    // how much of it has gone into the ground, in pixels

    Effect effect = Effect::none;
    int effectStep = 0;
};

}  // namespace quibbits::atelier
