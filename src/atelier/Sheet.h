// Sheets: the drawings of an animation laid out as the players of animations expect them.
//
// A sheet has a row a direction and a column a frame. All cells of a sheet are equal, the foot
// point is in the middle of their width, and their height is even. Beside the sheets of a form
// stands a description with the times.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "atelier/Frames.h"

namespace quibbits::atelier {

/// The part of the canvas that a sheet's cells show.
struct CellBox {
    int reach = 0;  // columns left and right of the foot point's column
    int top = 0;    // first row of the canvas
    int height = 0;

    [[nodiscard]] int width() const { return 2 * reach + 1; }
    bool operator==(const CellBox&) const = default;
};

/// The smallest box with a clear rim that shows all of the drawings.
CellBox boxAround(const DrawnAnimation& drawn);
CellBox united(const CellBox& a, const CellBox& b);

/// An image of 0xAARRGGBB colours.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> argb;
};

/// The same picture with every pixel repeated to a square.
Image enlarged(const Image& image, int factor);

/// One cell by itself.
Image cut(const Drawing& drawing, const CellBox& box, const Palette& palette);

Image layOut(const DrawnAnimation& drawn, const CellBox& box, const Palette& palette);

struct SheetEntry {
    std::string name;
    int frameHeight = 0;
    std::vector<int> ticks;
};
std::string describe(const std::vector<SheetEntry>& entries);

}  // namespace quibbits::atelier
