#include "desktop/x11/DropTarget.h"

#include <algorithm>
#include <utility>

#include "desktop/x11/DropData.h"

namespace quibbits::x11 {
namespace {

constexpr std::uint32_t protocolVersion = 5;
constexpr std::size_t longestItemName = 256;
constexpr std::size_t mostData = 8'000'000;  // bytes; a longer list is refused whole

xcb_atom_t actionFor(const Connection& connection, bool taken) {
    constexpr xcb_atom_t none = XCB_NONE;
    return taken ? connection.atom(Atom::dndActionCopy) : none;
}

void tellFinished(Connection& connection, xcb_window_t source, xcb_window_t target, bool taken) {
    connection.message({.to = source, .about = source, .type = Atom::dndFinished},
                       {target, taken ? 1u : 0u, actionFor(connection, taken)});
}

}  // namespace

DropTarget::DropTarget(Connection& connection, xcb_window_t window, Ask over, Ask drop)
    : connection_(connection), window_(window), over_(std::move(over)), drop_(std::move(drop)) {
    setProperty(connection, window, connection.atom(Atom::dndAware), XCB_ATOM_ATOM,
                {{protocolVersion}});
    subscriptions_.push_back(connection.listen(XCB_CLIENT_MESSAGE, [this](const auto& event) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.window == window_ && message.format == 32) this->message(message);
    }));
    subscriptions_.push_back(connection.listen(XCB_SELECTION_NOTIFY, [this](const auto& event) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (answer.requestor == window_ &&
            answer.selection == connection_.atom(Atom::dndSelection)) {
            received(answer);
        }
    }));
    subscriptions_.push_back(connection.listen(XCB_PROPERTY_NOTIFY, [this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (gathering_ && change.window == window_ && change.state == XCB_PROPERTY_NEW_VALUE &&
            change.atom == connection_.atom(Atom::dropTransfer)) {
            receivedPiece();
        }
    }));
}

void DropTarget::message(const xcb_client_message_event_t& event) {
    const auto is = [&](Atom name) { return event.type == connection_.atom(name); };
    const auto* data = event.data.data32;
    if (is(Atom::dndEnter)) return entered(data);
    if (source_ == 0 || data[0] != source_) return;  // about a drag that has ended
    if (is(Atom::dndPosition)) moved(data);
    if (is(Atom::dndDrop)) dropped(data);
    if (is(Atom::dndLeave) && !dropping_) forget();
}

void DropTarget::entered(const std::uint32_t* data) {
    forget();
    source_ = data[0];
    const bool hasMoreTypes = (data[1] & 1) != 0;
    const auto list =
        hasMoreTypes ? propertyOf(connection_, source_, Atom::dndTypeList) : Property();
    const auto offers = [&](Atom name) {
        const auto type = connection_.atom(name);
        return hasMoreTypes ? list.contains(type) : std::find(data + 2, data + 5, type) != data + 5;
    };
    offersFiles_ = offers(Atom::uriList);
    offersItem_ = offers(Atom::privateItem);
    if (offersItem_) {
        drag_.item = "";  // until its name arrives
        request(Atom::privateItem, XCB_CURRENT_TIME);
    }
}

void DropTarget::moved(const std::uint32_t* data) {
    drag_.rootX = static_cast<int>(data[2] >> 16);
    drag_.rootY = static_cast<int>(data[2] & 0xffff);
    wouldTake_ = (offersFiles_ || offersItem_) && over_(drag_);
    constexpr std::uint32_t accept = 1;
    constexpr std::uint32_t tellEveryMove = 2;
    connection_.message({.to = source_, .about = source_, .type = Atom::dndStatus},
                        {window_, (wouldTake_ ? accept : 0) | tellEveryMove, 0, 0,
                         actionFor(connection_, wouldTake_)});
}

void DropTarget::dropped(const std::uint32_t* data) {
    if (!wouldTake_) return refuse();
    dropping_ = true;
    request(offersItem_ ? Atom::privateItem : Atom::uriList, data[2]);
}

void DropTarget::request(Atom type, std::uint32_t time) {
    xcb_convert_selection(connection_.xcb(), window_, connection_.atom(Atom::dndSelection),
                          connection_.atom(type), connection_.atom(Atom::dropTransfer), time);
}

void DropTarget::received(const xcb_selection_notify_event_t& event) {
    if (source_ == 0) return;
    const auto transfer = event.property == XCB_NONE ? std::optional(LongText()) : takeTransfer();
    if (!transfer) return giveUp();
    if (transfer->type == connection_.atom(Atom::inPieces)) {
        gathering_ = {.type = event.target, .data = {}};  // taking it asked for the first piece
    } else {
        arrived(event.target, transfer->bytes);
    }
}

/// Each piece follows when the one before has been taken; an empty one is the last.
void DropTarget::receivedPiece() {
    const auto piece = takeTransfer();
    if (!piece || gathering_->data.size() + piece->bytes.size() > mostData) return giveUp();
    gathering_->data += piece->bytes;
    if (!piece->bytes.empty()) return;
    const auto whole = std::move(*gathering_);
    gathering_.reset();
    arrived(whole.type, whole.data);
}

/// A part of a list may name other files than the whole of it.
void DropTarget::giveUp() {
    if (dropping_) return refuse();
    forget();
}

/// What the source has put at the window, which is taken away there; nothing when it is too long.
std::optional<LongText> DropTarget::takeTransfer() {
    auto transfer = longTextOf(connection_, window_, Atom::dropTransfer, mostData);
    xcb_delete_property(connection_.xcb(), window_, connection_.atom(Atom::dropTransfer));
    xcb_flush(connection_.xcb());
    return transfer;
}

void DropTarget::arrived(xcb_atom_t type, std::string_view data) {
    if (type == connection_.atom(Atom::privateItem)) {
        drag_.item = data.substr(0, longestItemName);
        if (!dropping_) return;
        // An item that nobody knows leaves the files that came with it, if any.
        if (offersFiles_) return request(Atom::uriList, XCB_CURRENT_TIME);
    } else if (type == connection_.atom(Atom::uriList)) {
        drag_.files = filesOfUriList(data);
    }
    if (dropping_) take();
}

/// Whoever takes the drop may end the window with it, and this.
void DropTarget::take() {
    Connection& connection = connection_;
    const xcb_window_t window = window_;
    const xcb_window_t source = source_;
    const Drag drag = std::move(drag_);
    const Ask drop = drop_;
    forget();
    tellFinished(connection, source, window, drop(drag));
}

void DropTarget::refuse() {
    tellFinished(connection_, source_, window_, false);
    forget();
}

void DropTarget::forget() {
    source_ = 0;
    offersFiles_ = offersItem_ = wouldTake_ = dropping_ = false;
    drag_ = {};
    gathering_.reset();
}

}  // namespace quibbits::x11
