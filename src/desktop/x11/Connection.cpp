#include "desktop/x11/Connection.h"

#include <xcb/randr.h>
#include <xcb/shape.h>
#include <xcb/shm.h>
#include <xcb/sync.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <cstring>

namespace quibbits::x11 {
namespace {

constexpr std::uint8_t extendedEvent = 35;  // "generic event" of the protocol
constexpr std::uint8_t sentByClient = 0x80;

std::uint32_t extendedKey(std::uint8_t opcode, std::uint16_t type) {
    return 0x100u | std::uint32_t{opcode} << 9 | std::uint32_t{type} << 17;
}

const xcb_screen_t* screenOf(xcb_connection_t* xcb, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; screens.rem > 1 && number > 0; --number) xcb_screen_next(&screens);
    return screens.data;
}

}  // namespace

std::unique_ptr<Connection> Connection::open(EventRunLoop& loop, const std::string& display) {
    int screenNumber = 0;
    auto* xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
    if (xcb_connection_has_error(xcb)) {
        xcb_disconnect(xcb);
        return nullptr;
    }
    return std::unique_ptr<Connection>(new Connection(loop, xcb, screenNumber));
}

Connection::Connection(EventRunLoop& loop, xcb_connection_t* xcb, int screenNumber)
    : loop_(loop), xcb_(xcb), screenNumber_(screenNumber), screen_(screenOf(xcb, screenNumber)) {
    queryExtensions();
    internAtoms();
    propertyEvents_ = listen(XCB_PROPERTY_NOTIFY, [this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == root()) rootPropertyChanged.emit(change.atom);
    });
    selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    readable_ = loop.watch(xcb_get_file_descriptor(xcb_), [this] { dispatch(); });
    // A reply that somebody waited for may have brought events with it.
    beforeWaiting_ = loop.beforeWaiting([this] { take(xcb_poll_for_queued_event); });
}

Connection::~Connection() {
    readable_.reset();
    beforeWaiting_.reset();
    xcb_disconnect(xcb_);
}

void Connection::queryExtensions() {
    struct Wanted {
        xcb_extension_t* id;
        std::optional<Extension>* result;
    };
    const Wanted wanted[] = {
        {&xcb_randr_id, &randr},   {&xcb_shape_id, &shape},  {&xcb_shm_id, &shm},
        {&xcb_xfixes_id, &xfixes}, {&xcb_input_id, &xinput}, {&xcb_sync_id, &sync},
    };
    for (const auto& one : wanted) xcb_prefetch_extension_data(xcb_, one.id);
    for (const auto& one : wanted) {
        const auto* data = xcb_get_extension_data(xcb_, one.id);
        if (data && data->present) *one.result = Extension{data->first_event, data->major_opcode};
    }
    // A client must tell its version before it uses some of them.
    const auto ifPresent = [&](const auto& extension, auto ask) {
        return extension ? std::optional(ask()) : std::nullopt;
    };
    const auto askRandr = ifPresent(randr, [&] { return xcb_randr_query_version(xcb_, 1, 5); });
    const auto askShm = ifPresent(shm, [&] { return xcb_shm_query_version(xcb_); });
    const auto askFixes = ifPresent(xfixes, [&] { return xcb_xfixes_query_version(xcb_, 5, 0); });
    const auto askInput = ifPresent(xinput, [&] { return xcb_input_xi_query_version(xcb_, 2, 2); });
    const auto askSync = ifPresent(sync, [&] { return xcb_sync_initialize(xcb_, 3, 1); });
    if (askRandr) {
        const auto version = reply(xcb_, xcb_randr_query_version_reply, *askRandr);
        if (!version || version->minor_version < 5) randr.reset();
    }
    if (askShm) {
        const auto version = reply(xcb_, xcb_shm_query_version_reply, *askShm);
        if (!version || version->minor_version < 2) shm.reset();
    }
    if (askFixes) {
        const auto version = reply(xcb_, xcb_xfixes_query_version_reply, *askFixes);
        if (!version || version->major_version < 4) xfixes.reset();
    }
    if (askInput) {
        const auto version = reply(xcb_, xcb_input_xi_query_version_reply, *askInput);
        if (!version || version->major_version < 2) xinput.reset();
    }
    if (askSync && !reply(xcb_, xcb_sync_initialize_reply, *askSync)) sync.reset();
}

void Connection::internAtoms() {
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies;
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        std::string name = atomNames[i];
        if (name.ends_with("_S0")) name.replace(name.size() - 1, 1, std::to_string(screenNumber_));
        cookies[i] = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    }
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        const auto answer = reply(xcb_, xcb_intern_atom_reply, cookies[i]);
        if (answer) atoms_[i] = answer->atom;
    }
}

Subscription Connection::listen(int type, Handler handler) {
    return listeners_[static_cast<std::uint32_t>(type)].subscribe(std::move(handler));
}

Subscription Connection::listenExtended(const Extension& extension, int type, Handler handler) {
    return listeners_[extendedKey(extension.opcode, static_cast<std::uint16_t>(type))].subscribe(
        std::move(handler));
}

void Connection::selectRootEvents(std::uint32_t mask) {
    rootMask_ |= mask;
    xcb_change_window_attributes(xcb_, root(), XCB_CW_EVENT_MASK, &rootMask_);
}

void Connection::dispatch() {
    take(xcb_poll_for_event);
}

void Connection::take(xcb_generic_event_t* (*next)(xcb_connection_t*)) {
    if (ended_) return;
    while (const auto event = Owned<xcb_generic_event_t>(next(xcb_))) deliver(*event);
    xcb_flush(xcb_);
    if (!xcb_connection_has_error(xcb_)) return;
    ended_ = true;
    readable_.reset();
    if (onEnd) onEnd();
}

void Connection::deliver(const xcb_generic_event_t& event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & ~sentByClient);
    std::uint32_t key = type;
    if (type == extendedEvent) {
        const auto& extended = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
        key = extendedKey(extended.extension, extended.event_type);
    }
    // Errors have type 0 and no listener: a window that vanished meanwhile is an ordinary thing.
    const auto found = listeners_.find(key);
    if (found != listeners_.end()) found->second.emit(event);
}

void Connection::message(const Message& message, std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = message.about;
    event.type = atom(message.type);
    std::memcpy(event.data.data32, data.data(), sizeof data);
    xcb_send_event(xcb_, 0, message.to, message.mask, reinterpret_cast<const char*>(&event));
}

void Connection::messageRoot(xcb_window_t window, Atom type, std::array<std::uint32_t, 5> data) {
    message({.to = root(),
             .about = window,
             .type = type,
             .mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT},
            data);
}

}  // namespace quibbits::x11
