#include <gtest/gtest.h>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

TEST(Thinking, GoesOnByItselfForADayWithoutGettingStuck) {
    for (const std::uint64_t seed : {1u, 2u, 3u}) {
        LivingCreature life({.seed = seed});
        for (int tenMinutes = 0; tenMinutes < 144; ++tenMinutes) {
            const auto before = life.decisions.size();
            life.advance(600);
            EXPECT_GT(life.decisions.size(), before) << "seed " << seed;
        }
    }
}

TEST(Thinking, StopsForEachOfItsBlocksAndSavesNothingThen) {
    LivingCreature life({});
    Companion& creature = life.creature();
    creature.stop([] {});
    struct Block {
        std::function<void(Presence&)> set;
        std::function<void(Presence&)> lift;
    };
    for (const auto& [set, lift] : std::vector<Block>{
             {&Presence::pickUp, &Presence::putDown},
             {&Presence::beginToEvolve, &Presence::haveEvolved},
             {&Presence::doze, &Presence::wake},
         }) {
        set(CompanionProbe::presence(creature));
        const auto before = life.decisions.size();
        creature.think();
        EXPECT_EQ(life.decisions.size(), before);
        lift(CompanionProbe::presence(creature));
    }
    CompanionProbe::presence(creature).put(false);
    const auto before = life.decisions.size();
    creature.think();
    EXPECT_EQ(life.decisions.size(), before);
}

TEST(Thinking, InTheAirItFallsFirstAndDecidesOnLanding) {
    LivingCreature life({});
    life.creature().stop([] {});
    life.pet().drag({500, 400});
    const auto before = life.decisions.size();
    life.creature().think();
    EXPECT_EQ(life.decisions.size(), before);
    life.advance(0.56);
    EXPECT_EQ(life.decisions.size(), before);
    life.advance(0.05);  // a fall of 400 points takes 0.577 s
    EXPECT_EQ(life.decisions.size(), before + 1);
    EXPECT_NEAR(life.pet().position().y, 0, 1e-9);
}

TEST(Thinking, BoredomIsBurntByActiveChoicesAndGrowsWithTimeAndSitting) {
    LivingCreature life({});
    life.untilDecisions(300);
    for (std::size_t i = 1; i < life.decisions.size(); ++i) {
        const Intent chosen = life.decisions[i - 1];
        double expected = life.minds[i - 1].boredom;
        if (isActive(chosen)) expected = std::max(expected - 0.3, 0.0);
        if (chosen == Intent::sit) expected = std::min(expected + 0.12, 1.0);
        const double minutes = (life.times[i] - life.times[i - 1]) / 60;
        expected = std::min(expected + minutes * 0.125, 1.0);
        EXPECT_NEAR(life.minds[i].boredom, expected, 1e-9) << i << rawValue(chosen);
    }
}

TEST(Thinking, TheMindTellsWhatTheCreatureKnows) {
    LivingCreature life({.defaults = {{"pet.exp", expForLevel(GrowthRate::mediumFast, 12)},
                                      {"pet.friendship", 204.0},
                                      {"relationship", false}},
                         .begin = {.year = 2026, .month = 3, .day = 2, .hour = 16, .minute = 59}});
    const Mind mind = life.minds.front();
    EXPECT_TRUE(mind.daytime);
    EXPECT_FALSE(mind.night);
    EXPECT_FALSE(mind.charging);
    EXPECT_FALSE(mind.caring);
    EXPECT_TRUE(mind.hungerOn);
    EXPECT_TRUE(mind.canPlay);
    EXPECT_TRUE(mind.knowsChargeOrb);
    EXPECT_FALSE(mind.knowsPsychic);
    EXPECT_FALSE(mind.ghost);
    EXPECT_NEAR(mind.friendship, 0.8, 1e-9);

    LivingCreature night(
        {.begin = {.year = 2026, .month = 3, .day = 2, .hour = 23}, .battery = 15});
    EXPECT_TRUE(night.minds.front().night);
    EXPECT_FALSE(night.minds.front().daytime);
    EXPECT_TRUE(night.minds.front().lowBattery);
}

