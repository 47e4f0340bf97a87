#include "desktop/x11/XScreens.h"

#include <xcb/randr.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "desktop/x11/Properties.h"
#include "desktop/x11/WindowManager.h"
#include "desktop/x11/XSettings.h"

namespace quibbits::x11 {
namespace {

// Several properties change together when a panel opens or a monitor is plugged in.
constexpr Seconds settling = 0.1;

constexpr double dotsPerInch = 96;
constexpr double scaleStep = 0.25;
constexpr double largestScale = 8;
constexpr int i3Depth = 3;                     // levels of its windows around a dock
constexpr std::uint32_t widestStrut = 0xffff;  // pixels; no display is larger

/// The value of "Xft.dpi:" in the server's resource texts.
std::optional<double> resourceDpi(std::string_view resources) {
    constexpr std::string_view name = "Xft.dpi:";
    for (std::size_t at = 0; at < resources.size();) {
        const auto end = std::min(resources.find('\n', at), resources.size());
        auto line = resources.substr(at, end - at);
        at = end + 1;
        if (!line.starts_with(name)) continue;
        line.remove_prefix(std::min(line.find_first_not_of(" \t", name.size()), line.size()));
        double value = 0;
        const auto result = std::from_chars(line.data(), line.data() + line.size(), value);
        if (result.ec == std::errc{} && value > 0) return value;
    }
    return std::nullopt;
}

bool overlaps(const PixelRect& a, const PixelRect& b) {
    return !a.intersected(b).isEmpty();
}

}  // namespace

XScreens::XScreens(Connection& connection) : connection_(connection) {
    connection.selectRootEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    if (connection.randr) {
        xcb_randr_select_input(connection.xcb(), connection.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
        for (const int type : {XCB_RANDR_SCREEN_CHANGE_NOTIFY, XCB_RANDR_NOTIFY}) {
            subscriptions_.push_back(connection.listen(connection.randr->firstEvent + type,
                                                       [this](const auto&) { updateSoon(); }));
        }
    }
    const auto ofDockOrRoot = [this](xcb_window_t window) {
        return window == connection_.root() ||
               std::ranges::find(watched_, window) != watched_.end();
    };
    subscriptions_.push_back(connection.listen(XCB_CONFIGURE_NOTIFY, [=, this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (ofDockOrRoot(change.window)) updateSoon();
    }));
    subscriptions_.push_back(connection.listen(XCB_PROPERTY_NOTIFY, [=, this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const bool strut = change.atom == connection_.atom(Atom::strutPartial) ||
                           change.atom == connection_.atom(Atom::strut);
        if (strut && ofDockOrRoot(change.window)) updateSoon();
    }));
    subscriptions_.push_back(connection.rootPropertyChanged.subscribe([this](xcb_atom_t name) {
        if (name == XCB_ATOM_RESOURCE_MANAGER || name == connection_.atom(Atom::workArea) ||
            name == connection_.atom(Atom::clientList)) {
            updateSoon();
        }
    }));
    update();
}

void XScreens::updateSoon() {
    if (pending_) return;
    pending_ = connection_.loop().timer(settling, [this] {
        pending_.cancel();
        update();
    });
}

std::optional<Screen> XScreens::main() const {
    return all_.empty() ? std::nullopt : std::optional(all_.front());
}

std::optional<Screen> XScreens::at(Point point) const {
    const auto nearest = std::ranges::min_element(
        all_, {}, [&](const Screen& screen) { return screen.frame.distanceTo(point); });
    return nearest == all_.end() ? std::nullopt : std::optional(*nearest);
}

void XScreens::update() {
    const auto monitors = this->monitors();
    const auto mainBefore = main();
    const auto dockBefore = bottomDock_;
    all_.clear();
    bottomDock_.reset();
    if (!monitors.empty()) {
        const PixelRect& first = monitors.front();
        coordinates_ = {scaleBySettings(), first.x, first.y + first.height};
        const auto docks = this->docks();
        for (const PixelRect& monitor : monitors) {
            all_.push_back({.frame = coordinates_.points(monitor),
                            .visibleFrame = coordinates_.points(withoutDocks(monitor, docks)),
                            .scale = coordinates_.scale});
        }
        for (const auto& dock : docks) {
            if (dock.strut[3] > 0 && overlaps(dock.frame, first)) {
                bottomDock_ = coordinates_.points(dock.frame.intersected(first));
            }
        }
    }
    if (main() != mainBefore) changed.emit();
    if (bottomDock_ != dockBefore) dockChanged.emit();
}

/// The main one first: the primary one, else the first that the server tells of. The whole display
/// where it tells of none.
std::vector<PixelRect> XScreens::monitors() {
    auto* xcb = connection_.xcb();
    const auto geometryAsked = xcb_get_geometry(xcb, connection_.root());
    std::vector<PixelRect> found;
    if (connection_.randr) {
        const auto monitors = reply(xcb, xcb_randr_get_monitors_reply,
                                    xcb_randr_get_monitors(xcb, connection_.root(), 1));
        if (monitors) {
            auto each = xcb_randr_get_monitors_monitors_iterator(monitors.get());
            for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
                const auto& info = *each.data;
                const PixelRect monitor{info.x, info.y, info.width, info.height};
                if (monitor.isEmpty()) continue;
                found.insert(info.primary ? found.begin() : found.end(), monitor);
            }
        }
    }
    const auto geometry = reply(xcb, xcb_get_geometry_reply, geometryAsked);
    if (!geometry) return {};
    display_ = {0, 0, geometry->width, geometry->height};
    if (found.empty()) found.push_back(display_);
    return found;
}

double XScreens::scaleBySettings() const {
    const auto resources =
        PropertyRequest(connection_, connection_.root(), XCB_ATOM_RESOURCE_MANAGER).wait();
    const double byDpi = resourceDpi(resources.text()).value_or(dotsPerInch) / dotsPerInch;
    const double byFactor = windowScalingFactor(connection_);
    const double scale = std::round(std::max(byDpi, byFactor) / scaleStep) * scaleStep;
    return std::clamp(scale, 1.0, largestScale);
}

/// The windows inside a window, so many levels down.
std::vector<xcb_window_t> XScreens::windowsBelow(xcb_window_t top, int depth) const {
    auto* xcb = connection_.xcb();
    std::vector<xcb_window_t> all;
    std::vector<xcb_window_t> level{top};
    for (; depth > 0; --depth) {
        std::vector<xcb_query_tree_cookie_t> asked;
        for (const auto window : level) asked.push_back(xcb_query_tree(xcb, window));
        level.clear();
        for (const auto& cookie : asked) {
            const auto tree = reply(xcb, xcb_query_tree_reply, cookie);
            if (!tree) continue;
            const auto* children = xcb_query_tree_children(tree.get());
            level.insert(level.end(), children, children + tree->children_len);
        }
        all.insert(all.end(), level.begin(), level.end());
    }
    return all;
}

std::vector<XScreens::Dock> XScreens::docks() {
    auto* xcb = connection_.xcb();
    auto candidates = windowsBelow(connection_.root(), isI3(connection_) ? i3Depth : 0);
    const auto list = propertyOf(connection_, connection_.root(), Atom::clientList);
    candidates.insert(candidates.end(), list.numbers().begin(), list.numbers().end());
    struct Asked {
        xcb_window_t window;
        PropertyRequest type, strutPartial, strut;
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t place;
        xcb_get_window_attributes_cookie_t attributes;
    };
    std::vector<Asked> asked;
    for (const auto window : candidates) {
        const auto property = [&](Atom name) {
            return PropertyRequest(connection_, window, connection_.atom(name));
        };
        asked.push_back({window, property(Atom::windowType), property(Atom::strutPartial),
                         property(Atom::strut), xcb_get_geometry(xcb, window),
                         xcb_translate_coordinates(xcb, window, connection_.root(), 0, 0),
                         xcb_get_window_attributes(xcb, window)});
    }
    std::vector<Dock> found;
    for (const auto& one : asked) {
        const bool isDock = one.type.wait().contains(connection_.atom(Atom::typeDock));
        const auto partial = one.strutPartial.wait();
        const auto plain = one.strut.wait();
        const auto geometry = reply(xcb, xcb_get_geometry_reply, one.geometry);
        const auto place = reply(xcb, xcb_translate_coordinates_reply, one.place);
        const auto attributes = reply(xcb, xcb_get_window_attributes_reply, one.attributes);
        if (!isDock || !geometry || !place || !attributes) continue;
        if (!list.contains(one.window) && attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
        std::vector<std::uint32_t> strut(partial.numbers().begin(), partial.numbers().end());
        if (strut.size() < 4) strut.assign(plain.numbers().begin(), plain.numbers().end());
        if (strut.size() < 4)
            continue;  // as the panels of this program, whose events are their own
        if (std::ranges::find(watched_, one.window) == watched_.end()) {
            const std::uint32_t mask =
                XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
            xcb_change_window_attributes(xcb, one.window, XCB_CW_EVENT_MASK, &mask);
        }
        found.push_back({one.window,
                         {place->dst_x, place->dst_y, geometry->width, geometry->height},
                         std::move(strut)});
    }
    watched_.clear();
    for (const auto& dock : found) watched_.push_back(dock.window);
    return found;
}

PixelRect XScreens::withoutDocks(PixelRect monitor, const std::vector<Dock>& docks) const {
    int left = monitor.x;
    int top = monitor.y;
    int right = monitor.x + monitor.width;
    int bottom = monitor.y + monitor.height;
    for (const auto& dock : docks) {
        if (!overlaps(dock.frame, monitor)) continue;
        // Struts are counted from the edges of the whole display.
        const auto reserved = [&](std::size_t side) {
            return static_cast<int>(std::min(dock.strut[side], widestStrut));
        };
        if (reserved(0) > 0) left = std::max(left, reserved(0));
        if (reserved(1) > 0) right = std::min(right, display_.width - reserved(1));
        if (reserved(2) > 0) top = std::max(top, reserved(2));
        if (reserved(3) > 0) bottom = std::min(bottom, display_.height - reserved(3));
    }
    const PixelRect rest{left, top, right - left, bottom - top};
    return rest.isEmpty() ? monitor : rest;
}

}  // namespace quibbits::x11
