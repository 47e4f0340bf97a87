#include "app/AppDelegate.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/Address.h"
#include "settings/model/Setting.h"
#include "species/Sparrel.h"
#include "species/Umbrool.h"

namespace quibbits {

AppDelegate::AppDelegate(const Computer& computer, Panels& panels, views::ViewWindows& windows)
    : computer_(computer),
      panels_(panels),
      settings_(computer, windows),
      onboarding_(computer, windows),
      door_(computer_.runLoop, computer_.defaults, party_) {
    joinSettings();
}

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
    joinEffects(*screen);
    buildDial();
    for (const auto& creature : party_) {
        creature->settle(habitatOf(*creature));
        if (onCreature) onCreature(*creature);
    }
    makeThunderboltKey();
    // Nobody's folder is watched before its owner has been told.
    if (onboarding_.isDone()) {
        makeGuard();
    } else {
        onboarding_.whenDone.push_back([this] { makeGuard(); });
    }
    for (const auto& creature : party_) creature->start();
    stage_ = std::move(stage);
    welcome();
}

void AppDelegate::registerNotifications() {
    computer_.notifications.setCategories(
        {{.identifier = "evolve",
          .actions = {{.identifier = "evolve", .title = "Evolve"},
                      {.identifier = "later", .title = "Not Now"}},
          .withoutButtons = "Right-click it to choose."},
         {.identifier = "zap",
          .actions = {{.identifier = "zap", .title = "Delete", .destructive = true},
                      {.identifier = "keep", .title = "Keep"}},
          .withoutButtons =
              "Drop what should go on your Quibbit with Alt held, or delete it yourself."}});
    computer_.notifications.onResponse = lifetime_.guard([this](const NotificationResponse& given) {
        computer_.runLoop.post(lifetime_.guard([this, given] { answered(given); }));
    });
}

void AppDelegate::buildParty() {
    const Companion::World world{computer_, panels_.layers(), *power_, *senses_};
    party_.push_back(std::make_unique<Sparrel>(world));
    party_.push_back(std::make_unique<Umbrool>(world));
}

