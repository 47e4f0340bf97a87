#include <gtest/gtest.h>

#include <map>
#include <string>

#include "codecs/AnimatedPng.h"

namespace quibbits {
namespace {

struct FrameControl {
    std::uint32_t width = 0, height = 0, x = 0, y = 0;
    unsigned ticks = 0;
};

/// What the file says of its frames.
std::vector<FrameControl> framesOf(const std::vector<std::byte>& file) {
    const auto number = [&](std::size_t at, std::size_t bytes = 4) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            value = value << 8 | std::to_integer<std::uint32_t>(file[at + i]);
        }
        return value;
    };
    std::vector<FrameControl> frames;
    for (std::size_t at = 8; at < file.size(); at += 12 + number(at)) {
        const std::string type(reinterpret_cast<const char*>(file.data()) + at + 4, 4);
        if (type != "fcTL") continue;
        const std::size_t body = at + 12;  // behind the sequence number
        frames.push_back({number(body), number(body + 4), number(body + 8), number(body + 12),
                          number(body + 16, 2)});
    }
    return frames;
}

TEST(AnAnimatedPng, HoldsOfEachFrameOnlyWhatDiffers) {
    AnimatedPngWriter writer({4, 3}, 20);
    std::vector<std::uint32_t> pixels(12, 0x112233);
    writer.add(pixels);
    writer.add(pixels);
    pixels[6] = pixels[11] = 0xff0000;  // at 2, 1 and at 3, 2
    writer.add(pixels);
    const auto frames = framesOf(writer.finish());
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0].ticks, 2u);
    EXPECT_EQ(std::tie(frames[0].width, frames[0].height), std::tuple(4u, 3u));
    EXPECT_EQ(std::tie(frames[1].x, frames[1].y, frames[1].width, frames[1].height),
              std::tuple(2u, 1u, 2u, 2u));
}

TEST(AnAnimatedPng, ShowsAPictureThatStaysForHoursAsLongAsItStayed) {
    AnimatedPngWriter writer({1, 1}, 20);
    const std::vector<std::uint32_t> pixel{0x112233};
    constexpr unsigned stays = 200'000;  // more than the format gives one frame
    for (unsigned i = 0; i < stays; ++i) writer.add(pixel);
    unsigned shown = 0;
    for (const auto& frame : framesOf(writer.finish())) {
        EXPECT_EQ(std::tie(frame.width, frame.height), std::tuple(1u, 1u));
        shown += frame.ticks;
    }
    EXPECT_EQ(shown, stays);
}

}  // namespace
}  // namespace quibbits
