#include <gtest/gtest.h>

#include "support/CompanionProbe.h"
#include "support/DialTap.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

TEST(AFirstRun, HasTwoHiddenEggsThatDecideNothing) {
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer({}, sheets, text);
    AppDelegate app(computer.computer(), computer.panels(), computer.viewWindows);
    app.applicationDidFinishLaunching();
    ASSERT_EQ(app.party().size(), 2u);
    for (const auto& creature : app.party()) {
        EXPECT_EQ(creature->stage(), Stage::egg);
        EXPECT_FALSE(creature->presence().isOut());
        EXPECT_TRUE(creature->pet().node().model().hidden);
        EXPECT_EQ(creature->needs().energy, 0.8);
        EXPECT_EQ(creature->needs().hunger, 0.3);
        EXPECT_EQ(creature->needs().friendship, 120);
        EXPECT_EQ(creature->needs().boredom, 0.3);
        EXPECT_EQ(creature->identity().exp, 0);
        EXPECT_EQ(creature->stats().name, "Egg");
    }
    computer.runLoop.advance(3600);
    EXPECT_TRUE(computer.defaults.all().empty()) << "an egg saves nothing";
    EXPECT_EQ(computer.notifications.categories.size(), 2u);
}

TEST(ALaunch, WithoutAScreenSetsUpTheNotificationsAndNothingElse) {
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer({}, sheets, text);
    computer.screens.screen.reset();
    AppDelegate app(computer.computer(), computer.panels(), computer.viewWindows);
    app.applicationDidFinishLaunching();
    EXPECT_EQ(app.stage(), nullptr);
    EXPECT_TRUE(app.party().empty());
    EXPECT_EQ(computer.notifications.categories.size(), 2u);
    computer.runLoop.advance(60);
}

TEST(ALaunch, LeavesTheSavedOneOutAndPutsTheOtherAwayUnseen) {
    struct Row {
        const char* saved;
        const char* out;
    };
    for (const auto& [saved, out] :
         std::vector<Row>{{"umbrool", "umbrool"}, {"pet", "pet"}, {"stranger", "pet"}}) {
        LivingCreature life(
            {.defaults = {{"umbrool.stage", "wispul"}, {"party.out", std::string(saved)}}});
        for (const auto& creature : life.app->party()) {
            EXPECT_EQ(creature->presence().isOut(), creature->store() == out) << saved;
            EXPECT_EQ(creature->pet().node().model().hidden, creature->store() != out) << saved;
        }
        EXPECT_NEAR(life.app->party()[0]->pet().node().model().position.x, 480, 1e-9);
        EXPECT_NEAR(life.app->party()[1]->pet().node().model().position.x, 960, 1e-9);
    }
}

TEST(SavedState, OfTheWrongKindFallsBackFieldByField) {
    LivingCreature life({.defaults = {{"pet.energy", std::string("full")},
                                      {"pet.hunger", true},
                                      {"pet.friendship", std::int64_t{77}},
                                      {"pet.nature", std::string("Grumpy")},
                                      {"pet.gender", 3.0},
                                      {"pet.shimmerpox", std::string("tomorrow")}}});
    const Companion& creature = life.creature();
    EXPECT_LE(creature.needs().energy, 0.8);
    EXPECT_GT(creature.needs().energy, 0.6);
    EXPECT_LT(creature.needs().hunger, 0.35);
    EXPECT_NEAR(creature.needs().friendship, 77, 1e-9);
    EXPECT_TRUE(Nature::named(creature.identity().nature.name));
    EXPECT_TRUE(creature.identity().gender == "♀" || creature.identity().gender == "♂");
    EXPECT_FALSE(creature.identity().shimmerpoxUntil);
}

