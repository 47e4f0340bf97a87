#pragma once
// Reading window properties: requests first, values later, so that asking about many windows costs
// one round trip.

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "desktop/x11/Connection.h"

namespace quibbits::x11 {

/// A property's value as the server gave it. One of which a part is missing is none.
class Property {
public:
    Property() = default;
    explicit Property(Owned<xcb_get_property_reply_t> reply) : reply_(std::move(reply)) {}

    /// The 32-bit values; empty when it is missing or of another format.
    std::span<const std::uint32_t> numbers() const;
    std::optional<std::uint32_t> number() const;
    /// The bytes of a text; empty when it is missing.
    std::string_view text() const;
    bool contains(std::uint32_t value) const;
    /// None when it is missing.
    xcb_atom_t type() const { return reply_ ? reply_->type : XCB_NONE; }

private:
    Owned<xcb_get_property_reply_t> reply_;
};

/// A request for a property that has been sent; its value is asked for once.
class PropertyRequest {
public:
    PropertyRequest(const Connection& connection, xcb_window_t window, xcb_atom_t name);
    Property wait() const;

private:
    xcb_connection_t* xcb_;
    xcb_get_property_cookie_t cookie_;
};

inline Property propertyOf(const Connection& connection, xcb_window_t window, Atom name) {
    return PropertyRequest(connection, window, connection.atom(name)).wait();
}

/// A property of any length, read piece by piece up to so many bytes; nothing when it is longer.
struct LongText {
    xcb_atom_t type = XCB_NONE;
    std::string bytes;
};
std::optional<LongText> longTextOf(const Connection& connection, xcb_window_t window, Atom name,
                                   std::size_t mostBytes);

/// Replaces a property with 32-bit values of the type.
void setProperty(const Connection& connection, xcb_window_t window, xcb_atom_t name,
                 xcb_atom_t type, std::span<const std::uint32_t> values);
/// Replaces a property with a text.
void setTextProperty(const Connection& connection, xcb_window_t window, xcb_atom_t name,
                     xcb_atom_t type, std::string_view text);

}  // namespace quibbits::x11
