// A picture from anywhere: it is read or refused, and what is read has the pixels it promises.

#include <cstdint>
#include <cstdlib>
#include <span>

#include "codecs/Png.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quibbits;
    const std::span<const std::byte> bytes(reinterpret_cast<const std::byte*>(data), size);
    const auto info = pngInfo(bytes);
    if (info && std::int64_t{info->width} * info->height > 1 << 20) return 0;  // slow, not wrong
    for (const PngRows rows : {PngRows{}, PngRows{2, 3}}) {
        const auto image = decodePng(bytes, rows);
        if (!image) continue;
        const auto count =
            static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height);
        const std::size_t held = image->hasPalette() ? image->indices.size() : image->argb.size();
        if (held != count) std::abort();
        for (const auto index : image->indices) {
            if (index >= image->palette.size()) std::abort();
        }
    }
    return 0;
}
