#include "desktop/x11/Properties.h"

#include <algorithm>

namespace quibbits::x11 {
namespace {

constexpr std::uint32_t mostWords = 1u << 18;  // a megabyte: window lists fit

}  // namespace

std::span<const std::uint32_t> Property::numbers() const {
    if (!reply_ || reply_->format != 32) return {};
    return {static_cast<const std::uint32_t*>(xcb_get_property_value(reply_.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply_.get())) / 4};
}

std::optional<std::uint32_t> Property::number() const {
    const auto all = numbers();
    return all.empty() ? std::nullopt : std::optional(all.front());
}

std::string_view Property::text() const {
    if (!reply_ || reply_->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(reply_.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply_.get()))};
}

bool Property::contains(std::uint32_t value) const {
    const auto all = numbers();
    return std::ranges::find(all, value) != all.end();
}

PropertyRequest::PropertyRequest(const Connection& connection, xcb_window_t window, xcb_atom_t name)
    : xcb_(connection.xcb()),
      cookie_(xcb_get_property(xcb_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords)) {}

Property PropertyRequest::wait() const {
    auto answer = reply(xcb_, xcb_get_property_reply, cookie_);
    if (answer && answer->bytes_after > 0) return {};
    return Property(std::move(answer));
}

std::optional<LongText> longTextOf(const Connection& connection, xcb_window_t window, Atom name,
                                   std::size_t mostBytes) {
    constexpr std::size_t wordBytes = 4;
    LongText text;
    for (std::uint32_t rest = 1; rest > 0;) {
        const auto offset = static_cast<std::uint32_t>(text.bytes.size() / wordBytes);
        const auto answer =
            reply(connection.xcb(), xcb_get_property_reply,
                  xcb_get_property(connection.xcb(), 0, window, connection.atom(name),
                                   XCB_GET_PROPERTY_TYPE_ANY, offset, mostWords));
        if (!answer) return std::nullopt;
        const auto size = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
        rest = answer->bytes_after;
        text.type = answer->type;
        if (answer->format != 8 && size > 0) break;  // of numbers the type alone is told
        if (text.bytes.size() + size + rest > mostBytes) return std::nullopt;
        text.bytes.append(static_cast<const char*>(xcb_get_property_value(answer.get())), size);
    }
    return text;
}

void setProperty(const Connection& connection, xcb_window_t window, xcb_atom_t name,
                 xcb_atom_t type, std::span<const std::uint32_t> values) {
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, name, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void setTextProperty(const Connection& connection, xcb_window_t window, xcb_atom_t name,
                     xcb_atom_t type, std::string_view text) {
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, name, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

}  // namespace quibbits::x11
