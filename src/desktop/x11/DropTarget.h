#pragma once
// The receiving side of drag and drop between programs, XDND version 5, for one window.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/x11/Connection.h"
#include "desktop/x11/Properties.h"
#include "layers/Panel.h"

namespace quibbits::x11 {

class DropTarget {
public:
    /// Where the drag is, in pixels of the root window, and what it carries as far as that is
    /// known.
    struct Drag {
        int rootX = 0;
        int rootY = 0;
        std::optional<std::string> item;
        std::vector<std::string> files;  // at the drop only
    };
    using Ask = std::function<bool(const Drag&)>;

    /// `over` says whether a drop would be taken, `drop` takes it. Both come from the run loop, and
    /// `drop` may end this.
    DropTarget(Connection& connection, xcb_window_t window, Ask over, Ask drop);

private:
    void message(const xcb_client_message_event_t& event);
    void entered(const std::uint32_t* data);
    void moved(const std::uint32_t* data);
    void dropped(const std::uint32_t* data);
    void received(const xcb_selection_notify_event_t& event);
    void receivedPiece();
    void arrived(xcb_atom_t type, std::string_view data);
    std::optional<LongText> takeTransfer();
    void giveUp();
    void request(Atom type, std::uint32_t time);
    void take();
    void refuse();
    void forget();

    Connection& connection_;
    xcb_window_t window_;
    Ask over_;
    Ask drop_;
    xcb_window_t source_ = 0;
    bool offersFiles_ = false;
    bool offersItem_ = false;
    bool wouldTake_ = false;
    bool dropping_ = false;  // the button is up and the data is on its way
    Drag drag_;
    /// Data that is too large for one message.
    struct Gathering {
        xcb_atom_t type = XCB_NONE;
        std::string data;
    };
    std::optional<Gathering> gathering_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
