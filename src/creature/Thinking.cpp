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
constexpr Seconds nothingToDo = 3;  // sits, where an intent finds nothing to act on

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
    if (!presence_.isFree()) return sleepOn();
    if (focusQuiet_) return quietDown();
    greetTheDay();
    chargeSparks_.end();
    if (!pet_.surfaceIndex(pet_.position())) standUp();  // the ground changed while it was busy
    // Looking about may show that what it stood on is no longer there.
    const std::vector<Ground> spots = pet_.stage().openSpots();
    if (pet_.isAirborne()) return comeDownAndThink();
    const Mood present = mood();
    if (present == Mood::fainted) {
        faint();  // again, where a reaction got it up
        return save();
    }
    presence_.comeRound();  // power may have come back while it was held or asleep
    if (present == Mood::charging) needs_.rest(chargedByThinking);

    std::vector<Ground> tiles;
    std::ranges::copy_if(spots, std::back_inserter(tiles), [](auto& g) { return !g.solid; });
    Surroundings seen{.spots = spots, .newFile = noticeNewFiles(tiles)};

    const double minutes = std::min(since(lastThought_) / 60, mostMinutes);
    lastThought_ = mark();
    needsStep(minutes);

    if (isOn(Setting::exploreFiles)) seen.file = fileToExplore(tiles);
    seen.cursorSpot = spotNearCursor(pet_.position(), habitat_.pointer(), spots);

    Mind mind = makeMind(seen);
    fill(mind);
    const Intent intent = brain_.decide(mind, {date(), now()}, random());
    if (isActive(intent)) needs_.amuse(boredomBurnt);
    if (listener_.onDecision) listener_.onDecision(*this, mind);
    act(intent, seen, [this] { think(); });
    save();
}

void Companion::comeDownAndThink() {
    pet_.fall(falling(), [this] {
        bobbing_.end();
        think();
    });
    save();
}

Mind Companion::makeMind(const Surroundings& seen) const {
    const Point above = pet_.position() + Vector{0, airAbove};
    return {.energy = needs().energy,
            .hunger = needs().hunger,
            .friendship = needs().friendship / mostFriendship,
            .boredom = needs().boredom,
            .neglect = hoursSincePetted(),
            .night = isNight(hour()),
            .daytime = hour() >= 9 && hour() <= 16,
            .charging = power().charging(),
            .lowBattery = mood() == Mood::tired,
            .music = isOn(Setting::music) && senses().musicPlaying(),
            .hungerOn = isOn(Setting::hunger),
            .caring = isOn(Setting::relationship),
            .newFile = seen.newFile.has_value(),
            .filesToExplore = seen.file.has_value(),
            .cursorReachable = seen.cursorSpot.has_value(),
            .openAir = floats() && pet_.stage().isVisible(above),
            .canPlay = !unlockedMoves().empty(),
            .knowsChargeOrb = knows("Charge Orb"),
            .knowsPsychic = knows("Psychic"),
            .coralian = isCoralian(),
            .nature = identity_.nature};
}

void Companion::fill(Mind&) {}

void Companion::showIntent(Intent intent, const Surroundings& seen) {
    if (intent == Intent::explore && !seen.file) return;
    if (intent == Intent::teleport && !seen.cursorSpot) return;
    const auto bubble = std::ranges::find(intentBubbles, intent, &IntentBubble::intent);
    if (bubble == intentBubbles.end()) return;
    if (intent == Intent::play && !hasJustSaid()) {
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

bool Companion::beginOwn(Intent, const Done&) {
    return false;
}

void Companion::begin(Intent intent, const Surroundings& seen, Done next) {
    struct Routine {
        Intent intent;
        void (Companion::*plain)(Done) = nullptr;
        void (Companion::*seeing)(const Surroundings&, Done) = nullptr;
    };
    static constexpr std::array routines{
        Routine{.intent = Intent::nap, .plain = &Companion::nap},
        Routine{.intent = Intent::rest, .plain = &Companion::rest},
        Routine{.intent = Intent::sit, .plain = &Companion::sitQuietly},
        Routine{.intent = Intent::askForBerry, .seeing = &Companion::askForBerryHere},
        Routine{.intent = Intent::inspect, .seeing = &Companion::inspectNewFile},
        Routine{.intent = Intent::explore, .seeing = &Companion::exploreFile},
        Routine{.intent = Intent::patrol, .seeing = &Companion::patrol},
        Routine{.intent = Intent::visit, .seeing = &Companion::visit},
        Routine{.intent = Intent::play, .plain = &Companion::play},
        Routine{.intent = Intent::dance, .plain = &Companion::dance},
        Routine{.intent = Intent::chargeUp, .plain = &Companion::chargeUp},
        Routine{.intent = Intent::surfLaps, .seeing = &Companion::surf},
        Routine{.intent = Intent::levitate, .plain = &Companion::levitateFreely},
        Routine{.intent = Intent::teleport, .seeing = &Companion::teleportToCursor},
        Routine{.intent = Intent::daydream, .plain = &Companion::daydream},
        Routine{.intent = Intent::yawn, .plain = &Companion::yawn},
        Routine{.intent = Intent::sniff, .seeing = &Companion::sniff},
        Routine{.intent = Intent::hum, .plain = &Companion::hum},
        Routine{.intent = Intent::bask, .plain = &Companion::bask},
    };
    if (beginOwn(intent, next)) return;
    const auto routine = std::ranges::find(routines, intent, &Routine::intent);
    if (routine == routines.end()) return sit(nothingToDo, std::move(next));
    if (routine->plain) return (this->*routine->plain)(std::move(next));
    (this->*routine->seeing)(seen, std::move(next));
}

void Companion::askForBerryHere(const Surroundings& seen, Done done) {
    askForBerry(seen.cursorSpot, std::move(done));
}

void Companion::inspectNewFile(const Surroundings& seen, Done done) {
    if (!seen.newFile) return sit(nothingToDo, std::move(done));
    inspect(*seen.newFile, std::move(done));
}

void Companion::exploreFile(const Surroundings& seen, Done done) {
    if (!seen.file) return sit(nothingToDo, std::move(done));
    explore(*seen.file, std::move(done));
}

void Companion::teleportToCursor(const Surroundings& seen, Done done) {
    if (!seen.cursorSpot) return sit(nothingToDo, std::move(done));
    teleport(*seen.cursorSpot, std::move(done));
}

void Companion::surf(const Surroundings& seen, Done done) {
    surfLaps(seen.spots, std::move(done));
}

void Companion::patrol(const Surroundings& seen, Done done) {
    const auto target = strollTarget(seen.spots, patrolRadius);
    if (!target) return sit(4, std::move(done));
    if (mood() == Mood::tired) return trudge(std::move(done));
    stroll(*target, std::move(done));
}

void Companion::visit(const Surroundings& seen, Done done) {
    if (!seen.cursorSpot) return sit(nothingToDo, std::move(done));
    run({going({.to = *seen.cursorSpot, .speed = 70}),
         doing([this] { pet_.faceTowards(habitat_.pointer()); }), sitting(between(3, 5))},
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
