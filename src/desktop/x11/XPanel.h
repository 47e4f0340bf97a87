#pragma once
// A panel on X11: paints what the layer tree says has changed, when it says so, and hands the mouse
// and drops back. While nothing on it changes it does nothing at all.

#include "desktop/x11/DrawnShape.h"
#include "desktop/x11/DropTarget.h"
#include "desktop/x11/HotArea.h"
#include "desktop/x11/PanelWindow.h"
#include "desktop/x11/PixelTransfer.h"
#include "desktop/x11/XPointer.h"
#include "layers/LayerEngine.h"
#include "layers/Panel.h"
#include "platform/Lifetime.h"
#include "raster/Painter.h"

namespace quibbits::x11 {

class XPanels;

/// What a panel has done since it was made.
struct PanelStats {
    std::uint64_t wakes = 0;          // how often it asked its tree for a frame
    std::uint64_t repaints = 0;       // frames in which something was drawn
    std::uint64_t pixels = 0;         // drawn
    std::uint64_t regionChanges = 0;  // of the part that takes the mouse
    std::size_t bufferBytes = 0;      // held for drawing at this moment
};

class XPanel final : public Panel, private PointerOwner {
public:
    XPanel(XPanels& panels, const Panels::Spec& spec);
    ~XPanel();

    Layer& root() override { return tree_.root(); }
    Rect frame() const override { return frame_; }
    void setFrame(Rect frame) override;
    void setLevel(PanelLevel level) override { window_.setLevel(level); }
    void orderFront() override;
    void orderOut() override;
    bool isVisible() const override { return window_.isShown(); }
    void setIgnoresMouse(bool ignores) override;
    void setAlpha(double alpha) override;
    double alpha() const override { return alpha_; }
    void beginItemDrag(ItemDrag drag) override;
    void popUp(Menu menu, Point at) override;

    xcb_window_t window() const { return window_.id(); }
    PanelLevel level() const { return window_.level(); }
    bool acceptsDrops() const { return drops_.has_value(); }
    PanelStats stats() const;

private:
    friend class XPanels;

    // What XPanels tells.
    void screensChanged();
    void compositorChanged();
    void windowManagerChanged();
    void otherWindowsChanged() { window_.othersChanged(); }

    void place();
    void exposed(const xcb_expose_event_t& event);
    void buttonPressed(const xcb_button_press_event_t& event);
    void buttonReleased(const xcb_button_press_event_t& event);
    void pointerMoved() override;
    static void tell(std::function<void()> listener);
    static bool ask(std::function<bool(const DragInfo&)> listener, const DragInfo& drag);
    void listen();

    void frameSoon();
    void frameAt(Instant instant);
    void paintFrame();
    void paint(const PixelRect& area);
    void restSoon();

    void updateInput();
    bool takesMouse(int x, int y) const;
    DragInfo dragInfo(const DropTarget::Drag& drag) const;

    XPanels& panels_;
    Connection& connection_;
    XPointer& pointer_;
    LayerTree tree_;
    Rect frame_;
    bool coversScreen_;
    double alpha_ = 1;
    PanelWindow window_;
    DrawnShape shape_;
    PixelTransfer transfer_;
    HotArea hotArea_;
    std::vector<xcb_rectangle_t> inputRegion_;
    std::optional<DropTarget> drops_;
    bool holdsLeft_ = false;

    PixelRect exposed_;
    Instant lastFrame_ = -1;
    Timer nextFrame_;
    Timer rest_;
    Timer askInputAgain_;
    PanelStats stats_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace quibbits::x11
