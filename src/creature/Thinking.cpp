// The heartbeat: look around, decide, act, and decide again when that is done.

#include <algorithm>
#include <array>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double mostMinutes = 5;  // a longer absence counts as no more
constexpr double chargedByThinking = 0.05;
constexpr double boredomBurnt = 0.3;
constexpr double airAbove = 150;  // points that a flyer wants free

constexpr double patrolRadius = 260;
constexpr double sniffRadius = 90;

constexpr Seconds intentBubble = 2.2;

void raise(double& need, double by) {
    need = std::min(need + by, 1.0);
}

/// What is thought and felt when an intent begins.
struct IntentBubble {
    Intent intent;
    const Image& (*thought)();
    Face face;
};

constexpr std::array intentBubbles{
    IntentBubble{Intent::nap, Pixels::zzz, Face::sigh},
    IntentBubble{Intent::rest, Pixels::zzz, Face::sigh},
    IntentBubble{Intent::explore, Pixels::file, Face::inspired},
    IntentBubble{Intent::patrol, Pixels::bolt, Face::determined},
    IntentBubble{Intent::visit, Pixels::heart, Face::happy},
    IntentBubble{Intent::play, Pixels::sparkle, Face::joyous},
    IntentBubble{Intent::dance, Pixels::note, Face::joyous},
    IntentBubble{Intent::chargeUp, Pixels::bolt, Face::determined},
    IntentBubble{Intent::surfLaps, Pixels::bolt, Face::joyous},
    IntentBubble{Intent::levitate, Pixels::sparkle, Face::inspired},
    IntentBubble{Intent::teleport, Pixels::heart, Face::inspired},
    IntentBubble{Intent::fly, Pixels::sparkle, Face::joyous},
};

}  // namespace

void Companion::think() {
    if (!isFree()) return;
    if (focusQuiet) return quietDown();
    greetTheDay();
    stopChargeSparks();
    if (pet_.isAirborne()) {
        pet_.fall(floats() ? Pet::Falling::floating : Pet::Falling::freely, [this] { think(); });
        return save();
    }
    switch (mood()) {
        case Mood::charging: raise(energy, chargedByThinking); break;
        case Mood::fainted:
            if (!isFainted) faint();
            return save();
        case Mood::happy:
        case Mood::tired: break;
    }

    const std::vector<Ground> spots = pet_.openSpots();
    std::vector<Ground> tiles;
    std::ranges::copy_if(spots, std::back_inserter(tiles), [](auto& g) { return !g.solid; });
    Surroundings seen{.spots = spots, .newFile = noticeNewFiles(tiles)};

    const double minutes = std::clamp((now() - lastThought_) / 60, 0.0, mostMinutes);
    lastThought_ = now();
    needsStep(minutes);

    if (isOn(Setting::exploreFiles)) seen.file = fileToExplore(tiles);
    seen.cursorSpot = spotNearCursor(pet_.position(), cursor(), spots);

    Mind mind = makeMind(seen);
    fill(mind);
    const Intent intent = brain_.decide(mind, now(), random());
    if (isActive(intent)) boredom = std::max(boredom - boredomBurnt, 0.0);
    if (onDecision) onDecision(*this, mind);
    act(intent, seen, [this] { think(); });
    save();
}

Mind Companion::makeMind(const Surroundings& seen) const {
    const int hourNow = hour();
    const Point above = pet_.position() + Vector{0, airAbove};
    return {.energy = energy,
            .hunger = hunger,
            .friendship = friendship / mostFriendship,
            .boredom = boredom,
            .neglect = hoursSincePetted(),
            .night = hourNow >= 23 || hourNow < 6,
            .daytime = hourNow >= 9 && hourNow <= 16,
            .charging = power().charging(),
            .lowBattery = mood() == Mood::tired,
            .music = isOn(Setting::music) && senses().musicPlaying(),
            .hungerOn = isOn(Setting::hunger),
            .caring = isOn(Setting::relationship),
            .newFile = seen.newFile.has_value(),
            .filesToExplore = seen.file.has_value(),
            .cursorReachable = seen.cursorSpot.has_value(),
            .openAir = floats() && pet_.isVisible(above),
            .canPlay = !unlockedMoves().empty(),
            .knowsChargeOrb = knows("Charge Orb"),
            .knowsPsychic = knows("Psychic"),
            .coralian = isCoralian(),
            .nature = nature};
}

void Companion::fill(Mind&) {}

void Companion::showIntent(Intent intent, const Surroundings& seen) {
    if (intent == Intent::explore && !seen.file) return;
    if (intent == Intent::teleport && !seen.cursorSpot) return;
    const auto bubble = std::ranges::find(intentBubbles, intent, &IntentBubble::intent);
    if (bubble == intentBubbles.end()) return;
    if (intent == Intent::play) {
        const auto words = isOn(Setting::chatter) ? line(Moment::playing) : std::nullopt;
        if (words) {
            return feel(bubble->face, {.caption = words,
                                       .speaker = name(),
                                       .thought = bubble->thought(),
                                       .seconds = 3.0});
        }
    }
    feelIfShown(bubble->face, {.thought = bubble->thought(), .seconds = intentBubble});
}

void Companion::act(Intent intent, const Surroundings& seen, Done next) {
    if (lastIntent_ != intent) showIntent(intent, seen);
    lastIntent_ = intent;
    if (isActive(intent))
        actActively(intent, seen, std::move(next));
    else
        actQuietly(intent, seen, std::move(next));
}

