#include <gtest/gtest.h>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

/// Picked up, swung a number of times and dropped from a height, and on the ground again.
void drop(LivingCreature& life, double height, int swings = 0) {
    SimulatedComputer& c = life.computer;
    const Point at = life.pet().position();
    c.movePointer({at.x, at.y + 25});
    c.press(MouseButton::left);
    c.movePointer({at.x, at.y + 25 + height});
    for (int i = 0; i < swings + 1 && swings > 0; ++i) {
        c.movePointer({at.x + (i % 2 ? -30 : 30), at.y + 25 + height});
    }
    c.release(MouseButton::left);
    life.advance(1);
}

int dropsThatHurt(LivingCreature& life) {
    return static_cast<int>(
        std::ranges::count_if(life.utterances, [](auto& u) { return u.face == Face::crying; }));
}

TEST(ADrop, HurtsFromHighUpOrTheThirdTimeInTwoMinutes) {
    struct Row {
        double height;
        int times;
        bool feelings;
        int hurts;
    };
    for (const auto& [height, times, feelings, hurts] : std::vector<Row>{
             {49.9, 5, true, 0},
             {50, 2, true, 0},
             {50, 3, true, 1},
             {350, 1, true, 0},
             {351, 1, true, 1},
             {100, 5, false, 0},
         }) {
        LivingCreature life({.defaults = {{"relationship", feelings}, {"chatter", false}}});
        for (int i = 0; i < times; ++i) drop(life, height);
        life.advance(8);
        EXPECT_EQ(dropsThatHurt(life), hurts) << height << " x " << times;
        EXPECT_NEAR(life.creature().needs().friendship, 120 - 10 * hurts, 1e-9);
        const auto before = life.decisions.size();
        life.advance(60);
        EXPECT_GT(life.decisions.size(), before);
    }
}

TEST(ADrop, LongAfterTheOthersIsForgiven) {
    LivingCreature life({});
    drop(life, 100);
    drop(life, 100);
    life.advance(121);
    drop(life, 100);
    life.advance(8);
    EXPECT_EQ(dropsThatHurt(life), 0);
}

TEST(AShake, OfMoreThanFiveTurnsMakesItDizzy) {
    for (const auto& [swings, dizzy] : std::vector<std::pair<int, bool>>{{5, false}, {6, true}}) {
        LivingCreature life({.defaults = {{"chatter", false}, {"faces", false}}});
        drop(life, 20, swings);
        EXPECT_EQ(life.hasSaid("Sparrel is dizzy…"), dizzy) << swings;
    }
}

TEST(AHand, ThatLostItsReleaseSetsDownTheFirstBeforeItTakesTheNext) {
    LivingCreature life({.defaults = {{"umbrool.stage", std::string("wispul")}}});
    Companion& other = *life.app->party()[1];
    other.toggleBall({});
    life.advance(20);
    for (Companion* who : {&life.creature(), &other}) {
        const Point at = who->pet().position();
        life.computer.movePointer({at.x, at.y + 25});
        life.computer.press(MouseButton::left);
        life.computer.movePointer({at.x, 400});
        EXPECT_TRUE(who->presence().isHeld());
    }
    EXPECT_FALSE(life.creature().presence().isHeld());
    life.computer.release(MouseButton::left);
    EXPECT_FALSE(other.presence().isHeld());
}

TEST(AFloater, ComesDownSoftlyFromAnyHeight) {
    LivingCreature life({.store = "umbrool", .stage = "wispul"});
    drop(life, 500);
    EXPECT_GT(life.pet().position().y, 100) << "it takes its time";
    life.advance(20);
    EXPECT_EQ(dropsThatHurt(life), 0);
    EXPECT_EQ(life.creature().needs().friendship, 120);
}

