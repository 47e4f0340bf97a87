#pragma once
// The outline of what is drawn. Without a compositor a see-through window is black where nothing is
// drawn, so the window is cut to this outline. The server keeps the region; a frame changes only
// the part of it that was painted.

#include <xcb/xfixes.h>

#include <vector>

#include "desktop/x11/Connection.h"
#include "layers/LayerTree.h"

namespace quibbits::x11 {

class DrawnShape {
public:
    explicit DrawnShape(Connection& connection) : connection_(connection) {}
    ~DrawnShape();
    DrawnShape(const DrawnShape&) = delete;
    DrawnShape& operator=(const DrawnShape&) = delete;

    /// Cuts the window to an outline that is empty at first, or leaves it whole, as it stays on a
    /// server that lacks what this takes.
    void setActive(bool active, xcb_window_t window);
    bool isActive() const { return region_ != 0; }
    /// The pixels that were drawn in the area, row after row.
    void update(const PixelRect& area, const std::uint32_t* pixels);
    /// Gives the window the outline gathered since.
    void apply(xcb_window_t window);
    /// True for an exposure that this outline caused by growing: it is painted over at once.
    bool hasCaused(const xcb_generic_event_t& exposure) const;
    /// A frame begins; exposures of the one before are too old to come.
    void beginFrame() { applied_.clear(); }

private:
    Connection& connection_;
    xcb_xfixes_region_t region_ = 0;
    std::vector<std::uint32_t> applied_;  // numbers of this frame's requests
};

/// Rectangles that cover the pixels more than half opaque: runs of a row, and equal rows together.
std::vector<xcb_rectangle_t> opaqueRectangles(const PixelRect& area, const std::uint32_t* pixels);

}  // namespace quibbits::x11