void Companion::actQuietly(Intent intent, const Surroundings& seen, Done next) {
    switch (intent) {
        case Intent::nap: return nap(std::move(next));
        case Intent::rest: raise(energy, 0.35); return sit(between(10, 18), std::move(next));
        case Intent::askForBerry: return askForBerry(seen.cursorSpot, std::move(next));
        case Intent::chargeUp: return chargeUp(std::move(next));
        case Intent::daydream: {
            const std::array thoughts{Pixels::heart(), Pixels::note(), Pixels::sparkle(),
                                      Pixels::bolt(),
                                      Pixels::item(favorite(nature).value_or(Item::azurine))};
            feelIfShown(Face::happy, {.thought = random().pick(thoughts), .seconds = 3.0});
            return sit(between(6, 10), std::move(next));
        }
        case Intent::yawn:
            feelIfShown(Face::sigh, {.thought = Pixels::zzz(), .seconds = 2.0});
            raise(energy, 0.05);
            return run({playing(a().stretch), sitting(between(4, 6))}, std::move(next));
        case Intent::hum:
            feelIfShown(Face::joyous, {.thought = Pixels::note(), .seconds = 2.5});
            return run({playing(a().nod, 4), sitting(3)}, std::move(next));
        case Intent::bask:
            feelIfShown(Face::happy, {.thought = Pixels::sparkle(), .seconds = 2.0});
            return bask(std::move(next));
        case Intent::sit:
        default:
            raise(energy, 0.03);
            raise(boredom, 0.12);
            return sit(between(5, 10), std::move(next));
    }
}

void Companion::actActively(Intent intent, const Surroundings& seen, Done next) {
    constexpr Seconds nothingToDo = 3;
    switch (intent) {
        case Intent::inspect:
            if (seen.newFile) return inspect(*seen.newFile, std::move(next));
            break;
        case Intent::explore:
            if (seen.file) return explore(*seen.file, std::move(next));
            break;
        case Intent::patrol: return patrol(seen, std::move(next));
        case Intent::visit:
            if (seen.cursorSpot) return visit(seen, std::move(next));
            break;
        case Intent::play: return play(std::move(next));
        case Intent::dance: return dance(std::move(next));
        case Intent::surfLaps: return surfLaps(seen.spots, std::move(next));
        case Intent::levitate: return levitate(false, std::move(next));
        case Intent::teleport:
            if (seen.cursorSpot) {
                energy -= 0.03;
                pet_.sparks(20, 0.3);
                return pet_.blink(*seen.cursorSpot,
                                  [this, next = std::move(next)] { arriveByTeleport(next); });
            }
            break;
        case Intent::sniff: return sniff(seen, std::move(next));
        case Intent::fly: return fly(std::move(next));
        case Intent::phase: return phase(std::move(next));
        case Intent::lick: return lick(std::move(next));
        case Intent::snatch: return snatch(std::move(next));
        case Intent::clone: return clone(std::move(next));
        case Intent::shadowGag: return shadowGag(std::move(next));
        case Intent::prank: return prank(std::move(next));
        default: break;
    }
    sit(nothingToDo, std::move(next));
}

void Companion::patrol(const Surroundings& seen, Done done) {
    const auto target =
        strollTarget(pet_.position(), pet_.ground, seen.spots, patrolRadius, random());
    if (!target) return sit(4, std::move(done));
    if (mood() == Mood::tired) return trudge(std::move(done));
    stroll(*target, std::move(done));
}

void Companion::visit(const Surroundings& seen, Done done) {
    run({going({.to = *seen.cursorSpot, .speed = 70}),
         doing([this] { pet_.faceTowards(cursor()); }), sitting(between(3, 5))},
        std::move(done));
}

void Companion::sniff(const Surroundings& seen, Done done) {
    const Point here = pet_.position();
    const auto target = strollTarget(here, pet_.ground, seen.spots, sniffRadius, random());
    run({going({.to = target.value_or(here), .speed = 35, .animSpeed = 0.7}), playing(a().nod, 3),
         sitting(2)},
        std::move(done));
}

void Companion::bask(Done done) {
    const Anim* lying = a().role("bask");
    const Seconds seconds = between(15, 30);
    pet_.play(lying ? *lying : a().sleep);
    run({waiting(seconds), doing([this] { raise(energy, 0.1); }), playing(a().wake)},
        std::move(done));
}

void Companion::stop(Done then) {
    pet_.interrupt();
    stopChargeSparks();
    if (!pet_.isAirborne()) return then();
    pet_.sprite().removeAnimation("bob");
    pet_.fall(floats() ? Pet::Falling::floating : Pet::Falling::freely, std::move(then));
}

Step Companion::going(const Walk& walk) {
    return [this, walk](Done next) { go(walk, std::move(next)); };
}

Step Companion::sitting(Seconds seconds) {
    return [this, seconds](Done next) { sit(seconds, std::move(next)); };
}

Step Companion::waiting(Seconds seconds) {
    return [this, seconds](Done next) { pet_.after(seconds, std::move(next)); };
}

Step Companion::playing(Anim anim, double times, double speed) {
    return [this, anim = std::move(anim), times, speed](Done next) {
        pet_.play(anim, times, speed);
        pet_.after(anim.duration * times / speed, std::move(next));
    };
}

Step Companion::doing(std::function<void()> act) {
    return [act = std::move(act)](Done next) {
        act();
        next();
    };
}

}  // namespace quibbits
