// What happens around a creature: the user leaves and returns, the charger, heat, the network,
// words from outside, the morning.

#include <algorithm>
#include <utility>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr int dayBegins = 5;
constexpr int noon = 12;
constexpr int evening = 18;
constexpr Seconds failureLasts = 8;

}  // namespace

void Companion::userLeft() {
    if (isOn(Setting::awayNaps) && presence_.isReady()) quietDown();
}

void Companion::quietDown() {
    presence_.doze();
    stop([this] { pet_.play(a().sleep); });  // until somebody wakes it
    save();                                  // for it may sleep until the program ends
}

void Companion::sleepOn() {
    if (!presence_.isDozing() || !presence_.isAtHand()) return;
    chargeSparks_.end();
    pet_.play(a().sleep);
}

void Companion::userReturned() {
    if (!presence_.isDozing() || focusQuiet_) return;
    presence_.wake();
    if (presence_.isHeld()) return;  // it wakes when it is put down
    stop([this] {
        wakeUp([this] {
            speak({.moment = Moment::userBack, .face = Face::joyous});
            pet_.hearts();
            befriend(1);
            sit(2, [this] { think(); });
        });
    });
}

void Companion::wakeUp(Done then) {
    run({playing(a().wake), playing(a().stretch)}, std::move(then));
}

/// Finds its feet after the stage has handed out new ground. Nowhere to stand, it is put on the
/// floor; in the air without being on its way, or where the screen no longer reaches, it comes
/// down.
void Companion::groundChanged() {
    if (presence_.isOut() && presence_.isBusy() && isOutOfSight()) return standUp();
    if (!presence_.isAtHand()) return;
    const bool outOfSight = isOutOfSight();
    if (!outOfSight && !hasLostGround()) return;

    const bool lost = !pet_.surfaceIndex(pet_.position());
    const bool asleep =
        presence_.isDozing() || presence_.isFainted();  // with no chain to break off
    if (!asleep) breakOff();
    if (lost || asleep)
        standUp();
    else if (outOfSight)
        comeIntoSight();
    if (!asleep) stop([this] { think(); });
}

/// Looks about at the end of a motion: the ground or the screen may have changed since it set out.
/// False when it has begun something new, for there was nothing to stand on. Who flies may hover
/// where nothing is beneath; it comes to the ground in the end.
bool Companion::findFeet() {
    if (!presence_.isAtHand()) return true;
    if (!isOutOfSight() && (floats() || !hasLostGround())) return true;
    const bool asleep = presence_.isDozing() || presence_.isFainted();
    if (asleep)
        standUp();
    else
        groundChanged();
    return asleep;
}

/// Whether it is where nobody can stand, or hangs in the air with nowhere to go.
bool Companion::hasLostGround() const {
    if (!pet_.surfaceIndex(pet_.position())) return true;
    return pet_.isAirborne() && !floats() && !pet_.node().animation("move");
}

/// Whether it is where the screen does not reach.
bool Companion::isOutOfSight() const {
    const Point at = pet_.position();
    return at.y > pet_.terrain().skyline || !pet_.screen().contains(at.x);
}

/// To the nearest place where it can be seen, in the air if it is there.
void Companion::comeIntoSight() {
    const Point here = pet_.position();
    const double x = pet_.walkArea().clamp(here.x);
    pet_.drag({x, std::min(here.y, std::max(pet_.terrain().ceiling, pet_.floorY(x)))});
}

/// Puts it on its feet where it is, or as near to that as it can stand.
void Companion::standUp() {
    const Point here = pet_.position();
    const double x = pet_.walkArea().clamp(here.x);
    const auto below = pet_.surfaceIndex({x, here.y});
    bobbing_.end();
    pet_.drag({x, below ? pet_.ground()[*below].y : pet_.floorY(x)});
}