TEST(SavedState, OutOfRangeIsBroughtBackIntoIt) {
    struct Row {
        double saved, energy, hunger, friendship;
    };
    for (const auto& [saved, energy, hunger, friendship] :
         {Row{1e308, 1, 1, 255}, Row{-1e300, 0, 0, 0}}) {
        std::map<std::string, DefaultsValue> defaults{{"onboarded", true}};
        for (const char* key : {"energy", "hunger", "friendship", "exp", "hungryMinutes"}) {
            defaults[std::string("pet.") + key] = saved;
        }
        LivingCreature life({.defaults = std::move(defaults)});
        const Companion& creature = life.creature();
        EXPECT_NEAR(creature.needs().energy, energy, 0.2) << saved;
        EXPECT_NEAR(creature.needs().hunger, hunger, 0.2) << saved;
        EXPECT_NEAR(creature.needs().friendship, friendship, 11) << saved << ", hunger costs some";
        const PetStats stats = creature.stats();
        EXPECT_EQ(stats.level, saved > 0 ? 100 : 1);
        EXPECT_GE(stats.levelProgress, 0) << saved;
        EXPECT_LE(stats.levelProgress, 1) << saved;
        EXPECT_GE(creature.needs().hungryMinutes, 0) << saved;
    }
}

TEST(SavedState, OfTheOtherLinesStageIsAnEgg) {
    for (const char* foreign : {"umbrool", "wispul"}) {
        LivingCreature life({.stage = foreign});
        EXPECT_EQ(life.app->party()[0]->stage(), Stage::egg) << foreign;
        EXPECT_FALSE(life.app->party()[0]->presence().isOut()) << foreign;
    }
    LivingCreature life({.defaults = {{"umbrool.stage", std::string("thrummet")}}});
    EXPECT_EQ(life.app->party()[1]->stage(), Stage::egg);
}

TEST(SavedState, SurvivesQuittingAndStartingAgain) {
    LivingCreature life({.stage = "thrummet",
                         .defaults = {{"pet.form", std::string("coralis")},
                                      {"pet.shiny", true},
                                      {"pet.exp", 30000.0},
                                      {"pet.gender", std::string("♂")}}});
    EXPECT_EQ(life.creature().name(), "Coralian Thrummet");
    EXPECT_EQ(life.creature().a().species(), "thrummet-coralis-shiny");
    life.advance(900);
    const PetStats before = life.creature().stats();
    CompanionProbe::needs(life.creature()).boredom = 0.95;
    life.creature().save();
    life.quit();
    life.launch();
    const PetStats after = life.creature().stats();
    EXPECT_EQ(after.stage, before.stage);
    EXPECT_EQ(after.coralis, before.coralis);
    EXPECT_EQ(after.shiny, before.shiny);
    EXPECT_EQ(after.nature, before.nature);
    EXPECT_EQ(after.gender, before.gender);
    EXPECT_GE(after.exp, before.exp) << "and a little more for what it has begun since";
    EXPECT_LT(after.exp, before.exp * 1.02);
    EXPECT_GE(after.friendship, before.friendship);
    EXPECT_LT(life.creature().needs().boredom, 0.5) << "boredom is not remembered";

    CompanionProbe::identity(life.creature()).form.reset();
    life.creature().save();
    EXPECT_FALSE(life.computer.defaults.stored("pet.form"));
}

TEST(SavedState, HoldsWhoHasHatched) {
    for (const bool shiny : {true, false}) {
        LivingCreature life({.stage = "egg", .defaults = {{"QuibShiny", shiny}}});
        life.computer.defaults.remove("pet.nature");
        tapSlot(life.computer, 0);
        life.advance(20);
        const PetStats hatched = life.creature().stats();
        EXPECT_EQ(hatched.shiny, shiny);
        for (int starts = 0; starts < 3; ++starts) {
            life.quit();
            life.launch();
            EXPECT_EQ(life.creature().stats().stage, Stage::mizzle);
            EXPECT_EQ(life.creature().stats().shiny, shiny);
            EXPECT_EQ(life.creature().stats().gender, hatched.gender);
            EXPECT_EQ(life.creature().stats().nature, hatched.nature);
        }
    }
}

