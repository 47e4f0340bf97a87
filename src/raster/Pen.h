#pragma once
// Smooth drawing into a canvas: outlines, gradients, pictures through any map. The only part of
// the program, beside text, that draws with cairo.

#include <memory>

#include "raster/Canvas.h"

using cairo_t = struct _cairo;

namespace quibbits {

class Pen {
public:
    /// Draws in coordinates that the map takes to device pixels.
    Pen(const Canvas& canvas, const Affine& toDevice);

    void fillRounded(Rect box, double radius, Color color);
    /// A frame of the width given, all of it inside the box.
    void frameRounded(Rect box, double radius, double width, Color color);
    /// Colours and line come from the values, which may be animated.
    void drawShape(const Shape& shape, const Appearance& values);
    void drawGradient(const Gradient& gradient, Rect box);
    /// A smooth picture: the part given by unit coordinates from its top left, stretched over the
    /// box.
    void drawPicture(const Image& image, Rect part, Rect box);

    cairo_t* context() const { return context_.get(); }

private:
    void addPath(const Path& path);
    void trimPath(double start, double end);

    struct Release {
        void operator()(cairo_t* context) const;
    };
    std::unique_ptr<cairo_t, Release> context_;
};

}  // namespace quibbits
