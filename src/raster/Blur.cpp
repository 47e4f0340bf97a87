#include "raster/Blur.h"

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

/// Half the width of a box; three boxes one after another come close to a bell of that spread.
int boxReach(double radius) {
    return std::max(0, static_cast<int>(std::lround((std::sqrt(4 * radius * radius + 1) - 1) / 2)));
}

/// The moving average along one line of values that lie a step apart.
void average(const std::vector<std::uint8_t>& from, std::vector<std::uint8_t>& to,
             std::size_t start, std::size_t step, int count, int reach) {
    const auto at = [&](int i) -> unsigned {
        const bool inside = i >= 0 && i < count;
        return inside ? from[start + static_cast<std::size_t>(i) * step] : 0u;
    };
    const auto width = static_cast<unsigned>(2 * reach + 1);
    unsigned sum = 0;
    for (int i = -reach; i < reach; ++i) sum += at(i);
    for (int i = 0; i < count; ++i) {
        sum += at(i + reach);
        to[start + static_cast<std::size_t>(i) * step] =
            static_cast<std::uint8_t>((sum + width / 2) / width);
        sum -= at(i - reach);
    }
}

void blur(std::vector<std::uint8_t>& values, int width, int height, int reach) {
    std::vector<std::uint8_t> other(values.size());
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < height; ++y) {
            average(values, other, static_cast<std::size_t>(y) * static_cast<std::size_t>(width), 1,
                    width, reach);
        }
        for (int x = 0; x < width; ++x) {
            average(other, values, static_cast<std::size_t>(x), static_cast<std::size_t>(width),
                    height, reach);
        }
    }
}

}  // namespace

int blurReach(double radius) {
    return 3 * boxReach(radius) + 1;
}

Bitmap shadowOf(const Bitmap& caster, PixelRect area, int dx, int dy, double radius, Argb color) {
    const PixelRect all = caster.area();
    std::vector<std::uint8_t> alpha(caster.size());
    std::size_t i = 0;
    for (int y = all.y; y < all.y + all.height; ++y) {
        for (int x = all.x; x < all.x + all.width; ++x) {
            alpha[i++] = static_cast<std::uint8_t>(caster.row(y)[x] >> 24);
        }
    }
    if (const int reach = boxReach(radius)) blur(alpha, all.width, all.height, reach);

    Bitmap shadow(area);
    const PixelRect part = area.intersected({all.x + dx, all.y + dy, all.width, all.height});
    for (int y = part.y; y < part.y + part.height; ++y) {
        Argb* row = shadow.canvas().row(y);
        const auto line =
            static_cast<std::size_t>(y - dy - all.y) * static_cast<std::size_t>(all.width);
        for (int x = part.x; x < part.x + part.width; ++x) {
            row[x] = scaled(color, alpha[line + static_cast<std::size_t>(x - dx - all.x)]);
        }
    }
    return shadow;
}

}  // namespace quibbits
