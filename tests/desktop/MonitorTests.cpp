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

/// A window manager that says much and does it late.
struct SlowManager {
    explicit SlowManager(OtherProgram& given) : program(given) {
        const std::uint32_t mask =
            XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(program.xcb(), program.root(), XCB_CW_EVENT_MASK, &mask);
        xcb_flush(program.xcb());
    }
    void turn(Instant now) {
        while (auto* event = program.nextEvent()) {
            const auto type = event->response_type & 0x7f;
            if (type == XCB_MAP_REQUEST) {
                xcb_map_window(program.xcb(),
                               reinterpret_cast<xcb_map_request_event_t*>(event)->window);
            } else if (type == XCB_CONFIGURE_REQUEST) {
                asked(*reinterpret_cast<xcb_configure_request_event_t*>(event), now);
            }
            std::free(event);
        }
        if (wanted && now >= due) {
            const std::uint32_t place[] = {static_cast<std::uint32_t>(wanted->x),
                                           static_cast<std::uint32_t>(wanted->y)};
            xcb_configure_window(program.xcb(), wanted->window,
                                 XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, place);
            wanted.reset();
        }
        xcb_flush(program.xcb());
    }
    void asked(const xcb_configure_request_event_t& request, Instant now) {
        const auto has = [&](int what) { return (request.value_mask & what) != 0; };
        if (!has(XCB_CONFIG_WINDOW_X)) return;
        for (const std::uint32_t width : {request.width - 1u, request.width + 0u}) {
            const std::uint32_t size[] = {width, request.height};
            xcb_configure_window(program.xcb(), request.window,
                                 XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
        }
        wanted = request;
        due = now + 0.08;
    }

    OtherProgram& program;
    std::optional<xcb_configure_request_event_t> wanted;
    Instant due = 0;
};

TEST_F(Monitors, APanelGetsThereUnderAWindowManagerThatTakesItsTime) {
    SlowManager manager(*other);
    auto made = panels->makePanel({.frame = screens->main()->frame});
    auto& panel = static_cast<x11::XPanel&>(*made);
    panel.orderFront();
    const auto settle = [&] {
        eventually(
            [&] {
                manager.turn(loop.now());
                return false;
            },
            1.5);
        auto* place = xcb_get_geometry_reply(
            other->xcb(), xcb_get_geometry(other->xcb(), panel.window()), nullptr);
        const int x = place ? place->x : -1;
        std::free(place);
        return x;
    };
    settle();
    for (int i = 0; i < 3; ++i) {
        chosen = "right";
        screens->lookAgain();
        EXPECT_EQ(settle(), 640);
        chosen = "left";
        screens->lookAgain();
        EXPECT_EQ(settle(), 0);
    }
}

}  // namespace
}  // namespace quibbits
