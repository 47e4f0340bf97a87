#pragma once
// What every run loop must survive at its end.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/RunLoop.h"

namespace quibbits {

/// Ends a loop with a job pending that holds something which, at its own end, cancels another job
/// and adds one.
template <typename MakeLoop>
void expectToEndWithBusyJobs(MakeLoop makeLoop) {
    struct AtItsEnd {
        explicit AtItsEnd(std::function<void()> a) : act(std::move(a)) {}
        AtItsEnd(const AtItsEnd&) = delete;
        AtItsEnd& operator=(const AtItsEnd&) = delete;
        ~AtItsEnd() { act(); }
        std::function<void()> act;
    };
    bool ran = false;
    std::weak_ptr<int> lastOne;
    Timer other;  // outlives the loop, as what it stops at its end has to
    {
        const auto loop = makeLoop();
        other = loop->timer(20, [&] { ran = true; });
        const auto end = [&, ending = loop.get()] {
            other.cancel();
            auto held = std::make_shared<int>();
            lastOne = held;
            ending->post([&ran, held = std::move(held)] { ran = true; });
        };
        loop->after(10, [held = std::make_shared<AtItsEnd>(end)] {});
    }
    EXPECT_FALSE(ran);
    EXPECT_TRUE(lastOne.expired());
}

}  // namespace quibbits
