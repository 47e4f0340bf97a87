#include "desktop/x11/DrawnShape.h"

#include <xcb/shape.h>

#include <algorithm>

namespace quibbits::x11 {
namespace {

constexpr std::uint32_t halfOpaque = 0x80000000;

/// Spans of columns, as rectangles of one row.
void runsOfRow(const PixelRect& area, int row, const std::uint32_t* pixels,
               std::vector<xcb_rectangle_t>& runs) {
    runs.clear();
    for (int x = 0; x < area.width;) {
        if (pixels[x] < halfOpaque) {
            ++x;
            continue;
        }
        const int from = x;
        while (x < area.width && pixels[x] >= halfOpaque) ++x;
        runs.push_back({static_cast<std::int16_t>(area.x + from),
                        static_cast<std::int16_t>(area.y + row),
                        static_cast<std::uint16_t>(x - from), 1});
    }
}

bool sameColumns(const xcb_rectangle_t& a, const xcb_rectangle_t& b) {
    return a.x == b.x && a.width == b.width;
}

}  // namespace

std::vector<xcb_rectangle_t> opaqueRectangles(const PixelRect& area, const std::uint32_t* pixels) {
    std::vector<xcb_rectangle_t> all;
    std::vector<xcb_rectangle_t> runs;
    std::size_t lastRow = 0;  // where the rectangles of the row above begin
    for (int row = 0; row < area.height; ++row, pixels += area.width) {
        runsOfRow(area, row, pixels, runs);
        const auto above = all.begin() + static_cast<std::ptrdiff_t>(lastRow);
        if (row > 0 && std::equal(above, all.end(), runs.begin(), runs.end(), sameColumns)) {
            std::for_each(above, all.end(), [](auto& rectangle) { ++rectangle.height; });
        } else {
            lastRow = all.size();
            all.insert(all.end(), runs.begin(), runs.end());
        }
    }
    return all;
}

DrawnShape::~DrawnShape() {
    if (region_) xcb_xfixes_destroy_region(connection_.xcb(), region_);
}

void DrawnShape::setActive(bool active, xcb_window_t window) {
    if (!connection_.xfixes) return;
    auto* xcb = connection_.xcb();
    if (region_) {
        xcb_xfixes_destroy_region(xcb, region_);
        region_ = 0;
    }
    if (active) {
        region_ = xcb_generate_id(xcb);
        xcb_xfixes_create_region(xcb, region_, 0, nullptr);
    }
    xcb_xfixes_set_window_shape_region(xcb, window, XCB_SHAPE_SK_BOUNDING, 0, 0, region_);
}

void DrawnShape::update(const PixelRect& area, const std::uint32_t* pixels) {
    if (!region_) return;
    auto* xcb = connection_.xcb();
    const auto drawn = opaqueRectangles(area, pixels);
    const xcb_rectangle_t whole{
        static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
        static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
    const auto part = xcb_generate_id(xcb);
    xcb_xfixes_create_region(xcb, part, 1, &whole);
    xcb_xfixes_subtract_region(xcb, region_, part, region_);
    xcb_xfixes_set_region(xcb, part, static_cast<std::uint32_t>(drawn.size()), drawn.data());
    xcb_xfixes_union_region(xcb, region_, part, region_);
    xcb_xfixes_destroy_region(xcb, part);
}

void DrawnShape::apply(xcb_window_t window) {
    if (!region_) return;
    applied_.push_back(xcb_xfixes_set_window_shape_region(connection_.xcb(), window,
                                                          XCB_SHAPE_SK_BOUNDING, 0, 0, region_)
                           .sequence);
}

bool DrawnShape::hasCaused(const xcb_generic_event_t& exposure) const {
    return std::ranges::find(applied_, exposure.full_sequence) != applied_.end();
}

}  // namespace quibbits::x11
