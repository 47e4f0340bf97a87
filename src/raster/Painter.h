#pragma once
// Draws a layer tree into a buffer of pixels, a dirty rectangle at a time. Sprites come out exact
// to the pixel; shapes, gradients and text are smoothed.

#include <cstdint>
#include <memory>

#include "layers/LayerTree.h"
#include "platform/Text.h"

namespace quibbits {

/// Pixels of a rectangle of the surface: premultiplied ARGB, rows from the top.
struct PixelBuffer {
    std::uint32_t* pixels = nullptr;
    int stride = 0;  // pixels from one row to the next
    PixelRect area;  // the part of the surface that the buffer holds
};

class Painter {
public:
    Painter();
    ~Painter();

    /// Clears the part of the dirty rectangle that the buffer holds and draws the tree there, as
    /// the tree's last nextFrame presented it.
    void paint(const LayerTree& tree, PixelRect dirty, const PixelBuffer& target);

private:
    struct Caches;
    std::unique_ptr<Caches> caches_;
};

/// Measures text in the desktop's own font.
class TextRuler : public TextMeasure {
public:
    Size measure(const StyledText& text, Size limit) const override;
};

}  // namespace quibbits
