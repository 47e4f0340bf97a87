#pragma once
// What a creature needs and how it feels: energy, hunger, boredom, and friendship with its person.
// Time and what it does move them; they stay within their bounds, save that an effort may take
// energy a little below nothing until time passes again.

#include <string>

#include "platform/UserDefaults.h"
#include "rules/Thresholds.h"

namespace quibbits {

class Needs {
public:
    struct Values {
        double energy = 0.8;      // 1 fresh, 0 tired out
        double hunger = 0.3;      // 0 full, 1 starving
        double friendship = 120;  // 0 to mostFriendship
        double boredom = 0.3;     // 0 to 1; never saved
        double hungryMinutes = 0;
        double belly() const { return 1 - hunger; }
        bool operator==(const Values&) const = default;
    };
    Needs() = default;
    /// As saved under the creature's keys; what is missing or no number is as at the beginning, and
    /// what is out of its bounds is brought back into them.
    static Needs load(const UserDefaults& saved, const std::string& store);
    /// Everything but boredom and the hungry minutes, which are written as they pass.
    void save(UserDefaults& saved, const std::string& store) const;

    const Values& values() const { return values_; }

    /// An effort.
    void tire(double energy) { values_.energy -= energy; }
    void rest(double energy);
    void sleepOff() { values_.energy = 1; }
    void bore(double by);
    void amuse(double by);
    void eat(double hunger);
    void growHungry(double hunger);
    void befriend(double by);
    /// Minutes of hunger since it last ate or was hurt by it.
    void countHunger(double minutes) { values_.hungryMinutes += minutes; }
    void forgetHunger() { values_.hungryMinutes = 0; }

    /// As a creature fresh from the egg.
    void beginAnew();
    /// Its person is a stranger again.
    void meetAnew() { values_.friendship = Values{}.friendship; }
    /// Time that takes energy and brings boredom.
    void pass(double minutes);

private:
    friend class CompanionProbe;  // lets tests begin where they like

    Values values_;
};

/// Belly and energy run from full to nothing in so many minutes.
inline constexpr double minutesToStarve = 40;

}  // namespace quibbits