TEST(SavedState, HoldsWhatWasToldEvenIfTheCreatureSleepsOrStaysInToTheEnd) {
    struct Row {
        const char* what;
        std::function<void(LivingCreature&)> happens;
    };
    for (const auto& [what, happens] : std::vector<Row>{
             {"quiet", [](LivingCreature& l) { l.app->open({"quibbits://focus"}); }},
             {"absence", [](LivingCreature& l) { l.computer.setUserPresent(false); }},
             {"the ball", [](LivingCreature& l) { tapSlot(l.computer, 0); }},
             {"a call", [](LivingCreature& l) { l.computer.setCameras({true}); }},
         }) {
        const double almost = expForLevel(growthRate(Stage::sparrel), 21) - 0.5;
        LivingCreature life({.defaults = {{"pet.exp", almost}, {"pet.friendship", 100.0}}});
        for (int times = 0; times < 2; ++times) {
            life.advance(30);
            const int level = life.creature().level();
            CompanionProbe::identity(life.creature()).exp =
                expForLevel(growthRate(Stage::sparrel), level + 1) - 0.5;
            life.app->open({"quibbits://celebrate"});
            ASSERT_EQ(life.creature().level(), level + 1);
            const double friendship = life.creature().needs().friendship;
            happens(life);
            life.advance(3600);
            life.quit();
            life.launch();
            EXPECT_EQ(life.creature().level(), level + 1) << what;
            EXPECT_GE(life.creature().needs().friendship, friendship - 1e-9) << what;
            life.computer.setUserPresent(true);
            life.computer.setCameras({false});
            life.app->open({"quibbits://unfocus"});
            if (!life.creature().presence().isOut()) tapSlot(life.computer, 0);
        }
    }
}

TEST(SavedState, HoldsABerryThatWasEatenBeforeTheCall) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.8}}});
    life.advance(1);
    const Point body = life.pet().frame().center();
    life.computer.dropOnStage({.location = body, .item = std::string("azurine")});
    life.advance(3);
    const double hunger = life.creature().needs().hunger;
    EXPECT_LT(hunger, 0.5);
    tapSlot(life.computer, 0);
    life.advance(60);
    life.quit();
    life.launch();
    EXPECT_NEAR(life.creature().needs().hunger, hunger, 0.01);
}

TEST(Stats, TellTheWayToTheNextLevelAndAFaceForTheFriendship) {
    LivingCreature life({.defaults = {{"pet.exp", 8.0}}});
    PetStats stats = life.creature().stats();
    EXPECT_EQ(stats.level, 2);
    EXPECT_EQ(stats.nextLevelEXP, 27);
    EXPECT_NEAR(stats.levelProgress, (life.creature().identity().exp - 8) / 19, 1e-9);
    EXPECT_EQ(stats.ability.name, "Lightning Rod");
    EXPECT_EQ(stats.evolveItem, Item::stormPebble);
    EXPECT_FALSE(stats.canEvolve);
    EXPECT_TRUE(stats.portrait);
}

TEST(Why, GivesTheFiveNeedsInTheirOrder) {
    LivingCreature life({});
    const Why why = life.creature().why();
    ASSERT_EQ(why.needs.size(), 5u);
    EXPECT_EQ(why.needs[0].first, "Energy");
    EXPECT_EQ(why.needs[1].first, "Belly");
    EXPECT_NEAR(why.needs[1].second, 1 - life.creature().needs().hunger, 1e-12);
    EXPECT_EQ(why.needs[2].first, "Friendship");
    EXPECT_EQ(why.needs[3].first, "Boredom");
    EXPECT_EQ(why.needs[4].first, "Missing you");
    EXPECT_EQ(why.choice, life.decisions.back());
}

}  // namespace
}  // namespace quibbits