TEST(ABerry, IsEatenByTasteAndRefusedWhenFull) {
    struct Row {
        Item berry;
        const char* nature;
        double hunger;
        double left;
        double friendship;
        Face face;
    };
    for (const auto& [berry, nature, hunger, left, friendship, face] : std::vector<Row>{
             {Item::cinnet, "Adamant", 0.8, 0.45, 4, Face::joyous},
             {Item::hazzel, "Adamant", 0.8, 0.45, 1, Face::sigh},
             {Item::azurine, "Adamant", 0.8, 0.45, 2, Face::happy},
             {Item::cinnet, "Hardy", 0.8, 0.45, 2, Face::happy},
             {Item::azurine, "Hardy", 0.2, 0.0, 2, Face::happy},
             {Item::azurine, "Hardy", 0.1, 0.1, 0, Face::sigh},
         }) {
        LivingCreature life({.defaults = {{"pet.nature", std::string(nature)},
                                          {"pet.hunger", hunger},
                                          {"pet.friendship", 100.0},
                                          {"pet.hungryMinutes", 20.0}}});
        life.utterances.clear();
        const Point at = life.pet().frame().center();
        EXPECT_TRUE(
            life.computer.dropOnStage({.location = at, .item = std::string(rawValue(berry))}));
        EXPECT_NEAR(life.creature().needs().hunger, left, 0.01) << nature;
        EXPECT_EQ(life.creature().needs().hungryMinutes == 0, friendship > 0);
        life.advance(6);
        EXPECT_EQ(life.creature().needs().friendship - 100, friendship) << nature;
        EXPECT_TRUE(std::ranges::any_of(
            life.utterances, [&, expected = face](auto& u) { return u.face == expected; }))
            << nature << " " << rawValue(berry);
        const auto before = life.decisions.size();
        life.advance(30);
        EXPECT_GT(life.decisions.size(), before);
    }
}

TEST(ABerry, InterruptedLeavesNoFoodBehind) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.9}}});
    life.computer.dropOnStage({.location = life.pet().frame().center(), .item = "azurine"});
    life.advance(0.5);
    const auto eating = life.pet().node().sublayers().size();
    drop(life, 60);
    life.advance(5);
    EXPECT_LT(life.pet().node().sublayers().size(), eating);
}

TEST(ABerry, InterruptedLosesNoMoreCrumbs) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.9}}},
                        DrawnSheets({{"Idle"}, {"Walk"}, {"Sleep"}}));  // nothing to eat by
    const auto crumbling = [&] {
        return std::ranges::any_of(life.pet().node().sublayers(), [](const LayerRef& layer) {
            const auto* source = std::get_if<Emitter>(&layer->model().content);
            return source && source->birthRate > 0;
        });
    };
    life.computer.dropOnStage({.location = life.pet().frame().center(), .item = "azurine"});
    life.advance(1);
    ASSERT_TRUE(crumbling());
    life.creature().pickedUp();
    life.advance(0.1);
    EXPECT_FALSE(crumbling());
}

TEST(ADraggedItem, IsNoticedNearbyOncePerApproach) {
    LivingCreature life({.defaults = {{"pet.hunger", 0.9}}});
    life.creature().stop([] {});
    life.pet().drag({700, 0});
    life.utterances.clear();
    for (int i = 0; i < 20; ++i) {
        life.app->stage()->itemDragMoved(Point{700.0 - 240 + i, 0});
        life.advance(0.05);
    }
    EXPECT_EQ(life.utterances.size(), 1u);
    EXPECT_FALSE(life.pet().facesRight());
    life.app->stage()->itemDragMoved(std::nullopt);
    const auto before = life.decisions.size();
    life.advance(10);
    EXPECT_GT(life.decisions.size(), before);
}

TEST(AnEvolutionItem, OnlyWorksForItsStage) {
    LivingCreature young({.defaults = {{"pet.exp", expForLevel(GrowthRate::mediumFast, 19)}}});
    young.creature().received(Item::stormPebble);
    EXPECT_FALSE(young.creature().offer());
    for (const char* region : {"", "coralis"}) {
        LivingCreature ready({.defaults = {{"pet.exp", expForLevel(GrowthRate::mediumFast, 20)},
                                           {"region", std::string(region)}}});
        ready.creature().received(Item::tetherLoop);
        EXPECT_FALSE(ready.creature().offer());
        ready.creature().received(Item::stormPebble);
        ASSERT_TRUE(ready.creature().offer());
        EXPECT_EQ(ready.creature().offer()->to, Stage::thrummet);
        EXPECT_EQ(ready.creature().offer()->form.value_or(""), region);
        ready.creature().answerEvolution(true);
        ready.advance(20);
        EXPECT_EQ(ready.creature().stage(), Stage::thrummet);
        EXPECT_EQ(ready.creature().identity().form.value_or(""), region);
    }
}

}  // namespace
}  // namespace quibbits