TEST(Thinking, MusicCountsOnlyWhilePlayingAndSwitchedOn) {
    LivingCreature life({});
    life.computer.setMusic("Playing");
    life.untilDecisions(1);
    EXPECT_TRUE(life.minds.back().music);
    life.computer.defaults.set("music", false);
    life.untilDecisions(1);
    EXPECT_FALSE(life.minds.back().music);
    life.computer.defaults.set("music", true);
    life.computer.setMusic("Paused");
    life.untilDecisions(1);
    EXPECT_FALSE(life.minds.back().music);
}

TEST(Stopping, BreaksOffAWalkAndGoesOnInTheSameTurn) {
    LivingCreature life({});
    Companion& creature = life.creature();
    creature.stop([] {});
    bool arrived = false;
    creature.go({.to = {1200, 0}, .speed = 100}, [&] { arrived = true; });
    life.advance(2);
    const Point seen = life.pet().position();
    bool stopped = false;
    creature.stop([&] { stopped = true; });
    EXPECT_TRUE(stopped);
    EXPECT_EQ(life.pet().position(), seen);
    life.advance(60);
    EXPECT_FALSE(arrived);
    EXPECT_EQ(life.pet().position(), seen);
}

TEST(FocusMode, PutsACreatureToSleepUntilItEnds) {
    LivingCreature life({});
    life.creature().hook("focus");
    EXPECT_TRUE(life.creature().presence().isDozing());
    const auto before = life.decisions.size();
    life.advance(3600);
    EXPECT_EQ(life.decisions.size(), before);
    EXPECT_EQ(life.computer.defaults.onlyBoolean("focus.on"), true);
    life.quit();
    life.launch();
    life.advance(60);
    EXPECT_TRUE(life.creature().presence().isDozing()) << "focus outlives the program";
    life.creature().hook("unfocus");
    life.advance(10);
    EXPECT_FALSE(life.creature().presence().isDozing());
    EXPECT_GT(life.decisions.size(), before);
}

TEST(FocusMode, ThatWasNeverOnEndsWithoutAWord) {
    LivingCreature life({});
    life.advance(5);
    life.utterances.clear();
    const auto decided = life.decisions.size();
    life.creature().hook("unfocus");
    EXPECT_TRUE(life.utterances.empty());
    EXPECT_EQ(life.decisions.size(), decided);
}

TEST(FocusMode, EndsAFaintThatPowerEndedMeanwhile) {
    LivingCreature life({});
    life.advance(20);
    const Point at = life.pet().position();
    life.computer.movePointer({at.x, at.y + 25});
    life.computer.press(MouseButton::left);
    life.app->open({"quibbits://focus"});
    life.computer.setBattery(3, false);
    life.computer.release(MouseButton::left);
    life.advance(5);
    ASSERT_TRUE(life.creature().presence().isFainted());
    ASSERT_FALSE(life.creature().presence().isDozing());
    life.computer.setBattery(60, false);
    life.advance(5);
    EXPECT_TRUE(life.creature().presence().isFainted());
    life.app->open({"quibbits://unfocus"});
    EXPECT_FALSE(life.creature().presence().isFainted());
    const auto decided = life.decisions.size();
    life.advance(60);
    EXPECT_GT(life.decisions.size(), decided);
}

TEST(TheMorning, IsGreetedOnceADayFromFiveOn) {
    struct Row {
        int hour;
        const char* caption;
    };
    for (const auto& [hour, caption] : std::vector<Row>{
             {5, "Good morning!"}, {12, "Good afternoon!"}, {18, "Good evening!"}, {4, nullptr}}) {
        LivingCreature life({.defaults = {{"pet.greeted", Date{0}}},
                             .begin = {.year = 2026, .month = 3, .day = 2, .hour = hour}});
        EXPECT_EQ(life.hasSaid(caption ? caption : "Good morning!"), caption != nullptr) << hour;
        life.utterances.clear();
        life.advance(600);
        EXPECT_FALSE(caption && life.hasSaid(caption)) << hour;
    }
}

