#include "layers/Appearance.h"

#include <array>

namespace quibbits {

namespace {

double mixedPart(double a, double b, double t) {
    return a + (b - a) * t;
}
Point mixedPart(Point a, Point b, double t) {
    return {mixedPart(a.x, b.x, t), mixedPart(a.y, b.y, t)};
}
Rect mixedPart(Rect a, Rect b, double t) {
    return {mixedPart(a.x, b.x, t), mixedPart(a.y, b.y, t), mixedPart(a.width, b.width, t),
            mixedPart(a.height, b.height, t)};
}
Color mixedPart(Color a, Color b, double t) {
    return {mixedPart(a.red, b.red, t), mixedPart(a.green, b.green, t),
            mixedPart(a.blue, b.blue, t), mixedPart(a.alpha, b.alpha, t)};
}

double sumPart(double a, double b) {
    return a + b;
}
Point sumPart(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
Rect sumPart(Rect a, Rect b) {
    return {a.x + b.x, a.y + b.y, a.width + b.width, a.height + b.height};
}
Color sumPart(Color a, Color b) {
    return {a.red + b.red, a.green + b.green, a.blue + b.blue, a.alpha + b.alpha};
}

template <typename T>
void assign(T& target, const AnimatedValue& value) {
    if (const T* held = std::get_if<T>(&value)) target = *held;
}

}  // namespace

AnimatedValue mixed(const AnimatedValue& from, const AnimatedValue& to, double share) {
    return std::visit(
        [&](const auto& a) -> AnimatedValue {
            const auto* b = std::get_if<std::decay_t<decltype(a)>>(&to);
            return b ? AnimatedValue(mixedPart(a, *b, share)) : to;
        },
        from);
}

AnimatedValue sum(const AnimatedValue& a, const AnimatedValue& b) {
    return std::visit(
        [&](const auto& one) -> AnimatedValue {
            const auto* other = std::get_if<std::decay_t<decltype(one)>>(&b);
            return other ? AnimatedValue(sumPart(one, *other)) : a;
        },
        a);
}

Appearance Appearance::of(const LayerProperties& values) {
    Appearance a{.bounds = values.bounds,
                 .position = values.position,
                 .transform = values.transform,
                 .opacity = values.opacity,
                 .contentsRect = values.contentsRect,
                 .background = values.background,
                 .cornerRadius = values.cornerRadius,
                 .borderWidth = values.borderWidth,
                 .borderColor = values.borderColor,
                 .shadow = values.shadow};
    if (const auto* shape = std::get_if<Shape>(&values.content)) {
        a.strokeStart = shape->strokeStart;
        a.strokeEnd = shape->strokeEnd;
        a.lineWidth = shape->lineWidth;
        a.stroke = shape->stroke;
        a.fill = shape->fill;
    }
    return a;
}

void Appearance::writeTo(LayerProperties& values) const {
    values.bounds = bounds;
    values.position = position;
    values.transform = transform;
    values.opacity = opacity;
    values.contentsRect = contentsRect;
    values.background = background;
    values.cornerRadius = cornerRadius;
    values.borderWidth = borderWidth;
    values.borderColor = borderColor;
    values.shadow = shadow;
    if (auto* shape = std::get_if<Shape>(&values.content)) {
        shape->strokeStart = strokeStart;
        shape->strokeEnd = strokeEnd;
        shape->lineWidth = lineWidth;
        shape->stroke = stroke;
        shape->fill = fill;
    }
}

AnimatedValue Appearance::value(KeyPath path) const {
    switch (path) {
        case KeyPath::position: return position;
        case KeyPath::positionX: return position.x;
        case KeyPath::positionY: return position.y;
        case KeyPath::bounds: return bounds;
        case KeyPath::contentsRect: return contentsRect;
        case KeyPath::opacity: return opacity;
        case KeyPath::transformScale:
        case KeyPath::transformScaleX: return transform.scaleX;
        case KeyPath::transformScaleY: return transform.scaleY;
        case KeyPath::transformRotation: return transform.rotation;
        case KeyPath::transformTranslation:
            return Point{transform.translation.dx, transform.translation.dy};
        case KeyPath::cornerRadius: return cornerRadius;
        case KeyPath::backgroundColor: return background;
        case KeyPath::borderWidth: return borderWidth;
        case KeyPath::borderColor: return borderColor;
        case KeyPath::shadowOpacity: return shadow.opacity;
        case KeyPath::shadowRadius: return shadow.radius;
        case KeyPath::strokeStart: return strokeStart;
        case KeyPath::strokeEnd: return strokeEnd;
        case KeyPath::strokeColor: return stroke;
        case KeyPath::fillColor: return fill;
        case KeyPath::lineWidth: return lineWidth;
    }
    return 0.0;
}

void Appearance::set(KeyPath path, const AnimatedValue& value) {
    switch (path) {
        case KeyPath::position: assign(position, value); break;
        case KeyPath::positionX: assign(position.x, value); break;
        case KeyPath::positionY: assign(position.y, value); break;
        case KeyPath::bounds: assign(bounds, value); break;
        case KeyPath::contentsRect: assign(contentsRect, value); break;
        case KeyPath::opacity: assign(opacity, value); break;
        case KeyPath::transformScale:
            assign(transform.scaleX, value);
            assign(transform.scaleY, value);
            break;
        case KeyPath::transformScaleX: assign(transform.scaleX, value); break;
        case KeyPath::transformScaleY: assign(transform.scaleY, value); break;
        case KeyPath::transformRotation: assign(transform.rotation, value); break;
        case KeyPath::transformTranslation:
            if (const auto* p = std::get_if<Point>(&value)) transform.translation = {p->x, p->y};
            break;
        case KeyPath::cornerRadius: assign(cornerRadius, value); break;
        case KeyPath::backgroundColor: assign(background, value); break;
        case KeyPath::borderWidth: assign(borderWidth, value); break;
        case KeyPath::borderColor: assign(borderColor, value); break;
        case KeyPath::shadowOpacity: assign(shadow.opacity, value); break;
        case KeyPath::shadowRadius: assign(shadow.radius, value); break;
        case KeyPath::strokeStart: assign(strokeStart, value); break;
        case KeyPath::strokeEnd: assign(strokeEnd, value); break;
        case KeyPath::strokeColor: assign(stroke, value); break;
        case KeyPath::fillColor: assign(fill, value); break;
        case KeyPath::lineWidth: assign(lineWidth, value); break;
    }
}

std::span<const KeyPath> Appearance::fading() {
    static constexpr std::array paths{KeyPath::position,          KeyPath::bounds,
                                      KeyPath::contentsRect,      KeyPath::opacity,
                                      KeyPath::transformScaleX,   KeyPath::transformScaleY,
                                      KeyPath::transformRotation, KeyPath::transformTranslation,
                                      KeyPath::cornerRadius,      KeyPath::backgroundColor,
                                      KeyPath::borderWidth,       KeyPath::borderColor,
                                      KeyPath::shadowOpacity,     KeyPath::shadowRadius,
                                      KeyPath::strokeStart,       KeyPath::strokeEnd,
                                      KeyPath::strokeColor,       KeyPath::fillColor,
                                      KeyPath::lineWidth};
    return paths;
}

}  // namespace quibbits
