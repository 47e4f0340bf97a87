#pragma once
// Hot keys by passive grabs on the root window, one for each state of the lock keys, renewed when
// the keyboard's mapping changes.

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "desktop/x11/Connection.h"
#include "platform/HotKeys.h"

namespace quibbits::x11 {

class XHotKeys final : public HotKeys {
public:
    explicit XHotKeys(Connection& connection);
    /// Also nothing when the keyboard has no such key or no such modifier.
    std::optional<Subscription> hold(HotKey key, std::function<void()> pressed) override;

private:
    /// One combination as the keyboard has it now.
    struct Grab {
        xcb_keycode_t code = 0;
        std::uint16_t modifiers = 0;
        bool operator==(const Grab&) const = default;
    };
    struct Holder {
        HotKey key;
        std::function<void()> pressed;
        std::vector<Grab> grabs;
        bool isDown = false;
        xcb_timestamp_t released = 0;  // of the last release
    };

    void readKeyboard();
    std::uint16_t modifierOf(std::uint32_t symbol) const;
    std::vector<Grab> wanted(const HotKey& key) const;
    bool grab(Holder& holder);
    void ungrab(Holder& holder);
    void keyboardChanged();
    void keyEvent(const xcb_key_press_event_t& event, bool down);

    Connection& connection_;
    std::vector<std::vector<std::uint32_t>> symbols_;  // by key code from the first
    xcb_keycode_t firstCode_ = 0;
    std::vector<std::vector<xcb_keycode_t>> modifierKeys_;  // for each of the 8 modifiers
    std::vector<std::shared_ptr<Holder>> holders_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
