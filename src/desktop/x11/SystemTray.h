#pragma once
// The icon in a tray of the older kind, which takes in a small window of every program: the panels
// of light desktops know no other. The window is made anew for each tray that comes.

#include "desktop/OtherTray.h"
#include "desktop/x11/PanelWindow.h"
#include "desktop/x11/XPointer.h"

namespace quibbits::x11 {

class SystemTray final : public OtherTray {
public:
    SystemTray(Connection& connection, const XScreens& screens, XPointer& pointer);
    ~SystemTray() override;

    void setImage(Image image) override;
    void setWanted(bool wanted) override;
    bool isThere() const override { return manager_ != 0; }
    std::optional<Rect> frame() const override;

private:
    void listen();
    void findManager();
    void dock();
    void undock();
    void draw();
    void cutTo(const std::vector<std::uint32_t>& pixels);
    void released(const xcb_button_release_event_t& event);

    Connection& connection_;
    const XScreens& screens_;
    XPointer& pointer_;
    PanelVisual visual_;
    Image image_;
    bool wanted_ = false;
    xcb_window_t manager_ = 0;
    xcb_window_t window_ = 0;
    xcb_gcontext_t context_ = 0;
    std::uint8_t depth_ = 0;
    bool isShown_ = false;
    int width_ = 0;
    int height_ = 0;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
