#include <gtest/gtest.h>

#include <cmath>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

TEST(Mood, FollowsHeatThenChargerThenBattery) {
    struct Row {
        Condition condition;
        Mood mood;
    };
    using enum ThermalState;
    for (const auto& [condition, mood] : std::vector<Row>{
             {{true, critical, true, 100}, Mood::fainted},
             {{true, serious, true, 100}, Mood::tired},
             {{false, critical, false, 100}, Mood::happy},
             {{true, fair, true, 3}, Mood::charging},
             {{true, nominal, false, 5}, Mood::fainted},
             {{true, nominal, false, 6}, Mood::tired},
             {{true, nominal, false, 20}, Mood::tired},
             {{true, nominal, false, 21}, Mood::happy},
         }) {
        EXPECT_EQ(moodFor(condition), mood)
            << condition.level << " " << static_cast<int>(condition.thermalState);
    }
}

TEST(TimedExperience, IsHalvedByTirednessAndGrowsWithFriendship) {
    EXPECT_NEAR(expShare({.minutes = 1, .friendship = 255}), 0.02, 1e-12);
    EXPECT_NEAR(expShare({.minutes = 1, .friendship = 0}), 0.006, 1e-12);
    EXPECT_NEAR(expShare({.minutes = 5, .friendship = 999, .tired = true}), 0.05, 1e-12);
    EXPECT_NEAR(expShare({.minutes = 1, .friendship = 255, .rate = GrowthRate::mediumSlow}),
                0.02 * 1000000 / 1059860, 1e-12);
}

TEST(Needs, DriftByTheMinuteAndCountAnAbsenceAsFiveMinutes) {
    LivingCreature life({.defaults = {{"pet.energy", 0.9}, {"pet.hunger", 0.2}}});
    life.untilDecisions(1);
    const double hungerBefore = life.creature().needs().hunger;
    life.computer.runLoop.shiftClock(86400);  // the computer slept for a day
    life.untilDecisions(1);
    EXPECT_NEAR(life.creature().needs().hunger - hungerBefore, 5.0 / 40, 1e-9);
    EXPECT_GE(life.creature().needs().energy, 0);
}

TEST(Needs, HungerStandsStillWhileItIsSwitchedOff) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.7}, {"hunger", false}}});
    life.advance(3600);
    EXPECT_EQ(life.creature().needs().hunger, 0.7);
    EXPECT_EQ(life.creature().needs().hungryMinutes, 0);
    EXPECT_EQ(std::ranges::count(life.decisions, Intent::askForBerry), 0);
}

TEST(Needs, ADayOfHungerHurtsOnceAndTheCounterBeginsAgain) {
    LivingCreature life(
        {.defaults = {
             {"pet.hunger", 0.9}, {"pet.hungryMinutes", 479.9}, {"pet.friendship", 100.0}}});
    life.advance(150);
    EXPECT_TRUE(life.hasSaid("Sparrel went hungry all day…"));
    EXPECT_NEAR(life.creature().needs().friendship, 90, 1e-9);
    EXPECT_GT(life.creature().needs().hungryMinutes, 0);
    EXPECT_LT(life.creature().needs().hungryMinutes, 3);
    EXPECT_EQ(life.computer.defaults.onlyNumber("pet.hungryMinutes"),
              life.creature().needs().hungryMinutes);
}

TEST(Needs, WithFeelingsOffADayOfHungerOnlyBeginsTheCountAgain) {
    LivingCreature life(
        {.defaults = {{"pet.hunger", 0.9}, {"pet.hungryMinutes", 479.9}, {"relationship", false}}});
    life.advance(60);
    EXPECT_FALSE(life.hasSaid("Sparrel went hungry all day…"));
    EXPECT_EQ(life.creature().needs().friendship, 120);
    EXPECT_LT(life.creature().needs().hungryMinutes, 2);
}

TEST(Experience, ALevelUpTellsTheNewMoveAndNotifiesOnce) {
    const double almost = expForLevel(GrowthRate::mediumFast, 8) - 0.001;
    LivingCreature life({.defaults = {{"pet.exp", almost}, {"pet.friendship", 100.0}}});
    life.creature().gainEXP(0.1);
    EXPECT_EQ(life.creature().level(), 8);
    EXPECT_TRUE(life.hasSaid("Sparrel learned Mirror Step!"));
    EXPECT_NEAR(life.creature().needs().friendship, 102, 1e-9);
    const auto& sent = life.computer.notifications.delivered.at("pet.level");
    EXPECT_EQ(sent.title, "Sparrel grew to Lv 8!");
    EXPECT_EQ(sent.body, "It learned Mirror Step.");
    EXPECT_EQ(sent.pet, "pet");
}