void Companion::powerChanged() {
    const bool charging = power().charging();
    const bool wasCharging = std::exchange(wasCharging_, charging);
    const bool plugged = charging && !wasCharging;
    if (plugged && abilityOnCharge() && presence_.isOut() && stage() != Stage::egg) {
        const Ability own = ability();
        notify({.title = name() + "'s " + own.name + " activated!",
                .body = own.effect,
                .suffix = "ability"});
    }
    const Mood present = mood();
    const auto before = std::exchange(lastMood_, present);
    const PowerChange change{
        .wasCharging = wasCharging, .isCharging = charging, .before = before, .now = present};
    switch (reactTo(change, presence_, focusQuiet_)) {
        case PowerReaction::none: return;
        case PowerReaction::drawPower: return chargerPlugged();
        case PowerReaction::nod:
            return stop([this] { run({playing(a().nod)}, [this] { think(); }); });
        case PowerReaction::faint: return faint();
        case PowerReaction::recover: return recover();
        case PowerReaction::thinkAnew: return stop([this] { think(); });
    }
}

void Companion::chargerPlugged() {
    presence_.comeRound();
    stop([this] { run({playing(a().pose)}, [this] { think(); }); });
}

void Companion::heatChanged() {
    if (!isOn(Setting::heat)) return;
    if (presence_.isFree() && senses().thermalState() == ThermalState::serious) {
        speak({.moment = Moment::hot, .face = Face::sigh, .silent = 3});
    }
    powerChanged();
}

void Companion::internetChanged(bool online) {
    if (!isOn(Setting::wifi) || !presence_.isReady()) return;
    speak({.moment = online ? Moment::online : Moment::offline,
           .face = online ? Face::happy : Face::worried,
           .silent = 3});
    if (!online) stop([this] { sit(3, [this] { think(); }); });
}

void Companion::suggestBreak() {
    if (!presence_.isFree()) return;
    const Anim* breath = a().role("breathe");
    computer().notifications.send(
        {.identifier = "break",
         .title = "Time for a break?",
         .body = breath ? name() + " wants you to take a few deep breaths with it."
                        : name() + " is stretching. Maybe you should too.",
         .pet = store()},
        [](const NotificationOutcome&) {});

    std::vector<Step> steps;
    if (!breath) {
        steps = {doing([this] { feelIfShown(Face::sigh, {.seconds = 4}); }),
                 playing(a().stretch, 2)};
    } else {
        steps = {doing([this] {
                     feel(Face::happy, {.caption = "Take a deep breath with me…", .seconds = 3});
                 }),
                 waiting(2)};
        for (int i = 0; i < 3; ++i) {
            steps.push_back(doing([this, d = breath->duration] {
                feel(Face::happy, {.caption = "Breathe in…", .seconds = 0.9 * d});
                pet_.after(0.45 * d, [this, d] {
                    feel(Face::happy, {.caption = "…and out.", .seconds = 0.9 * d});
                });
            }));
            steps.push_back(playing(*breath, 1, 0.5));
        }
        steps.push_back(
            doing([this] { feel(Face::joyous, {.caption = "Better? 👻", .seconds = 2.5}); }));
    }
    steps.push_back(sitting(3));
    stop([this, steps = std::move(steps)] { run(steps, [this] { think(); }); });
}

void Companion::greetTheDay() {
    const LocalTime today = computer().runLoop.localTime(date());
    if (today.hour < dayBegins) return;
    const Date greeted = computer().defaults.onlyDate(key("greeted")).value_or(Date::distantPast());
    const LocalTime then = computer().runLoop.localTime(greeted);
    const bool sameDay =
        then.year == today.year && then.month == today.month && then.day == today.day;
    if (sameDay || greeted > date()) return;
    computer().defaults.set(key("greeted"), date());
    const char* caption = today.hour < noon      ? "Good morning!"
                          : today.hour < evening ? "Good afternoon!"
                                                 : "Good evening!";
    feel(Face::joyous, {.caption = caption, .seconds = 3});
    pet_.hearts();
}

