#pragma once
// The one connection to the X server: its root window, extensions and atoms, and the events that
// arrive, dispatched from the run loop. Everything in this folder borrows it. When the server goes
// away `onEnd` is called once and no event comes any more.

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "desktop/EventRunLoop.h"
#include "desktop/x11/Atoms.h"
#include "platform/Signal.h"

namespace quibbits::x11 {

/// A reply or event from xcb, given back to the C library at the end.
struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Owned = std::unique_ptr<T, FreeMemory>;

/// Waits for the reply to a request: reply(connection, xcb_x_reply, cookie). Null when the server
/// refused or is gone.
template <typename Function, typename Cookie>
auto reply(xcb_connection_t* xcb, Function function, Cookie cookie) {
    xcb_generic_error_t* error = nullptr;
    auto* answer = function(xcb, cookie, &error);
    std::free(error);
    return Owned<std::remove_pointer_t<decltype(answer)>>(answer);
}

/// An extension that the server has: the first number of its events, and its own number.
struct Extension {
    std::uint8_t firstEvent = 0;
    std::uint8_t opcode = 0;
};

class Connection {
public:
    /// To the display of that name, $DISPLAY when it is empty. Null when there is none.
    static std::unique_ptr<Connection> open(EventRunLoop& loop, const std::string& display = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    xcb_connection_t* xcb() const { return xcb_; }
    const xcb_screen_t& screen() const { return *screen_; }
    xcb_window_t root() const { return screen_->root; }
    int screenNumber() const { return screenNumber_; }
    xcb_atom_t atom(Atom name) const { return atoms_[static_cast<std::size_t>(name)]; }
    EventRunLoop& loop() const { return loop_; }

    // Nothing where the server lacks the extension or has only an older version.
    std::optional<Extension> randr, shape, shm, xfixes, xinput, sync;

    using Handler = std::function<void(const xcb_generic_event_t&)>;
    /// Events of a core type, or of an extension by its number.
    [[nodiscard]] Subscription listen(int type, Handler handler);
    /// Events of the extended kind, by their number within the extension.
    [[nodiscard]] Subscription listenExtended(const Extension& extension, int type,
                                              Handler handler);
    /// A property of the root window changed.
    Signal<xcb_atom_t> rootPropertyChanged;
    /// Adds to the events that this client hears from the root window.
    void selectRootEvents(std::uint32_t mask);

    /// Takes in every event that has arrived and sends what is buffered.
    void dispatch();
    struct Message {
        xcb_window_t to = 0;
        xcb_window_t about = 0;
        Atom type{};
        std::uint32_t mask = 0;  // of who hears it; 0 for the window's own program
    };
    /// Sends five words to a window.
    void message(const Message& message, std::array<std::uint32_t, 5> data);
    /// Asks the window manager for something, by way of the root window.
    void messageRoot(xcb_window_t window, Atom type, std::array<std::uint32_t, 5> data);

    /// The server is gone.
    std::function<void()> onEnd;
    bool ended() const { return ended_; }

private:
    Connection(EventRunLoop& loop, xcb_connection_t* xcb, int screenNumber);
    void queryExtensions();
    void internAtoms();
    void take(xcb_generic_event_t* (*next)(xcb_connection_t*));
    void deliver(const xcb_generic_event_t& event);

    EventRunLoop& loop_;
    xcb_connection_t* xcb_;
    int screenNumber_;
    const xcb_screen_t* screen_ = nullptr;
    std::array<xcb_atom_t, static_cast<std::size_t>(Atom::count)> atoms_{};
    std::unordered_map<std::uint32_t, Signal<const xcb_generic_event_t&>> listeners_;
    std::uint32_t rootMask_ = 0;
    bool ended_ = false;
    Subscription readable_;
    Subscription beforeWaiting_;
    Subscription propertyEvents_;
};

}  // namespace quibbits::x11
