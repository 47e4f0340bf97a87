#pragma once
// Keeps what is costly to draw (outlines, text, gradients, shadows, rounded boxes, turned pictures)
// as pixels, from one painting to the next. Each is drawn over its layer's whole extent, so a pixel
// is the same whichever part of the surface is painted.

#include <cstdint>
#include <map>

#include "raster/Canvas.h"

namespace quibbits {

class LayerBitmaps {
public:
    enum class Part {
        body,  // shadow, background and content
        border,
        inside,  // opaque where the bounds with their round corners are
    };
    const Bitmap& get(const DrawnLayer& layer, Part part);
    /// Between two paintings: lets go of what has not been used for long, or is too much.
    void tidy();

private:
    struct Entry {
        Drawn drawn;
        PixelRect extent;
        Bitmap bitmap;
        std::uint64_t used = 0;
    };
    std::map<std::pair<std::uint64_t, Part>, Entry> entries_;
    std::uint64_t turn_ = 0;
};

/// Whether background and content of a layer can be drawn without a bitmap. Particles always are.
bool isPlainBody(const Drawn& drawn);
/// Whether the border can.
bool isPlainBorder(const Drawn& drawn);
bool isUprightBox(const Drawn& drawn);

}  // namespace quibbits
