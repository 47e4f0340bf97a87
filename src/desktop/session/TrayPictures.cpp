#include "desktop/session/TrayPictures.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quibbits::session {
namespace {

constexpr std::array sides{16, 22, 24, 32, 48, 64};
constexpr double iconSide = 24;    // points
constexpr double fromCorner = 12;  // points between the icon and the end of its panel

bool isMadeOfBlocks(const Image& image, int block) {
    if (image.width() % block != 0 || image.height() % block != 0) return false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.at(x, y) != image.at(x - x % block, y - y % block)) return false;
        }
    }
    return true;
}

/// The side of the squares that the picture was enlarged to, in its pixels.
int blockOf(const Image& image) {
    for (int block = std::min(image.width(), image.height()) / 2; block > 1; --block) {
        if (isMadeOfBlocks(image, block)) return block;
    }
    return 1;
}

void append(std::vector<std::uint8_t>& bytes, Argb pixel) {
    const std::uint32_t alpha = pixel >> 24;
    bytes.push_back(static_cast<std::uint8_t>(alpha));
    for (const int shift : {16, 8, 0}) {
        const std::uint32_t part = (pixel >> shift) & 0xff;
        const std::uint32_t plain = alpha == 0 ? 0 : (part * 255 + alpha / 2) / alpha;
        bytes.push_back(static_cast<std::uint8_t>(std::min(plain, 255U)));
    }
}

/// Of each art pixel along one side that a pixel of the picture covers, the share.
struct Share {
    int art = 0;
    double share = 0;
};

/// The middle of the art lies in the middle of the side.
std::vector<Share> sharesOf(int pixel, int side, int art, double enlarged) {
    const double from = (pixel - side / 2.0) / enlarged + art / 2.0;
    const double to = from + 1 / enlarged;
    std::vector<Share> shares;
    for (int i = std::max(static_cast<int>(std::floor(from)), 0); i < art && i < to; ++i) {
        const double covered = std::min(to, i + 1.0) - std::max(from, double(i));
        if (covered > 1e-6) shares.push_back({i, covered * enlarged});
    }
    return shares;
}

/// As large as the side allows: sharp squares where the factor is whole, else the mean of what each
/// pixel covers, so that no column of art is wider than its neighbour.
TrayPicture pictureOf(const Image& image, int block, int side) {
    const int width = image.width() / block;
    const int height = image.height() / block;
    const double enlarged = std::max(double(side) / std::max(width, height), 1.0);
    TrayPicture picture{.side = side, .bytes = {}};
    picture.bytes.reserve(static_cast<std::size_t>(side * side) * 4);
    for (int y = 0; y < side; ++y) {
        const auto rows = sharesOf(y, side, height, enlarged);
        for (int x = 0; x < side; ++x) {
            std::array<double, 4> sum{};
            for (const Share& column : sharesOf(x, side, width, enlarged)) {
                for (const Share& row : rows) {
                    const Argb art = image.at(column.art * block, row.art * block);
                    for (unsigned i = 0; i < 4; ++i) {
                        sum[i] += ((art >> (8 * i)) & 0xff) * column.share * row.share;
                    }
                }
            }
            Argb pixel = 0;
            for (unsigned i = 0; i < 4; ++i) {
                pixel |= static_cast<Argb>(std::lround(sum[i])) << (8 * i);
            }
            append(picture.bytes, pixel);
        }
    }
    return picture;
}

}  // namespace

std::vector<TrayPicture> trayPictures(const Image& image) {
    std::vector<TrayPicture> pictures;
    if (!image) return pictures;
    const int block = blockOf(image);
    const int own = std::max(image.width(), image.height()) / block;
    for (const int side : sides) {
        if (side >= own) pictures.push_back(pictureOf(image, block, side));
    }
    if (pictures.empty()) pictures.push_back(pictureOf(image, block, own));
    return pictures;
}

TrayPicture trayPicture(const Image& image, int side) {
    return pictureOf(image, blockOf(image), side);
}

Rect trayPlaceAt(const Screen& screen, Point click) {
    const Rect& all = screen.frame;
    const Rect& free = screen.visibleFrame;
    const auto along = [](double middle, double low, double high) {
        return Range{low, high - iconSide}.clamp(middle - iconSide / 2);
    };
    const double x = along(click.x, all.minX(), all.maxX());
    const double y = along(click.y, all.minY(), all.maxY());
    const auto orIcon = [](double panel) { return panel > 0 ? panel : iconSide; };
    const double above = all.maxY() - free.maxY();
    const double below = free.minY() - all.minY();
    const double left = free.minX() - all.minX();
    const double right = all.maxX() - free.maxX();
    const bool isInPanel = click.y >= free.maxY() || click.y < free.minY();
    if (!isInPanel && click.x < free.minX()) return {all.minX(), y, left, iconSide};
    if (!isInPanel && click.x >= free.maxX()) return {free.maxX(), y, right, iconSide};
    if (click.y >= all.midY()) {
        return {x, all.maxY() - orIcon(above), iconSide, orIcon(above)};
    }
    return {x, all.minY(), iconSide, orIcon(below)};
}

Rect middleOfTheFloor(const Screen& screen) {
    const Rect& free = screen.visibleFrame;
    return {free.midX() - iconSide / 2, free.minY(), iconSide, 0};
}

Rect usualTrayPlace(const Screen& screen, const std::optional<Rect>& bottomDock) {
    const bool hasTopPanel = screen.visibleFrame.maxY() < screen.frame.maxY();
    if (!hasTopPanel && bottomDock) {
        return trayPlaceAt(screen, {bottomDock->maxX() - fromCorner - iconSide / 2, 0});
    }
    return trayPlaceAt(screen,
                       {screen.frame.maxX() - fromCorner - iconSide / 2, screen.frame.maxY() - 1});
}

}  // namespace quibbits::session
