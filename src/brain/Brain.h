#pragma once
// A small utility AI. From a snapshot of a creature and its surroundings it scores everything the
// creature could do, damps what was done lately, and draws one of the options close to the best.
// Every score keeps the labelled factors that it was made from, so that the user can read why. The
// brain never moves the creature and remembers nothing but its last decisions.

#include <array>
#include <cassert>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "brain/Intent.h"
#include "platform/Date.h"
#include "platform/Random.h"
#include "platform/RunLoop.h"
#include "rules/Nature.h"

namespace quibbits {

/// What a decision is made from. All numbers lie in 0 to 1.
struct Mind {
    double energy = 0;
    double hunger = 0;  // 0 full, 1 starving
    double friendship = 0;
    double boredom = 0;
    double neglect = 0;  // hours since the last petting, at most 1
    bool night = false;
    bool daytime = false;
    bool charging = false;
    bool lowBattery = false;
    bool music = false;
    bool hungerOn = false;
    bool caring = false;
    bool newFile = false;
    bool filesToExplore = false;
    bool cursorReachable = false;
    bool openAir = false;
    bool canPlay = false;
    bool knowsChargeOrb = false;
    bool knowsPsychic = false;
    bool coralian = false;
    bool ghost = false;
    bool windowToHaunt = false;
    bool canLick = false;
    bool cursorLeftAlone = false;
    bool shadowTricks = false;
    bool canPrank = false;
    bool ghostHour = false;
    Nature nature = Nature::neutral();
};

/// A factor of a score and what the user reads for it.
struct Reason {
    std::string_view label;
    double value = 1;
    bool operator==(const Reason&) const = default;
};

/// The factors of one option in the order in which they were applied, kept in place: a decision
/// allocates nothing for them.
class Reasons {
public:
    void add(std::string_view label, double value) {
        assert(count_ < list_.size());
        list_[count_++] = {label, value};
    }
    const Reason* begin() const { return list_.data(); }
    const Reason* end() const { return list_.data() + count_; }
    std::size_t size() const { return count_; }
    const Reason& operator[](std::size_t i) const { return list_[i]; }
    const Reason& back() const { return list_[count_ - 1]; }

private:
    std::array<Reason, 7> list_;  // four of its own, the ghost hour, done recently, keeps going
    std::size_t count_ = 0;
};

/// Something that a creature could do, and how much it wants to.
struct Option {
    Intent intent = Intent::sit;
    double score = 0;  // the base times every reason
    Reasons reasons;
};

struct Brain {
    std::vector<Option> options;  // of the last decision, best first
    std::optional<Intent> choice;
    Date decidedAt = Date::distantPast();
    std::map<Intent, Instant> lastDone;  // no clock that is set moves a cool-down

    /// Scores every option for the snapshot, in a fixed order.
    static std::vector<Option> score(const Mind& mind);

    /// When a decision is made: by the wall clock, for whoever reads it, and by the run loop's.
    struct When {
        Date date;
        Instant instant = 0;
    };
    /// Scores, damps, and draws one of the options within 15 per cent of the best, weighted by
    /// score. Sits when nothing scores above 0.
    Intent decide(const Mind& mind, When now, Random& random);
};

}  // namespace quibbits
