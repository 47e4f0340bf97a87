#pragma once
// Writes moving pictures as animated PNG files, which browsers show and old viewers show the first
// frame of. Each frame holds only the rectangle that differs from the one before.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "codecs/Png.h"

namespace quibbits {

class AnimatedPngWriter {
public:
    /// Frames of one size, each shown for a share of a second: 1/framesPerSecond.
    AnimatedPngWriter(PngInfo size, int framesPerSecond);

    /// Adds a frame of opaque pixels, 0x..RRGGBB, width × height of them. A frame like the one
    /// before makes that one last longer.
    void add(std::span<const std::uint32_t> pixels);
    std::size_t frameCount() const { return frames_.size(); }
    /// The whole file; empty without a frame.
    std::vector<std::byte> finish() const;

private:
    struct Frame {
        PngInfo size;
        int x = 0;
        int y = 0;
        int ticks = 1;                        // of one frame's share
        std::vector<unsigned char> deflated;  // rows of RGB, each behind its filter byte
    };
    Frame encode(std::span<const std::uint32_t> pixels) const;

    PngInfo size_;
    int framesPerSecond_;
    std::vector<Frame> frames_;
    std::vector<std::uint32_t> last_;
};

}  // namespace quibbits
