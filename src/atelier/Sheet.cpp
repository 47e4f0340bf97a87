#include "atelier/Sheet.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

namespace quibbits::atelier {
namespace {

/// Even heights keep the middle of a cell between two rows.
CellBox evened(CellBox box) {
    if (box.height % 2 != 0) {
        --box.top;
        ++box.height;
    }
    return box;
}

}  // namespace

CellBox boxAround(const DrawnAnimation& drawn) {
    int reach = 0;
    int top = groundRow;
    for (const auto& strip : drawn) {
        for (const auto& drawing : strip) {
            for (int y = 0; y < drawing.height; ++y) {
                for (int x = 0; x < drawing.width; ++x) {
                    if (drawing.at(x, y) == noInk) continue;
                    reach = std::max(reach, std::abs(x - drawing.originX));
                    top = std::min(top, y);
                }
            }
        }
    }
    const int bottom = groundRow + 1;
    return evened({.reach = reach + 1, .top = top - 1, .height = bottom - (top - 1) + 1});
}

CellBox united(const CellBox& a, const CellBox& b) {
    const int top = std::min(a.top, b.top);
    const int bottom = std::max(a.top + a.height, b.top + b.height);
    return evened({.reach = std::max(a.reach, b.reach), .top = top, .height = bottom - top});
}

Image enlarged(const Image& image, int factor) {
    Image large{image.width * factor, image.height * factor, {}};
    large.argb.reserve(static_cast<std::size_t>(large.width) *
                       static_cast<std::size_t>(large.height));
    for (int y = 0; y < large.height; ++y) {
        for (int x = 0; x < large.width; ++x) {
            large.argb.push_back(image.argb[indexOf(x / factor, y / factor, image.width)]);
        }
    }
    return large;
}

Image cut(const Drawing& drawing, const CellBox& box, const Palette& palette) {
    Image image{box.width(), box.height, {}};
    for (int y = box.top; y < box.top + box.height; ++y) {
        for (int x = drawing.originX - box.reach; x <= drawing.originX + box.reach; ++x) {
            image.argb.push_back(palette[drawing.at(x, y)]);
        }
    }
    return image;
}

Image layOut(const DrawnAnimation& drawn, const CellBox& box, const Palette& palette) {
    const int columns = static_cast<int>(drawn.front().size());
    Image image{box.width() * columns, box.height * directionCount, {}};
    image.argb.reserve(static_cast<std::size_t>(image.width) *
                       static_cast<std::size_t>(image.height));
    for (const auto& strip : drawn) {
        for (int y = box.top; y < box.top + box.height; ++y) {
            for (const auto& drawing : strip) {
                const int left = drawing.originX - box.reach;
                for (int x = left; x < left + box.width(); ++x) {
                    image.argb.push_back(drawing.holds(x, y) ? palette[drawing.at(x, y)] : 0);
                }
            }
        }
    }
    return image;
}

std::string describe(const std::vector<SheetEntry>& entries) {
    std::ostringstream xml;
    xml << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<AnimData>\n  <Anims>\n";
    for (const auto& entry : entries) {
        xml << "    <Anim>\n      <Name>" << entry.name << "</Name>\n      <FrameHeight>"
            << entry.frameHeight << "</FrameHeight>\n      <Durations>";
        for (const int ticks : entry.ticks) xml << "<Duration>" << ticks << "</Duration>";
        xml << "</Durations>\n    </Anim>\n";
    }
    xml << "  </Anims>\n</AnimData>\n";
    return xml.str();
}

}  // namespace quibbits::atelier
