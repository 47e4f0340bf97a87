#include "desktop/x11/XScreens.h"

#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "desktop/x11/Properties.h"
#include "desktop/x11/XSettings.h"

namespace quibbits::x11 {
namespace {

// Several properties change together when a panel opens or a monitor is plugged in.
constexpr Seconds settling = 0.1;

// Nobody tells of a panel that a window manager leaves alone, and at the beginning of a session it
// may come after this program.
constexpr std::array<Seconds, 2> lateLooks{5, 20};

constexpr double dotsPerInch = 96;
constexpr double scaleStep = 0.25;
constexpr double largestScale = 8;

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

}  // namespace

XScreens::XScreens(Connection& connection)
    : connection_(connection), edgePanels_(connection, [this] { updateSoon(); }) {
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
    subscriptions_.push_back(connection.listen(XCB_CONFIGURE_NOTIFY, [this](const auto& event) {
        const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        if (change.window == connection_.root()) updateSoon();
    }));
    subscriptions_.push_back(connection.rootPropertyChanged.subscribe([this](xcb_atom_t name) {
        if (name == XCB_ATOM_RESOURCE_MANAGER || name == connection_.atom(Atom::workArea) ||
            name == connection_.atom(Atom::clientList)) {
            updateSoon();
        }
    }));
    update();
    for (const Seconds later : lateLooks) {
        late_.push_back(connection.loop().timer(later, [this] { updateSoon(); }));
    }
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

void XScreens::follow(std::function<std::string()> chosen) {
    chosen_ = std::move(chosen);
    update();
}

void XScreens::update() {
    const auto monitors = this->monitors();
    const auto mainBefore = main();
    const auto coordinatesBefore = coordinates_;
    const auto panelsBefore = std::exchange(panels_, {});
    all_.clear();
    if (!monitors.empty()) {
        const PixelRect& first = monitors.front();
        coordinates_ = {scaleBySettings(), first.x, first.y + first.height};
        const auto panels = edgePanels_.read();
        for (const PixelRect& monitor : monitors) {
            all_.push_back(read(monitor, monitors.size(), panels));
        }
    }
    // Monitors of one size differ only by where they are.
    if (main() != mainBefore || coordinates_ != coordinatesBefore) changed.emit();
    if (panels_ != panelsBefore) panelsChanged.emit();
}

/// One monitor, and of the main one, which is the first, also its panels.
Screen XScreens::read(PixelRect monitor, std::size_t monitors,
                      const std::vector<EdgePanel>& panels) {
    PixelRect free = withoutPanels(monitor, display_, panels);
    std::vector<PixelRect> places;
    for (const auto& panel : panels) {
        if (const auto place = placeOn(monitor, display_, panel)) places.push_back(*place);
    }
    // Some shells draw their panels themselves: there is no window of them, only room left free.
    if (const auto workArea = edgePanels_.workArea(monitor, monitors)) {
        const auto rooms = roomsBeside(monitor, free, *workArea);
        places.insert(places.end(), rooms.begin(), rooms.end());
        if (!rooms.empty()) free = free.intersected(*workArea);
    }
    if (all_.empty()) {
        for (const auto& place : places) panels_.push_back(coordinates_.points(place));
        std::ranges::sort(panels_, {}, [](const Rect& r) {
            return std::array{r.x, r.y, r.width, r.height};
        });
    }
    return {.frame = coordinates_.points(monitor),
            .visibleFrame = coordinates_.points(free),
            .scale = coordinates_.scale};
}

/// The main one first: the chosen one, else the primary one, else the first that the server tells
/// of. The whole display where it tells of none.
std::vector<PixelRect> XScreens::monitors() {
    auto* xcb = connection_.xcb();
    const auto geometryAsked = xcb_get_geometry(xcb, connection_.root());
    const std::string chosen = chosen_ ? chosen_() : "";
    std::vector<Monitor> connected = connectedMonitors();
    // The primary one leads the list, and a chosen one goes before it.
    std::stable_partition(connected.begin(), connected.end(),
                          [](const Monitor& each) { return each.isPrimary; });
    names_.clear();
    for (const Monitor& each : connected) names_.push_back(each.name);
    std::stable_partition(connected.begin(), connected.end(), [&](const Monitor& each) {
        return !chosen.empty() && each.name == chosen;
    });

    std::vector<PixelRect> found;
    for (const Monitor& each : connected) found.push_back(each.area);
    const auto geometry = reply(xcb, xcb_get_geometry_reply, geometryAsked);
    if (!geometry) return {};
    display_ = {0, 0, geometry->width, geometry->height};
    if (found.empty()) found.push_back(display_);
    return found;
}

std::vector<XScreens::Monitor> XScreens::connectedMonitors() const {
    if (!connection_.randr) return {};
    auto* xcb = connection_.xcb();
    const auto monitors = reply(xcb, xcb_randr_get_monitors_reply,
                                xcb_randr_get_monitors(xcb, connection_.root(), 1));
    if (!monitors) return {};
    std::vector<Monitor> found;
    std::vector<xcb_get_atom_name_cookie_t> asked;
    auto each = xcb_randr_get_monitors_monitors_iterator(monitors.get());
    for (; each.rem > 0; xcb_randr_monitor_info_next(&each)) {
        const auto& info = *each.data;
        if (info.width == 0 || info.height == 0) continue;
        found.push_back({.area = {info.x, info.y, info.width, info.height},
                         .name = {},
                         .isPrimary = info.primary != 0});
        asked.push_back(xcb_get_atom_name(xcb, info.name));
    }
    for (std::size_t i = 0; i < found.size(); ++i) {
        const auto name = reply(xcb, xcb_get_atom_name_reply, asked[i]);
        if (!name) continue;
        found[i].name.assign(xcb_get_atom_name_name(name.get()),
                             static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
    }
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

}  // namespace quibbits::x11
