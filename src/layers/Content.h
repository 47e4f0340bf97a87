#pragma once
// What a layer can show beside its background and border.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "layers/Path.h"
#include "platform/Color.h"
#include "platform/Image.h"
#include "platform/Text.h"

namespace quibbits {

enum class Filter { smooth, nearest };

/// A picture, stretched over the layer's bounds. contentsRect of the layer picks a part of it.
struct Picture {
    Image image;
    Filter magnification = Filter::smooth;
    bool operator==(const Picture&) const = default;
};

enum class LineCap { butt, round, square };
enum class LineJoin { miter, round, bevel };

/// An outline in the layer's own coordinates, filled and stroked. A clear colour leaves out that
/// half. strokeStart and strokeEnd cut the stroke to a share of its length.
struct Shape {
    Path path;
    Color fill = Color::black();
    Color stroke = Color::clear();
    double lineWidth = 1;
    LineCap cap = LineCap::butt;
    LineJoin join = LineJoin::miter;
    std::vector<double> dash;  // lengths of strokes and gaps in turn; empty for a plain line
    double strokeStart = 0;
    double strokeEnd = 1;
    bool operator==(const Shape&) const = default;
};

enum class TextAlignment { left, center, right };

/// Text from the top of the layer's bounds down, broken into lines at the bounds' width when
/// wrapped; otherwise one line, cut with an ellipsis when truncated.
struct Text {
    StyledText text;
    TextAlignment alignment = TextAlignment::left;
    bool wrapped = false;
    bool truncated = false;
    bool operator==(const Text&) const = default;
};

/// Colours along a line, or from a centre outwards, in unit coordinates of the bounds.
struct Gradient {
    enum class Kind { axial, radial };
    Kind kind = Kind::axial;
    std::vector<Color> colors;
    std::vector<double> locations;  // one a colour; none spreads them evenly
    Point start{0.5, 0};
    Point end{0.5, 1};
    bool operator==(const Gradient&) const = default;
};

/// One kind of particle. Ranges are the full spread to either side of the value.
struct EmitterCell {
    Image image;
    Filter magnification = Filter::smooth;
    double birthRate = 0;  // particles a second
    double lifetime = 0;   // seconds
    double lifetimeRange = 0;
    double velocity = 0;  // points a second
    double velocityRange = 0;
    double emissionLongitude = 0;  // radians, counter-clockwise from the right
    double emissionRange = 0;      // radians, the whole cone
    Vector acceleration;           // points a second, a second
    double scale = 1;              // points per pixel of the image
    double alphaSpeed = 0;         // change of opacity a second
    bool operator==(const EmitterCell&) const = default;
};

/// A source of particles at the layer's position: a point, or a rectangle around it.
struct Emitter {
    std::vector<EmitterCell> cells;
    Size area;             // 0 × 0 emits from a point
    double birthRate = 1;  // multiplies the cells' rates; 0 lets what flies live out
    bool operator==(const Emitter&) const = default;
};

using Content = std::variant<std::monostate, Picture, Shape, Text, Gradient, Emitter>;

}  // namespace quibbits
