// How the party dial reaches the creatures and the stage.

#include "app/AppDelegate.h"
#include "body/Pixels.h"

namespace quibbits {

namespace {

constexpr Seconds handOver = 1.1;  // from calling one creature back to sending out the next

/// What the dial's slot shows.
Anim slotPortrait(const Companion& creature) {
    if (creature.stage == Stage::egg) return Anim::fromStrip(Pixels::eggInSlot(), {1});
    return creature.portrait();
}

}  // namespace

void AppDelegate::buildDial() {
    std::vector<PartyMember> members;
    for (const auto& creature : party_) members.push_back(partyMember(*creature));
    dial_ = std::make_unique<PartyDial>(computer_, panels_, std::move(members));
    dial_->onItemDrag = [this](std::optional<Point> at) {
        if (stage_) stage_->itemDragMoved(at);
    };
    dial_->onSettings = [this] { showSettings(); };
    dial_->onQuit = [this] {
        if (onTerminate) onTerminate();
    };
}

PartyMember AppDelegate::partyMember(Companion& creature) {
    const Lifetime& alive = creature.pet().lifetime();
    Companion* who = &creature;
    return {.stats = alive.guard([who] { return who->stats(); }),
            .portrait = alive.guard([who] { return slotPortrait(*who); }),
            .isOut = alive.guard([who] { return who->isOut; }),
            .toggle =
                alive.guard(lifetime_.guard([this, who](Point at) { toggleFromDial(*who, at); }))};
}

Point AppDelegate::ballStart() const {
    const auto anchor = dial_ ? dial_->anchor() : std::nullopt;
    return anchor ? toStage(*anchor) : Point{};
}

void AppDelegate::toggleFromDial(Companion& creature, Point at) {
    const Point from = toStage(at);
    if (creature.isOut) return creature.toggleBall(from);
    bool recalled = false;
    for (const auto& other : party_) {
        if (other.get() == &creature || !other->isOut) continue;
        other->toggleBall(other->ballStart());
        recalled = true;
    }
    computer_.defaults.set("party.out", creature.store());
    if (!recalled) return creature.toggleBall(from);
    computer_.runLoop.after(handOver,
                            lifetime_.guard([who = &creature, from] { who->toggleBall(from); }));
}

}  // namespace quibbits
