// How the settings and the keyboard reach the creatures, and what the first run begins with.

#include "app/Address.h"
#include "app/AppDelegate.h"

namespace quibbits {

void AppDelegate::joinSettings() {
    settings_.onWelcome = [this] { onboarding_.show(true, {}); };
    settings_.onOpen = [this](const std::string& address) {
        if (address.starts_with(ownScheme)) return open({address});
        computer_.workspace.open(address);
    };
}

void AppDelegate::showSettings() {
    std::vector<PetControls> controls;
    for (const auto& creature : party_) controls.push_back(petControls(*creature));
    settings_.show(std::move(controls));
}

void AppDelegate::joinKeyboard() {
    dial_->onGive = [this](Item item) {
        for (const auto& creature : party_) {
            if (!creature->presence().isOut() || creature->stage() == Stage::egg) continue;
            return creature->received(item);
        }
    };
}

void AppDelegate::welcome() {
    joinKeyboard();
    if (!onboarding_.isDone()) {
        onboarding_.show(false, [this] { showSettings(); });
    }
    if (computer_.defaults.string("QuibSettings")) showSettings();
}

PetControls AppDelegate::petControls(Companion& creature) {
    const Lifetime& alive = creature.pet().lifetime();
    Companion* who = &creature;
    return {
        .id = creature.store(),
        .stats = alive.guard([who] { return who->stats(); }),
        .animations = alive.guard([who] { return who->a().all; }),
        .directions = alive.guard([this, who](const std::string& name) {
            return who->a().directions(computer_.resources, name);
        }),
        .playful = alive.guard([who] { return who->playful(); }),
        .perform = alive.guard([who](const std::string& name) { who->perform(name); }),
        .restart = alive.guard([who] { who->restart(); }),
        .why = alive.guard([who] { return who->why(); }),
    };
}

}  // namespace quibbits
