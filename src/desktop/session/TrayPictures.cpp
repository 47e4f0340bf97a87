#include "desktop/session/TrayPictures.h"

#include <algorithm>
#include <array>

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

TrayPicture pictureOf(const Image& image, int block, int side) {
    const int width = image.width() / block;
    const int height = image.height() / block;
    const int factor = std::max(side / std::max(width, height), 1);
    const int left = (side - width * factor) / 2;
    const int top = (side - height * factor) / 2;
    TrayPicture picture{.side = side, .bytes = {}};
    picture.bytes.reserve(static_cast<std::size_t>(side * side) * 4);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const bool inside = x >= left && y >= top;
            append(picture.bytes,
                   inside ? image.at((x - left) / factor * block, (y - top) / factor * block) : 0);
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

Rect usualTrayPlace(const Screen& screen, const std::optional<Rect>& bottomDock) {
    const bool hasTopPanel = screen.visibleFrame.maxY() < screen.frame.maxY();
    if (!hasTopPanel && bottomDock) {
        return trayPlaceAt(screen, {bottomDock->maxX() - fromCorner - iconSide / 2, 0});
    }
    return trayPlaceAt(screen,
                       {screen.frame.maxX() - fromCorner - iconSide / 2, screen.frame.maxY() - 1});
}

}  // namespace quibbits::session
