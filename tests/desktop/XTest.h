#pragma once
// The fixture of tests on a virtual desktop: the backend and another program beside it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>

#include "VirtualDesktop.h"
#include "desktop/x11/XPanels.h"
#include "layers/LayerEngine.h"

namespace quibbits {

/// How long is waited for what must come: only a test that fails takes so long.
constexpr Seconds patience = 60;

struct XTest : testing::Test {
    static void SetUpTestSuite() {}

    void SetUp() override {
        if (const auto missing = VirtualDesktop::missingTool(); !missing.empty()) {
            if (std::getenv("CI")) FAIL() << missing << " is not installed";
            GTEST_SKIP() << missing << " is not installed";
        }
        desktop = std::make_unique<VirtualDesktop>();
        other = std::make_unique<OtherProgram>(desktop->display());
        other->movePointer(1200, 700);
    }

    void connect() {
        other->sync();
        connection = x11::Connection::open(loop, desktop->display());
        ASSERT_TRUE(connection);
        screens = std::make_unique<x11::XScreens>(*connection);
        pointer = std::make_unique<x11::XPointer>(*connection, *screens);
        engine = std::make_unique<LayerEngine>(loop);
        panels = std::make_unique<x11::XPanels>(*connection, *screens, *pointer, *engine);
    }

    void disconnect() {
        panels.reset();
        engine.reset();
        pointer.reset();
        screens.reset();
        connection.reset();
    }

    /// Turns the loop until the condition holds; false when it never does.
    bool eventually(const std::function<bool()>& condition, Seconds longest = patience) {
        const Instant end = loop.now() + longest;
        while (!condition()) {
            if (loop.now() > end) return false;
            loop.turn(0.01);
        }
        return true;
    }
    void turnFor(Seconds time) {
        eventually([] { return false; }, time);
    }
    /// Lets everything arrive that both programs have asked the server for by now.
    void settle() {
        for (int round = 0; round < 3; ++round) {
            other->sync();
            if (connection && !connection->ended()) {
                auto* xcb = connection->xcb();
                xcb_flush(xcb);
                std::free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
            }
            loop.turn(0.01);
        }
    }
    /// Clicks with the pointer where it is, and waits until as many presses and releases were got.
    /// Those of the windows of the other program count; the rest is told by the given counter.
    int click(int button, const std::function<int()>& gotElsewhere) {
        settle();
        other->takenClicks();
        const int before = gotElsewhere();
        other->press(button);
        other->release(button);
        int taken = 0;
        eventually([&] {
            taken += other->takenClicks();
            return taken >= 2 || gotElsewhere() > before;
        });
        settle();
        return taken + other->takenClicks();
    }
    bool shows(int x, int y, std::uint32_t color) {
        return eventually([&] { return other->pixel(x, y) == color; });
    }

    std::unique_ptr<VirtualDesktop> desktop;
    std::unique_ptr<OtherProgram> other;
    EventRunLoop loop;
    std::unique_ptr<x11::Connection> connection;
    std::unique_ptr<x11::XScreens> screens;
    std::unique_ptr<x11::XPointer> pointer;
    std::unique_ptr<LayerEngine> engine;
    std::unique_ptr<x11::XPanels> panels;
};

}  // namespace quibbits
