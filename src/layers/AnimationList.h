#pragma once
// The animations that run on one layer, in the order in which they were added. Owned by the layer.
// Reading never changes anything; only the layer adds and takes out.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layers/Appearance.h"
#include "layers/Playback.h"
#include "platform/RunLoop.h"

namespace quibbits {

class TransactionBatch;

/// The instants at which a layer is read: all of it at `now`, but discrete animations at `frames`,
/// which lags behind while a body walks in steps.
struct Moment {
    Instant now = 0;
    Instant frames = 0;
};

/// What is under one key: an animation, or a group.
struct RunningAnimation {
    std::string key;
    std::uint64_t id = 0;
    std::vector<Playback> parts;
    std::optional<AnimationTiming> group;
    Instant start = 0;
    Instant end = forever;
    std::function<void(bool finished)> onEnd;
    std::vector<std::shared_ptr<TransactionBatch>> batches;
    Timer timer;

    const AnimationTiming& timing() const {
        return group ? *group : parts.front().animation().timing;
    }
    /// Begun and not yet ended.
    bool isInProgress(Instant now) const { return now >= start + timing().beginDelay && now < end; }
    std::optional<AnimatedValue> value(const Playback& part, Moment moment,
                                       const AnimatedValue& own) const;
    /// Until when the part's value is sure to stay.
    Instant steadyUntil(const Playback& part, Instant now) const;

private:
    Seconds age(Instant now) const;
};

class AnimationList {
public:
    RunningAnimation& add(RunningAnimation animation);
    std::optional<RunningAnimation> take(std::string_view key);
    std::optional<RunningAnimation> take(std::uint64_t id);
    std::vector<RunningAnimation> takeAll();
    const RunningAnimation* find(std::string_view key) const;
    RunningAnimation* find(std::uint64_t id);
    bool isEmpty() const { return running_.empty(); }
    const std::vector<RunningAnimation>& running() const { return running_; }

    /// Turns model values into what is seen.
    void apply(Appearance& values, Moment moment) const;

private:
    std::vector<RunningAnimation> running_;
};

}  // namespace quibbits
