#pragma once
// The program's icon in the desktop's tray: org.kde.StatusNotifierItem on the session bus, which
// panels of today show, and its menu for those that open it themselves. The two interfaces are
// small and served here directly: a library for them would bring a whole toolkit into a program
// that stays all day, and still would not tell whether anybody shows the icon. A tray that starts
// later, restarts or goes away is followed; the icon is kept ready for it, and meanwhile shown in
// an older tray where there is one.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/OtherTray.h"
#include "desktop/session/BusMenu.h"
#include "desktop/session/TrayPictures.h"
#include "platform/Dock.h"
#include "platform/Pointer.h"
#include "platform/Screens.h"
#include "platform/StatusItem.h"

namespace quibbits::session {

class TrayIcon final : public StatusItem {
public:
    /// What the icon needs to know of the display.
    struct Display {
        const Screens& screens;
        const Pointer& pointer;
        const Dock& dock;
        /// A pixel of the display in global coordinates.
        std::function<Point(int x, int y)> pointOf;
        /// Opens a menu at a global point.
        std::function<void(Menu, Point)> openMenu;
        /// Shows the icon while there is no tray on the bus. Outlives this; may be missing.
        OtherTray* otherTray = nullptr;
        /// Says something beside a place until the handle ends, for a tray that does not; may be
        /// missing.
        std::function<std::shared_ptr<void>(const std::string&, Rect)> toolTip = {};
    };
    TrayIcon(EventRunLoop& loop, Bus& session, Display display);
    ~TrayIcon() override;

    /// The icon is offered to trays from the first time on.
    void show(Image image, std::string toolTip) override;
    void popUp(Menu menu) override;
    std::optional<Rect> frame() const override;
    bool isShown() const override {
        return hasHost_ || (display_.otherTray && display_.otherTray->isThere());
    }

    /// Whether some tray shows the icon may have changed.
    std::function<void()> onPresence;
    /// For some seconds there was no tray that could show the icon. Told once.
    std::function<void()> onNoTray;

private:
    struct Methods;
    enum class Click { primary, context };

    void offer();
    void join();
    void askForHost();
    void hostIs(bool present);
    void heardOwner(sd_bus_message* signal);
    void clicked(Click click, int x, int y);
    void tellClick(Click click);
    void hovered(bool isOver);

    EventRunLoop& loop_;
    Bus& bus_;
    Display display_;
    const std::string name_;  // on the bus
    BusMenu menu_;
    std::vector<TrayPicture> pictures_;
    std::string toolTip_;
    Timer resting_;
    std::shared_ptr<void> shownTip_;
    std::optional<Point> lastClick_;
    bool isOffered_ = false;
    bool hasHost_ = false;
    bool hasTold_ = false;
    Timer patience_;
    Subscription served_;
    Subscription named_;
    Subscription question_;
    Subscription owners_;
    Subscription hosts_;
    Subscription returns_;
    Subscription ends_;
    Lifetime lifetime_;
};

}  // namespace quibbits::session
