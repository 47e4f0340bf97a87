#pragma once
// The panels and docks of other programs along the edges of the display: windows of type DOCK,
// wherever a window manager keeps them, and what shells that draw their own panels leave free.
// Watches what it has found.

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "desktop/x11/Connection.h"
#include "layers/LayerTree.h"

namespace quibbits::x11 {

/// A window along an edge, in pixels of the display.
struct EdgePanel {
    /// The widths that it reserves, and of each the first and last pixel along its edge, where
    /// they are told.
    struct Strut {
        int left = 0, right = 0, top = 0, bottom = 0;
        std::array<int, 8> spans{};  // of left, right, top and bottom; 0 and 0 is all of the edge
        bool operator==(const Strut&) const = default;
    };
    PixelRect frame;
    PixelRect solid;  // what of it takes the mouse; the rest of it is thin air
    Strut strut;
};

/// A monitor without the rooms that panels reserve.
PixelRect withoutPanels(PixelRect monitor, PixelRect display, const std::vector<EdgePanel>& panels);

/// What a panel takes of a monitor as it is seen, down to the lower edge where it has reserved room
/// there; nothing when it lies elsewhere.
std::optional<PixelRect> placeOn(PixelRect monitor, PixelRect display, const EdgePanel& panel);

/// The rooms along the edges of a monitor that a work area leaves out beyond what is known to be
/// reserved, if it is one of that monitor.
std::vector<PixelRect> roomsBeside(PixelRect monitor, PixelRect known, PixelRect workArea);

class EdgePanels {
public:
    EdgePanels(Connection& connection, std::function<void()> changed);

    std::vector<EdgePanel> read();
    /// What the window manager says is free on a monitor, where it says so for that one.
    std::optional<PixelRect> workArea(PixelRect monitor, std::size_t monitors);

private:
    void watch(xcb_window_t window);
    bool isWatched(xcb_window_t window) const;
    bool isOwn(xcb_window_t window) const;
    std::vector<xcb_window_t> shownUnder(xcb_window_t top, int depth) const;
    std::vector<xcb_window_t> candidates() const;
    std::optional<PixelRect> solidPart(const PixelRect& frame,
                                       xcb_shape_get_rectangles_cookie_t asked) const;

    Connection& connection_;
    std::function<void()> changed_;
    std::vector<xcb_window_t> watched_;
    std::vector<xcb_atom_t> workAreaNames_;  // one for each workspace
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
