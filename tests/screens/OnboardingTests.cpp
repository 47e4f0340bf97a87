// The first run, page by page.

#include <gtest/gtest.h>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

constexpr const char* title = "Welcome to Quibbits";

SimulatedViewWindow* guideOf(LivingCreature& life) {
    return life.computer.viewWindows.titled(title);
}

bool isDone(LivingCreature& life) {
    return life.computer.defaults.boolean("onboarded");
}

TEST(AFirstRun, BeginsWithTheGuideAndEndsAtTheParty) {
    LivingCreature life({});
    ASSERT_NE(guideOf(life), nullptr);
    EXPECT_EQ(guideOf(life)->spec.size, (Size{640, 600}));
    EXPECT_EQ(views::find(guideOf(life)->tree, "back"), nullptr) << "nothing lies before it";
    int pages = 1;
    for (; pages < 20 && guideOf(life); ++pages) {
        const auto* dots = &views::find(guideOf(life)->tree, "bar")->children;
        EXPECT_FALSE(dots->empty());
        guideOf(life)->act("next");
    }
    EXPECT_EQ(pages, 9) << "eight presses";
    EXPECT_TRUE(isDone(life));
    EXPECT_NE(life.computer.viewWindows.titled("Quibbits"), nullptr);
    life.quit();
    life.launch();
    EXPECT_EQ(guideOf(life), nullptr) << "never again by itself";
}

TEST(ClosingTheGuide, IsTheEndOfItWithoutTheParty) {
    LivingCreature life({});
    guideOf(life)->act("next");
    EXPECT_FALSE(isDone(life));
    guideOf(life)->close();
    EXPECT_TRUE(isDone(life));
    EXPECT_EQ(guideOf(life), nullptr);
    EXPECT_EQ(life.computer.viewWindows.titled("Quibbits"), nullptr);
}

TEST(TheGuide, StartsOnTheAskedPageAndGoesBack) {
    const auto first = [](std::int64_t page) {
        LivingCreature life({.defaults = {{"QuibWelcomePage", page}}});
        for (int i = 0; i < 8; ++i) {
            if (views::find(guideOf(life)->tree, "step " + std::to_string(i))) return i;
        }
        return -1;
    };
    EXPECT_EQ(first(3), 3);
    EXPECT_EQ(first(7), 7);
    EXPECT_EQ(first(99), 0);
    EXPECT_EQ(first(-2), 0);
    LivingCreature life({.defaults = {{"QuibWelcomePage", std::int64_t{2}}}});
    guideOf(life)->act("back");
    EXPECT_NE(views::find(guideOf(life)->tree, "step 1"), nullptr);
}

TEST(TheGuide, AsksTheDesktopOncePerQuestion) {
    LivingCreature life({.defaults = {{"QuibWelcomePage", std::int64_t{2}}}});
    EXPECT_NE(views::find(guideOf(life)->tree, "ask"), nullptr);
    guideOf(life)->act("ask");
    EXPECT_TRUE(life.computer.defaults.boolean("onboarding.finderAsked"));
    EXPECT_NE(views::find(guideOf(life)->tree, "ask"), nullptr) << "looked at again a moment later";
    life.advance(1.6);
    EXPECT_EQ(views::find(guideOf(life)->tree, "ask"), nullptr);

    guideOf(life)->act("next");
    guideOf(life)->act("ask");
    EXPECT_EQ(life.computer.accessibility.questions, 1);
    life.advance(2);
    EXPECT_NE(views::find(guideOf(life)->tree, "ask"), nullptr) << "not granted";
    life.computer.accessibility.trusted = true;
    guideOf(life)->act("ask");
    life.advance(2);
    EXPECT_EQ(views::find(guideOf(life)->tree, "ask"), nullptr);
}

TEST(TheGuide, ChangesTheRulesAtOnce) {
    LivingCreature life({.defaults = {{"QuibWelcomePage", std::int64_t{1}}}});
    guideOf(life)->act("default:overApps", false);
    EXPECT_FALSE(isOn(life.computer.defaults, Setting::overApps));
}

TEST(SeenAgain, TheGuideEndsWithoutTheParty) {
    LivingCreature life({.defaults = {{"onboarded", true},
                                      {"QuibWelcomePage", std::int64_t{7}},
                                      {"QuibSettings", std::string("general")}}});
    auto* settings = life.computer.viewWindows.titled("Quibbits");
    settings->act("welcome");
    settings->act("welcome");
    EXPECT_EQ(life.computer.viewWindows.all().size(), 2u);
    EXPECT_EQ(guideOf(life)->timesInFront, 2);
    settings->close();
    guideOf(life)->act("next");
    EXPECT_TRUE(life.computer.viewWindows.all().empty());
}

}  // namespace
}  // namespace quibbits
