// The dial and the creatures together, as the program ties them.

#include <gtest/gtest.h>

#include "support/DialTap.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class OnTheDial : public ::testing::Test {
protected:
    OnTheDial() { living.advance(1); }
    Companion& sparrel() { return *living.app->party()[0]; }
    Companion& umbrool() { return *living.app->party()[1]; }
    void pick(int slot) {
        tapSlot(living.computer, slot);
        ASSERT_FALSE(living.app->dial()->isOpen());
    }
    std::string savedOut() {
        return living.computer.defaults.string("party.out").value_or("nobody");
    }

    LivingCreature living{{.defaults = {{"umbrool.stage", std::string("gloamer")}}}};
};

TEST_F(OnTheDial, SomebodyElseGoesInFirstAndTheOneChosenComesALittleLater) {
    ASSERT_TRUE(sparrel().presence().isOut());
    ASSERT_FALSE(umbrool().presence().isOut());
    pick(1);
    EXPECT_TRUE(sparrel().presence().isBusy());
    EXPECT_EQ(savedOut(), "umbrool");
    living.advance(1.09);
    EXPECT_FALSE(umbrool().presence().isBusy());
    living.advance(0.02);
    EXPECT_TRUE(umbrool().presence().isBusy());
    living.advance(5);
    EXPECT_FALSE(sparrel().presence().isOut());
    EXPECT_TRUE(umbrool().presence().isOut());
}

TEST_F(OnTheDial, TheOneThatIsOutIsJustCalledBack) {
    pick(0);
    EXPECT_TRUE(sparrel().presence().isBusy());
    living.advance(5);
    EXPECT_FALSE(sparrel().presence().isOut());
    EXPECT_FALSE(umbrool().presence().isOut());
    EXPECT_EQ(savedOut(), "nobody") << "only sending out is remembered";
    pick(0);
    EXPECT_TRUE(sparrel().presence().isBusy()) << "nobody else is out, so it comes at once";
    EXPECT_EQ(savedOut(), "pet");
}

TEST_F(OnTheDial, BallsFlyFromTheIconsLowerEdge) {
    const Point edge{1292, 876};
    EXPECT_EQ(sparrel().habitat().ballStart(), edge);
    living.computer.statusItem.place = Rect{100, 0, 20, 20};
    EXPECT_EQ(sparrel().habitat().ballStart(), (Point{110, 0}));
    living.computer.statusItem.place.reset();

    // The screen may come to lie elsewhere, beside another one; the stage goes with it.
    Screen& screen = *living.computer.screens.screen;
    screen.frame = screen.visibleFrame = {1920, 120, 1440, 900};
    living.computer.screens.changed.emit();
    EXPECT_EQ(sparrel().habitat().ballStart(), edge);
    living.computer.movePointer({2000, 220});
    EXPECT_EQ(sparrel().habitat().pointer(), (Point{80, 100}));

    living.computer.screens.screen.reset();
    EXPECT_EQ(sparrel().habitat().ballStart(), Point{});
}

TEST_F(OnTheDial, TheMenusLinesReachWhoeverRunsTheProgram) {
    int ends = 0;
    living.onLaunch = [&](AppDelegate& app) { app.onTerminate = [&] { ++ends; }; };
    living.quit();
    living.launch();
    for (const char* line : {"Settings…", "Quit Quibbits"}) {
        living.computer.clickStatusItem(MouseButton::right);
        EXPECT_TRUE(living.computer.choose(line));
    }
    EXPECT_NE(living.computer.viewWindows.titled("Quibbits"), nullptr);
    EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace quibbits
