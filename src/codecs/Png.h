// PNG files in memory, read and written.
//
// The reader takes bytes from anywhere (sheets, dropped files, icons), so it trusts nothing: what
// is broken, truncated or larger than the limits is refused whole. The writer gives the same bytes
// for the same pixels, so that generated sheets can be compared and cached. Neither touches a file.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quibbits {

constexpr int pngLargestSide = 16384;
constexpr std::int64_t pngMostPixels = std::int64_t{64} << 20;

struct PngInfo {
    int width = 0;
    int height = 0;

    bool operator==(const PngInfo&) const = default;
};

/// The rows of an image that a reader wants, counted from the top. Rows past the image's end are
/// left out.
struct PngRows {
    int first = 0;
    int count = INT_MAX;
};

/// The rows that were read. Colours are 0xAARRGGBB, premultiplied by alpha. Exactly one of the two
/// forms is filled, `height` rows of `width` values without padding: `argb`, or, when the file has
/// a palette, `indices` into `palette`.
struct DecodedImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> argb;
    std::vector<std::uint8_t> indices;
    std::vector<std::uint32_t> palette;

    [[nodiscard]] bool hasPalette() const { return !palette.empty(); }
    /// The colour at a place inside the image, whichever form it has.
    [[nodiscard]] std::uint32_t colourAt(int x, int y) const {
        const auto at = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                        static_cast<std::size_t>(x);
        return hasPalette() ? palette[indices[at]] : argb[at];
    }
};

/// The size in the file's header, without reading any pixel. Nothing when the bytes do not start
/// like a PNG file or the size is outside the limits.
std::optional<PngInfo> pngInfo(std::span<const std::byte> file);

/// Reads the wanted rows and stops after the last of them; a file that is broken further down is
/// still good for its upper rows. Nothing when no wanted row exists or can be read.
std::optional<DecodedImage> decodePng(std::span<const std::byte> file, PngRows rows = {});

/// Writes `width` * `height` premultiplied colours: with a palette of the smallest bit depth when
/// there are at most 256 of them, else as RGBA. Empty when the size is outside the limits or does
/// not fit the number of pixels.
std::vector<std::byte> encodePng(PngInfo size, std::span<const std::uint32_t> argb);

/// Writes one picture in several sets of colours, each `width` * `height` premultiplied values. As
/// long as a palette holds all their combinations, the files differ in their palettes alone, so
/// that an archive of them holds the pixels once.
std::vector<std::vector<std::byte>> encodePngs(
    PngInfo size, const std::vector<std::vector<std::uint32_t>>& coats);

}  // namespace quibbits
