#include "layers/Path.h"

#include <numbers>

namespace quibbits {

namespace {

/// How far a cubic's control points stand off along the tangents to trace part of a circle.
double arcHandle(double angle) {
    return 4.0 / 3.0 * std::tan(angle / 4);
}

Point onCircle(Point center, double radius, double angle) {
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

}  // namespace

Path& Path::moveTo(Point p) {
    elements_.push_back({Verb::move, p, {}, {}});
    return *this;
}

Path& Path::lineTo(Point p) {
    elements_.push_back({Verb::line, p, {}, {}});
    return *this;
}

Path& Path::quadTo(Point end, Point control) {
    elements_.push_back({Verb::quad, end, control, {}});
    return *this;
}

Path& Path::cubicTo(Point end, Point control1, Point control2) {
    elements_.push_back({Verb::cubic, end, control1, control2});
    return *this;
}

Path& Path::close() {
    Point start;
    for (const auto& element : elements_) {
        if (element.verb == Verb::move) start = element.end;
    }
    elements_.push_back({Verb::close, start, {}, {}});
    return *this;
}

Path Path::line(Point from, Point to) {
    return Path{}.moveTo(from).lineTo(to);
}

Path Path::quad(Point from, Point to, Point control) {
    return Path{}.moveTo(from).quadTo(to, control);
}

Path Path::rect(Rect r) {
    return Path{}
        .moveTo({r.minX(), r.minY()})
        .lineTo({r.maxX(), r.minY()})
        .lineTo({r.maxX(), r.maxY()})
        .lineTo({r.minX(), r.maxY()})
        .close();
}

Path Path::ellipse(Rect r) {
    Path path = arc({0, 0}, 1, 0, 2 * std::numbers::pi);
    const auto place = [&](Point p) {
        return Point{r.midX() + p.x * r.width / 2, r.midY() + p.y * r.height / 2};
    };
    for (auto& element : path.elements_) {
        element.end = place(element.end);
        element.control1 = place(element.control1);
        element.control2 = place(element.control2);
    }
    return path.close();
}

Path Path::roundedRect(Rect r, double radius) {
    radius = std::clamp(radius, 0.0, std::max(0.0, std::min(r.width, r.height) / 2));
    if (radius <= 0) return rect(r);
    const double handle = radius * (1 - arcHandle(std::numbers::pi / 2));
    const double left = r.minX();
    const double right = r.maxX();
    const double low = r.minY();
    const double high = r.maxY();
    return Path{}
        .moveTo({left + radius, low})
        .lineTo({right - radius, low})
        .cubicTo({right, low + radius}, {right - handle, low}, {right, low + handle})
        .lineTo({right, high - radius})
        .cubicTo({right - radius, high}, {right, high - handle}, {right - handle, high})
        .lineTo({left + radius, high})
        .cubicTo({left, high - radius}, {left + handle, high}, {left, high - handle})
        .lineTo({left, low + radius})
        .cubicTo({left + radius, low}, {left, low + handle}, {left + handle, low})
        .close();
}

Path Path::arc(Point center, double radius, double from, double to) {
    Path path;
    path.moveTo(onCircle(center, radius, from));
    const double quarter = std::numbers::pi / 2;
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(to - from) / quarter)));
    const double step = (to - from) / pieces;
    const double handle = arcHandle(step) * radius;
    for (int i = 0; i < pieces; ++i) {
        const double a = from + step * i;
        const double b = from + step * (i + 1);
        const Vector leaving{-std::sin(a) * handle, std::cos(a) * handle};
        const Vector arriving{-std::sin(b) * handle, std::cos(b) * handle};
        const Point start = onCircle(center, radius, a);
        const Point end = onCircle(center, radius, b);
        path.cubicTo(end, start + leaving, end - arriving);
    }
    return path;
}

Rect Path::bounds() const {
    if (elements_.empty()) return {};
    Point low = elements_.front().end;
    Point high = low;
    const auto reach = [&](Point p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    };
    for (const auto& element : elements_) {
        reach(element.end);
        if (element.verb == Verb::quad || element.verb == Verb::cubic) reach(element.control1);
        if (element.verb == Verb::cubic) reach(element.control2);
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
}

}  // namespace quibbits
