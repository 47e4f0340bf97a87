#include "raster/LayerBitmaps.h"

#include <algorithm>
#include <cmath>

#include "platform/Overloaded.h"
#include "raster/Blur.h"
#include "raster/Pen.h"
#include "raster/TextEngine.h"

namespace quibbits {

namespace {

/// Bitmaps not used in this many paintings are let go.
constexpr std::uint64_t keptFor = 120;
/// So many pixels are kept at most, beside those that the last few paintings used: a frame may
/// consist of several.
constexpr std::size_t mostPixels = 1 << 20;
constexpr std::uint64_t lately = 8;

double scaleOf(const Affine& map) {
    return std::sqrt(std::abs(map.a * map.d - map.b * map.c));
}

void drawText(const Canvas& canvas, const Drawn& drawn, const Text& text) {
    const Rect box = drawn.values.bounds;
    const Affine down{1, 0, 0, -1, box.minX(), box.maxY()};
    Pen pen(canvas, drawn.toDevice.after(down));
    textEngine().draw(pen.context(), text, box.size());
}

void drawPicture(const Canvas& canvas, const Drawn& drawn, const Picture& picture) {
    if (!picture.image) return;
    if (drawn.sprite) return drawSprite(canvas, picture.image, *drawn.sprite, 255);
    const Rect box = drawn.values.bounds;
    const Rect part = drawn.values.contentsRect;
    if (picture.magnification == Filter::smooth) {
        return Pen(canvas, drawn.toDevice).drawPicture(picture.image, part, box);
    }
    const double width = part.width * picture.image.width();
    const double height = part.height * picture.image.height();
    if (!(width > 0) || !(height > 0)) return;
    const double left = part.x * picture.image.width();
    const double top = part.y * picture.image.height();
    const Affine place{box.width / width,
                       0,
                       0,
                       -box.height / height,
                       box.minX() - left * box.width / width,
                       box.maxY() + top * box.height / height};
    const PixelRect source{static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)),
                           static_cast<int>(std::lround(width)),
                           static_cast<int>(std::lround(height))};
    drawTurned(canvas, picture.image, source, drawn.toDevice.after(place));
}

void drawBody(const Canvas& canvas, const Drawn& drawn) {
    const auto& v = drawn.values;
    if (v.background.alpha > 0 && !v.bounds.isEmpty()) {
        Pen(canvas, drawn.toDevice).fillRounded(v.bounds, v.cornerRadius, v.background);
    }
    std::visit(Overloaded{[&](const Picture& p) { drawPicture(canvas, drawn, p); },
                          [&](const Shape& s) { Pen(canvas, drawn.toDevice).drawShape(s, v); },
                          [&](const Text& t) { drawText(canvas, drawn, t); },
                          [&](const Gradient& g) {
                              Pen(canvas, drawn.toDevice).drawGradient(g, v.bounds);
                          },
                          [](const auto&) {}},
               *drawn.content);
}

Bitmap bodyWithShadow(const Drawn& drawn, PixelRect extent) {
    const auto& shadow = drawn.values.shadow;
    const double radius = shadow.radius * scaleOf(drawn.toDevice);
    const Affine& map = drawn.toDevice;
    const Vector offset =
        Affine{map.a, map.b, map.c, map.d, 0, 0}.apply(Point{shadow.offset.dx, shadow.offset.dy}) -
        Point{};
    const int dx = static_cast<int>(std::lround(offset.dx));
    const int dy = static_cast<int>(std::lround(offset.dy));
    const int margin = blurReach(radius) + std::max(std::abs(dx), std::abs(dy));

    Bitmap body(extent.inset(-margin));
    drawBody(body.canvas(), drawn);
    if (drawn.hasBorder()) {
        const auto& v = drawn.values;
        Pen(body.canvas(), map)
            .frameRounded(v.bounds, v.cornerRadius, v.borderWidth, v.borderColor);
    }
    Bitmap whole =
        shadowOf(body, extent, dx, dy, radius, premultiplied(shadow.color, shadow.opacity));
    if (drawn.hasBorder()) {
        body.canvas().clear();
        drawBody(body.canvas(), drawn);
    }
    drawBitmap(whole.canvas(), body, 255);
    return whole;
}

Bitmap render(const Drawn& drawn, PixelRect extent, LayerBitmaps::Part part) {
    const auto& v = drawn.values;
    if (part == LayerBitmaps::Part::body && drawn.hasShadow()) {
        return bodyWithShadow(drawn, extent);
    }
    Bitmap bitmap(extent);
    switch (part) {
        case LayerBitmaps::Part::body: drawBody(bitmap.canvas(), drawn); break;
        case LayerBitmaps::Part::border:
            Pen(bitmap.canvas(), drawn.toDevice)
                .frameRounded(v.bounds, v.cornerRadius, v.borderWidth, v.borderColor);
            break;
        case LayerBitmaps::Part::inside:
            Pen(bitmap.canvas(), drawn.toDevice)
                .fillRounded(v.bounds, v.cornerRadius, Color::black());
            break;
    }
    return bitmap;
}

}  // namespace

bool isUprightBox(const Drawn& drawn) {
    return drawn.values.cornerRadius <= 0 && drawn.toDevice.isUpright();
}

bool isPlainBody(const Drawn& drawn) {
    if (drawn.hasShadow()) return false;
    if (drawn.values.background.alpha > 0 && !isUprightBox(drawn)) return false;
    const auto* picture = std::get_if<Picture>(drawn.content.get());
    if (picture) return drawn.sprite || !picture->image;
    return std::holds_alternative<std::monostate>(*drawn.content) ||
           std::holds_alternative<Emitter>(*drawn.content);
}

bool isPlainBorder(const Drawn& drawn) {
    return !drawn.hasBorder() || isUprightBox(drawn);
}

const Bitmap& LayerBitmaps::get(const DrawnLayer& layer, Part part) {
    // What only surrounds the layer is clipped to what the sublayers may touch.
    const Rect box = layer.drawn.toDevice.apply(layer.drawn.values.bounds);
    const PixelRect extent = part == Part::inside
                                 ? layer.clip.intersected(PixelRect::around(box).inset(-1))
                                 : layer.extent;
    auto& entry = entries_[{layer.id, part}];
    if (entry.used == 0 || entry.extent != extent || entry.drawn != layer.drawn) {
        entry.drawn = layer.drawn;
        entry.extent = extent;
        entry.bitmap = render(layer.drawn, extent, part);
    }
    entry.used = turn_ + 1;
    return entry.bitmap;
}

void LayerBitmaps::tidy() {
    ++turn_;
    std::size_t pixels = 0;
    for (const auto& [key, entry] : entries_) pixels += entry.bitmap.size();
    std::erase_if(entries_, [&](const auto& item) {
        const auto& entry = item.second;
        const std::uint64_t idle = turn_ - entry.used;
        if (idle <= keptFor && (pixels <= mostPixels || idle < lately)) return false;
        pixels -= entry.bitmap.size();
        return true;
    });
}

}  // namespace quibbits
