#include "raster/Painter.h"

#include "raster/Canvas.h"
#include "raster/LayerBitmaps.h"

namespace quibbits {

using Part = LayerBitmaps::Part;

struct Painter::Caches {
    LayerBitmaps bitmaps;

    void draw(const DrawnLayer& layer, Canvas canvas);

private:
    void drawGroup(const DrawnLayer& layer, const Canvas& canvas);
    void drawParts(const DrawnLayer& layer, const Canvas& canvas, int opacity);
    void drawBody(const DrawnLayer& layer, const Canvas& canvas, int opacity);
    void drawBorder(const DrawnLayer& layer, const Canvas& canvas, int opacity);
};

namespace {

bool hasRoundClip(const Drawn& drawn) {
    return drawn.masksToBounds && !isUprightBox(drawn);
}

/// Whether the layer's parts lie over one another, so that they must be put together before they
/// can become see-through. Sublayers count whether or not they are in sight.
bool overlapsItself(const DrawnLayer& layer) {
    const auto& drawn = layer.drawn;
    if (!layer.sublayers.empty() || !drawn.particles.empty()) return true;
    if (drawn.hasBorder()) return true;
    return isPlainBody(drawn) && drawn.sprite && drawn.values.background.alpha > 0;
}

bool needsGroup(const DrawnLayer& layer) {
    return layer.mask || hasRoundClip(layer.drawn) ||
           (layer.opacity < 255 && overlapsItself(layer));
}

void fillFrame(const Canvas& canvas, Rect outer, Vector width, Argb color, int opacity) {
    const double x = std::min(width.dx, outer.width / 2);
    const double y = std::min(width.dy, outer.height / 2);
    const double inside = outer.height - 2 * y;
    fillRect(canvas, {outer.x, outer.y, outer.width, y}, color, opacity);
    fillRect(canvas, {outer.x, outer.maxY() - y, outer.width, y}, color, opacity);
    fillRect(canvas, {outer.x, outer.y + y, x, inside}, color, opacity);
    fillRect(canvas, {outer.maxX() - x, outer.y + y, x, inside}, color, opacity);
}

void drawParticles(const Canvas& canvas, const Emitter& emitter, const Drawn& drawn) {
    for (const auto& particle : drawn.particles) {
        const Image& image = emitter.cells[particle.cell].image;
        const SpritePlacement place{{0, 0, image.width(), image.height()}, particle.target};
        if (image) drawSprite(canvas, image, place, particle.opacity);
    }
}

}  // namespace

void Painter::Caches::draw(const DrawnLayer& layer, Canvas canvas) {
    canvas = canvas.clipped(layer.subtreeExtent);
    if (canvas.isEmpty() || !layer.drawn.content) return;
    if (needsGroup(layer)) return drawGroup(layer, canvas);
    drawParts(layer, canvas, layer.opacity);
}

/// Puts the layer together apart, cuts it to its shape and lays it down with its opacity.
void Painter::Caches::drawGroup(const DrawnLayer& layer, const Canvas& canvas) {
    Bitmap group(canvas.area);
    drawParts(layer, group.canvas(), 255);
    if (hasRoundClip(layer.drawn)) keepInside(group.canvas(), bitmaps.get(layer, Part::inside));
    if (layer.mask) {
        Bitmap cover(canvas.area);
        draw(*layer.mask, cover.canvas());
        keepInside(group.canvas(), cover);
    }
    drawBitmap(canvas, group, layer.opacity);
}

void Painter::Caches::drawParts(const DrawnLayer& layer, const Canvas& canvas, int opacity) {
    const Canvas own = canvas.clipped(layer.extent);
    if (!own.isEmpty()) drawBody(layer, own, opacity);
    for (const auto& sublayer : layer.sublayers) draw(*sublayer, canvas);
    if (!own.isEmpty()) drawBorder(layer, own, opacity);
}

void Painter::Caches::drawBody(const DrawnLayer& layer, const Canvas& canvas, int opacity) {
    const auto& drawn = layer.drawn;
    if (!isPlainBody(drawn)) {
        drawBitmap(canvas, bitmaps.get(layer, Part::body), opacity);
    } else {
        if (drawn.values.background.alpha > 0) {
            const Rect box = drawn.toDevice.apply(drawn.values.bounds);
            fillRect(canvas, box, premultiplied(drawn.values.background), opacity);
        }
        if (drawn.sprite) {
            const auto& picture = std::get<Picture>(*drawn.content);
            drawSprite(canvas, picture.image, *drawn.sprite, opacity);
        }
    }
    if (const auto* emitter = std::get_if<Emitter>(drawn.content.get())) {
        drawParticles(canvas, *emitter, drawn);
    }
}

void Painter::Caches::drawBorder(const DrawnLayer& layer, const Canvas& canvas, int opacity) {
    const auto& drawn = layer.drawn;
    if (!drawn.hasBorder()) return;
    if (!isPlainBorder(drawn)) {
        return drawBitmap(canvas, bitmaps.get(layer, Part::border), opacity);
    }
    const auto& map = drawn.toDevice;
    const double width = drawn.values.borderWidth;
    fillFrame(canvas, map.apply(drawn.values.bounds),
              {width * std::abs(map.a), width * std::abs(map.d)},
              premultiplied(drawn.values.borderColor), opacity);
}

Painter::Painter() : caches_(std::make_unique<Caches>()) {}

Painter::~Painter() = default;

void Painter::paint(const LayerTree& tree, PixelRect dirty, const PixelBuffer& target) {
    const Canvas whole{target.pixels, target.stride, target.area};
    const Canvas canvas = whole.clipped(dirty);
    if (canvas.isEmpty()) return;
    canvas.clear();
    caches_->draw(tree.state().root, canvas);
    caches_->bitmaps.tidy();
}

}  // namespace quibbits
