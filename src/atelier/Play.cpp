#include "atelier/Play.h"

#include <algorithm>

#include "atelier/Sheet.h"
#include "codecs/AnimatedPng.h"

namespace quibbits::atelier {
namespace {

constexpr int enlargement = 3;
constexpr int ticksPerSecond = 60;
constexpr std::uint32_t backdrop = 0xffa9b8a4;

/// The picture on the backdrop, as large as it is shown.
std::vector<std::uint32_t> shown(Image image) {
    std::ranges::replace(image.argb, 0U, backdrop);
    return enlarged(image, enlargement).argb;
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
