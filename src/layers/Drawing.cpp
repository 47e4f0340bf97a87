// Rounds what is presented to what is drawn, so that a change too small to see is no change.

#include <cmath>

#include "layers/DisplayTree.h"

namespace quibbits {

namespace {

double roundedTo(double value, double step) {
    return std::round(value / step) * step;
}

/// Rounds half up, and the same way for a hair less than half.
int pixelAt(double v) {
    constexpr double hair = 1e-6;
    constexpr double most = 1 << 24;
    return static_cast<int>(std::floor(std::clamp(v, -most, most) + 0.5 + hair));
}

/// A place a sixteenth of a pixel fine and a slope that moves no edge by more than that.
Affine roundedMap(const Affine& map) {
    constexpr double slope = 1.0 / 65536;
    constexpr double place = 1.0 / 16;
    return {roundedTo(map.a, slope), roundedTo(map.b, slope),  roundedTo(map.c, slope),
            roundedTo(map.d, slope), roundedTo(map.tx, place), roundedTo(map.ty, place)};
}

/// Whole pixels for the rectangle: its width does not depend on where it stands.
PixelRect snapped(Rect r) {
    return {pixelAt(r.minX()), pixelAt(r.minY()), std::max(1, pixelAt(r.width)),
            std::max(1, pixelAt(r.height))};
}

/// The pixels of the picture that the contents rectangle picks.
PixelRect sourceOf(const Image& image, Rect contents) {
    const Rect inPixels{contents.x * image.width(), contents.y * image.height(),
                        contents.width * image.width(), contents.height * image.height()};
    return snapped(inPixels).intersected({0, 0, image.width(), image.height()});
}

/// The map that takes the bounds to the sprite's pixels.
Affine mapOnto(Rect bounds, const SpritePlacement& sprite) {
    const auto& t = sprite.target;
    const double a = t.width / bounds.width * (sprite.mirrored ? -1 : 1);
    const double d = t.height / bounds.height * (sprite.flipped ? 1 : -1);
    const double left = sprite.mirrored ? t.x + t.width : t.x;
    const double low = sprite.flipped ? t.y : t.y + t.height;
    return {a, 0, 0, d, left - a * bounds.minX(), low - d * bounds.minY()};
}

bool drawsBox(const Drawn& drawn) {
    return drawn.values.background.alpha > 0 || drawn.hasBorder() || drawn.hasShadow() ||
           drawn.masksToBounds;
}

void placeSprite(Drawn& drawn, const Picture& picture, const Affine& toDevice) {
    const Rect bounds = drawn.values.bounds;
    if (bounds.isEmpty() || !picture.image || !toDevice.hasArea()) return;
    SpritePlacement sprite{.source = sourceOf(picture.image, drawn.values.contentsRect),
                           .target = snapped(toDevice.apply(bounds)),
                           .mirrored = toDevice.a<0, .flipped = toDevice.d> 0};
    if (sprite.source.isEmpty()) return;
    drawn.sprite = sprite;
    drawn.values.contentsRect = {};
    if (drawsBox(drawn)) {
        drawn.toDevice = mapOnto(bounds, sprite);
    } else {
        drawn.toDevice = {};
        drawn.values.bounds = {};
        drawn.values.cornerRadius = 0;
    }
}

/// Letters are sharpest when their box begins on a whole pixel.
void alignText(Drawn& drawn) {
    auto& map = drawn.toDevice;
    if (!map.isUpright()) return;
    const Point corner = map.apply(Point{drawn.values.bounds.minX(), drawn.values.bounds.maxY()});
    map.tx += pixelAt(corner.x) - corner.x;
    map.ty += pixelAt(corner.y) - corner.y;
}

double largestScale(const Affine& map) {
    return std::max(std::hypot(map.a, map.b), std::hypot(map.c, map.d));
}

/// What the content reaches, in the layer's coordinates.
Rect contentReach(const Drawn& drawn) {
    const Rect bounds = drawn.values.bounds;
    if (!drawn.content) return {};
    if (const auto* shape = std::get_if<Shape>(drawn.content.get())) {
        const double width = drawn.values.stroke.alpha > 0 ? drawn.values.lineWidth / 2 : 0;
        const double sharp = shape->join == LineJoin::miter ? miterLimit : std::sqrt(2.0);
        const Rect line = shape->path.bounds().inset(-width * sharp);
        return shape->path.isEmpty() ? Rect{} : line;
    }
    if (std::holds_alternative<Text>(*drawn.content)) return bounds.inset(-textOverhang);
    const bool fillsBounds = std::holds_alternative<Picture>(*drawn.content) ||
                             std::holds_alternative<Gradient>(*drawn.content);
    return fillsBounds ? bounds : Rect{};
}

/// A rectangle without an area still has a place, where a thin line is drawn.
Rect reachOf(const Drawn& drawn) {
    const bool box = drawn.values.background.alpha > 0 || drawn.hasBorder();
    return contentReach(drawn).united(box ? drawn.values.bounds : Rect{});
}

PixelRect particlesExtent(const Drawn& drawn) {
    PixelRect all;
    for (const auto& particle : drawn.particles) all = all.united(particle.target);
    return all;
}

}  // namespace

Affine toParent(const Appearance& values, Point anchorPoint) {
    const auto& t = values.transform;
    const bool turned = t.rotation != 0;  // hardly a layer is
    const double cosine = turned ? std::cos(t.rotation) : 1;
    const double sine = turned ? std::sin(t.rotation) : 0;
    Affine map{cosine * t.scaleX, sine * t.scaleX, -sine * t.scaleY, cosine * t.scaleY, 0, 0};
    const Rect& b = values.bounds;
    const Point anchor{b.x + anchorPoint.x * b.width, b.y + anchorPoint.y * b.height};
    const Point moved = map.apply(anchor);
    map.tx = values.position.x + t.translation.dx - moved.x;
    map.ty = values.position.y + t.translation.dy - moved.y;
    return map;
}

int drawnOpacity(double opacity) {
    return std::clamp(pixelAt(opacity * 255), 0, 255);
}

Drawn drawnOf(const Appearance& seen, const LayerProperties& model, const Affine& toDevice,
              std::shared_ptr<const Content> content) {
    Drawn drawn{.toDevice = roundedMap(toDevice),
                .values = seen,
                .masksToBounds = model.masksToBounds,
                .content = std::move(content)};
    drawn.values.position = {};
    drawn.values.transform = {};
    drawn.values.opacity = 1;
    if (!drawn.hasShadow()) drawn.values.shadow = {};
    if (const auto* picture = std::get_if<Picture>(drawn.content.get())) {
        const bool pixels = picture->magnification == Filter::nearest;
        if (pixels && toDevice.isUpright()) placeSprite(drawn, *picture, toDevice);
    } else if (std::holds_alternative<Text>(*drawn.content)) {
        alignText(drawn);
    }
    return drawn;
}

DrawnParticle drawnParticle(const EmitterCell& cell, std::size_t index, Point place, double opacity,
                            const Affine& toDevice) {
    const double scale = std::sqrt(std::abs(toDevice.a * toDevice.d - toDevice.b * toDevice.c));
    const double width = cell.image.width() * cell.scale * scale;
    const double height = cell.image.height() * cell.scale * scale;
    const Point center = toDevice.apply(place);
    return {index, snapped({center.x - width / 2, center.y - height / 2, width, height}),
            drawnOpacity(opacity)};
}

PixelRect extentOf(const Drawn& drawn, const Affine& toDevice) {
    if (drawn.sprite && !drawsBox(drawn)) return drawn.sprite->target;
    const PixelRect particles = particlesExtent(drawn);
    const Rect reach = reachOf(drawn);
    if (reach == Rect{}) return particles;
    const Rect onDevice = drawn.toDevice.apply(reach);
    Rect all = onDevice;
    if (drawn.hasShadow()) {
        const auto& shadow = drawn.values.shadow;
        const double scale = largestScale(toDevice);
        const double blur = shadow.radius * scale * 3 + 2;
        const Affine slope{toDevice.a, toDevice.b, toDevice.c, toDevice.d, 0, 0};
        const Point moved = slope.apply(Point{shadow.offset.dx, shadow.offset.dy});
        all = all.united(onDevice.inset(-blur).offset({moved.x, moved.y}));
    }
    return PixelRect::around(all).inset(-1).united(particles);
}

}  // namespace quibbits
