// How the party dial reaches the creatures and the stage.

#include "app/AppDelegate.h"
#include "body/Pixels.h"

namespace quibbits {

namespace {

/// What the dial's slot shows.
Anim slotPortrait(const Companion& creature) {
    if (creature.stage() == Stage::egg) return Anim::fromStrip(Pixels::eggInSlot(), {1});
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
            .isOut = alive.guard([who] { return who->presence().isOut(); }),
            .toggle = alive.guard(
                lifetime_.guard([this, who](Point at) { door_.tap(*who, toStage(at)); }))};
}

Point AppDelegate::ballStart() const {
    const auto anchor = dial_ ? dial_->anchor() : std::nullopt;
    return anchor ? toStage(*anchor) : Point{};
}

}  // namespace quibbits
