#pragma once
// The monitors by RandR, the scale by the desktop's settings, and the panels and docks along the
// main screen's edges.

#include <xcb/xcb.h>

#include <vector>

#include "desktop/x11/Connection.h"
#include "desktop/x11/Coordinates.h"
#include "platform/Screens.h"

namespace quibbits::x11 {

class XScreens final : public Screens {
public:
    explicit XScreens(Connection& connection);

    std::optional<Screen> main() const override;
    std::optional<Screen> at(Point point) const override;
    const Coordinates& coordinates() const { return coordinates_; }
    /// The panel or dock at the bottom of the main screen that keeps windows off, if any.
    std::optional<Rect> bottomDock() const { return bottomDock_; }
    /// The bottom dock came, went or changed its span.
    Signal<> dockChanged;

private:
    /// A window along an edge, in pixels: itself and the four widths that it reserves.
    struct Dock {
        xcb_window_t window = 0;
        PixelRect frame;
        std::vector<std::uint32_t> strut;  // as _NET_WM_STRUT_PARTIAL
    };

    void update();
    void updateSoon();
    std::vector<PixelRect> monitors();
    double scaleBySettings() const;
    std::vector<Dock> docks();
    std::vector<xcb_window_t> windowsBelow(xcb_window_t top, int depth) const;
    PixelRect withoutDocks(PixelRect monitor, const std::vector<Dock>& docks) const;

    Connection& connection_;
    std::vector<Screen> all_;  // the main one first
    std::optional<Rect> bottomDock_;
    Coordinates coordinates_;
    PixelRect display_;                  // the whole of it
    std::vector<xcb_window_t> watched_;  // docks whose changes are heard
    Timer pending_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
