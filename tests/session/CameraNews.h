#pragma once
// What a test hears of cameras, on a real run loop.

#include <gtest/gtest.h>

#include <vector>

#include "desktop/EventRunLoop.h"

namespace quibbits {

template <typename News>
class CameraNews : public testing::Test {
protected:
    void letPass(Seconds time) {
        for (const Instant end = loop.now() + time; loop.now() < end;) loop.turn(0.05);
    }
    /// Waits for so many news, a minute at most.
    bool isTold(std::size_t times) {
        for (const Instant end = loop.now() + 60; told.size() < times && loop.now() < end;) {
            loop.turn(0.05);
        }
        return told.size() >= times;
    }

    EventRunLoop loop;
    std::vector<News> told;
};

}  // namespace quibbits
