#pragma once
// Between the server's pixels, y downwards from the corner of the whole display, and the points of
// the core, y upwards from the lower left corner of the main screen.

#include "layers/LayerTree.h"
#include "platform/Geometry.h"

namespace quibbits::x11 {

struct Coordinates {
    double scale = 1;  // pixels per point
    int left = 0;      // of the main screen, in pixels
    int bottom = 0;    // one past its last row
    bool operator==(const Coordinates&) const = default;

    Point points(double x, double y) const { return {(x - left) / scale, (bottom - y) / scale}; }
    Rect points(const PixelRect& r) const {
        const Point corner = points(r.x, r.y + r.height);
        return {corner.x, corner.y, r.width / scale, r.height / scale};
    }
    PixelRect pixels(const Rect& r) const {
        const auto whole = [](double v) { return static_cast<int>(std::lround(v)); };
        const int x = whole(r.minX() * scale);
        const int top = whole(r.maxY() * scale);
        return {left + x, bottom - top, whole(r.maxX() * scale) - x, top - whole(r.minY() * scale)};
    }
};

}  // namespace quibbits::x11
