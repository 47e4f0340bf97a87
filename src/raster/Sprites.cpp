// Drawing pictures of pixels: the sprites that are on screen all day, so the plain case is kept
// free of any library and, after the first, of any allocation.

#include <algorithm>
#include <array>
#include <cmath>

#include "raster/Canvas.h"

namespace quibbits {

namespace {

/// The column or row of the source for a place counted in the direction of drawing.
int sourceIndex(int i, int count, bool backwards) {
    return backwards ? count - 1 - i : i;
}

void drawRow(Argb* to, const Argb* from, int count, std::uint32_t share) {
    for (int i = 0; i < count; ++i) {
        const Argb ink = share == 255 ? from[i] : scaled(from[i], share);
        const std::uint32_t alpha = ink >> 24;
        if (alpha == 255) {
            to[i] = ink;
        } else if (alpha != 0) {
            to[i] = over(ink, to[i]);
        }
    }
}

/// Lines are enlarged in pieces of this many pixels, on the stack.
constexpr int pieceWidth = 512;

/// Part of a source row, enlarged by a whole factor.
void enlarge(std::array<Argb, pieceWidth>& line, const Image& image, const SpritePlacement& place,
             int sourceY, int firstX, int count) {
    const int factor = place.target.width / place.source.width;
    int column = firstX / factor;
    int left = factor - firstX % factor;
    for (int i = 0; i < count; ++column, left = factor) {
        const int x = sourceIndex(column, place.source.width, place.mirrored);
        const Argb pixel = image.at(place.source.x + x, sourceY);
        for (; left > 0 && i < count; --left) line[static_cast<std::size_t>(i++)] = pixel;
    }
}

/// The stretch of a line outside which nothing is drawn: a sprite is much air.
struct Inked {
    int first = 0;
    int count = 0;
};

Inked inkedPart(const Argb* line, int count) {
    int first = 0;
    while (first < count && line[first] == 0) ++first;
    while (count > first && line[count - 1] == 0) --count;
    return {first, count - first};
}

void drawEnlarged(const Canvas& canvas, const Image& image, const SpritePlacement& place,
                  std::uint32_t share) {
    const PixelRect part = canvas.area.intersected(place.target);
    const int factor = place.target.height / place.source.height;
    std::array<Argb, pieceWidth> line;
    for (int x = part.x; x < part.x + part.width; x += pieceWidth) {
        const int count = std::min(pieceWidth, part.x + part.width - x);
        int drawn = -1;
        Inked inked;
        for (int y = part.y; y < part.y + part.height; ++y) {
            const int row = (y - place.target.y) / factor;
            if (row != drawn) {
                const int sourceY =
                    place.source.y + sourceIndex(row, place.source.height, place.flipped);
                enlarge(line, image, place, sourceY, x - place.target.x, count);
                inked = inkedPart(line.data(), count);
                drawn = row;
            }
            drawRow(canvas.row(y) + x + inked.first, line.data() + inked.first, inked.count, share);
        }
    }
}

/// What a target pixel covers of one axis of the source, and how much each source pixel weighs.
struct Cover {
    static constexpr std::uint32_t whole = 1 << 16;
    int first = 0;
    int last = 0;
    std::uint32_t firstWeight = whole;  // all weights together are a whole
    std::uint32_t lastWeight = whole;
    std::uint32_t innerWeight = 0;  // of each one between first and last

