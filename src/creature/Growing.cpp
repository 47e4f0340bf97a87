// Energy, hunger, boredom and experience: all that time does to a creature, in one place.

#include <algorithm>
#include <cmath>

#include "body/Pixels.h"
#include "creature/Companion.h"

namespace quibbits {

namespace {

constexpr double shimmerpoxOdds = 65536.0 / 3;  // one think in so many
constexpr Seconds day = 86400;

constexpr double hungryBelly = 0.4;
constexpr double hungryDay = 480;  // minutes of hunger that hurt
constexpr double hurtFriendship = 10;

}  // namespace

void Companion::needsStep(double minutes) {
    if (!identity_.shimmerpoxUntil) {
        const bool chance = random().below(shimmerpoxOdds) < 1;
        if (chance || computer().defaults.boolean("QuibRus")) catchShimmerpox();
    }
    if (!absorbsCharge(minutes) && isOn(Setting::hunger)) {
        needs_.growHungry(minutes / minutesToStarve);
    }
    needs_.pass(minutes);
    gainEXP(expShare(
        {.minutes = minutes,
         .friendship = isOn(Setting::relationship) ? needs().friendship : indifferentFriendship,
         .rate = growthRate(stage()),
         .tired = mood() == Mood::tired}));
    if (isOn(Setting::hunger) && needs().belly() < hungryBelly) growHungry(minutes);
}

void Companion::growHungry(double minutes) {
    needs_.countHunger(minutes);
    saveHungryMinutes();
    if (needs().hungryMinutes < hungryDay) return;
    needs_.forgetHunger();
    saveHungryMinutes();
    if (!isOn(Setting::relationship)) return;
    befriend(-hurtFriendship);
    feel(Face::crying, {.caption = name() + " went hungry all day…",
                        .thought = Pixels::item(Item::azurine),
                        .seconds = 4.0});
}

bool Companion::absorbsCharge(double) {
    return false;
}

void Companion::gainEXP(double share) {
    if (stage() == Stage::egg) return;
    const int before = level();
    if (before == maxLevel) return;
    const MoveNames knewBefore = known();
    const GrowthRate rate = growthRate(stage());
    const double span = expForLevel(rate, before + 1) - expForLevel(rate, before);
    identity_.exp += share * (hasShimmerpox() ? 2.0 : 1.0) * span;
    if (level() > before) levelUp(knewBefore);
}

void Companion::levelUp(const MoveNames& knewBefore) {
    befriend(2);
    refreshMoves();
    const MoveNames knowsNow = known();
    const auto moves = learnset();
    const auto learnt = std::ranges::find_if(moves, [&](const Move& move) {
        return knowsNow.contains(move.name) && !knewBefore.contains(move.name);
    });
    const bool isNew = learnt != moves.end();

    pet_.sparks(20, 0.5);
    const std::string grew = name() + " grew to Lv " + std::to_string(level()) + "!";
    const std::string move = isNew ? std::string(learnt->name) : std::string();
    feel(isNew ? Face::inspired : Face::joyous,
         {.caption = isNew ? name() + " learned " + move + "!" : grew, .seconds = 3.5});
    notify({.title = grew,
            .body = isNew ? "It learned " + move + "." : "Keep it company to help it grow.",
            .suffix = "level"});
    didLevelUp();
    save();
}

void Companion::befriend(double amount) {
    if (!isOn(Setting::relationship)) return;
    needs_.befriend(amount);
}

void Companion::catchShimmerpox() {
    const auto days = static_cast<double>(1 + random().index(4));
    identity_.shimmerpoxUntil = date() + days * day;
    save();
    feel(Face::surprised,
         {.caption = name() + " caught Shimmerpox! EXP gain is doubled for a while.",
          .seconds = 4.0});
}

void Companion::faint() {
    presence_.faint();
    stop([this] { lieDown(); });
}

void Companion::lieDown() {
    muse(Face::pain, {.seconds = 2.5});
    pet_.play(a().faint, 1);  // and there it lies, until its mood is better
}

void Companion::recover() {
    presence_.comeRound();
    stop([this] { run({playing(a().wake)}, [this] { think(); }); });
}

}  // namespace quibbits
