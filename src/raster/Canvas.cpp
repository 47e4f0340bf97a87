#include "raster/Canvas.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

/// How much of a pixel a stretch of its axis covers, 0 to 255.
std::uint32_t coverage(int pixel, double from, double to) {
    const double part = std::min<double>(pixel + 1, to) - std::max<double>(pixel, from);
    return static_cast<std::uint32_t>(std::lround(std::clamp(part, 0.0, 1.0) * 255));
}

}  // namespace

Canvas Canvas::clipped(PixelRect to) const {
    const PixelRect part = area.intersected(to);
    if (part.isEmpty()) return {};
    return {row(part.y) + part.x, stride, part};
}

void Canvas::clear() const {
    for (int y = area.y; y < area.y + area.height; ++y) {
        std::fill_n(row(y) + area.x, area.width, Argb{0});
    }
}

Bitmap::Bitmap(PixelRect area)
    : area_(area),
      pixels_(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height)) {}

Argb premultiplied(Color color, double opacity) {
    const double alpha = std::clamp(color.alpha * opacity, 0.0, 1.0);
    const auto part = [&](double v) {
        return static_cast<Argb>(std::lround(std::clamp(v, 0.0, 1.0) * alpha * 255));
    };
    return static_cast<Argb>(std::lround(alpha * 255)) << 24 | part(color.red) << 16 |
           part(color.green) << 8 | part(color.blue);
}

void fillRect(const Canvas& canvas, Rect rect, Argb color, int opacity) {
    const PixelRect part = canvas.area.intersected(PixelRect::around(rect));
    for (int y = part.y; y < part.y + part.height; ++y) {
        const std::uint32_t share = coverage(y, rect.minY(), rect.maxY());
        Argb* row = canvas.row(y);
        const Argb inside = scaled(color, share);
        for (int x = part.x; x < part.x + part.width; ++x) {
            const bool edge = x < rect.minX() || x + 1 > rect.maxX();
            const Argb ink = edge ? scaled(inside, coverage(x, rect.minX(), rect.maxX())) : inside;
            row[x] = over(scaled(ink, static_cast<std::uint32_t>(opacity)), row[x]);
        }
    }
}

void drawBitmap(const Canvas& canvas, const Bitmap& bitmap, int opacity) {
    const PixelRect part = canvas.area.intersected(bitmap.area());
    const auto share = static_cast<std::uint32_t>(opacity);
    for (int y = part.y; y < part.y + part.height; ++y) {
        Argb* to = canvas.row(y);
        const Argb* from = bitmap.row(y);
        for (int x = part.x; x < part.x + part.width; ++x) {
            if (from[x] == 0) continue;
            to[x] = over(share == 255 ? from[x] : scaled(from[x], share), to[x]);
        }
    }
}

void keepInside(const Canvas& canvas, const Bitmap& cover) {
    const auto& area = canvas.area;
    const PixelRect part = area.intersected(cover.area());
    for (int y = area.y; y < area.y + area.height; ++y) {
        Argb* row = canvas.row(y);
        const bool covered = y >= part.y && y < part.y + part.height;
        for (int x = area.x; x < area.x + area.width; ++x) {
            const bool inside = covered && x >= part.x && x < part.x + part.width;
            row[x] = inside ? scaled(row[x], cover.row(y)[x] >> 24) : 0;
        }
    }
}

}  // namespace quibbits
