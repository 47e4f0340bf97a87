#include "desktop/x11/XWindowList.h"

#include <algorithm>

#include "desktop/x11/Properties.h"
#include "desktop/x11/WindowManager.h"

namespace quibbits::x11 {
namespace {

// Layers only need to differ from 0, the layer of ordinary windows.
constexpr int keptAbove = 3;
constexpr int dockLayer = 20;
constexpr std::uint32_t everyDesktop = 0xffffffff;

/// Everything asked about one window, before any answer is waited for.
struct Asked {
    Asked(const Connection& connection, xcb_window_t window)
        : type(connection, window, connection.atom(Atom::windowType)),
          state(connection, window, connection.atom(Atom::state)),
          desktop(connection, window, connection.atom(Atom::desktop)),
          process(connection, window, connection.atom(Atom::pid)),
          opacity(connection, window, connection.atom(Atom::opacity)),
          border(connection, window, connection.atom(Atom::frameExtents)),
          shadow(connection, window, connection.atom(Atom::gtkFrameExtents)),
          size(xcb_get_geometry(connection.xcb(), window)),
          place(xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0)),
          attributes(xcb_get_window_attributes(connection.xcb(), window)) {}

    PropertyRequest type, state, desktop, process, opacity, border, shadow;
    xcb_get_geometry_cookie_t size;
    xcb_translate_coordinates_cookie_t place;
    xcb_get_window_attributes_cookie_t attributes;
};

PixelRect grown(PixelRect r, const Property& extents, int sign) {
    const auto sides = extents.numbers();  // left, right, top, bottom
    if (sides.size() < 4) return r;
    const auto side = [&](std::size_t i) {
        return sign * static_cast<int>(std::min(sides[i], 1000u));
    };
    return {r.x - side(0), r.y - side(2), r.width + side(0) + side(1),
            r.height + side(2) + side(3)};
}

}  // namespace

std::vector<WindowInfo> XWindowList::onScreen() const {
    auto* xcb = connection_.xcb();
    const auto atom = [this](Atom name) { return connection_.atom(name); };
    const PropertyRequest stackingAsked(connection_, connection_.root(),
                                        atom(Atom::clientListStacking));
    const PropertyRequest currentAsked(connection_, connection_.root(), atom(Atom::currentDesktop));
    const PropertyRequest managerAsked(connection_, connection_.root(),
                                       atom(Atom::supportingWmCheck));
    const auto painterAsked = xcb_get_selection_owner(xcb, atom(Atom::compositor));
    const auto stacking = stackingAsked.wait();
    const auto current = currentAsked.wait().number();
    // Where each monitor has a workspace of its own, more of them are on screen than the current
    // one, and windows of the others are unmapped. One that paints all windows itself keeps them.
    const auto painter = reply(xcb, xcb_get_selection_owner_reply, painterAsked);
    const auto manager = managerAsked.wait().number();
    const bool unmapsHidden =
        !(painter && manager && isOfOneProgram(connection_, painter->owner, *manager));

    std::vector<Asked> asked;
    const auto lowestFirst = stacking.numbers();
    for (auto each = lowestFirst.rbegin(); each != lowestFirst.rend(); ++each) {
        asked.emplace_back(connection_, *each);
    }
    std::vector<WindowInfo> windows;
    for (const auto& one : asked) {
        const auto type = one.type.wait();
        const auto state = one.state.wait();
        const auto desktop = one.desktop.wait().number();
        const auto process = one.process.wait().number();
        const auto opacity = one.opacity.wait().number();
        const auto border = one.border.wait();
        const auto shadow = one.shadow.wait();
        const auto size = reply(xcb, xcb_get_geometry_reply, one.size);
        const auto place = reply(xcb, xcb_translate_coordinates_reply, one.place);

        const auto attributes = reply(xcb, xcb_get_window_attributes_reply, one.attributes);

        const bool isElsewhere =
            desktop && current && *desktop != *current && *desktop != everyDesktop;
        const bool isMapped = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        if ((isElsewhere && !(isMapped && unmapsHidden)) ||
            state.contains(atom(Atom::stateHidden)) || type.contains(atom(Atom::typeDesktop)) ||
            !size || !place) {
            continue;
        }
        WindowInfo info{.process = process.value_or(0)};
        if (type.contains(atom(Atom::typeDock))) {
            info.layer = dockLayer;
        } else if (state.contains(atom(Atom::stateAbove)) &&
                   !state.contains(atom(Atom::stateFullscreen))) {
            info.layer = keptAbove;
        }
        info.alpha = opacity ? *opacity / static_cast<double>(0xffffffff) : 1.0;
        const int edge = size->border_width;  // of windows that have no frame of their manager's
        const PixelRect inner{place->dst_x - edge, place->dst_y - edge, size->width + 2 * edge,
                              size->height + 2 * edge};
        info.frame = screens_.coordinates().points(grown(grown(inner, border, 1), shadow, -1));
        windows.push_back(info);
    }
    return windows;
}

}  // namespace quibbits::x11
