#pragma once
// An icon as trays take it over the bus, in the sizes that panels have, and where on a screen an
// icon is. Plain values and arithmetic.

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Screens.h"

namespace quibbits::session {

/// A square picture: 4 bytes a pixel, alpha, red, green and blue, not premultiplied, top row first.
struct TrayPicture {
    int side = 0;  // pixels
    std::vector<std::uint8_t> bytes;
};

/// Pixel art that fills squares of the usual sizes. Where the factor is whole every art pixel stays
/// a sharp square, else the art is averaged. Art that was enlarged before is taken back to its own
/// pixels first. No picture gives none.
std::vector<TrayPicture> trayPictures(const Image& image);

/// The same for one size; art that is larger loses its rim.
TrayPicture trayPicture(const Image& image, int side);

/// The icon's rectangle about a click on it: in the panel along that edge of the screen, else at
/// the nearer of the upper and the lower edge.
Rect trayPlaceAt(const Screen& screen, Point click);
/// Where things come from while there is no tray.
Rect middleOfTheFloor(const Screen& screen);
/// Where a tray usually is: at the right end of the panel along the upper edge, else of the bottom
/// dock, else in the upper right corner.
Rect usualTrayPlace(const Screen& screen, const std::optional<Rect>& bottomDock);

}  // namespace quibbits::session