TEST(Experience, TwoLevelsAtOnceAreToldAsOneWithTheLastLevel) {
    LivingCreature life({.defaults = {{"pet.exp", expForLevel(GrowthRate::mediumFast, 30)}}});
    life.creature().gainEXP(2.5);
    const int level = life.creature().level();
    EXPECT_GE(level, 32);
    EXPECT_TRUE(life.hasSaid("Sparrel learned Discharge!"));
    EXPECT_EQ(life.computer.notifications.delivered.at("pet.level").title,
              "Sparrel grew to Lv " + std::to_string(level) + "!");
}

TEST(Experience, StopsAtTheHighestLevelAndNeverBeginsInAnEgg) {
    LivingCreature life({.defaults = {{"pet.exp", expForLevel(GrowthRate::mediumFast, 99)}}});
    life.creature().gainEXP(3);
    const double reached = life.creature().identity().exp;
    EXPECT_EQ(life.creature().level(), 100);
    life.creature().gainEXP(3);
    EXPECT_EQ(life.creature().identity().exp, reached);
    EXPECT_EQ(life.creature().stats().levelProgress, 1.0);

    LivingCreature egg({.stage = "egg"});
    egg.creature().gainEXP(3);
    EXPECT_EQ(egg.creature().identity().exp, 0);
}

TEST(Shimmerpox, DoublesExperienceUntilItsDateAndIsThenCuredForGood) {
    LivingCreature life({.defaults = {{"QuibRus", true}}});
    life.computer.defaults.remove("pet.shimmerpox");
    life.quit();
    life.launch();
    Companion& creature = life.creature();
    ASSERT_TRUE(creature.hasShimmerpox());
    EXPECT_EQ(creature.stats().shimmerpox, PetStats::Shimmerpox::infected);
    EXPECT_TRUE(life.hasSaid("Sparrel caught Shimmerpox! EXP gain is doubled for a while."));
    const Seconds lasts = *creature.identity().shimmerpoxUntil - life.computer.runLoop.date();
    EXPECT_NEAR(std::round(lasts / 86400), lasts / 86400, 1e-3);
    EXPECT_GE(lasts, 86400 - 1);
    EXPECT_LE(lasts, 4 * 86400 + 1);

    const double before = creature.identity().exp;
    creature.gainEXP(0.01);
    const double span = expForLevel(GrowthRate::mediumFast, creature.level() + 1) -
                        expForLevel(GrowthRate::mediumFast, creature.level());
    EXPECT_NEAR(creature.identity().exp - before, 0.02 * span, 1e-9);

    life.computer.runLoop.shiftClock(5 * 86400);
    EXPECT_EQ(creature.stats().shimmerpox, PetStats::Shimmerpox::cured);
    life.advance(600);
    EXPECT_FALSE(creature.hasShimmerpox());
}

TEST(Fainting, AnEmptyBatteryLaysItDownAndAChargerOrAFullerOneWakesIt) {
    LivingCreature life({.battery = 30});
    life.advance(5);
    life.computer.setBattery(4, false);
    EXPECT_TRUE(life.creature().presence().isFainted());
    life.advance(1);
    const auto decided = life.decisions.size();
    life.advance(3600);
    EXPECT_EQ(life.decisions.size(), decided) << "a fainted creature decides nothing";
    ASSERT_NE(life.pet().sprite().animation("frames"), nullptr);

    life.computer.setBattery(50, false);
    EXPECT_FALSE(life.creature().presence().isFainted());
    life.advance(2);
    EXPECT_GT(life.decisions.size(), decided);
}

TEST(Fainting, ACreatureThatStartsOnAnEmptyBatteryWaitsForPower) {
    LivingCreature life({.battery = 2});
    life.advance(600);
    EXPECT_TRUE(life.decisions.empty());
    EXPECT_TRUE(life.creature().presence().isFainted());
    life.computer.setBattery(2, true);
    life.advance(5);
    EXPECT_FALSE(life.decisions.empty());
}

TEST(Charging, TheElectricLineDrinksItInsteadOfGrowingHungry) {
    LivingCreature life(
        {.defaults = {{"pet.energy", 0.3}, {"pet.hunger", 0.5}}, .battery = 50, .charging = true});
    life.advance(1200);
    EXPECT_LT(life.creature().needs().hunger, 0.1);
    EXPECT_GT(life.creature().needs().energy, 0.6);
}

}  // namespace
}  // namespace quibbits
