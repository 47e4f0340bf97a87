#pragma once
// Points, sizes, rectangles and ranges, in points with y upwards. Plain values: they know nothing
// of screens, pixels or layers.

#include <algorithm>
#include <cmath>

namespace quibbits {

/// A length of time. Sprite ticks are 1/60 second.
using Seconds = double;

struct Vector {
    double dx = 0;
    double dy = 0;
    bool operator==(const Vector&) const = default;
    double length() const { return std::hypot(dx, dy); }
};

struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

inline Point operator+(Point p, Vector v) {
    return {p.x + v.dx, p.y + v.dy};
}
inline Point operator-(Point p, Vector v) {
    return {p.x - v.dx, p.y - v.dy};
}
inline Vector operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
inline Vector operator-(Vector a, Vector b) {
    return {a.dx - b.dx, a.dy - b.dy};
}
inline Vector operator*(Vector v, double k) {
    return {v.dx * k, v.dy * k};
}
inline double dot(Vector a, Vector b) {
    return a.dx * b.dx + a.dy * b.dy;
}
inline double distance(Point a, Point b) {
    return (a - b).length();
}
inline Point midpoint(Point a, Point b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle by its lower left corner and its size. Empty when width or height is not above 0.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;

    double minX() const { return x; }
    double midX() const { return x + width / 2; }
    double maxX() const { return x + width; }
    double minY() const { return y; }
    double midY() const { return y + height / 2; }
    double maxY() const { return y + height; }
    Point origin() const { return {x, y}; }
    Point center() const { return {midX(), midY()}; }
    Size size() const { return {width, height}; }
    bool isEmpty() const { return !(width > 0 && height > 0); }

    /// Holds the left and lower edge, not the right and upper one.
    bool contains(Point p) const { return p.x >= x && p.x < maxX() && p.y >= y && p.y < maxY(); }
    /// True when the two share an area; touching edges and an empty rectangle share none.
    bool intersects(const Rect& o) const {
        return !isEmpty() && !o.isEmpty() && x < o.maxX() && o.x < maxX() && y < o.maxY() &&
               o.y < maxY();
    }
    /// Zero inside.
    double distanceTo(Point p) const {
        return std::hypot(std::max({minX() - p.x, 0.0, p.x - maxX()}),
                          std::max({minY() - p.y, 0.0, p.y - maxY()}));
    }
    Rect inset(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
    Rect offset(Vector v) const { return {x + v.dx, y + v.dy, width, height}; }
    /// The smallest rectangle around both; an empty one adds nothing.
    Rect united(const Rect& o) const {
        if (isEmpty()) return o;
        if (o.isEmpty()) return *this;
        const double left = std::min(x, o.x);
        const double low = std::min(y, o.y);
        return {left, low, std::max(maxX(), o.maxX()) - left, std::max(maxY(), o.maxY()) - low};
    }
    Rect intersected(const Rect& o) const {
        const double left = std::max(x, o.x);
        const double low = std::max(y, o.y);
        const Rect both{left, low, std::min(maxX(), o.maxX()) - left,
                        std::min(maxY(), o.maxY()) - low};
        return both.isEmpty() ? Rect{} : both;
    }
};

/// A closed range of one axis; lo is at most hi.
struct Range {
    double lo = 0;
    double hi = 0;
    bool operator==(const Range&) const = default;
    double width() const { return hi - lo; }
    double middle() const { return (lo + hi) / 2; }
    bool contains(double v) const { return v >= lo && v <= hi; }
    /// The nearest value inside; the low end first, so a turned-over range gives its high end.
    double clamp(double v) const { return std::min(std::max(v, lo), hi); }
};

}  // namespace quibbits
