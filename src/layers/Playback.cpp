#include "layers/Playback.h"

#include <algorithm>
#include <cmath>

#include "layers/Appearance.h"

namespace quibbits {

namespace {

/// Sums of instants are off by a few billionths; a frame that begins at an instant must be there
/// when the clock says that instant.
constexpr Seconds clockError = 1e-7;

bool fillsBefore(FillMode fill) {
    return fill == FillMode::backwards || fill == FillMode::both;
}
bool fillsAfter(FillMode fill) {
    return fill == FillMode::forwards || fill == FillMode::both;
}

/// The share within a run after so many runs. At the end, whole runs show their last moment.
double shareAfter(const AnimationTiming& timing, double runs, AtEnd atEnd) {
    double part = runs - std::floor(runs);
    if (atEnd == AtEnd::included && part == 0 && runs > 0) part = 1;
    if (!timing.autoreverses) return part;
    return part <= 0.5 ? part * 2 : 2 - part * 2;
}

Seconds cycleOf(const AnimationTiming& timing) {
    return timing.duration * (timing.autoreverses ? 2 : 1) / timing.speed;
}

/// Shows one value from beginning to end.
bool isConstant(const Animation& animation) {
    if (const auto* keys = std::get_if<KeyframeMotion>(&animation.motion)) {
        return !keys->path && std::adjacent_find(keys->values.begin(), keys->values.end(),
                                                 std::not_equal_to<>()) == keys->values.end();
    }
    if (const auto* basic = std::get_if<BasicMotion>(&animation.motion)) {
        return basic->from && basic->to && *basic->from == *basic->to;
    }
    return false;
}

}  // namespace

std::optional<double> shareOfRun(const AnimationTiming& timing, Seconds age, AtEnd atEnd) {
    if (age < timing.beginDelay)
        return fillsBefore(timing.fill) ? std::optional(0.0) : std::nullopt;
    const Seconds total = timing.total();
    if (age < total)
        return shareAfter(timing, (age - timing.beginDelay) / cycleOf(timing), AtEnd::over);
    if (atEnd == AtEnd::over && !fillsAfter(timing.fill)) return std::nullopt;
    if (!(total > timing.beginDelay)) return 1.0;
    return shareAfter(timing, timing.repeatCount, AtEnd::included);
}

Playback::Playback(Animation animation) : animation_(std::move(animation)) {
    constant_ = isConstant(animation_);
    if (const auto* keys = std::get_if<KeyframeMotion>(&animation_.motion)) {
        discrete_ = keys->calculation == Calculation::discrete && !keys->path &&
                    animation_.curve == TimingFunction::linear();
        if (keys->path) path_.emplace(*keys->path);
    }
}

std::optional<AnimatedValue> Playback::at(Seconds age, const AnimatedValue& own,
                                          AtEnd atEnd) const {
    const auto& timing = animation_.timing;
    const bool begun = age >= timing.beginDelay && age < timing.total();
    const auto share = shareOfRun(timing, begun && discrete_ ? age + clockError : age, atEnd);
    if (share) return valueAt(*share, own);
    if (begun && discrete_) return valueAt(1, own);  // its last frame, a clock error from its end
    return std::nullopt;
}

AnimatedValue Playback::valueAt(double share, const AnimatedValue& own) const {
    if (const auto* basic = std::get_if<BasicMotion>(&animation_.motion)) {
        return mixed(basic->from.value_or(own), basic->to.value_or(own),
                     animation_.curve.at(share));
    }
    if (const auto* spring = std::get_if<SpringMotion>(&animation_.motion)) {
        return mixed(spring->from, spring->to, spring->at(share * animation_.timing.duration));
    }
    const auto& keys = std::get<KeyframeMotion>(animation_.motion);
    if (!path_ && keys.values.empty()) return own;
    return keyframeAt(keys, animation_.curve.at(share));
}

AnimatedValue Playback::keyframeAt(const KeyframeMotion& motion, double share) const {
    if (path_) return path_->at(share);
    const std::size_t last = motion.values.size() - 1;
    const std::size_t i = frameAt(share);
    if (motion.calculation == Calculation::discrete || i == last) return motion.values[i];
    const double begins = keyTime(i);
    const double span = keyTime(i + 1) - begins;
    const double t = span > 0 ? std::clamp((share - begins) / span, 0.0, 1.0) : 1;
    return mixed(motion.values[i], motion.values[i + 1], t);
}

/// The last value whose key time has come.
std::size_t Playback::frameAt(double share) const {
    const std::size_t count = std::get<KeyframeMotion>(animation_.motion).values.size();
    std::size_t i = 0;
    while (i + 1 < count && keyTime(i + 1) <= share) ++i;
    return i;
}

double Playback::keyTime(std::size_t i) const {
    const auto& keys = std::get<KeyframeMotion>(animation_.motion);
    const std::size_t count = keys.values.size();
    const bool discrete = keys.calculation == Calculation::discrete;
    const std::size_t named = keys.keyTimes.size();
    if (named == count || (discrete && named == count + 1)) return keys.keyTimes[i];
    const std::size_t spans = discrete ? count : std::max<std::size_t>(1, count - 1);
    return static_cast<double>(i) / static_cast<double>(spans);
}

Seconds Playback::steadyFor(Seconds age) const {
    const auto& timing = animation_.timing;
    if (age < timing.beginDelay) return timing.beginDelay - age;
    const Seconds left = timing.total() - age;
    if (!(left > 0)) return forever;
    if (constant_) return left;
    const Seconds active = age - timing.beginDelay;
    if (discrete_) return std::min(left, untilNextFrame(active));
    return std::min(left, untilHoldEnds(active));
}

/// Looks ahead from frame to frame, around the end of the run where need be, for another value.
Seconds Playback::untilNextFrame(Seconds active) const {
    const auto& timing = animation_.timing;
    const auto& values = std::get<KeyframeMotion>(animation_.motion).values;
    const Seconds run = timing.duration / timing.speed;
    const double runs = (active + clockError) / run;
    const double whole = std::floor(runs);
    const double share = runs - whole;
    if (timing.autoreverses) {  // on the way back, each frame ends where it began
        const bool back = std::fmod(whole, 2) == 1;
        const std::size_t i = frameAt(back ? 1 - share : share);
        const double turn = back ? 1 - keyTime(i) : i + 1 < values.size() ? keyTime(i + 1) : 1;
        return std::max(clockError, (whole + turn) * run - active);
    }
    const std::size_t now = frameAt(share);
    for (std::size_t step = 1; step < values.size(); ++step) {
        const std::size_t next = now + step;
        const std::size_t i = next % values.size();
        if (values[i] == values[now]) continue;
        const double begins = next < values.size() ? keyTime(i) : 1 + (i == 0 ? 0 : keyTime(i));
        return (whole + begins) * run - active;
    }
    return forever;
}

/// Two equal values in a row hold a linear animation still.
Seconds Playback::untilHoldEnds(Seconds active) const {
    const auto* keys = std::get_if<KeyframeMotion>(&animation_.motion);
    const auto& timing = animation_.timing;
    if (!keys || keys->path || keys->values.empty() || timing.autoreverses ||
        animation_.curve != TimingFunction::linear()) {
        return 0;
    }
    const Seconds run = timing.duration / timing.speed;
    const double runs = active / run;
    const double whole = std::floor(runs);
    const std::size_t i = frameAt(runs - whole);
    if (i + 1 < keys->values.size() && keys->values[i] != keys->values[i + 1]) return 0;
    const double until = i + 1 < keys->values.size() ? keyTime(i + 1) : 1;
    return std::max(0.0, (whole + until) * run - active);
}

std::vector<AnimatedValue> Playback::extremes(const AnimatedValue& own) const {
    if (const auto* basic = std::get_if<BasicMotion>(&animation_.motion)) {
        return {basic->from.value_or(own), basic->to.value_or(own)};
    }
    if (const auto* spring = std::get_if<SpringMotion>(&animation_.motion)) {
        const double far = spring->farthest();
        return {mixed(spring->from, spring->to, 1 - far), mixed(spring->from, spring->to, 1 + far)};
    }
    const auto& keys = std::get<KeyframeMotion>(animation_.motion);
    if (!keys.path) return keys.values;
    const Rect box = keys.path->bounds();
    return {box.origin(), Point{box.maxX(), box.maxY()}};
}

}  // namespace quibbits
