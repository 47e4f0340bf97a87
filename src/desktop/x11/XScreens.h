#pragma once
// The monitors by RandR, the scale by the desktop's settings, and what panels and docks along the
// edges leave of them.

#include <xcb/xcb.h>

#include <vector>

#include "desktop/x11/Connection.h"
#include "desktop/x11/Coordinates.h"
#include "desktop/x11/EdgePanels.h"
#include "platform/Screens.h"

namespace quibbits::x11 {

class XScreens final : public Screens {
public:
    explicit XScreens(Connection& connection);

    std::optional<Screen> main() const override;
    std::optional<Screen> at(Point point) const override;
    const Coordinates& coordinates() const { return coordinates_; }
    /// The panels and docks along the edges of the main screen, as they are seen.
    const std::vector<Rect>& panels() const { return panels_; }
    /// A panel of the main screen came, went or changed its place.
    Signal<> panelsChanged;

private:
    void update();
    void updateSoon();
    std::vector<PixelRect> monitors();
    double scaleBySettings() const;
    Screen read(PixelRect monitor, std::size_t monitors, const std::vector<EdgePanel>& panels);

    Connection& connection_;
    std::vector<Screen> all_;   // the main one first
    std::vector<Rect> panels_;  // of the main one
    Coordinates coordinates_;
    PixelRect display_;  // the whole of it
    EdgePanels edgePanels_;
    Timer pending_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
