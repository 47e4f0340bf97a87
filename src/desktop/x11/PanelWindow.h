#pragma once
// The native window of a panel: see-through where a compositor runs, over the whole of its frame
// whatever the window manager thinks, on every workspace, in no task bar, never with the focus.

#include <span>
#include <vector>

#include "desktop/x11/Connection.h"
#include "layers/LayerTree.h"
#include "layers/Panel.h"

namespace quibbits::x11 {

/// What all panels share: the visual with an opacity channel and its colour map.
class PanelVisual {
public:
    explicit PanelVisual(Connection& connection);
    ~PanelVisual();
    PanelVisual(const PanelVisual&) = delete;
    PanelVisual& operator=(const PanelVisual&) = delete;

    /// Nothing works without one; every server of this century has one.
    explicit operator bool() const { return visual_ != 0; }
    xcb_visualid_t visual() const { return visual_; }
    xcb_colormap_t colors() const { return colors_; }

private:
    Connection& connection_;
    xcb_visualid_t visual_ = 0;
    xcb_colormap_t colors_ = 0;
};

class PanelWindow {
public:
    /// Whether the window manager is to place and stack it. One that gives every dock room of its
    /// own must not: the panel would leave no room for anything else.
    enum class Managed { yes, no };
    PanelWindow(Connection& connection, const PanelVisual& visual, PixelRect frame,
                PanelLevel level, Managed managed);
    ~PanelWindow();
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;

    xcb_window_t id() const { return id_; }
    xcb_gcontext_t context() const { return context_; }
    const PixelRect& frame() const { return frame_; }
    bool isShown() const { return shown_; }
    PanelLevel level() const { return level_; }

    void setFrame(const PixelRect& frame);
    void setLevel(PanelLevel level);
    void setManaged(Managed managed);
    void show();
    void hide();
    /// The part that takes the mouse, in pixels of the window; empty lets everything through.
    void setInputRegion(std::vector<xcb_rectangle_t> region);

    /// The server mapped or reparented the window, or a window manager came: some of what was
    /// asked before is lost on the way and is asked again.
    void assertState();
    /// Other windows came, went or changed places: one that nobody manages looks after its own, and
    /// one on the lowest level goes under those that it has come over.
    void othersChanged();
    /// The mouse was pressed on the window, which some window managers take for a wish to be
    /// raised, however low its state says it is.
    void pressed();
    /// The window got a size, or a place, which may not be what was asked for.
    void configured(int width, int height);

private:
    bool isUnmanaged() const { return level_ == PanelLevel::menu || managed_ == Managed::no; }
    void settle(bool wasUnmanaged);
    void configure();
    void correct(int width, int height);
    bool isInPlace();
    void stack();
    void sendInputRegion();
    void writeState();
    std::vector<xcb_window_t> ordinaryWindowsUnder() const;

    Connection& connection_;
    xcb_window_t id_;
    xcb_gcontext_t context_;
    PixelRect frame_;
    PanelLevel level_;
    Managed managed_;
    bool shown_ = false;
    int corrections_ = 0;
    Timer settling_;  // before the place is looked at
    int aside_ = 0;   // pixels to ask for beside the frame, to come to lie on it
    int below_ = 0;
    std::vector<xcb_rectangle_t> inputRegion_;
    std::vector<xcb_window_t> leftUnder_;  // ordinary windows, when last looked
};

}  // namespace quibbits::x11
