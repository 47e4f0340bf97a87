#pragma once
// What a creature's mind is on while it sits: where it looks, how long the pointer holds it, when
// it was last startled, petted or fed. All of it counts by the run loop and is forgotten at the
// end.

#include <limits>
#include <optional>

#include "platform/Geometry.h"
#include "platform/RunLoop.h"

namespace quibbits {

/// Where the eyes point.
enum class Gaze { ahead, up, down };

class Attention {
public:
    // The seat: a sit lasts until the body is interrupted, which changes its token.
    void sit(int token) {
        seat_ = token;
        gaze_ = Gaze::ahead;
    }
    void getUp() { seat_.reset(); }
    std::optional<int> seat() const { return seat_; }

    Gaze gaze() const { return gaze_; }
    void look(Gaze where) { gaze_ = where; }

    /// Something to watch is near.
    void watch(Instant now) { watchingUntil_ = now + watching; }
    bool isWatching(Instant now) const { return now < watchingUntil_; }

    /// Busy with a meal or a gift, and minds no pointer.
    void mind(Instant until) { busyUntil_ = until; }
    bool isBusy(Instant now) const { return now < busyUntil_; }

    // Petting comes after a pause only.
    void pet(Instant now) { petted_ = now; }
    void petAgainIn(Seconds pause, Instant now) { petted_ = now - (pettingPause - pause); }
    bool mayBePetted(Instant now) const { return now - petted_ > pettingPause; }

    /// What the pointer's coming near means.
    enum class Visit { none, begins, settles };
    struct Approach {
        Visit visit = Visit::none;
        bool fast = false;
    };
    Approach approach(Point pointer, Instant now);
    void forgetApproach() { approached_.reset(); }
    /// Whether it may notice a visit that begins; not again for a while.
    bool notice(Instant now);

    /// Whether a new window may make it look up; not again for a while.
    bool mayGlance(Instant now) const { return now - glanced_ > glancePause; }
    void glance(Instant now) { glanced_ = now; }

private:
    static constexpr Seconds watching = 2;
    static constexpr Seconds pettingPause = 8;
    static constexpr Seconds glancePause = 20;
    /// Before everything, for what has not happened yet.
    static constexpr Instant never = -std::numeric_limits<Instant>::infinity();

    std::optional<int> seat_;
    Gaze gaze_ = Gaze::ahead;
    Instant watchingUntil_ = never;
    Instant busyUntil_ = never;
    Instant petted_ = never;
    std::optional<Instant> approached_;  // absent while the pointer is away
    bool settled_ = false;               // it has warmed to the present visit
    Instant noticed_ = never;
    Instant glanced_ = never;
    Point pointer_;
    Instant pointerAt_ = never;
};

}  // namespace quibbits
