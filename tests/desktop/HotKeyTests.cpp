// The delete key on a real X server, pressed as a keyboard does.

#include "XTest.h"
#include "desktop/x11/XHotKeys.h"

namespace quibbits {
namespace {

constexpr HotKey deleteKey{.modifiers = {.command = true, .option = true}};
// Key codes of the usual keyboard.
constexpr int backSpace = 22, alt = 64, super = 133, shift = 50, capsLock = 66, numLock = 77;

struct HotKeyTest : XTest {
    void SetUp() override {
        XTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        connect();
        keys = std::make_unique<x11::XHotKeys>(*connection);
    }
    void hold() {
        held = keys->hold(deleteKey, [this] { ++pressed; });
        ASSERT_TRUE(held);
    }
    /// How often the key was told when it is pressed with others held down.
    int press(const std::vector<int>& with, int code = backSpace) {
        pressed = 0;
        for (const int each : with) other->key(each, true);
        other->key(code, true);
        other->key(code, false);
        for (const int each : with) other->key(each, false);
        settle();
        return pressed;
    }
    void toggle(int lock) {
        other->key(lock, true);
        other->key(lock, false);
        settle();
    }

    std::unique_ptr<x11::XHotKeys> keys;
    std::optional<Subscription> held;
    int pressed = 0;
};

TEST_F(HotKeyTest, IsToldWithItsModifiersWhateverLocksAreOn) {
    EXPECT_EQ(press({super, alt}), 0) << "nobody asked for it yet";
    hold();
    EXPECT_EQ(press({super, alt}), 1);
    EXPECT_EQ(press({super, alt, shift}), 0);
    EXPECT_EQ(press({alt}), 0);
    EXPECT_EQ(press({}), 0);
    for (const int lock : {numLock, capsLock, numLock}) {  // one, both, the other
        toggle(lock);
        EXPECT_EQ(press({super, alt}), 1) << lock;
    }
    toggle(capsLock);
    held.reset();
    EXPECT_EQ(press({super, alt}), 0);
}

TEST_F(HotKeyTest, IsToldOnceHoweverLongItIsHeld) {
    hold();
    other->key(super, true);
    other->key(alt, true);
    other->key(backSpace, true);
    turnFor(1.5);  // a keyboard repeats after 0.66 s
    EXPECT_EQ(pressed, 1);
    other->key(backSpace, false);
    settle();
    other->key(backSpace, true);
    other->key(backSpace, false);
    settle();
    EXPECT_EQ(pressed, 2);
    other->key(alt, false);
    other->key(super, false);
}

TEST_F(HotKeyTest, ThatAnotherProgramHasIsRefusedWhole) {
    constexpr std::uint16_t commandOption = XCB_MOD_MASK_4 | XCB_MOD_MASK_1;
    const auto grab = [&](std::uint16_t modifiers) {
        xcb_grab_key(other->xcb(), 0, other->root(), modifiers, backSpace, XCB_GRAB_MODE_ASYNC,
                     XCB_GRAB_MODE_ASYNC);
        std::free(
            xcb_get_input_focus_reply(other->xcb(), xcb_get_input_focus(other->xcb()), nullptr));
    };
    grab(commandOption | XCB_MOD_MASK_LOCK);  // with one of the locks only
    EXPECT_FALSE(keys->hold(deleteKey, [] {}));
    xcb_ungrab_key(other->xcb(), backSpace, other->root(), XCB_MOD_MASK_ANY);
    grab(commandOption);  // which no grab of ours may have kept
    xcb_ungrab_key(other->xcb(), backSpace, other->root(), XCB_MOD_MASK_ANY);
    grab(0);
    hold();
    EXPECT_EQ(press({super, alt}), 1);
}

TEST_F(HotKeyTest, FollowsTheKeyToAnotherPlaceOnTheKeyboard) {
    hold();
    constexpr int elsewhere = 38;  // the key A
    constexpr xcb_keysym_t backSpaceSymbol = 0xff08, letterA = 'a';
    xcb_change_keyboard_mapping(other->xcb(), 1, elsewhere, 1, &backSpaceSymbol);
    xcb_change_keyboard_mapping(other->xcb(), 1, backSpace, 1, &letterA);
    xcb_flush(other->xcb());
    EXPECT_TRUE(eventually([&] { return press({super, alt}, elsewhere) == 1; }));
    EXPECT_EQ(press({super, alt}), 0);
}

}  // namespace
}  // namespace quibbits
