#include <gtest/gtest.h>

#include <algorithm>

#include "codecs/Png.h"

namespace quibbits {
namespace {

/// A picture of `count` colours, the first of them clear and the second half see-through.
std::vector<std::uint32_t> colourful(PngInfo size, std::uint32_t count) {
    std::vector<std::uint32_t> argb;
    for (int i = 0; i < size.width * size.height; ++i) {
        const auto n = static_cast<std::uint32_t>(i) * 7 % count;
        const std::uint32_t channels = n % 128 << 16 | (n >> 2) % 128 << 8 | (n >> 7) % 128;
        argb.push_back(n == 0 ? 0 : n == 1 ? 0x80402010 : 0xff000000 | channels);
    }
    return argb;
}

std::vector<std::uint32_t> colours(const DecodedImage& image) {
    std::vector<std::uint32_t> all;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) all.push_back(image.colourAt(x, y));
    }
    return all;
}

void writeSize(std::vector<std::byte>& file, std::uint32_t width, std::uint32_t height) {
    for (std::size_t i = 0; i < 4; ++i) {
        file[16 + i] = static_cast<std::byte>(width >> (24 - 8 * i));
        file[20 + i] = static_cast<std::byte>(height >> (24 - 8 * i));
    }
}

struct Case {
    PngInfo size;
    std::uint32_t colours;
    bool palette;
};

TEST(Png, OnePictureInTwoCoatsDiffersInItsPaletteAlone) {
    const std::vector<std::uint32_t> plain{0, 0xff102030, 0xff405060, 0xff102030};
    const std::vector<std::uint32_t> shiny{0, 0xff708090, 0xff708090, 0xffa0b0c0};
    const auto files = encodePngs({2, 2}, {plain, shiny});
    ASSERT_EQ(files.size(), 2u);
    const auto one = decodePng(files[0]);
    const auto other = decodePng(files[1]);
    ASSERT_TRUE(one && other);
    EXPECT_EQ(one->indices, other->indices);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(one->colourAt(i % 2, i / 2), plain[static_cast<std::size_t>(i)]);
        EXPECT_EQ(other->colourAt(i % 2, i / 2), shiny[static_cast<std::size_t>(i)]);
    }
    EXPECT_TRUE(encodePngs({2, 2}, {plain, {0}})[1].empty()) << "too few pixels";
    // More combinations than a palette holds: each file by itself.
    std::vector<std::uint32_t> grey;
    std::vector<std::uint32_t> mixed;
    for (std::uint32_t i = 0; i < 400; ++i) {
        grey.push_back(0xff000000 | i % 200);
        mixed.push_back(0xff000000 | i % 3);
    }
    const auto many = encodePngs({20, 20}, {grey, mixed});
    EXPECT_EQ(many[0], encodePng({20, 20}, grey));
    EXPECT_EQ(many[1], encodePng({20, 20}, mixed));
}

TEST(Png, APictureComesBackAsItWasWritten) {
    for (const auto& [size, count, palette] : {Case{{1, 1}, 1, true},
                                               {{5, 3}, 2, true},
                                               {{13, 9}, 4, true},
                                               {{17, 5}, 16, true},
                                               {{31, 40}, 256, true},
                                               {{31, 40}, 257, false},
                                               {{100, 60}, 5000, false}}) {
        SCOPED_TRACE(count);
        const auto picture = colourful(size, count);
        const auto file = encodePng(size, picture);
        EXPECT_EQ(pngInfo(file), size);
        const auto image = decodePng(file);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->hasPalette(), palette);
        EXPECT_EQ(colours(*image), picture);
        EXPECT_EQ(encodePng(size, picture), file) << "not the same bytes twice";
    }
}

TEST(Png, EverySeeThroughColourSurvives) {
    std::vector<std::uint32_t> picture;
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        for (std::uint32_t value = 0; value <= alpha; ++value) {
            picture.push_back(alpha << 24 | value << 16 | (alpha - value) << 8);
        }
    }
    const PngInfo size{static_cast<int>(picture.size()) / 128, 128};
    const auto image = decodePng(encodePng(size, picture));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->argb, picture);
}

TEST(Png, OnlyTheWantedRowsAreKept) {
    for (const std::uint32_t count : {200U, 3000U}) {
        const PngInfo size{40, 100};
        const auto picture = colourful(size, count);
        const auto file = encodePng(size, picture);
        for (const auto& [first, rows] : {PngRows{0, 1}, {40, 20}, {99, 1}, {90, 50}}) {
            const auto image = decodePng(file, {first, rows});
            ASSERT_TRUE(image);
            const int kept = std::min(rows, size.height - first);
            EXPECT_EQ(image->height, kept);
            EXPECT_TRUE(std::ranges::equal(
                colours(*image), std::span(picture).subspan(static_cast<std::size_t>(first) * 40,
                                                            static_cast<std::size_t>(kept) * 40)));
        }
        EXPECT_FALSE(decodePng(file, {100, 1}));
        EXPECT_FALSE(decodePng(file, {-1, 5}));
        EXPECT_FALSE(decodePng(file, {0, 0}));
    }
}

TEST(Png, AFileThatIsCutShortIsRefused) {
    for (const std::uint32_t count : {60U, 900U}) {
        const auto file = encodePng({30, 30}, colourful({30, 30}, count));
        for (std::size_t length = 0; length < file.size(); ++length) {
            EXPECT_FALSE(decodePng(std::span(file).first(length))) << length;
        }
    }
}

TEST(Png, ADamagedByteNeverDoesHarm) {
    const auto file = encodePng({30, 30}, colourful({30, 30}, 60));
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const auto flip : {0x01, 0x80, 0xff}) {
            auto damaged = file;
            damaged[at] ^= static_cast<std::byte>(flip);
            const auto image = decodePng(damaged);
            EXPECT_TRUE(!image || image->indices.size() == 900U) << at;
        }
    }
}

TEST(Png, SizesOutsideTheLimitsAreRefused) {
    const auto good = encodePng({4, 4}, colourful({4, 4}, 4));
    for (const auto& [width, height] : {std::pair{0U, 4U},
                                        {4U, 0U},
                                        {16385U, 1U},
                                        {1U, 16385U},
                                        {16384U, 16384U},
                                        {0x80000000U, 4U},
                                        {0xffffffffU, 0xffffffffU}}) {
        auto file = good;
        writeSize(file, width, height);
        EXPECT_FALSE(pngInfo(file)) << width << " x " << height;
        EXPECT_FALSE(decodePng(file)) << width << " x " << height;
    }
    const std::vector<std::uint32_t> pixels(16);
    EXPECT_TRUE(encodePng({0, 16}, {}).empty());
    EXPECT_TRUE(encodePng({-4, -4}, pixels).empty());
    EXPECT_TRUE(encodePng({4, 5}, pixels).empty());
}

}  // namespace
}  // namespace quibbits
