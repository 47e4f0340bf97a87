#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/Lifetime.h"
#include "platform/Signal.h"

namespace quibbits {
namespace {

TEST(ASignal, TellsItsListenersInTheOrderInWhichTheyJoined) {
    Signal<int> signal;
    std::string heard;
    const auto a = signal.subscribe([&](int n) { heard += "a" + std::to_string(n); });
    {
        const auto b = signal.subscribe([&](int n) { heard += "b" + std::to_string(n); });
        const auto c = signal.subscribe([&](int n) { heard += "c" + std::to_string(n); });
        signal.emit(1);
    }
    signal.emit(2);
    EXPECT_EQ(heard, "a1b1c1a2");
    EXPECT_TRUE(signal.hasListeners());
}

TEST(ASignal, DoesNotCallWhoLeftOrJoinedMeanwhile) {
    Signal<> signal;
    std::string heard;
    Subscription b;
    Subscription late;
    const auto a = signal.subscribe([&] {
        heard += 'a';
        b.reset();
        late = signal.subscribe([&] { heard += 'l'; });
    });
    b = signal.subscribe([&] { heard += 'b'; });
    const auto c = signal.subscribe([&] { heard += 'c'; });
    signal.emit();
    EXPECT_EQ(heard, "ac");
    heard.clear();
    signal.emit();
    EXPECT_EQ(heard, "ac") << "the second late listener took the place of the first";
}

TEST(ASignal, LetsAListenerLeaveFromWithinItself) {
    Signal<> signal;
    int calls = 0;
    Subscription once;
    auto watched = std::make_shared<int>(7);
    once = signal.subscribe([&, watched] {
        once.reset();
        calls += *watched;  // the closure is alive until it returns
    });
    signal.emit();
    signal.emit();
    EXPECT_EQ(calls, 7);
    EXPECT_EQ(watched.use_count(), 1) << "a listener that left is not kept";
    EXPECT_FALSE(signal.hasListeners());
}

TEST(ASignal, MayEndBeforeOrDuringItsListeners) {
    std::string heard;
    auto signal = std::make_unique<Signal<>>();
    auto a = signal->subscribe([&] {
        heard += 'a';
        signal.reset();
    });
    const auto b = signal->subscribe([&] { heard += 'b'; });
    signal->emit();
    EXPECT_EQ(heard, "ab");
    a.reset();
    a.reset();
}

TEST(AGuardedClosure, DoesNothingOnceItsOwnerIsGone) {
    auto owner = std::make_optional<Lifetime>();
    int calls = 0;
    const auto plain = owner->guard([&] { ++calls; });
    auto answer = owner->guard([](int x) { return x + 1; });
    auto counted = [&, c = plain]() mutable { c(); };
    counted();
    EXPECT_EQ(answer(1), 2);
    owner.reset();
    counted();
    EXPECT_EQ(answer(1), 0);
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace quibbits
