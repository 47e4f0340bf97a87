#include "atelier/Play.h"

#include "atelier/Sheet.h"
#include "codecs/AnimatedPng.h"

namespace quibbits::atelier {
namespace {

constexpr int enlargement = 3;
constexpr int ticksPerSecond = 60;
constexpr std::uint32_t backdrop = 0xffa9b8a4;

/// The picture on the backdrop, as large as it is shown.
std::vector<std::uint32_t> shown(const Image& image) {
    const int width = image.width * enlargement;
    const int height = image.height * enlargement;
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int at = y / enlargement * image.width + x / enlargement;
            const auto colour = image.argb[static_cast<std::size_t>(at)];
            pixels.push_back(colour != 0 ? colour : backdrop);
        }
    }
    return pixels;
}

}  // namespace

std::vector<std::byte> play(const Form& form, const Animation& animation) {
    const auto drawn = drawAnimation(form, groundShiftOf(form), animation);
    const auto box = boxAround(drawn);
    const auto palette = form.paints().plain;
    AnimatedPngWriter writer({box.width() * enlargement, box.height * enlargement}, ticksPerSecond);
    for (int frame = 0; frame < animation.frameCount(); ++frame) {
        const auto at = static_cast<std::size_t>(frame);
        const auto pixels = shown(cut(drawn[facingRight][at], box, palette));
        for (int tick = 0; tick < animation.ticks[at]; ++tick) writer.add(pixels);
    }
    return writer.finish();
}

}  // namespace quibbits::atelier