TEST(AWordFromOutside, OfFailureLaysItDownForEightSecondsWhateverHappensMeanwhile) {
    LivingCreature life({});
    life.creature().hook("fail");
    EXPECT_TRUE(life.creature().presence().isFainted());
    const auto before = life.decisions.size();
    life.advance(7.9);
    EXPECT_EQ(life.decisions.size(), before);
    life.advance(3);
    EXPECT_FALSE(life.creature().presence().isFainted());
    EXPECT_GT(life.decisions.size(), before);

    life.creature().hook("error");
    life.advance(4);
    life.creature().hook("pass");
    life.advance(20);
    EXPECT_FALSE(life.creature().presence().isFainted());
}

TEST(AWordFromOutside, OfFailureCountsItsEightSecondsFromWhereItHasComeDown) {
    LivingCreature ghost({.store = "umbrool", .stage = "gloamer"});
    ghost.creature().stop([] {});
    ghost.pet().drag({700, 700});
    ghost.app->open({"quibbits://fail"});
    const Instant heard = ghost.computer.runLoop.now();
    while (ghost.pet().isAirborne()) ghost.advance(0.05);
    const Seconds fall = ghost.computer.runLoop.now() - heard;
    EXPECT_GT(fall, 2);
    ghost.advance(7.8);
    EXPECT_TRUE(ghost.creature().presence().isFainted());
    ghost.advance(0.4);
    EXPECT_FALSE(ghost.creature().presence().isFainted());
}

TEST(AnEmptyBattery, LaysItDownAgainAfterWhateverGotItUp) {
    for (const bool asked : {false, true}) {
        LivingCreature life({.battery = 3});
        life.advance(5);
        for (int times = 0; times < 2; ++times) {
            if (asked)
                life.creature().perform("Double");
            else
                life.app->open({"quibbits://celebrate"});
            life.advance(10);
            EXPECT_TRUE(life.creature().presence().isFainted());
            const Rect lying = life.pet().sprite().presentation().contentsRect;
            EXPECT_EQ(lying, life.creature().a().faint.frames.back());
            EXPECT_TRUE(life.decisions.empty());
        }
        life.computer.setBattery(60, false);
        life.untilDecisions(2);
    }
}

TEST(AWordFromOutside, ThatGreetsASleeperGetsItUp) {
    LivingCreature life({});
    life.computer.setUserPresent(false);
    life.advance(400);
    ASSERT_TRUE(life.creature().presence().isDozing());
    life.creature().hook("hello");
    const auto before = life.decisions.size();
    life.advance(10);
    EXPECT_GT(life.decisions.size(), before);
}

TEST(AUserWhoIsBack, ByGrabbingTheSleeperFindsOneHeartbeatInIt) {
    for (const Seconds held : {1.0, 2.2, 3.0}) {
        LivingCreature life({});
        life.computer.setUserPresent(false);
        life.advance(400);
        const Point at = life.pet().position();
        life.computer.movePointer({at.x, at.y + 25});
        life.computer.press(MouseButton::left);
        ASSERT_TRUE(life.creature().presence().isHeld());
        life.computer.setUserPresent(true);
        life.advance(held);
        life.computer.release(MouseButton::left);
        life.advance(10);
        const auto before = life.times.size();
        life.advance(600);
        ASSERT_GT(life.times.size(), before + 1);
        for (std::size_t i = before + 1; i < life.times.size(); ++i) {
            EXPECT_GT(life.times[i] - life.times[i - 1], 0.9) << held;
        }
    }
}

}  // namespace
}  // namespace quibbits
