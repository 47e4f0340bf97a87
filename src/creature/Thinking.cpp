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
    if (!isFree()) return sleepOn();
    if (focusQuiet) return quietDown();
    greetTheDay();
    chargeSparks_.end();
    if (!pet_.surfaceIndex(pet_.position())) standUp();  // the ground changed while it was busy
    if (pet_.isAirborne()) {
        pet_.fall(falling(), [this] {
            bobbing_.end();
            think();
        });
        return save();
    }
    const Mood present = mood();
    if (present == Mood::fainted) {
        faint();  // again, where a reaction got it up
        return save();
    }
    isFainted = false;  // power may have come back while it was held or asleep
    if (present == Mood::charging) energy = std::min(energy + chargedByThinking, 1.0);

    const std::vector<Ground> spots = pet_.openSpots();
    std::vector<Ground> tiles;
    std::ranges::copy_if(spots, std::back_inserter(tiles), [](auto& g) { return !g.solid; });
    Surroundings seen{.spots = spots, .newFile = noticeNewFiles(tiles)};

    const double minutes = std::min(since(lastThought_) / 60, mostMinutes);
    lastThought_ = mark();
    needsStep(minutes);

    if (isOn(Setting::exploreFiles)) seen.file = fileToExplore(tiles);
    seen.cursorSpot = spotNearCursor(pet_.position(), cursor(), spots);

    Mind mind = makeMind(seen);
    fill(mind);
    const Intent intent = brain_.decide(mind, {date(), now()}, random());
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
    if (intent == Intent::play && !hasJustSpoken_) {
        return speak({.moment = Moment::playing,
                      .face = bubble->face,
                      .thought = bubble->thought(),
                      .silent = intentBubble});
    }
    muse(bubble->face, {.thought = bubble->thought(), .seconds = intentBubble});
}

void Companion::act(Intent intent, const Surroundings& seen, Done next) {
    if (lastIntent_ != intent) showIntent(intent, seen);
    lastIntent_ = intent;
    begin(intent, seen, std::move(next));
}

void Companion::begin(Intent intent, const Surroundings& seen, Done next) {
    constexpr Seconds nothingToDo = 3;
    switch (intent) {
        case Intent::nap: return nap(std::move(next));
        case Intent::rest: return rest(std::move(next));
        case Intent::sit: return sitQuietly(std::move(next));
        case Intent::askForBerry: return askForBerry(seen.cursorSpot, std::move(next));
        case Intent::inspect:
            if (seen.newFile) return inspect(*seen.newFile, std::move(next));
            return sit(nothingToDo, std::move(next));
        case Intent::explore:
            if (seen.file) return explore(*seen.file, std::move(next));
            return sit(nothingToDo, std::move(next));
        case Intent::patrol: return patrol(seen, std::move(next));
        case Intent::visit:
            if (seen.cursorSpot) return visit(seen, std::move(next));
            return sit(nothingToDo, std::move(next));
        case Intent::play: return play(std::move(next));
        case Intent::dance: return dance(std::move(next));
        case Intent::chargeUp: return chargeUp(std::move(next));
        case Intent::surfLaps: return surfLaps(seen.spots, std::move(next));
        case Intent::levitate: return levitate(Air::free, std::move(next));
        case Intent::teleport:
            if (seen.cursorSpot) return teleport(*seen.cursorSpot, std::move(next));
            return sit(nothingToDo, std::move(next));
        case Intent::daydream: return daydream(std::move(next));
        case Intent::yawn: return yawn(std::move(next));
        case Intent::sniff: return sniff(seen, std::move(next));
        case Intent::hum: return hum(std::move(next));
        case Intent::bask: return bask(std::move(next));
        case Intent::fly: return fly(std::move(next));
        case Intent::phase: return phase(std::move(next));
        case Intent::lick: return lick(std::move(next));
        case Intent::snatch: return snatch(std::move(next));
        case Intent::clone: return clone(std::move(next));
        case Intent::shadowGag: return shadowGag(std::move(next));
        case Intent::prank: return prank(std::move(next));
    }
}

void Companion::patrol(const Surroundings& seen, Done done) {
    const auto target = strollTarget(seen.spots, patrolRadius);
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
    const auto target = strollTarget(seen.spots, sniffRadius);
    run({going({.to = target.value_or(here), .speed = 35, .animSpeed = 0.7}), playing(a().nod, 3),
         sitting(2)},
        std::move(done));
}

void Companion::stop(Done then) {
    breakOff();
    comeDown(std::move(then));
}

void Companion::breakOff() {
    giveBack();
    pet_.interrupt();
}

void Companion::comeDown(Done then) {
    if (!pet_.isAirborne()) return then();
    pet_.fall(falling(), std::move(then));
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
