#pragma once
// A run loop, a message bus and a machine that listens to it.

#include <gtest/gtest.h>

#include <cstdlib>

#include "PrivateBus.h"
#include "desktop/EventRunLoop.h"
#include "desktop/session/Bus.h"

namespace quibbits {

/// How long is waited for what must come: only a test that fails takes so long.
constexpr Seconds patience = 60;

class BusTest : public testing::Test {
protected:
    void SetUp() override {
        const auto missing = missingBusTool();
        if (missing.empty()) return;
        if (std::getenv("CI")) FAIL() << missing << " is missing";
        GTEST_SKIP() << missing << " is missing";
    }

    /// Turns the loop and the services until the condition holds.
    bool eventually(const std::function<bool()>& condition, Seconds longest = patience) {
        const Instant end = loop.now() + longest;
        while (!condition()) {
            if (loop.now() > end) return false;
            turn();
        }
        return true;
    }
    void letPass(Seconds time) {
        for (const Instant end = loop.now() + time; loop.now() < end;) turn();
    }
    /// Lets everything arrive that the services have said by now: the bus answers a question in
    /// turn, first to the services and then to whoever listens.
    void settle(session::Bus& listener) {
        for (auto* service : services) service->sync();
        bool answered = false;
        const auto question = listener.call({.destination = "org.freedesktop.DBus",
                                             .path = "/org/freedesktop/DBus",
                                             .interface = "org.freedesktop.DBus",
                                             .member = "GetId"},
                                            nullptr, [&](auto...) { answered = true; });
        EXPECT_TRUE(eventually([&] { return answered; }));
        letPass(0.02);
    }
    void turn() {
        loop.turn(0.01);
        for (auto* service : services) service->turn();
    }
    std::unique_ptr<FakeService> serve(const std::string& name) {
        auto service = std::make_unique<FakeService>(daemon.address(), name);
        services.push_back(service.get());
        return service;
    }
    void end(std::unique_ptr<FakeService>& service) {
        std::erase(services, service.get());
        service.reset();
    }
    session::Bus::Place place(Seconds retry = 0.1) const {
        return {.address = daemon.address(), .retry = retry};
    }

    EventRunLoop loop;
    PrivateBus daemon;
    std::vector<FakeService*> services;
};

}  // namespace quibbits
