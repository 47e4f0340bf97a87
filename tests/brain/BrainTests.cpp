#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "brain/Brain.h"
#include "brain/Scores.h"

namespace quibbits {
namespace {

const Brain::When noon{Date{1'000'000}, 5000};

const Option& optionOf(const std::vector<Option>& options, Intent intent) {
    const auto found = std::ranges::find(options, intent, &Option::intent);
    if (found == options.end()) std::abort();
    return *found;
}

double scoreOf(const Mind& mind, Intent intent) {
    return optionOf(Brain::score(mind), intent).score;
}

double product(const Reasons& reasons) {
    double value = 1;
    for (const Reason& reason : reasons) value *= reason.value;
    return value;
}

std::optional<double> reasonOf(const Option& option, std::string_view label) {
    for (const Reason& reason : option.reasons) {
        if (reason.label == label) return reason.value;
    }
    return std::nullopt;
}

/// What an option is worth before any reason.
double baseOf(Intent intent, const Mind& mind) {
    using enum Intent;
    static const std::map<Intent, double> bases{
        {nap, 1},         {rest, 0.75},    {sit, 1},        {askForBerry, 1}, {inspect, 0.95},
        {explore, 0.6},   {patrol, 0.65},  {visit, 0.5},    {play, 0.85},     {dance, 0.85},
        {chargeUp, 0.45}, {surfLaps, 0.6}, {levitate, 0.9}, {teleport, 0.4},  {daydream, 0.5},
        {yawn, 0.7},      {sniff, 0.45},   {hum, 0.4},      {bask, 0.5},      {fly, 0.95},
        {phase, 0.8},     {lick, 0.6},     {snatch, 1.3},   {clone, 0.55},    {shadowGag, 0.45},
        {prank, 0.65},
    };
    static const std::map<Intent, double> coralianBases{
        {explore, 0.45}, {patrol, 0.3}, {play, 0.55}};
    const bool own = mind.coralian && coralianBases.contains(intent);
    double base = (own ? coralianBases : bases).at(intent);
    if (intent == nap || intent == rest || intent == yawn)
        base *= mind.nature.isSleepy() ? 1.25 : 1;
    if (intent == visit && mind.nature.isShy()) base = 0.25;
    if (intent == play) base *= mind.nature.playfulness() / 3.0;
    return base;
}

constexpr std::array flags{
    &Mind::night,          &Mind::daytime,         &Mind::charging,        &Mind::lowBattery,
    &Mind::music,          &Mind::hungerOn,        &Mind::caring,          &Mind::newFile,
    &Mind::filesToExplore, &Mind::cursorReachable, &Mind::openAir,         &Mind::canPlay,
    &Mind::knowsChargeOrb, &Mind::knowsPsychic,    &Mind::coralian,        &Mind::ghost,
    &Mind::windowToHaunt,  &Mind::canLick,         &Mind::cursorLeftAlone, &Mind::shadowTricks,
    &Mind::canPrank,       &Mind::ghostHour,
};

Mind anyMind(Random& random) {
    Mind mind;
    for (double* number :
         {&mind.energy, &mind.hunger, &mind.friendship, &mind.boredom, &mind.neglect}) {
        *number = random.uniform(0, 1);
    }
    for (const auto flag : flags) mind.*flag = random.coin();
    mind.nature = random.pick(Nature::all());
    return mind;
}

/// Lively, fond of its user, bored, and with everything at hand that its kind could want.
Mind eagerMind(bool Mind::*kind = nullptr) {
    Mind mind{.energy = 0.8, .hunger = 1, .friendship = 1, .boredom = 1, .neglect = 1};
    for (const auto flag : flags) mind.*flag = true;
    mind.coralian = mind.ghost = mind.night = mind.ghostHour = false;
    if (kind) mind.*kind = true;
    return mind;
}

TEST(Curves, AreFlatOutsideTheirEndsAndSteepestBetween) {
    for (const auto& [v, expected] : std::vector<std::pair<double, double>>{{-1, 0},
                                                                            {0.3, 0},
                                                                            {0.375, 0.15625},
                                                                            {0.45, 0.5},
                                                                            {0.525, 0.84375},
                                                                            {0.6, 1},
                                                                            {9, 1}}) {
        EXPECT_NEAR(rise(v, 0.3, 0.6), expected, 1e-12) << v;
        EXPECT_NEAR(fall(v, 0.6, 0.3), 1 - expected, 1e-12) << v;
    }
}

TEST(Scores, AreTheirBaseTimesEveryReasonThatIsTold) {
    Random random(11);
    for (int i = 0; i < 2000; ++i) {
        const Mind mind = anyMind(random);
        for (const Option& option : Brain::score(mind)) {
            EXPECT_NEAR(option.score, baseOf(option.intent, mind) * product(option.reasons), 1e-12)
                << rawValue(option.intent);
            EXPECT_GE(option.score, 0);
        }
    }
}

TEST(Scores, AreGivenForWhatTheKindOfCreatureCanDo) {
    const auto intents = [](const Mind& mind) {
        std::vector<Intent> list;
        for (const Option& option : Brain::score(mind)) list.push_back(option.intent);
        return std::vector<Intent>(list.begin() + 15, list.end());
    };
    using enum Intent;
    EXPECT_EQ(intents({}), std::vector<Intent>{chargeUp});
    EXPECT_EQ(intents({.coralian = true}), (std::vector{levitate, teleport, surfLaps}));
    EXPECT_EQ(intents({.coralian = true, .ghost = true}),
              (std::vector{levitate, teleport, surfLaps}));
    EXPECT_EQ(intents({.ghost = true}),
              (std::vector{fly, phase, lick, snatch, clone, shadowGag, prank}));
}

TEST(Scores, AreZeroWithoutTheOneThingThatAnOptionNeeds) {
    using enum Intent;
    constexpr bool Mind::*plain = nullptr;
    struct Need {
        bool Mind::*kind;
        Intent intent;
        bool Mind::*thing;
    };
    for (const auto& [kind, intent, thing] : std::vector<Need>{
             {plain, askForBerry, &Mind::hungerOn},
             {plain, inspect, &Mind::newFile},
             {plain, explore, &Mind::filesToExplore},
             {plain, visit, &Mind::cursorReachable},
             {plain, play, &Mind::canPlay},
             {plain, dance, &Mind::music},
             {plain, bask, &Mind::daytime},
             {plain, chargeUp, &Mind::charging},
             {plain, chargeUp, &Mind::knowsChargeOrb},
             {&Mind::coralian, levitate, &Mind::openAir},
             {&Mind::coralian, teleport, &Mind::knowsPsychic},
             {&Mind::coralian, teleport, &Mind::cursorReachable},
             {&Mind::coralian, surfLaps, &Mind::charging},
             {&Mind::ghost, phase, &Mind::windowToHaunt},
             {&Mind::ghost, lick, &Mind::canLick},
             {&Mind::ghost, snatch, &Mind::cursorLeftAlone},
             {&Mind::ghost, clone, &Mind::shadowTricks},
             {&Mind::ghost, shadowGag, &Mind::shadowTricks},
             {&Mind::ghost, prank, &Mind::canPrank},
         }) {
        Mind mind = eagerMind(kind);
        EXPECT_GT(scoreOf(mind, intent), 0) << rawValue(intent);
        mind.*thing = false;
        EXPECT_EQ(scoreOf(mind, intent), 0) << rawValue(intent);
    }
}

TEST(Scores, AreTheirWholeBaseForALivelyCreatureWithEverythingAtHand) {
    using enum Intent;
    const std::map<Intent, double> lesser{{nap, 0},  {rest, 0},       {sit, 0.18},
                                          {yawn, 0}, {daydream, 0.2}, {hum, 0}};
    constexpr bool Mind::*plain = nullptr;
    for (const auto kind : {plain, &Mind::coralian, &Mind::ghost}) {
        const Mind mind = eagerMind(kind);
        for (const Option& option : Brain::score(mind)) {
            const auto other = lesser.find(option.intent);
            EXPECT_NEAR(option.score,
                        other == lesser.end() ? baseOf(option.intent, mind) : other->second, 1e-12)
                << rawValue(option.intent);
        }
    }
}

TEST(Scores, OfAnExhaustedCreatureAreForRestAndForWhatTakesNoStrength) {
    using enum Intent;
    constexpr bool Mind::*plain = nullptr;
    for (const auto kind : {plain, &Mind::coralian, &Mind::ghost}) {
        Mind mind = eagerMind(kind);
        mind.energy = 0.15;
        for (const Option& option : Brain::score(mind)) {
            const bool easy = option.intent == nap || option.intent == rest ||
                              option.intent == sit || option.intent == askForBerry ||
                              option.intent == chargeUp || option.intent == teleport;
            EXPECT_EQ(option.score > 0, easy) << rawValue(option.intent);
        }
    }
}

TEST(Scores, MakeHalfASleepyCreatureNapAtNightOnly) {
    EXPECT_EQ(scoreOf({.energy = 0.475}, Intent::nap), 0);
    EXPECT_NEAR(scoreOf({.energy = 0.475, .night = true}, Intent::nap), 0.5, 1e-12);
    EXPECT_NEAR(scoreOf({.energy = 0.475, .night = true, .lowBattery = true}, Intent::nap), 0.6,
                1e-12);
}

TEST(TheGhostHour, LiftsMischiefAndLowersRestInGhostsAlone) {
    Random random(5);
    using enum Intent;
    for (int i = 0; i < 200; ++i) {
        Mind mind = anyMind(random);
        mind.coralian = false;
        mind.ghost = true;
        mind.ghostHour = false;
        const auto usual = Brain::score(mind);
        mind.ghostHour = true;
        const auto hour = Brain::score(mind);
        ASSERT_EQ(usual.size(), hour.size());
        for (std::size_t n = 0; n < usual.size(); ++n) {
            double factor = 1;
            for (const Intent lifted : {fly, phase, lick, clone, shadowGag, prank}) {
                if (usual[n].intent == lifted) factor = 1.4;
            }
            for (const Intent lowered : {nap, rest, yawn, bask}) {
                if (usual[n].intent == lowered) factor = 0.6;
            }
            EXPECT_NEAR(hour[n].score, usual[n].score * factor, 1e-12);
            EXPECT_EQ(reasonOf(hour[n], "ghost hour"),
                      factor == 1 ? std::nullopt : std::optional(factor));
        }
    }
    Mind plain = eagerMind();
    plain.ghostHour = true;
    EXPECT_EQ(reasonOf(optionOf(Brain::score(plain), nap), "ghost hour"), std::nullopt);
}

TEST(ADecision, DampsWhatWasDoneLatelyByTheShareOfItsCoolDown) {
    const Mind mind{.energy = 1, .boredom = 1};
    const double fresh = scoreOf(mind, Intent::patrol);
    struct Row {
        Seconds ago;
        double factor;
    };
    for (const auto& [ago, factor] :
         std::vector<Row>{{0, 0}, {10, 0.5}, {20, 1}, {21, 1}, {1e6, 1}}) {
        Brain brain;
        brain.lastDone[Intent::patrol] = noon.instant - ago;
        Random random(1);
        brain.decide(mind, noon, random);
        const Option& patrol = optionOf(brain.options, Intent::patrol);
        EXPECT_EQ(patrol.reasons.back(), (Reason{"done recently", factor})) << ago;
        EXPECT_NEAR(patrol.score, fresh * factor, 1e-12) << ago;
    }
    Brain brain;
    Random random(1);
    brain.decide(mind, noon, random);
    EXPECT_EQ(reasonOf(optionOf(brain.options, Intent::patrol), "done recently"), std::nullopt)
        << "nothing is told of what was never done";
}

TEST(ADecision, FavoursGoingOnWithNapsSittingAndInspecting) {
    Random random(1);
    for (const Intent intent : {Intent::nap, Intent::sit, Intent::inspect, Intent::patrol}) {
        Mind mind = eagerMind();
        mind.energy = 0.34;
        Brain brain;
        brain.choice = intent;
        brain.lastDone[Intent::nap] = noon.instant - 1;
        brain.decide(mind, noon, random);
        for (const Option& option : brain.options) {
            const bool goesOn = option.intent == intent && intent != Intent::patrol;
            EXPECT_EQ(reasonOf(option, "keeps going").has_value(), goesOn);
            if (!goesOn) continue;
            EXPECT_NEAR(option.score, 1.1 * scoreOf(mind, intent), 1e-12);
        }
        EXPECT_EQ(reasonOf(optionOf(brain.options, Intent::nap), "done recently"), std::nullopt);
    }
    Brain brain;
    brain.choice = Intent::inspect;
    brain.decide({.energy = 1}, noon, random);
    EXPECT_EQ(optionOf(brain.options, Intent::inspect).score, 0);
}

TEST(ADecision, DrawsByScoreAmongThoseCloseToTheBest) {
    // Hunger makes it ask (1.0) about as gladly as a new file makes it look (0.95).
    const auto asks = [](double hunger) {
        const Mind mind{.energy = 1, .hunger = hunger, .hungerOn = true, .newFile = true};
        Random random(8);
        int asked = 0;
        constexpr int draws = 20000;
        for (int i = 0; i < draws; ++i) {
            Brain brain;
            const Intent choice = brain.decide(mind, noon, random);
            EXPECT_TRUE(choice == Intent::askForBerry || choice == Intent::inspect);
            if (choice == Intent::askForBerry) ++asked;
        }
        return static_cast<double>(asked) / draws;
    };
    EXPECT_NEAR(asks(0.9), 1 / 1.95, 0.015);
    const double close = rise(0.82, 0.6, 0.9);  // 0.87 of the best
    EXPECT_NEAR(asks(0.82), close / (close + 0.95), 0.015);
    EXPECT_EQ(asks(0.8), 0) << "0.78 of the best is too far from it";
}

TEST(ADecision, LiesInThePoolIsRememberedAndLeavesTiesInTheirOrder) {
    Random random(21);
    Brain brain;
    Brain::When now = noon;
    for (int i = 0; i < 3000; ++i) {
        now.instant += random.uniform(1, 60);
        now.date = now.date + random.uniform(-7200, 7200);  // somebody sets the clock
        const Mind mind = anyMind(random);
        const Intent choice = brain.decide(mind, now, random);
        const Option& chosen = optionOf(brain.options, choice);
        ASSERT_GT(chosen.score, 0);
        ASSERT_GE(chosen.score, 0.85 * brain.options.front().score);
        ASSERT_EQ(brain.choice, choice);
        ASSERT_EQ(brain.decidedAt, now.date);
        ASSERT_EQ(brain.lastDone.at(choice), now.instant);

        const auto unsorted = Brain::score(mind);
        const auto place = [&](const Option& option) {
            return std::ranges::find(unsorted, option.intent, &Option::intent) - unsorted.begin();
        };
        for (std::size_t n = 1; n < brain.options.size(); ++n) {
            const Option& before = brain.options[n - 1];
            const Option& after = brain.options[n];
            ASSERT_TRUE(before.score > after.score ||
                        (before.score == after.score && place(before) < place(after)));
        }
    }
}

}  // namespace
}  // namespace quibbits
