#pragma once
// A rectangle of pixels to draw into, and what is drawn without any library: fills, sprites and
// one picture over another. Everything is confined to the canvas's area. What lands on a pixel
// depends on that pixel alone, never on how much of the surface the canvas holds.

#include <cstdint>
#include <vector>

#include "layers/DisplayTree.h"

namespace quibbits {

struct Canvas {
    Argb* pixels = nullptr;  // of the area's first row and column
    int stride = 0;          // pixels from one row to the next
    PixelRect area;          // of the surface

    bool isEmpty() const { return area.isEmpty(); }
    Argb* row(int y) const {
        return pixels + static_cast<std::ptrdiff_t>(y - area.y) * stride - area.x;
    }
    /// The same pixels, seen through a smaller area.
    Canvas clipped(PixelRect to) const;
    void clear() const;
};

/// Pixels of its own.
class Bitmap {
public:
    Bitmap() = default;
    explicit Bitmap(PixelRect area);
    Canvas canvas() { return {pixels_.data(), area_.width, area_}; }
    const PixelRect& area() const { return area_; }
    const Argb* row(int y) const {
        return pixels_.data() + static_cast<std::ptrdiff_t>(y - area_.y) * area_.width - area_.x;
    }
    std::size_t size() const { return pixels_.size(); }

private:
    PixelRect area_;
    std::vector<Argb> pixels_;
};

/// A colour ready to be drawn, with an opacity from 0 to 1 on top.
Argb premultiplied(Color color, double opacity = 1);

/// All four parts times a share of 255.
inline Argb scaled(Argb p, std::uint32_t share) {
    constexpr std::uint32_t odd = 0x00ff00ff;
    std::uint32_t rb = (p & odd) * share + 0x00800080;
    std::uint32_t ag = ((p >> 8) & odd) * share + 0x00800080;
    rb = ((rb + ((rb >> 8) & odd)) >> 8) & odd;
    ag = (ag + ((ag >> 8) & odd)) & ~odd;
    return rb | ag;
}

/// One premultiplied pixel over another.
inline Argb over(Argb above, Argb below) {
    return above + scaled(below, 255 - (above >> 24));
}

// Opacities run from 0 to 255 and are applied last, so that a thing drawn with an opacity equals
// the same thing put into a bitmap of its own first.

/// Fills a rectangle of device space; its edges may lie inside pixels.
void fillRect(const Canvas& canvas, Rect rect, Argb color, int opacity);
/// Draws a picture of pixels into whole pixels. At a whole factor every pixel becomes a square of
/// equal ones; at another, each pixel of the target is the average of what it covers.
void drawSprite(const Canvas& canvas, const Image& image, const SpritePlacement& place,
                int opacity);
/// Draws a picture through any map, without smoothing inside; its outer edge is softened.
void drawTurned(const Canvas& canvas, const Image& image, PixelRect source,
                const Affine& sourceToDevice);
void drawBitmap(const Canvas& canvas, const Bitmap& bitmap, int opacity);
/// Keeps of the canvas what the bitmap covers.
void keepInside(const Canvas& canvas, const Bitmap& cover);

}  // namespace quibbits
