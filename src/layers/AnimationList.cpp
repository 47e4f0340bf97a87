#include "layers/AnimationList.h"

#include <algorithm>

namespace quibbits {

namespace {

/// Seconds into the group's run, or nothing where the group shows nothing.
std::optional<Seconds> timeInGroup(const AnimationTiming& group, Seconds age) {
    const auto share = shareOfRun(group, age, AtEnd::over);
    return share ? std::optional(*share * group.duration) : std::nullopt;
}

AtEnd cutBy(const AnimationTiming& group, const AnimationTiming& part) {
    return part.total() >= group.duration ? AtEnd::included : AtEnd::over;
}

}  // namespace

/// Seconds since the start; never short of the end, or of the beginning, once its instant is here.
Seconds RunningAnimation::age(Instant now) const {
    const auto& t = timing();
    const Seconds passed = std::max(0.0, now - start);
    if (now >= end) return std::max(passed, t.total());
    if (now >= start + t.beginDelay) return std::max(passed, t.beginDelay);
    return passed;
}

std::optional<AnimatedValue> RunningAnimation::value(const Playback& part, Moment moment,
                                                     const AnimatedValue& own) const {
    const Instant at = part.isDiscrete() ? moment.frames : moment.now;
    if (timing().removedOnCompletion && moment.now >= end) return std::nullopt;
    if (!group) return part.at(age(at), own, AtEnd::over);
    const auto local = timeInGroup(*group, age(at));
    if (!local) return std::nullopt;
    return part.at(*local, own, cutBy(*group, part.animation().timing));
}

Instant RunningAnimation::steadyUntil(const Playback& part, Instant now) const {
    const Seconds passed = age(now);
    if (now >= end) return forever;
    if (passed < timing().beginDelay) return start + timing().beginDelay;
    if (!group) {
        const Seconds steady = part.steadyFor(passed);
        return passed + steady >= timing().total() ? end : now + steady;
    }
    if (group->autoreverses) return now;
    const auto local = timeInGroup(*group, passed);
    const Seconds left = group->duration - local.value_or(0);
    return std::min(end, now + std::min(part.steadyFor(local.value_or(0)), left) / group->speed);
}

RunningAnimation& AnimationList::add(RunningAnimation animation) {
    return running_.emplace_back(std::move(animation));
}

std::optional<RunningAnimation> AnimationList::take(std::string_view key) {
    const auto* found = find(key);
    return found ? take(found->id) : std::nullopt;
}

std::optional<RunningAnimation> AnimationList::take(std::uint64_t id) {
    const auto it = std::ranges::find(running_, id, &RunningAnimation::id);
    if (it == running_.end()) return std::nullopt;
    std::optional<RunningAnimation> taken(std::move(*it));
    running_.erase(it);
    return taken;
}

std::vector<RunningAnimation> AnimationList::takeAll() {
    return std::exchange(running_, {});
}

const RunningAnimation* AnimationList::find(std::string_view key) const {
    const auto it = std::ranges::find(running_, key, &RunningAnimation::key);
    return it == running_.end() ? nullptr : &*it;
}

RunningAnimation* AnimationList::find(std::uint64_t id) {
    const auto it = std::ranges::find(running_, id, &RunningAnimation::id);
    return it == running_.end() ? nullptr : &*it;
}

void AnimationList::apply(Appearance& values, Moment moment) const {
    const Appearance model = values;
    for (const auto& running : running_) {
        for (const auto& part : running.parts) {
            const KeyPath path = part.animation().keyPath;
            const auto value = running.value(part, moment, model.value(path));
            if (!value) continue;
            values.set(path, part.animation().additive ? sum(values.value(path), *value) : *value);
        }
    }
}

}  // namespace quibbits
