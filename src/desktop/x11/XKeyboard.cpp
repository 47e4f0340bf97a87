#include "desktop/x11/XKeyboard.h"

#include <algorithm>
#include <utility>

namespace quibbits::x11 {
namespace {

constexpr Seconds betweenRequests = 0.03;
constexpr int mostRefusals = 30;

struct Meaning {
    xcb_keysym_t symbol;
    WalkingKey key;
};
constexpr Meaning meanings[] = {
    {0xff51, WalkingKey::left},   {0xff96, WalkingKey::left},    // also on the number pad
    {0xff53, WalkingKey::right},  {0xff98, WalkingKey::right},   //
    {0xff52, WalkingKey::up},     {0xff97, WalkingKey::up},      //
    {0xff54, WalkingKey::down},   {0xff99, WalkingKey::down},    //
    {0xff09, WalkingKey::right},  {0xff0d, WalkingKey::choose},  // Tab, Return
    {0xff8d, WalkingKey::choose}, {0x0020, WalkingKey::choose}, {0xff1b, WalkingKey::leave},
};

constexpr std::pair<xcb_keysym_t, xcb_keysym_t> modifierSymbols{0xffe1, 0xffee};  // Shift to Hyper

}  // namespace

XKeyboard::XKeyboard(Connection& connection) : connection_(connection) {
    presses_ = connection_.listen(XCB_KEY_PRESS, [this](const auto& e) {
        const auto& event = reinterpret_cast<const xcb_key_press_event_t&>(e);
        if (holds_ && event.event == connection_.root()) pressedKey(event);
    });
}

Subscription XKeyboard::take(std::function<void(WalkingKey)> pressed) {
    auto listener = std::make_shared<std::function<void(WalkingKey)>>(std::move(pressed));
    listeners_.push_back(listener);
    refusals_ = 0;
    grab();
    return Subscription([this, listener] { leave(listener); });
}

void XKeyboard::grab() {
    if (holds_ || listeners_.empty()) return askAgain_.cancel();
    auto* xcb = connection_.xcb();
    const auto answer = reply(xcb, xcb_grab_keyboard_reply,
                              xcb_grab_keyboard(xcb, 0, connection_.root(), XCB_CURRENT_TIME,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    holds_ = answer && answer->status == XCB_GRAB_STATUS_SUCCESS;
    if (holds_ || ++refusals_ >= mostRefusals) return askAgain_.cancel();
    if (!askAgain_) askAgain_ = connection_.loop().timer(betweenRequests, [this] { grab(); });
}

void XKeyboard::leave(const Listener& listener) {
    *listener = nullptr;
    std::erase(listeners_, listener);
    if (!listeners_.empty()) return;
    askAgain_.cancel();
    if (!std::exchange(holds_, false)) return;
    xcb_ungrab_keyboard(connection_.xcb(), XCB_CURRENT_TIME);
    xcb_flush(connection_.xcb());
}

void XKeyboard::pressedKey(const xcb_key_press_event_t& event) {
    auto* xcb = connection_.xcb();
    const auto mapping =
        reply(xcb, xcb_get_keyboard_mapping_reply, xcb_get_keyboard_mapping(xcb, event.detail, 1));
    const bool hasSymbol = mapping && xcb_get_keyboard_mapping_keysyms_length(mapping.get()) > 0;
    const auto symbol = hasSymbol ? *xcb_get_keyboard_mapping_keysyms(mapping.get()) : 0;
    if (symbol >= modifierSymbols.first && symbol <= modifierSymbols.second) return;
    const auto* known = std::ranges::find(meanings, symbol, &Meaning::symbol);
    const auto key = known == std::end(meanings) ? WalkingKey::other : known->key;
    const Listener last = listeners_.empty() ? nullptr : listeners_.back();
    if (!last || !*last) return;
    const auto call = *last;  // may end its own handle
    call(key);
}

}  // namespace quibbits::x11
