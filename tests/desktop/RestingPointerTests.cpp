// What a creature's own moves must not do: pet itself under a pointer at rest, or lift the panel
// that it lives on.
#include "XTest.h"
#include "desktop/x11/XWindowList.h"

namespace quibbits {
namespace {

constexpr int screenHeight = 800;

/// A panel over the whole screen whose one creature takes the mouse.
struct CreatureOnAPanel : XTest {
    void showPanel(PanelLevel level) {
        connect();
        auto made = panels->makePanel({.frame = screens->main()->frame, .level = level});
        panel.reset(static_cast<x11::XPanel*>(made.release()));
        creature = engine->makeLayer(
            {.bounds = {0, 0, 60, 60}, .position = {330, 230}, .background = Color::rgb(0xff0000)});
        panel->root().addSublayer(creature);
        panel->mouseAreas = [this] { return std::vector{creature->frame()}; };
        panel->onMouseMoved = [this] { ++moves; };
        panel->onMouseDown = [this] { ++presses; };
        panel->orderFront();
        EXPECT_TRUE(eventually([&] { return panel->stats().repaints > 0; }));
        turnFor(0.3);
    }
    void moveCreature(Point to) {
        const Transaction transaction(*engine, Transaction::withoutActions());
        creature->setPosition(to);
    }
    static int down(double y) { return screenHeight - static_cast<int>(y); }
    /// Whether the window manager has the panel under a window.
    bool isUnder(xcb_window_t window) {
        const auto lowestFirst = other->numbers(other->root(), "_NET_CLIENT_LIST_STACKING");
        const auto place = [&](xcb_window_t which) {
            return std::find(lowestFirst.begin(), lowestFirst.end(), which);
        };
        return place(panel->window()) < place(window) && place(window) != lowestFirst.end();
    }

    std::unique_ptr<x11::XPanel> panel;
    LayerRef creature;
    int moves = 0, presses = 0;
};

TEST_F(CreatureOnAPanel, APointerAtRestIsNotMovedByACreatureThatComesUnderItAndGoes) {
    desktop->startWindowManager();
    desktop->startCompositor();
    showPanel(PanelLevel::floating);
    other->movePointer(700, down(230));
    turnFor(1.5);
    int elsewhere = 0, touches = 0;
    const auto moved = pointer->elsewhere.subscribe([&](PointerEvent) { ++elsewhere; });
    const auto touched = pointer->touched.subscribe([&] { ++touches; });
    const Seconds before = pointer->untouched();
    for (int x = 560; x <= 860; x += 10) {
        moveCreature({static_cast<double>(x), 230});
        turnFor(0.02);
    }
    turnFor(0.4);
    EXPECT_EQ(moves, 0) << "nobody has petted it";
    EXPECT_EQ(elsewhere, 0);
    EXPECT_EQ(touches, 0);
    EXPECT_GT(pointer->untouched(), before + 0.9);

    moveCreature({700, 230});
    EXPECT_TRUE(
        eventually([&] { return other->underPointer() == other->frameOf(panel->window()); }));
    const Instant touch = loop.now();
    other->movePointer(704, down(230));
    EXPECT_TRUE(eventually([&] { return moves > 0; })) << "a hand that moves does pet";
    EXPECT_LE(pointer->untouched(), loop.now() - touch);
    other->press();
    other->release();
    EXPECT_TRUE(eventually([&] { return presses == 1; }));
}

TEST_F(CreatureOnAPanel, APressOnALowCreatureLeavesThePanelUnderTheWindows) {
    desktop->startWindowManager();
    desktop->startCompositor();
    showPanel(PanelLevel::desktop);
    // Its lower edge is above the creature's feet.
    const auto window = other->open({.x = 200, .y = 100, .width = 900, .height = 460});
    ASSERT_TRUE(eventually([&] { return isUnder(window); }));
    for (int i = 1; i <= 3; ++i) {
        other->movePointer(330, down(210));
        EXPECT_TRUE(
            eventually([&] { return other->underPointer() == other->frameOf(panel->window()); }));
        other->press();
        other->release();
        EXPECT_TRUE(eventually([&] { return presses == i; }));
        turnFor(0.3);
        EXPECT_TRUE(isUnder(window)) << "after press " << i;
    }
}

TEST_F(CreatureOnAPanel, ALowPanelThatAnotherProgramRaisesGoesBackUnderTheWindows) {
    desktop->startWindowManager();
    showPanel(PanelLevel::desktop);
    const auto window = other->open({.x = 200, .y = 100, .width = 900, .height = 460});
    ASSERT_TRUE(eventually([&] { return isUnder(window); }));
    for (int i = 0; i < 2; ++i) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(other->xcb(), panel->window(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
        other->sync();
        turnFor(0.3);
        EXPECT_TRUE(eventually([&] { return isUnder(window); }));
    }
}

}  // namespace
}  // namespace quibbits
