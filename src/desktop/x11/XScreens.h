#pragma once
// The monitors by RandR, the scale by the desktop's settings, and what panels and docks along the
// edges leave of them.

#include <xcb/xcb.h>

#include <functional>
#include <string>
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
    std::vector<std::string> names() const override { return names_; }
    /// From now on the monitor of the name that this tells of is the main one, while it is
    /// connected. Asked at every change of the monitors, and when told to look again.
    void follow(std::function<std::string()> chosen);
    void lookAgain() { updateSoon(); }
    const Coordinates& coordinates() const { return coordinates_; }
    /// The panels and docks along the edges of the main screen, as they are seen.
    const std::vector<Rect>& panels() const { return panels_; }
    /// A panel of the main screen came, went or changed its place.
    Signal<> panelsChanged;

private:
    void update();
    void updateSoon();
    struct Monitor {
        PixelRect area;
        std::string name;
        bool isPrimary = false;
    };
    std::vector<PixelRect> monitors();
    std::vector<Monitor> connectedMonitors() const;
    double scaleBySettings() const;
    Screen read(PixelRect monitor, std::size_t monitors, const std::vector<EdgePanel>& panels);

    Connection& connection_;
    std::vector<Screen> all_;  // the main one first
    std::vector<std::string> names_;
    std::function<std::string()> chosen_;
    std::vector<Rect> panels_;  // of the main one
    Coordinates coordinates_;
    PixelRect display_;  // the whole of it
    EdgePanels edgePanels_;
    Timer pending_;
    std::vector<Timer> late_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
