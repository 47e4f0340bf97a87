#include "desktop/x11/InputGrab.h"

namespace quibbits::x11 {
namespace {

struct Meaning {
    xcb_keysym_t symbol;
    Key key;
};
constexpr Meaning meanings[] = {
    {0xff52, Key::up},     // Up
    {0xff97, Key::up},     // on the number pad
    {0xff54, Key::down},   // Down
    {0xff99, Key::down},   // on the number pad
    {0xff09, Key::down},   // Tab
    {0xff50, Key::home},   // Home
    {0xff57, Key::end},    // End
    {0xff0d, Key::enter},  // Return
    {0xff8d, Key::enter},  // on the number pad
    {0x0020, Key::enter},  // Space
    {0xff1b, Key::escape},
};

/// What the key stands for without any other key held; 0 for nothing.
xcb_keysym_t symbolOf(const Connection& connection, const xcb_key_press_event_t& event) {
    auto* xcb = connection.xcb();
    const auto mapping =
        reply(xcb, xcb_get_keyboard_mapping_reply, xcb_get_keyboard_mapping(xcb, event.detail, 1));
    if (!mapping || xcb_get_keyboard_mapping_keysyms_length(mapping.get()) == 0) return 0;
    return *xcb_get_keyboard_mapping_keysyms(mapping.get());
}

}  // namespace

bool InputGrab::take(xcb_window_t window) {
    auto* xcb = connection_.xcb();
    const auto pointer = xcb_grab_pointer(
        xcb, 0, window, XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE,
        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
    const auto keys = xcb_grab_keyboard(xcb, 0, window, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                        XCB_GRAB_MODE_ASYNC);
    const auto pointerTaken = reply(xcb, xcb_grab_pointer_reply, pointer);
    const auto keysTaken = reply(xcb, xcb_grab_keyboard_reply, keys);
    holds_ = pointerTaken && pointerTaken->status == XCB_GRAB_STATUS_SUCCESS;
    holdsKeys_ = keysTaken && keysTaken->status == XCB_GRAB_STATUS_SUCCESS;
    if (!holds_) release();
    return holds_;
}

void InputGrab::release() {
    if (holds_) xcb_ungrab_pointer(connection_.xcb(), XCB_CURRENT_TIME);
    if (holdsKeys_) xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);
    if (holds_ || holdsKeys_) xcb_flush(connection_.xcb());
    holds_ = holdsKeys_ = false;
}

Key keyOf(const Connection& connection, const xcb_key_press_event_t& event) {
    const auto symbol = symbolOf(connection, event);
    for (const auto& meaning : meanings) {
        if (meaning.symbol == symbol) return meaning.key;
    }
    return Key::other;
}

std::optional<char> shortcutOf(const Connection& connection, const xcb_key_press_event_t& event) {
    constexpr auto others = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;
    if ((event.state & XCB_MOD_MASK_CONTROL) == 0 || (event.state & others) != 0) return {};
    const auto symbol = symbolOf(connection, event);
    const bool isPlain = symbol > ' ' && symbol <= '~';  // whose symbols are their characters
    return isPlain ? std::optional(static_cast<char>(symbol)) : std::nullopt;
}

}  // namespace quibbits::x11