    std::uint32_t weight(int i) const {
        return i == first ? firstWeight : i == last ? lastWeight : innerWeight;
    }
};

Cover coverOf(int i, int targetCount, int sourceCount) {
    const double step = static_cast<double>(sourceCount) / targetCount;
    const double from = i * step;
    const double to = (i + 1) * step;
    Cover cover;
    cover.first = std::min(static_cast<int>(from + 1e-9), sourceCount - 1);
    cover.last =
        std::clamp(static_cast<int>(std::ceil(to - 1e-9)) - 1, cover.first, sourceCount - 1);
    if (cover.first == cover.last) return cover;
    const double unit = Cover::whole / step;
    const int inner = cover.last - cover.first - 1;
    cover.innerWeight = static_cast<std::uint32_t>(unit);
    cover.lastWeight = static_cast<std::uint32_t>((to - cover.last) * unit);
    cover.firstWeight =
        Cover::whole - cover.lastWeight - cover.innerWeight * static_cast<std::uint32_t>(inner);
    return cover;
}

/// A weighted mean of pixels; two of the four parts share a word, far enough apart.
class Mean {
public:
    void add(Argb pixel, std::uint32_t weight) {
        even_ += spread(pixel) * weight;
        odd_ += spread(pixel >> 8) * weight;
    }
    Argb value() const { return joined(even_) | joined(odd_) << 8; }

private:
    static std::uint64_t spread(Argb p) {
        return (p & 0xff) | static_cast<std::uint64_t>(p & 0xff0000) << 16;
    }
    static Argb joined(std::uint64_t sums) {
        return ((sums >> 16) & 0xff) | ((sums >> 32) & 0xff0000);
    }
    static constexpr std::uint64_t half = 0x0000800000008000;
    std::uint64_t even_ = half;
    std::uint64_t odd_ = half;
};

/// A row of the source at the target's width.
void squeezeRow(std::vector<Argb>& line, const Image& image, const SpritePlacement& place,
                const std::vector<Cover>& columns, int row) {
    const int y = place.source.y + sourceIndex(row, place.source.height, place.flipped);
    const auto pixel = [&](int column) {
        const int x = sourceIndex(column, place.source.width, place.mirrored);
        return image.at(place.source.x + x, y);
    };
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Cover& cover = columns[i];
        if (cover.first == cover.last) {
            line[i] = pixel(cover.first);
            continue;
        }
        Mean mean;
        for (int c = cover.first; c <= cover.last; ++c) mean.add(pixel(c), cover.weight(c));
        line[i] = mean.value();
    }
}

/// The picture at a factor that is not whole: as if enlarged by the next whole factor and then
/// averaged down by area, first along its rows and then across them.
void drawAveraged(const Canvas& canvas, const Image& image, const SpritePlacement& place,
                  std::uint32_t share) {
    const PixelRect part = canvas.area.intersected(place.target);
    std::vector<Cover> columns;
    for (int x = part.x; x < part.x + part.width; ++x) {
        columns.push_back(coverOf(x - place.target.x, place.target.width, place.source.width));
    }
    std::vector<Argb> line(columns.size());
    std::vector<Argb> mixed(columns.size());
    std::vector<Mean> means;
    int squeezed = -1;
    const auto squeeze = [&](int row) {
        if (std::exchange(squeezed, row) != row) squeezeRow(line, image, place, columns, row);
    };
    for (int y = part.y; y < part.y + part.height; ++y) {
        const Cover rows = coverOf(y - place.target.y, place.target.height, place.source.height);
        if (rows.first == rows.last) {
            squeeze(rows.first);
            drawRow(canvas.row(y) + part.x, line.data(), part.width, share);
            continue;
        }
        means.assign(columns.size(), Mean{});
        for (int r = rows.first; r <= rows.last; ++r) {
            squeeze(r);
            const std::uint32_t weight = rows.weight(r);
            for (std::size_t i = 0; i < line.size(); ++i) means[i].add(line[i], weight);
        }
        for (std::size_t i = 0; i < line.size(); ++i) mixed[i] = means[i].value();
        drawRow(canvas.row(y) + part.x, mixed.data(), part.width, share);
    }
}

}  // namespace

void drawSprite(const Canvas& canvas, const Image& image, const SpritePlacement& place,
                int opacity) {
    if (opacity <= 0 || place.source.isEmpty() || place.target.isEmpty()) return;
    const auto share = static_cast<std::uint32_t>(opacity);
    const bool whole = place.target.width % place.source.width == 0 &&
                       place.target.height % place.source.height == 0;
    (whole ? drawEnlarged : drawAveraged)(canvas, image, place, share);
}

void drawTurned(const Canvas& canvas, const Image& image, PixelRect source,
                const Affine& sourceToDevice) {
    if (!sourceToDevice.hasArea()) return;
    const Affine back = sourceToDevice.inverted();
    const auto sample = [&](double x, double y) -> Argb {
        const Point p = back.apply(Point{x, y});
        const int column = static_cast<int>(std::floor(p.x));
        const int row = static_cast<int>(std::floor(p.y));
        const bool inside = column >= source.x && column < source.x + source.width &&
                            row >= source.y && row < source.y + source.height;
        return inside ? image.at(column, row) : 0;
    };
    const auto& area = canvas.area;
    for (int y = area.y; y < area.y + area.height; ++y) {
        Argb* row = canvas.row(y);
        for (int x = area.x; x < area.x + area.width; ++x) {
            Argb even = 0x00020002;  // the sums of four samples, in two lots of two parts
            Argb odd = 0x00020002;
            for (const double dy : {0.25, 0.75}) {
                for (const double dx : {0.25, 0.75}) {
                    const Argb pixel = sample(x + dx, y + dy);
                    even += pixel & 0x00ff00ff;
                    odd += (pixel >> 8) & 0x00ff00ff;
                }
            }
            const Argb ink = ((even >> 2) & 0x00ff00ff) | (((odd >> 2) & 0x00ff00ff) << 8);
            if (ink != 0) row[x] = over(ink, row[x]);
        }
    }
}

}  // namespace quibbits
