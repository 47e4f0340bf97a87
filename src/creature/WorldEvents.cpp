// What happens around a creature: the user leaves and returns, the charger, heat, the network,
// words from outside, the morning.

#include <cstdio>

#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr int dayBegins = 5;
constexpr int noon = 12;
constexpr int evening = 18;
constexpr Seconds failureLasts = 8;

}  // namespace

void Companion::userLeft() {
    if (isOn(Setting::awayNaps) && isFree() && !isFainted) quietDown();
}

void Companion::quietDown() {
    dozing = true;
    stop([this] { pet_.play(a().sleep); });  // until somebody wakes it
}

void Companion::userReturned() {
    if (!dozing || focusQuiet) return;
    dozing = false;
    pet_.interrupt();
    run({playing(a().wake), playing(a().stretch), doing([this] {
             speak(Moment::userBack, Face::joyous, {}, 2.5);
             pet_.hearts();
             befriend(1);
         }),
         sitting(2)},
        [this] { think(); });
}

void Companion::powerChanged() {
    const bool charging = power().charging();
    const bool plugged = charging && !wasCharging_;
    const bool unplugged = !charging && wasCharging_;
    wasCharging_ = charging;
    if (plugged && abilityOnCharge() && isOut && stage != Stage::egg) {
        const Ability own = ability();
        notify({.title = name() + "'s " + own.name + " activated!",
                .body = own.effect,
                .suffix = "ability"});
    }
    const Mood present = mood();
    const auto before = std::exchange(lastMood_, present);
    if (held || !isOut || ballBusy || focusQuiet) return;
    if (plugged) return chargerPlugged();
    if (unplugged) {
        return stop([this] { run({playing(a().nod)}, [this] { think(); }); });
    }
    if (before == present) return;
    if (present == Mood::fainted) {
        if (!isFainted) faint();
    } else if (isFainted) {
        recover();
    } else {
        stop([this] { think(); });
    }
}

void Companion::chargerPlugged() {
    isFainted = false;
    stop([this] { run({playing(a().pose)}, [this] { think(); }); });
}

void Companion::heatChanged() {
    if (!isOn(Setting::heat)) return;
    if (isFree() && senses().thermalState() == ThermalState::serious) {
        speak(Moment::hot, Face::sigh, {}, 3);
    }
    powerChanged();
}

void Companion::internetChanged(bool online) {
    if (!isOn(Setting::wifi) || !isFree() || isFainted) return;
    speak(online ? Moment::online : Moment::offline, online ? Face::happy : Face::worried, {}, 3);
    if (!online) stop([this] { sit(3, [this] { think(); }); });
}

void Companion::suggestBreak() {
    if (!isFree()) return;
    const Anim* breath = a().role("breathe");
    computer().notifications.send(
        {.identifier = "break",
         .title = "Time for a break?",
         .body = breath ? name() + " wants you to take a few deep breaths with it."
                        : name() + " is stretching. Maybe you should too.",
         .pet = store_},
        [](const std::string&) {});

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
    const LocalTime today = computer().runLoop.localTime(now());
    if (today.hour < dayBegins) return;
    const Date greeted = computer().defaults.onlyDate(key("greeted")).value_or(Date::distantPast());
    const LocalTime then = computer().runLoop.localTime(greeted);
    const bool sameDay =
        then.year == today.year && then.month == today.month && then.day == today.day;
    if (sameDay || greeted > now()) return;
    computer().defaults.set(key("greeted"), now());
    const char* caption = today.hour < noon      ? "Good morning!"
                          : today.hour < evening ? "Good afternoon!"
                                                 : "Good evening!";
    feel(Face::joyous, {.caption = caption, .seconds = 3});
    pet_.hearts();
}

void Companion::hook(const std::string& word) {
    if (word == "focus" || word == "unfocus") {
        focusQuiet = word == "focus";
        computer().defaults.set("focus.on", focusQuiet);
        if (!focusQuiet)
            userReturned();
        else if (isOut && !ballBusy && !held)
            quietDown();
        return;
    }
    if (!isOut || ballBusy || held || focusQuiet) return;
    dozing = false;
    if (word == "celebrate" || word == "pass" || word == "success") {
        celebrateHook();
    } else if (word == "fail" || word == "failed" || word == "error") {
        if (isFainted) return;
        isFainted = true;
        stop([this] {
            speak(Moment::failed, Face::pain, {}, 2.5);
            pet_.play(a().faint, 1);
            pet_.after(failureLasts, [this] {
                if (isFainted && mood() != Mood::fainted) recover();
            });
        });
    } else if (word == "done" || word == "finished") {
        stop([this] {
            speak(Moment::done, Face::joyous, {}, 2.5);
            pet_.hearts();
            run({playing(a().pose), sitting(2)}, [this] { think(); });
        });
    } else {
        speak(Moment::hello, Face::happy, {}, 2.5);
        pet_.hearts();
    }
}

void Companion::celebrateHook() {
    stop([this] {
        speak(Moment::celebrate, Face::joyous, {}, 2.5);
        gainEXP(0.05);
        pet_.hearts();
        run({playing(a().pose)}, [this] { think(); });
    });
}

void Companion::notify(const Notice& notice) {
    if (notice.category != "zap" && !isOn(Setting::notifications)) return;
    computer().notifications.send(
        {.identifier = key(notice.suffix),
         .title = notice.title,
         .body = notice.body,
         .category = notice.category,
         .sound = notice.sound,
         .pet = store_,
         .paths = notice.paths},
        [](const std::string& failure) {
            if (failure.empty()) return;
            std::fprintf(stderr, "Quibbits: notifications not allowed (%s)\n", failure.c_str());
        });
}

}  // namespace quibbits
