#include "desktop/x11/XHotKeys.h"

#include <algorithm>
#include <utility>

namespace quibbits::x11 {
namespace {

// Names of keys, by the numbers that the protocol gives them.
constexpr std::uint32_t backSpace = 0xff08;
constexpr std::uint32_t numLock = 0xff7f, scrollLock = 0xff14;
constexpr std::uint32_t altLeft = 0xffe9, altRight = 0xffea;
constexpr std::uint16_t allModifiers = 0xff;
constexpr std::uint32_t superLeft = 0xffeb, superRight = 0xffec;

std::uint32_t symbolOf(Key key) {
    switch (key) {
        case Key::deleteBackwards: return backSpace;
    }
    return 0;
}

}  // namespace

XHotKeys::XHotKeys(Connection& connection) : connection_(connection) {
    subscriptions_.push_back(
        connection.listen(XCB_MAPPING_NOTIFY, [this](const xcb_generic_event_t& event) {
            const auto& change = reinterpret_cast<const xcb_mapping_notify_event_t&>(event);
            if (change.request != XCB_MAPPING_POINTER) keyboardChanged();
        }));
    for (const bool down : {true, false}) {
        subscriptions_.push_back(connection.listen(
            down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, [this, down](const xcb_generic_event_t& event) {
                keyEvent(reinterpret_cast<const xcb_key_press_event_t&>(event), down);
            }));
    }
}

void XHotKeys::readKeyboard() {
    auto* xcb = connection_.xcb();
    const auto* setup = xcb_get_setup(xcb);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto askedKeys = xcb_get_keyboard_mapping(xcb, setup->min_keycode, count);
    const auto askedModifiers = xcb_get_modifier_mapping(xcb);
    const auto keys = reply(xcb, xcb_get_keyboard_mapping_reply, askedKeys);
    const auto modifiers = reply(xcb, xcb_get_modifier_mapping_reply, askedModifiers);
    firstCode_ = setup->min_keycode;
    symbols_.clear();
    modifierKeys_.clear();
    if (!keys || !modifiers) return;
    const xcb_keysym_t* symbol = xcb_get_keyboard_mapping_keysyms(keys.get());
    for (int i = 0; i < count; ++i, symbol += keys->keysyms_per_keycode) {
        symbols_.emplace_back(symbol, symbol + keys->keysyms_per_keycode);
    }
    const xcb_keycode_t* code = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (int i = 0; i < 8; ++i, code += modifiers->keycodes_per_modifier) {
        modifierKeys_.emplace_back(code, code + modifiers->keycodes_per_modifier);
    }
}

/// The modifier that a key with the symbol sets; 0 when none does.
std::uint16_t XHotKeys::modifierOf(std::uint32_t symbol) const {
    for (std::size_t bit = 0; bit < modifierKeys_.size(); ++bit) {
        for (const xcb_keycode_t code : modifierKeys_[bit]) {
            const std::size_t at = static_cast<std::size_t>(code) - firstCode_;
            if (code < firstCode_ || at >= symbols_.size()) continue;
            if (std::ranges::find(symbols_[at], symbol) != symbols_[at].end()) {
                return static_cast<std::uint16_t>(1u << bit);
            }
        }
    }
    return 0;
}

std::vector<XHotKeys::Grab> XHotKeys::wanted(const HotKey& key) const {
    const auto either = [this](std::uint32_t left, std::uint32_t right) {
        const auto found = modifierOf(left);
        return found ? found : modifierOf(right);
    };
    std::uint16_t modifiers = 0;
    const auto add = [&](bool asked, std::uint16_t bit) {
        modifiers = static_cast<std::uint16_t>(modifiers | (asked ? bit : 0));
        return !asked || bit != 0;
    };
    if (!add(key.modifiers.command, either(superLeft, superRight)) ||
        !add(key.modifiers.option, either(altLeft, altRight)) ||
        !add(key.modifiers.control, XCB_MOD_MASK_CONTROL) ||
        !add(key.modifiers.shift, XCB_MOD_MASK_SHIFT)) {
        return {};
    }
    // Every combination of the locks, without doubles where a lock is missing.
    std::vector<std::uint16_t> locks{0};
    for (const std::uint16_t lock :
         {std::uint16_t{XCB_MOD_MASK_LOCK}, modifierOf(numLock), modifierOf(scrollLock)}) {
        if (lock == 0 || (modifiers & lock) != 0) continue;
        const auto before = locks;
        for (const auto each : before) locks.push_back(static_cast<std::uint16_t>(each | lock));
    }
    std::ranges::sort(locks);
    locks.erase(std::unique(locks.begin(), locks.end()), locks.end());

    std::vector<Grab> grabs;
    for (std::size_t i = 0; i < symbols_.size(); ++i) {
        if (symbols_[i].empty() || symbols_[i].front() != symbolOf(key.key)) continue;
        for (const auto lock : locks) {
            grabs.push_back({static_cast<xcb_keycode_t>(firstCode_ + i),
                             static_cast<std::uint16_t>(modifiers | lock)});
        }
    }
    return grabs;
}

/// All or nothing: a combination that works only without Num Lock would be worse than none.
bool XHotKeys::grab(Holder& holder) {
    auto* xcb = connection_.xcb();
    const auto grabs = wanted(holder.key);
    std::vector<xcb_void_cookie_t> asked;
    for (const Grab& each : grabs) {
        asked.push_back(xcb_grab_key_checked(xcb, 1, connection_.root(), each.modifiers, each.code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool refused = grabs.empty();
    for (std::size_t i = 0; i < grabs.size(); ++i) {
        const Owned<xcb_generic_error_t> error(xcb_request_check(xcb, asked[i]));
        if (error)
            refused = true;
        else
            holder.grabs.push_back(grabs[i]);
    }
    if (refused) ungrab(holder);
    return !refused;
}

void XHotKeys::ungrab(Holder& holder) {
    for (const Grab& each : std::exchange(holder.grabs, {})) {
        xcb_ungrab_key(connection_.xcb(), each.code, connection_.root(), each.modifiers);
    }
    holder.isDown = false;
    xcb_flush(connection_.xcb());
}

std::optional<Subscription> XHotKeys::hold(HotKey key, std::function<void()> pressed) {
    const bool again =
        std::ranges::any_of(holders_, [&](const auto& each) { return each->key == key; });
    if (again) return std::nullopt;
    if (holders_.empty()) readKeyboard();
    auto holder = std::make_shared<Holder>(Holder{.key = key, .pressed = std::move(pressed)});
    if (!grab(*holder)) return std::nullopt;
    holders_.push_back(holder);
    return Subscription([this, holder] {
        ungrab(*holder);
        std::erase(holders_, holder);
    });
}

void XHotKeys::keyboardChanged() {
    if (holders_.empty()) return;
    readKeyboard();
    for (const auto& holder : holders_) {
        if (wanted(holder->key) == holder->grabs) continue;
        ungrab(*holder);
        grab(*holder);  // refused, the key stays dead until it is asked for again
    }
}

void XHotKeys::keyEvent(const xcb_key_press_event_t& event, bool down) {
    const auto all = holders_;
    for (const auto& holder : all) {
        // The program may have the whole keyboard for another reason.
        const auto modifiers = static_cast<std::uint16_t>(event.state & allModifiers);
        const bool isOurs = std::ranges::any_of(holder->grabs, [&](const Grab& grab) {
            return grab.code == event.detail && (!down || grab.modifiers == modifiers);
        });
        if (!isOurs) continue;
        if (!down) {
            holder->isDown = false;
            holder->released = event.time;
            continue;
        }
        // A key that is held repeats as a release and a press of the same moment.
        const bool repeats = holder->isDown || event.time == holder->released;
        holder->isDown = true;
        if (repeats) continue;
        const auto pressed = holder->pressed;
        pressed();
    }
}

}  // namespace quibbits::x11
