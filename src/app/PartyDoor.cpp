#include "app/PartyDoor.h"

#include <algorithm>
#include <utility>

namespace quibbits {

namespace {

constexpr Seconds handOver = 1.1;  // from one creature's ball to the next one's throw

}  // namespace

void PartyDoor::tap(Companion& creature, Point from) {
    const Presence& there = creature.presence();
    if (there.isGoingIn() && !wanted_) return;
    if (there.isOut() && !there.isGoingIn()) {
        if (wanted_) return keep(creature);
        return creature.toggleBall(from);
    }
    if (there.isComingOut()) return keep(creature);
    forget();
    wanted_ = {&creature, from};
    defaults_.set("party.out", creature.store());
    placesChanged();
}

void PartyDoor::placesChanged() {
    if (!wanted_ || wanted_->creature->presence().isBusy()) return;
    if (!clearTheWay()) return;
    const auto leaves = [](const auto& each) { return each->presence().isGoingIn(); };
    if (std::ranges::none_of(party_, leaves)) return send();
    if (!handOver_) handOver_ = loop_.timer(handOver, [this] { send(); });
}

bool PartyDoor::clearTheWay() {
    bool isClear = true;
    for (const auto& other : party_) {
        const Presence& there = other->presence();
        if (other.get() == wanted_->creature || there.isDrawnIn()) continue;
        if (there.isAtHand()) other->toggleBall();
        isClear = isClear && !there.isOut() && !there.isBusy();
    }
    return isClear;
}

/// Somebody else was to follow once it can be called: it stays after all.
void PartyDoor::keep(Companion& creature) {
    if (!wanted_) return;
    forget();
    defaults_.set("party.out", creature.store());
}

void PartyDoor::forget() {
    wanted_.reset();
    handOver_.reset();
}

void PartyDoor::send() {
    handOver_.reset();
    if (!wanted_) return;
    const Wanted next = *std::exchange(wanted_, std::nullopt);
    for (const auto& other : party_) {
        if (other.get() != next.creature) other->forgetCall();
    }
    next.creature->toggleBall(next.from);
}

bool PartyDoor::isOpenFor(const Companion& creature) const {
    return !wanted_ && std::ranges::none_of(party_, [&](const auto& other) {
        return other.get() != &creature &&
               (other->presence().isOut() || other->presence().isBusy());
    });
}

}  // namespace quibbits
