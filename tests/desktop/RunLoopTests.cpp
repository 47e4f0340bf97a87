#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "desktop/EventRunLoop.h"
#include "support/EndingLoop.h"

namespace quibbits {
namespace {

struct RunLoopTest : testing::Test {
    EventRunLoop loop;
    std::string order;
    Job note(char c) {
        return [this, c] { order += c; };
    }
    /// Turns the loop until the condition holds.
    void runUntil(const std::function<bool()>& condition) {
        for (const Instant end = loop.now() + 60; !condition() && loop.now() < end;) loop.turn(0.1);
    }
    void runFor(Seconds time) {
        loop.after(time, [this] { loop.quit(); });
        loop.run();
    }
};

TEST_F(RunLoopTest, JobsRunByDueTimeAndThenInTheOrderInWhichTheyWereScheduled) {
    const Instant soon = loop.now() + 0.02;
    loop.at(soon + 0.01, note('e'));
    loop.at(soon, note('c'));
    loop.at(soon, note('d'));
    loop.at(loop.now() - 100, note('a'));
    loop.post(note('b'));
    runFor(0.06);
    EXPECT_EQ(order, "abcde");
}

TEST_F(RunLoopTest, AJobMayCancelOthersAndItself) {
    Timer other = loop.timer(0.01, note('x'));
    Timer self;
    self = loop.every(0.005, [&] {
        order += 'a';
        other.cancel();
        if (order.size() == 3) self.cancel();
    });
    runUntil([&] { return order.size() >= 3; });
    runFor(0.05);
    EXPECT_EQ(order, "aaa");
}

TEST(ALoop, MayEndWhileWhatItsJobsHoldStillCancelsAndAddsOthers) {
    expectToEndWithBusyJobs([] { return std::make_unique<EventRunLoop>(); });
}

TEST_F(RunLoopTest, ALateRunOfARepeatingJobIsNotMadeUpFor) {
    const auto timer = loop.every(0.1, [this] {
        order += 'a';
        if (order.size() == 1) std::this_thread::sleep_for(std::chrono::milliseconds(450));
    });
    const Instant start = loop.now();
    runUntil([&] { return order.size() >= 3; });
    EXPECT_GT(loop.now() - start, 0.62) << "the third run came early";
}

TEST_F(RunLoopTest, TimersWithToleranceShareAWake) {
    const auto a = loop.timer(1.0, note('a'), 5);
    const auto b = loop.timer(1.2, note('b'), 5);
    const auto c = loop.timer(1.4, note('c'));
    const auto before = loop.wakes();
    loop.turn(60);
    EXPECT_EQ(order, "abc");
    EXPECT_EQ(loop.wakes() - before, 1u);
}

TEST_F(RunLoopTest, AnIdleLoopNeverWakes) {
    const auto before = loop.wakes();
    std::thread ender([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        loop.quit();
    });
    loop.run();
    ender.join();
    EXPECT_LE(loop.wakes() - before, 1u);
}

TEST_F(RunLoopTest, JobsFromOtherThreadsRunOnTheLoopsThread) {
    int sum = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this, &sum] {
            for (int i = 0; i < 250; ++i) {
                loop.post([this, &sum] {
                    if (++sum == 1000) loop.quit();
                });
            }
        });
    }
    loop.run();
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(sum, 1000);
}

TEST_F(RunLoopTest, ADescriptorIsWatchedUntilItsHandleEnds) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
    const FileDescriptor reading(ends[0]);
    const FileDescriptor writing(ends[1]);
    Subscription watch;
    watch = loop.watch(reading.get(), [&] {
        char c = 0;
        ASSERT_EQ(read(reading.get(), &c, 1), 1);
        order += c;
        if (c == 'b') watch.reset();
    });
    ASSERT_EQ(write(writing.get(), "abc", 3), 3);
    runUntil([&] { return order.size() >= 2; });
    runFor(0.03);
    EXPECT_EQ(order, "ab");
}

TEST_F(RunLoopTest, WhatIsPostedBeforeWaitingDoesNotWait) {
    bool once = false;
    const auto hook = loop.beforeWaiting([&] {
        if (!std::exchange(once, true)) loop.post([this] { loop.quit(); });
    });
    const auto guard = loop.timer(60, [this] {
        ADD_FAILURE() << "slept with a job at hand";
        loop.quit();
    });
    loop.run();
}

TEST_F(RunLoopTest, ASignalToEndEndsTheLoop) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        EventRunLoop ending;
        ending.quitOnSignals();
        ending.post([number] { raise(number); });
        const auto guard = ending.timer(60, [] { std::abort(); });
        ending.run();
    }
}

TEST_F(RunLoopTest, ADateBeyondTheCalendarIsItsEnd) {
    EXPECT_EQ(loop.localTime({1e300}), loop.localTime(Date::distantFuture()));
    EXPECT_EQ(loop.localTime({-1e300}), loop.localTime(Date::distantPast()));
    EXPECT_GE(loop.localTime({1e300}).year, 9999);
}

TEST_F(RunLoopTest, LocalTimeFollowsTheTimeZone) {
    setenv("TZ", "XYZ-5:30", 1);
    EXPECT_EQ(loop.localTime({1'700'000'000}), (LocalTime{2023, 11, 15, 3, 43}));
    setenv("TZ", "UTC0", 1);
    EXPECT_EQ(loop.localTime({1'700'000'000}), (LocalTime{2023, 11, 14, 22, 13}));
}

}  // namespace
}  // namespace quibbits
