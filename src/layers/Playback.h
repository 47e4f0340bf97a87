#pragma once
// One animation made ready to be read at many instants: what it shows at an age, and for how long
// that stays the same. Ages are seconds since the animation was added; for one inside a group, they
// are the group's own time.

#include <optional>

#include "layers/Animation.h"
#include "layers/PathMeasure.h"

namespace quibbits {

/// Whether an age at the very end still belongs to the run, as it does where a group cuts it.
enum class AtEnd { over, included };

/// The share of a run that the timing has reached at an age, or nothing where its fill mode shows
/// nothing.
std::optional<double> shareOfRun(const AnimationTiming& timing, Seconds age, AtEnd atEnd);

class Playback {
public:
    explicit Playback(Animation animation);

    const Animation& animation() const { return animation_; }
    bool isDiscrete() const { return discrete_; }

    /// The value at an age, or nothing where it leaves the layer's value alone. `own` is the
    /// layer's model value.
    std::optional<AnimatedValue> at(Seconds age, const AnimatedValue& own, AtEnd atEnd) const;
    /// For how long from this age the value is sure to stay: 0 while it changes all the time,
    /// forever when nothing more will come.
    Seconds steadyFor(Seconds age) const;
    /// Every value that it can pass through lies between these, part by part; a spring's overshoot
    /// is allowed for.
    std::vector<AnimatedValue> extremes(const AnimatedValue& own) const;

private:
    AnimatedValue valueAt(double share, const AnimatedValue& own) const;
    AnimatedValue keyframeAt(const KeyframeMotion& motion, double share) const;
    std::size_t frameAt(double share) const;
    double keyTime(std::size_t i) const;
    Seconds untilNextFrame(Seconds active) const;
    Seconds untilHoldEnds(Seconds active) const;

    Animation animation_;
    std::optional<PathMeasure> path_;
    bool discrete_ = false;
    bool constant_ = false;  // shows one value from its beginning to its end
};

}  // namespace quibbits
