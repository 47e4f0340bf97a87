#pragma once
// From points to the device's pixels: affine maps, and rectangles of whole pixels.

#include "platform/Geometry.h"

namespace quibbits {

/// A 2D affine map: x' = a·x + c·y + tx, y' = b·x + d·y + ty.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
    bool operator==(const Affine&) const = default;
    Point apply(Point p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }
    /// First the other map, then this one.
    Affine after(const Affine& first) const;
    /// The upright rectangle around the mapped rectangle.
    Rect apply(Rect r) const;
    /// Not everything falls onto one line or point.
    bool hasArea() const { return a * d != b * c; }
    /// The map back, of one that has an area.
    Affine inverted() const;
    /// Neither turned nor slanted, though maybe mirrored.
    bool isUpright() const;
};

/// A rectangle of device pixels, y downwards from the panel's top left corner.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const PixelRect&) const = default;
    bool isEmpty() const { return width <= 0 || height <= 0; }
    PixelRect united(const PixelRect& o) const;
    PixelRect intersected(const PixelRect& o) const;
    bool intersects(const PixelRect& o) const { return !intersected(o).isEmpty(); }
    PixelRect inset(int by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
    long area() const { return isEmpty() ? 0 : static_cast<long>(width) * height; }
    /// The pixels that a rectangle of device space touches.
    static PixelRect around(Rect r);
};

}  // namespace quibbits
