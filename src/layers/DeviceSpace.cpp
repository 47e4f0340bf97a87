#include "layers/DeviceSpace.h"

namespace quibbits {

Affine Affine::after(const Affine& first) const {
    return {a * first.a + c * first.b,        b * first.a + d * first.b,
            a * first.c + c * first.d,        b * first.c + d * first.d,
            a * first.tx + c * first.ty + tx, b * first.tx + d * first.ty + ty};
}

Rect Affine::apply(Rect r) const {
    const double x0 = std::min(a * r.minX(), a * r.maxX()) + std::min(c * r.minY(), c * r.maxY());
    const double x1 = std::max(a * r.minX(), a * r.maxX()) + std::max(c * r.minY(), c * r.maxY());
    const double y0 = std::min(b * r.minX(), b * r.maxX()) + std::min(d * r.minY(), d * r.maxY());
    const double y1 = std::max(b * r.minX(), b * r.maxX()) + std::max(d * r.minY(), d * r.maxY());
    return {x0 + tx, y0 + ty, x1 - x0, y1 - y0};
}

Affine Affine::inverted() const {
    const double area = a * d - b * c;
    return {d / area,
            -b / area,
            -c / area,
            a / area,
            (c * ty - d * tx) / area,
            (b * tx - a * ty) / area};
}

bool Affine::isUpright() const {
    constexpr double slack = 1e-9;
    return std::abs(b) < slack && std::abs(c) < slack;
}

PixelRect PixelRect::united(const PixelRect& o) const {
    if (isEmpty()) return o;
    if (o.isEmpty()) return *this;
    const int left = std::min(x, o.x);
    const int top = std::min(y, o.y);
    return {left, top, std::max(x + width, o.x + o.width) - left,
            std::max(y + height, o.y + o.height) - top};
}

PixelRect PixelRect::intersected(const PixelRect& o) const {
    if (isEmpty() || o.isEmpty()) return {};
    const int left = std::max(x, o.x);
    const int top = std::max(y, o.y);
    const PixelRect both{left, top, std::min(x + width, o.x + o.width) - left,
                         std::min(y + height, o.y + o.height) - top};
    return both.isEmpty() ? PixelRect{} : both;
}

PixelRect PixelRect::around(Rect r) {
    const auto pixel = [](double v) {
        constexpr double most = 1 << 24;  // far outside any screen
        return static_cast<int>(std::clamp(v, -most, most));
    };
    const int left = pixel(std::floor(r.minX()));
    const int top = pixel(std::floor(r.minY()));
    return {left, top, pixel(std::ceil(r.maxX())) - left, pixel(std::ceil(r.maxY())) - top};
}

}  // namespace quibbits
