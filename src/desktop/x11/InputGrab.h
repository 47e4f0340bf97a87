#pragma once
// The pointer and the keys of the whole desktop, taken for one window of this program for as long
// as a menu is open or something is carried. Nothing is held back from other programs: the events
// come to this window in their stead and nobody has to let them go on.

#include <optional>

#include "desktop/x11/Connection.h"

namespace quibbits::x11 {

class InputGrab {
public:
    explicit InputGrab(Connection& connection) : connection_(connection) {}
    ~InputGrab() { release(); }
    InputGrab(const InputGrab&) = delete;
    InputGrab& operator=(const InputGrab&) = delete;

    /// Takes the pointer, and the keys where nobody else has them. False while another program has
    /// the pointer. The window must be shown.
    bool take(xcb_window_t window);
    void release();
    explicit operator bool() const { return holds_; }

private:
    Connection& connection_;
    bool holds_ = false;
    bool holdsKeys_ = false;
};

/// What a key does in a menu; other keys do nothing.
enum class Key { other, up, down, home, end, enter, escape };

/// The key of an event, by the keyboard's present layout.
Key keyOf(const Connection& connection, const xcb_key_press_event_t& event);
/// The character of a key that was pressed together with Control alone, in lower case.
std::optional<char> shortcutOf(const Connection& connection, const xcb_key_press_event_t& event);

}  // namespace quibbits::x11
