#pragma once
// The door of the party: one creature at a time is out. Whoever the user taps in the dial goes in
// or comes out, and whoever is wanted waits until the others can be called and are on their way in.
// The AppDelegate owns it and tells it whenever a creature's place has changed.

#include <memory>
#include <optional>
#include <vector>

#include "creature/Companion.h"
#include "platform/RunLoop.h"
#include "platform/UserDefaults.h"

namespace quibbits {

class PartyDoor {
public:
    using Party = std::vector<std::unique_ptr<Companion>>;
    PartyDoor(RunLoop& loop, UserDefaults& defaults, const Party& party)
        : loop_(loop), defaults_(defaults), party_(party) {}

    /// The user has tapped a creature; `from` is where a ball flies from, on the stage. A creature
    /// that is out goes in; another is wanted out, and a later one in its stead.
    void tap(Companion& creature, Point from);
    /// Some creature has come out, gone in, or can be called where it could not before.
    void placesChanged();
    /// Whether a creature may come out unasked: nobody else is out, on the way or wanted.
    bool isOpenFor(const Companion& creature) const;

private:
    struct Wanted {
        Companion* creature = nullptr;
        Point from;
    };
    /// Calls everybody else in. True when all of them are on their way, or in.
    bool clearTheWay();
    void keep(Companion& creature);
    void forget();
    void send();

    RunLoop& loop_;
    UserDefaults& defaults_;
    const Party& party_;
    std::optional<Wanted> wanted_;
    std::optional<Timer> handOver_;
};

}  // namespace quibbits
