#include "app/AppDelegate.h"

#include <algorithm>

#include "settings/model/Setting.h"
#include "species/Sparrel.h"
#include "species/Umbrool.h"

namespace quibbits {

AppDelegate::AppDelegate(const Computer& computer, Panels& panels)
    : computer_(computer), panels_(panels) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    Settings::registerDefaults(computer_.defaults);
    registerNotifications();
    const auto screen = computer_.screens.main();
    if (!screen) return;

    auto stage = std::make_unique<StageWindow>(panels_, computer_, *screen);
    stage->orderFront();
    power_ = std::make_unique<Power>(computer_.machine, computer_.runLoop, computer_.defaults);
    senses_ = std::make_unique<Senses>(computer_.machine, computer_.pointer, computer_.runLoop,
                                       computer_.defaults);
    buildParty();
    chooseWhoIsOut();
    const double places = static_cast<double>(party_.size()) + 1;
    for (std::size_t i = 0; i < party_.size(); ++i) {
        const double share = static_cast<double>(i + 1) / places;
        stage->add(party_[i]->pet(), screen->frame.width * share);
    }
    joinSenses();

    const Vector origin{screen->frame.x, screen->frame.y};
    for (const auto& creature : party_) {
        creature->cursor = [this, origin] { return computer_.pointer.location() - origin; };
        if (onCreature) onCreature(*creature);
    }
    for (const auto& creature : party_) creature->start();
    stage_ = std::move(stage);
}

void AppDelegate::registerNotifications() {
    computer_.notifications.setCategories(
        {{.identifier = "evolve",
          .actions = {{.identifier = "evolve", .title = "Evolve"},
                      {.identifier = "later", .title = "Not Now"}}},
         {.identifier = "zap",
          .actions = {{.identifier = "zap", .title = "Delete", .destructive = true},
                      {.identifier = "keep", .title = "Keep"}}}});
}

void AppDelegate::buildParty() {
    const Companion::World world{computer_, panels_.layers(), *power_, *senses_};
    party_.push_back(std::make_unique<Sparrel>(world));
    party_.push_back(std::make_unique<Umbrool>(world));
}

void AppDelegate::chooseWhoIsOut() {
    const auto saved = computer_.defaults.string("party.out");
    const auto isOut = [](const auto& creature) { return creature->isOut; };
    auto chosen = std::ranges::find_if(party_, [&](const auto& creature) {
        return creature->isOut && creature->store() == saved;
    });
    if (chosen == party_.end()) chosen = std::ranges::find_if(party_, isOut);
    for (auto it = party_.begin(); it != party_.end(); ++it) {
        if (it != chosen && isOut(*it)) (*it)->stayIn();
    }
}

void AppDelegate::joinSenses() {
    power_->onChange = [this] {
        for (const auto& creature : party_) creature->powerChanged();
    };
    senses_->onAway = [this] {
        for (const auto& creature : party_) creature->userLeft();
    };
    senses_->onBack = [this] {
        for (const auto& creature : party_) creature->userReturned();
    };
    senses_->onBreakTime = [this] {
        if (Companion* free = firstFree()) free->suggestBreak();
    };
    senses_->onHeat = [this] {
        for (const auto& creature : party_) creature->heatChanged();
    };
    senses_->onOnline = [this](bool online) {
        for (const auto& creature : party_) creature->internetChanged(online);
    };
}

Companion* AppDelegate::firstFree() const {
    const auto found =
        std::ranges::find_if(party_, [](const auto& creature) { return creature->isFree(); });
    return found == party_.end() ? nullptr : found->get();
}

void AppDelegate::hear(const std::string& word) {
    for (const auto& creature : party_) creature->hook(word);
}

void AppDelegate::applicationWillTerminate() {
    computer_.pointer.setHidden(false);
}

}  // namespace quibbits
