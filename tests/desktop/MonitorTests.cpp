// Which of several monitors creatures live on, while monitors come and go.
#include <xcb/randr.h>

#include "XTest.h"

namespace quibbits {
namespace {

struct Monitors : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        other->addMonitor("left", {0, 0, 640, 800}, true);
        other->addMonitor("right", {640, 0, 640, 800}, false);
        connect();
        screens->follow([this] { return chosen; });
    }
    void unplug(const std::string& name) {
        xcb_randr_delete_monitor(other->xcb(), other->root(), other->atom(name));
        xcb_flush(other->xcb());
    }
    /// Where the main monitor's lower left corner is, in pixels from the left.
    bool mainIsAt(int left) {
        return eventually([&] { return screens->coordinates().left == left; });
    }

    std::string chosen;
};

TEST_F(Monitors, TheChosenOneIsTheMainOneWhileItIsConnected) {
    EXPECT_EQ(screens->names(), (std::vector<std::string>{"left", "right"}));
    EXPECT_TRUE(mainIsAt(0)) << "the primary one";
    int told = 0;
    const auto listener = screens->changed.subscribe([&] { ++told; });
    chosen = "right";
    screens->lookAgain();
    EXPECT_TRUE(mainIsAt(640));
    EXPECT_EQ(told, 1) << "though both are of one size";
    EXPECT_EQ(screens->main()->frame, (Rect{0, 0, 640, 800}));
    EXPECT_EQ(screens->at({-10, 5})->frame, (Rect{-640, 0, 640, 800}));
    unplug("right");
    EXPECT_TRUE(mainIsAt(0));
    EXPECT_EQ(screens->names(), std::vector<std::string>{"left"});
    other->addMonitor("right", {640, 0, 640, 800}, false);
    EXPECT_TRUE(mainIsAt(640)) << "plugged in again";
    chosen = "attic";
    screens->lookAgain();
    EXPECT_TRUE(mainIsAt(0));
}

TEST_F(Monitors, APanelGoesAlongToAMonitorOfTheSameSize) {
    auto made = panels->makePanel({.frame = screens->main()->frame});
    auto& panel = static_cast<x11::XPanel&>(*made);
    panel.orderFront();
    turnFor(0.2);
    chosen = "right";
    screens->lookAgain();
    EXPECT_TRUE(eventually([&] {
        auto* place = xcb_get_geometry_reply(
            other->xcb(), xcb_get_geometry(other->xcb(), panel.window()), nullptr);
        const bool isThere = place && place->x == 640 && place->width == 640;
        std::free(place);
        return isThere;
    }));
}

TEST_F(Monitors, ACreatureThatDoesNotStirIsShownOnWhicheverMonitorItGoesTo) {
    constexpr std::uint32_t red = 0xff0000;
    unplug("right");
    other->addMonitor("right", {640, 100, 500, 600}, false);
    desktop->startWindowManager();
    desktop->startCompositor();
    ASSERT_TRUE(eventually([&] { return screens->names().size() == 2; }));
    auto panel = panels->makePanel({.frame = screens->main()->frame});
    const auto moves = screens->changed.subscribe([&] { panel->setFrame(screens->main()->frame); });
    auto creature = engine->makeLayer(
        {.bounds = {0, 0, 60, 60}, .position = {100, 30}, .background = Color::rgb(red)});
    panel->root().addSublayer(creature);
    panel->orderFront();
    EXPECT_TRUE(shows(100, 770, red));
    for (int i = 0; i < 4; ++i) {
        chosen = "right";
        screens->lookAgain();
        EXPECT_TRUE(shows(740, 670, red)) << i;
        EXPECT_FALSE(other->pixel(100, 770) == red) << i;
        chosen = "left";
        screens->lookAgain();
        EXPECT_TRUE(shows(100, 770, red)) << i;
    }
}

}  // namespace
}  // namespace quibbits