void Companion::hook(const std::string& word) {
    const Word told = meaning(word);
    if (told == Word::focus || told == Word::unfocus) return focus(told == Word::focus);
    if (!presence_.isAtHand() || focusQuiet_) return;
    const bool wasDozing = presence_.wake();
    switch (told) {
        case Word::triumph: return celebrateHook();
        case Word::failure: return collapse();
        case Word::finish: return finishJob();
        default: return greetBack(wasDozing);
    }
}

/// The user wants quiet, or has had enough of it.
void Companion::focus(bool quiet) {
    const bool wasQuiet = std::exchange(focusQuiet_, quiet);
    computer().defaults.set("focus.on", quiet);
    if (quiet && presence_.isAtHand()) quietDown();
    if (quiet) return;
    // Power may have come back while nobody listened.
    if (wasQuiet && !presence_.isDozing()) comeRound();
    userReturned();
}

void Companion::collapse() {
    if (presence_.isFainted()) return;
    presence_.faint();
    stop([this] {
        speak({.moment = Moment::failed, .face = Face::pain});
        pet_.play(a().faint, 1);
        pet_.runLoop().after(failureLasts,
                             pet_.lifetime().guard([this, which = presence_.faints()] {
                                 if (which == presence_.faints()) comeRound();
                             }));
    });
}

/// Gets up from a faint unless its mood keeps it down.
void Companion::comeRound() {
    if (!presence_.isFainted() || mood() == Mood::fainted) return;
    if (presence_.isAtHand()) return recover();
    presence_.comeRound();
}

void Companion::finishJob() {
    stop([this] {
        speak({.moment = Moment::done, .face = Face::joyous});
        pet_.hearts();
        run({playing(a().pose), sitting(2)}, [this] { think(); });
    });
}

void Companion::greetBack(bool wasDozing) {
    speak({.moment = Moment::hello, .face = Face::happy});
    pet_.hearts();
    // A greeting interrupts nothing, but a sleeper that it has woken gets up.
    if (wasDozing) stop([this] { wakeUp([this] { think(); }); });
}

void Companion::celebrateHook() {
    stop([this] {
        speak({.moment = Moment::celebrate, .face = Face::joyous});
        gainEXP(0.05);
        pet_.hearts();
        run({playing(a().pose)}, [this] { think(); });
    });
}

void Companion::cameraChanged(bool on) {
    if (!isOn(Setting::hideOnCamera)) {
        if (!on) hiddenForCall_ = false;  // that call is over
        return;
    }
    if (on) {
        if (!presence_.isAtHand()) return;
        hiddenForCall_ = true;
        presence_.wake();
        return toggleBall();
    }
    if (!hiddenForCall_ || presence_.isGoingIn())
        return;  // who is going in asks again when it is in
    hiddenForCall_ = false;
    const bool isIn = !presence_.isOut() && !presence_.isBusy();
    if (isIn && habitat_.mayComeOut()) toggleBall();
}

std::optional<Menu> Companion::menu() {
    if (!pendingEvolution_) return std::nullopt;
    const auto item = [this](std::string title, std::function<void()> run) {
        return MenuItem{std::move(title), pet_.lifetime().guard(std::move(run))};
    };
    const Evolution offer = *pendingEvolution_;
    return Menu{{item("Evolve into " + evolutionName(offer.to, offer.form),
                      [this, offer] {
                          if (pendingEvolution_ != offer) return;  // answered elsewhere
                          withdrawOffer();
                          evolve(offer);
                      }),
                 item("Not Now", [this] { answerEvolution(false); })}};
}

void Companion::offerZap(const std::vector<std::string>& paths, const std::string& title,
                         const std::string& why) {
    if (paths.empty()) return;
    if (presence_.isReady()) {
        feelIfShown(Face::surprised, {.thought = Pixels::file(), .seconds = 2.5});
    }
    const std::string offer =
        paths.size() == 1 ? paths.front() : "batch-" + std::to_string(date().secondsSince1970);
    notify(
        {.title = title, .body = why, .suffix = "zap-" + offer, .category = "zap", .paths = paths});
}

}  // namespace quibbits
