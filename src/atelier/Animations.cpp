#include "atelier/Animations.h"

#include <algorithm>
#include <cmath>

#include "atelier/Vector.h"

namespace quibbits::atelier {
namespace {

constexpr double hoverHeight = 3;
constexpr double hoverBob = 1.2;

/// A camera that looks down hides a face that is bowed further than this.
constexpr double deepestBow = 12;

template <typename Value>
const Value& keyAt(const std::vector<Value>& keys, int frame) {
    return keys[std::min(static_cast<std::size_t>(frame), keys.size() - 1)];
}

Pose stanceOf(Builds build, double phase) {
    Pose pose;
    pose.phase = phase;
    if ((build & twoLegged) != 0) {
        pose.legLeft = -9;
        pose.legRight = 10;
    }
    if ((build & tall) != 0) {
        pose.legLeft = -16;
        pose.legRight = 17;
    }
    if ((build & dusk) != 0) {
        pose.legLeft = -24;
        pose.legRight = 26;
    }
    if ((build & ball) != 0) {
        pose.legLeft = -22;
        pose.legRight = 22;
    }
    if ((build & ghosts) != 0) pose.tailSway = 10 * std::sin(phase);
    if ((build & dusk) != 0) pose.armLeft = pose.armRight = 8;
    return pose;
}

}  // namespace

std::vector<double> wave(int frames, Wave wave) {
    std::vector<double> keys;
    for (int frame = 0; frame < frames; ++frame) {
        const double turn = static_cast<double>(frame) * wave.turns / frames + wave.ahead;
        keys.push_back(wave.middle + wave.size * std::sin(turn * fullTurn));
    }
    return keys;
}

std::vector<Animation> animationsOf(Builds build) {
    std::vector<Animation> all;
    for (auto& group : {dailyAnimations(), livelyAnimations(), contestAnimations(),
                        mishapAnimations(), ghostlyAnimations()}) {
        std::ranges::copy_if(group, std::back_inserter(all),
                             [&](const Animation& a) { return (a.builds & build) != 0; });
    }
    return all;
}

Pose poseOf(Builds build, const Animation& animation, int frame) {
    Pose pose = stanceOf(build, animation.drift * frame);
    for (const auto& track : animation.tracks) {
        if ((track.builds & build) == 0) continue;
        pose.*track.joint.first = keyAt(track.keys, frame);
        if (track.joint.second != nullptr) pose.*track.joint.second = keyAt(track.keys, frame);
    }
    pose.eyes = keyAt(animation.eyes, frame);
    pose.mouth = keyAt(animation.mouths, frame);
    pose.effect = keyAt(animation.effects, frame);
    pose.effectStep = frame;
    if (animation.liesIn(frame)) {
        pose.footing = Footing::lying;
    } else if ((build & floating) != 0) {
        pose.y += hoverHeight + (animation.drift != 0 ? hoverBob * std::sin(pose.phase) : 0);
    }
    pose.headPitch = std::min(pose.headPitch, deepestBow - pose.bodyPitch);
    return pose;
}

}  // namespace quibbits::atelier
