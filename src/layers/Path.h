#pragma once
// A shape's outline, or the way along which something moves: straight lines and curves.

#include <vector>

#include "platform/Geometry.h"

namespace quibbits {

class Path {
public:
    enum class Verb { move, line, quad, cubic, close };
    struct Element {
        Verb verb = Verb::move;
        Point end;       // where the element ends
        Point control1;  // quad: its control point; cubic: the first one
        Point control2;  // cubic only
        bool operator==(const Element&) const = default;
    };

    Path& moveTo(Point p);
    Path& lineTo(Point p);
    Path& quadTo(Point end, Point control);
    Path& cubicTo(Point end, Point control1, Point control2);
    Path& close();

    static Path line(Point from, Point to);
    static Path quad(Point from, Point to, Point control);
    static Path rect(Rect r);
    static Path ellipse(Rect r);
    static Path roundedRect(Rect r, double radius);
    /// Part of a circle, counter-clockwise from one angle to the other, in radians.
    static Path arc(Point center, double radius, double from, double to);

    const std::vector<Element>& elements() const { return elements_; }
    bool isEmpty() const { return elements_.empty(); }
    /// Around all points and control points.
    Rect bounds() const;
    bool operator==(const Path&) const = default;

private:
    std::vector<Element> elements_;
};

}  // namespace quibbits
