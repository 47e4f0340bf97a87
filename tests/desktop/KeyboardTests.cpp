// The keys of the desktop, taken by the dial on a real X server.

#include "XTest.h"
#include "desktop/x11/XKeyboard.h"

namespace quibbits {
namespace {

// Key codes of the usual keyboard.
constexpr int left = 113, right = 114, up = 111, down = 116, enter = 36, escape = 9, tab = 23;
constexpr int letterA = 38, shift = 50;

struct KeyboardTest : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        connect();
        keyboard = std::make_unique<x11::XKeyboard>(*connection);
    }
    void TearDown() override {
        keyboard.reset();
        XTest::TearDown();
    }
    void press(int code) {
        other->key(code, true);
        other->key(code, false);
        settle();
    }

    std::unique_ptr<x11::XKeyboard> keyboard;
    std::vector<WalkingKey> pressed;
};

TEST_F(KeyboardTest, BringsEveryKeyToWhoeverTookThem) {
    press(right);
    auto taken = keyboard->take([this](WalkingKey key) { pressed.push_back(key); });
    for (const int code : {left, right, up, down, enter, tab, shift, letterA, escape}) press(code);
    EXPECT_EQ(pressed,
              (std::vector<WalkingKey>{WalkingKey::left, WalkingKey::right, WalkingKey::up,
                                       WalkingKey::down, WalkingKey::choose, WalkingKey::right,
                                       WalkingKey::other, WalkingKey::leave}))
        << "a modifier alone is nothing yet";
    taken.reset();
    press(left);
    EXPECT_EQ(pressed.size(), 8u) << "other programs have the keys again";
}

TEST_F(KeyboardTest, WaitsForAProgramThatHasTheKeys) {
    const auto beside = x11::Connection::open(loop, desktop->display());
    x11::XKeyboard another(*beside);
    std::optional<Subscription> held = another.take([](WalkingKey) {});
    auto taken = keyboard->take([this](WalkingKey key) { pressed.push_back(key); });
    press(right);
    EXPECT_TRUE(pressed.empty());
    held.reset();
    EXPECT_TRUE(eventually([this] {
        press(right);
        return !pressed.empty();
    }));
}

}  // namespace
}  // namespace quibbits
