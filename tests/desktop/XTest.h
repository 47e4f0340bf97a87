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
    bool eventually(const std::function<bool()>& condition, Seconds longest = 3) {
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