void AppDelegate::chooseWhoIsOut() {
    const auto saved = computer_.defaults.string("party.out");
    const auto isOut = [](const auto& creature) { return creature->presence().isOut(); };
    auto chosen = std::ranges::find_if(party_, [&](const auto& creature) {
        return isOut(creature) && creature->store() == saved;
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
    senses_->onCamera = [this](bool on) {
        for (const auto& creature : party_) creature->cameraChanged(on);
    };
    senses_->onHeat = [this] {
        for (const auto& creature : party_) creature->heatChanged();
    };
    senses_->onOnline = [this](bool online) {
        for (const auto& creature : party_) creature->internetChanged(online);
    };
}

void AppDelegate::joinEffects(const Screen& screen) {
    const double artPixel = party_.front()->pet().scale();
    ballFX_ = std::make_unique<BallFX>(panels_, computer_.random, screen.frame, artPixel);
    stageOrigin_ = {screen.frame.x, screen.frame.y};
    subscriptions_.push_back(computer_.screens.changed.subscribe([this] {
        const auto now = computer_.screens.main();
        if (!now) return;
        ballFX_->setFrame(now->frame);
        stageOrigin_ = {now->frame.x, now->frame.y};
    }));
}

Habitat AppDelegate::habitatOf(const Companion& creature) {
    return {
        .pointer = [this] { return toStage(computer_.pointer.location()); },
        .ballStart = [this] { return ballStart(); },
        .fx = ballFX_.get(),
        .mayComeOut = [this, &creature] { return door_.isOpenFor(creature); },
        // Not from within what the creature is just doing.
        .onPlaceChanged =
            [this] { computer_.runLoop.post(lifetime_.guard([this] { door_.placesChanged(); })); }};
}

void AppDelegate::answered(const NotificationResponse& response) {
    const bool isDecided = response.action == "zap" || response.action == "keep" ||
                           response.action == NotificationResponse::closed;
    if (downloads_ && isDecided) downloads_->answered(response.paths);
    if (response.action == "zap") return zapOffered(response.paths);
    const bool yes = response.action == "evolve";
    if (!yes && response.action != "later") return;
    const std::string store = response.pet.empty() ? "pet" : response.pet;
    const auto named = std::ranges::find_if(
        party_, [&](const auto& creature) { return creature->store() == store; });
    if (named != party_.end()) (*named)->answerEvolution(yes);
}

void AppDelegate::zapOffered(const std::vector<std::string>& paths) {
    constexpr std::size_t shown = 3;  // with an attack each; the rest goes at once
    std::vector<std::string> there;
    std::ranges::copy_if(paths, std::back_inserter(there), [this](const std::string& path) {
        return downloads_ ? downloads_->isAsOffered(path) : computer_.files.exists(path);
    });
    const bool someChanged = std::ranges::any_of(paths, [&](const std::string& path) {
        return computer_.files.exists(path) && std::ranges::find(there, path) == there.end();
    });
    if (someChanged) {
        computer_.notifications.send(
            {.identifier = "downloads.changed",
             .title = "Left alone",
             .body = "What has changed since you were asked was not deleted."},
            [](const NotificationOutcome&) {});
    }
    if (there.empty()) return;
    Companion* creature = chosenForFiles();
    const auto rest = there.begin() + static_cast<std::ptrdiff_t>(std::min(shown, there.size()));
    if (creature) creature->strike({there.begin(), rest}, {});
    for (auto path = rest; path != there.end(); ++path) computer_.files.moveToTrash(*path);
}

Companion* AppDelegate::firstFree() const {
    const auto found = std::ranges::find_if(
        party_, [](const auto& creature) { return creature->presence().isFree(); });
    return found == party_.end() ? nullptr : found->get();
}

Companion* AppDelegate::chosenForFiles() const {
    Companion* creature = firstFree();
    return creature || party_.empty() ? creature : party_.front().get();
}

void AppDelegate::makeThunderboltKey() {
    thunderboltKey_ = std::make_unique<ThunderboltKey>(
        ThunderboltKey::World{.hotKeys = computer_.hotKeys,
                              .workspace = computer_.workspace,
                              .fileBrowser = computer_.fileBrowser,
                              .accessibility = computer_.accessibility,
                              .loop = computer_.runLoop,
                              .defaults = computer_.defaults});
    thunderboltKey_->onUntrusted = [this] { tellOfAccessibility(); };
    thunderboltKey_->onStrike = [this](const std::vector<std::string>& paths,
                                       const ThunderboltKey::Spots& points) {
        Companion* creature = chosenForFiles();
        if (!creature) return;
        FilePoints onStage;
        for (const auto& [path, point] : points) onStage[path] = toStage(point);
        creature->strike(paths, onStage);
    };
}

/// Switching it on is the user's to do: it concerns every program of the desktop.
void AppDelegate::tellOfAccessibility() {
    computer_.notifications.send(
        {.identifier = "accessibility",
         .title = "What is selected?",
         .body = "The delete key needs accessibility, which is off. You can turn it on in the "
                 "settings, under \"What your desktop offers\"."},
        [](const NotificationOutcome&) {});
}

void AppDelegate::makeGuard() {
    downloads_ =
        std::make_unique<DownloadsGuard>(DownloadsGuard::World{.files = computer_.files,
                                                               .volumes = computer_.volumes,
                                                               .background = computer_.background,
                                                               .loop = computer_.runLoop,
                                                               .defaults = computer_.defaults});
    downloads_->onFind = [this](const DownloadsFind& find) {
        if (Companion* creature = chosenForFiles())
            creature->offerZap(find.paths, find.title, find.why);
    };
}

void AppDelegate::open(const std::vector<std::string>& addresses) {
    for (const std::string& address : addresses) {
        const auto word = wordOf(address);
        if (!word) continue;
        for (const auto& creature : party_) creature->hook(word->empty() ? "hello" : *word);
    }
}

void AppDelegate::applicationWillTerminate() {
    for (const auto& creature : party_) creature->finishDeleting();
    computer_.pointer.setHidden(false);
    computer_.notifications.removeOffers();
}

}  // namespace quibbits
