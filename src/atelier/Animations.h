// The one table of animations that moves every form.
//
// An animation is a row of frames with their times, and tracks: a joint and its value in every
// frame. A track may be meant for some builds only; where two tracks move the same joint, the later
// one counts. Times follow one rule: anticipation 5 or 6 ticks, action 2 or 3, a hold of 6 to 8 on
// the hit, recovery 3 to 5.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "atelier/Form.h"
#include "atelier/Pose.h"

namespace quibbits::atelier {

/// One joint, or two that move alike.
struct Joint {
    double Pose::*first = nullptr;
    double Pose::*second = nullptr;
};

struct Track {
    Joint joint;
    std::vector<double> keys;  // one a frame; the last one holds when there are fewer
    Builds builds = everyone;
};

constexpr int never = 1000;

struct Animation {
    std::string_view name;
    std::vector<int> ticks;  // of 1/60 s, one a frame
    std::vector<Track> tracks;
    std::vector<Eyes> eyes{Eyes::open};
    std::vector<Mouth> mouths{Mouth::smile};
    std::vector<Effect> effects{Effect::none};
    double drift = 0;       // radians by which what drifts goes on with every frame
    int lyingFrom = never;  // the first frame in which it lies on the ground
    int lyingTo = never;    // the first frame in which it is up again
    Builds builds = everyone;

    [[nodiscard]] int frameCount() const { return static_cast<int>(ticks.size()); }
    [[nodiscard]] bool liesIn(int frame) const { return frame >= lyingFrom && frame < lyingTo; }
};

/// The animations of a build, in the order of its description.
std::vector<Animation> animationsOf(Builds build);

/// Chews on what it holds before its mouth; the food itself is no part of the drawing.
Animation chewing();

/// A build's pose in a frame: its stance, moved by the animation's tracks.
Pose poseOf(Builds build, const Animation& animation, int frame);

// The table, by occasion.
std::vector<Animation> dailyAnimations();
std::vector<Animation> livelyAnimations();
std::vector<Animation> contestAnimations();
std::vector<Animation> mishapAnimations();
std::vector<Animation> ghostlyAnimations();

namespace joint {
inline constexpr Joint x{&Pose::x}, y{&Pose::y}, z{&Pose::z};
inline constexpr Joint pitch{&Pose::pitch}, yaw{&Pose::yaw}, tilt{&Pose::tilt};
inline constexpr Joint pivot{&Pose::pivot}, squash{&Pose::squash}, settled{&Pose::settled};
inline constexpr Joint bodyPitch{&Pose::bodyPitch}, bodyRoll{&Pose::bodyRoll}, bodyY{&Pose::bodyY};
inline constexpr Joint headPitch{&Pose::headPitch}, headYaw{&Pose::headYaw};
inline constexpr Joint headRoll{&Pose::headRoll}, headY{&Pose::headY}, headZ{&Pose::headZ};
inline constexpr Joint face{&Pose::face};
inline constexpr Joint legLeft{&Pose::legLeft}, legRight{&Pose::legRight};
inline constexpr Joint legs{&Pose::legLeft, &Pose::legRight};
inline constexpr Joint liftLeft{&Pose::liftLeft}, liftRight{&Pose::liftRight};
inline constexpr Joint lifts{&Pose::liftLeft, &Pose::liftRight};
inline constexpr Joint armLeft{&Pose::armLeft}, armRight{&Pose::armRight};
inline constexpr Joint arms{&Pose::armLeft, &Pose::armRight};
inline constexpr Joint spreadLeft{&Pose::spreadLeft}, spreadRight{&Pose::spreadRight};
inline constexpr Joint spreads{&Pose::spreadLeft, &Pose::spreadRight};
inline constexpr Joint bend{&Pose::bend};
inline constexpr Joint tailPitch{&Pose::tailPitch}, tailCurl{&Pose::tailCurl},
    tailTip{&Pose::tailTip};
inline constexpr Joint tailSway{&Pose::tailSway}, tailPuff{&Pose::tailPuff}, phase{&Pose::phase};
inline constexpr Joint ear{&Pose::ear}, earSpread{&Pose::earSpread};
inline constexpr Joint tongue{&Pose::tongue}, sunk{&Pose::sunk};
}  // namespace joint

/// A sine over one loop of frames: `middle` + `size` * sin, starting `ahead` of a turn later.
struct Wave {
    double size = 0;
    double middle = 0;
    double ahead = 0;
    int turns = 1;
};
std::vector<double> wave(int frames, Wave wave);

}  // namespace quibbits::atelier
