// Scenes on cue.

#include <gtest/gtest.h>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

LivingCreature demo(const std::string& word, LivingCreature::Options options = {}) {
    options.defaults["QuibDemo"] = word;
    return LivingCreature(std::move(options));
}

TEST(ADemo, OnTheDockClimbsItAndLeavesItOnTheOtherSide) {
    LivingCreature::Options options;
    options.prepare = [](SimulatedComputer& c) { c.setDock(Rect{400, 0, 600, 70}); };
    options.defaults["QuibDemo"] = std::string("dock");
    LivingCreature life(options);
    EXPECT_EQ(life.pet().position(), (Point{240, 0}));
    EXPECT_TRUE(life.creature().isInDemo());
    double highest = 0;
    double farthest = 0;
    for (int i = 0; i < 600 && life.decisions.empty(); ++i) {
        life.advance(0.1);
        if (!life.pet().node().animation("move"))
            highest = std::max(highest, life.pet().position().y);
        farthest = std::max(farthest, life.pet().position().x);
    }
    EXPECT_EQ(highest, 70);
    EXPECT_EQ(farthest, 1120);
    EXPECT_FALSE(life.creature().isInDemo());
    EXPECT_FALSE(life.decisions.empty());
}

TEST(ADemo, OfFilesVisitsTheNearestAndTheHighestBesideIt) {
    LivingCreature::Options options;
    options.defaults["QuibDemo"] = std::string("files");
    options.defaults["overApps"] = false;
    options.prepare = [](SimulatedComputer& c) {
        c.fileBrowser.icons = {{"low", {460, 20, 60, 60}},
                               {"high", {640, 60, 60, 60}},
                               {"too far", {800, 60, 60, 60}}};
    };
    LivingCreature life(options);
    std::vector<double> stops;
    Point last = life.pet().position();
    for (int i = 0; i < 900 && life.decisions.empty(); ++i) {
        life.advance(0.1);
        const Point now = life.pet().position();
        if (now == last && (stops.empty() || stops.back() != now.x)) stops.push_back(now.x);
        last = now;
    }
    EXPECT_NE(std::ranges::find(stops, 490), stops.end());
    EXPECT_NE(std::ranges::find(stops, 670), stops.end());
    EXPECT_FALSE(life.creature().isInDemo());
}

TEST(ADemo, ThatCannotBePlayedOrIsNotKnownIsOrdinaryLife) {
    for (const char* word : {"dock", "files", "Dock", "float", "lick", ""}) {
        LivingCreature life = demo(word);
        EXPECT_EQ(life.decisions.size(), 1u) << word;
        EXPECT_FALSE(life.creature().isInDemo()) << word;
    }
}

TEST(ADemo, OfADropPicksItUpAgainAndAgain) {
    LivingCreature life = demo("drop");
    int drops = 0;
    bool held = true;
    for (int i = 0; i < 300; ++i) {
        life.advance(0.1);
        if (held && !life.creature().presence().isHeld()) ++drops;
        held = life.creature().presence().isHeld();
    }
    EXPECT_GE(drops, 5);
}

TEST(ADemo, ShowsALevelAMealABreakAndPlay) {
    LivingCreature grown = demo("levelup");
    EXPECT_EQ(grown.creature().level(), 2);
    EXPECT_FALSE(grown.decisions.empty());
    LivingCreature fed = demo("feed");
    fed.advance(12);
    EXPECT_LT(fed.creature().needs().hunger, 0.7);
    LivingCreature resting = demo("break");
    EXPECT_TRUE(resting.decisions.empty());
    resting.advance(2);
    EXPECT_TRUE(resting.computer.notifications.delivered.contains("break"));
    LivingCreature playing = demo("play");
    playing.advance(60);
    EXPECT_TRUE(playing.decisions.empty());
    EXPECT_LT(playing.creature().needs().energy, 0.5);
}

TEST(ADemo, OfASpeciesComesFirst) {
    LivingCreature mizzle = demo("evolve", {.stage = "mizzle"});
    EXPECT_EQ(mizzle.creature().offer(), (Evolution{.to = Stage::sparrel}));
    EXPECT_FALSE(mizzle.decisions.empty());
    LivingCreature wispul = demo("evolve", {.store = "umbrool", .stage = "wispul"});
    wispul.advance(1.1);
    EXPECT_EQ(wispul.creature().offer(), (Evolution{.to = Stage::gloamer}));
    for (const char* word :
         {"fly", "phase", "lick", "clone", "shadow", "prank", "boo", "gloomorb"}) {
        LivingCreature ghost = demo(word, {.store = "umbrool", .stage = "umbrool"});
        ghost.advance(120);
        EXPECT_TRUE(ghost.decisions.empty()) << word;
        EXPECT_TRUE(ghost.computer.files.trash.empty());
        ghost.creature().hook("done");
        ghost.advance(20);
        EXPECT_FALSE(ghost.decisions.empty()) << word;  // anything else ends it
    }
}

}  // namespace
}  // namespace quibbits
