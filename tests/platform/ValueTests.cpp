#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Random.h"
#include "platform/Text.h"

namespace quibbits {
namespace {

TEST(Characters, AreCountedAsTheUserSeesThem) {
    struct Row {
        std::string text;
        std::size_t count;
        const char* what;
    };
    for (const auto& [text, count, what] : std::vector<Row>{
             {"", 0, "nothing"},
             {"Hi!", 3, "plain letters"},
             {"Grüße…", 6, "letters of two and three bytes"},
             {"e\u0301a\u0308\u0302", 2, "combining accents"},
             {"♥\ufe0f!", 2, "a variation selector"},
             {"👍🏽👍", 2, "a skin tone"},
             {"👩‍👩‍👧‍👦", 1, "a family joined by joiners"},
             {"1\ufe0f\u20e3", 1, "a key cap"},
             {"🇩🇪🇫🇷", 2, "two flags"},
             {"🇩", 1, "half a flag"},
             {"🏴\U000e0067\U000e0062\U000e0065\U000e006e\U000e0067\U000e007f!", 2,
              "a region's flag"},
             {"\u0301a", 2, "an accent with nothing under it"},
             {"⌥⌘⌫", 3, "keys"},
             {std::string("a\0b", 3), 3, "a zero byte"},
         }) {
        EXPECT_EQ(characterCount(text), count) << what;
        EXPECT_EQ(firstCharacters(text, count), text) << what;
        EXPECT_EQ(firstCharacters(text, count + 5), text) << what;
        for (std::size_t n = 0; n <= count; ++n) {
            EXPECT_EQ(characterCount(firstCharacters(text, n)), n) << what;
        }
    }
    EXPECT_EQ(firstCharacters("e\u0301a", 1), "e\u0301");
    EXPECT_EQ(firstCharacters("🇩🇪!", 1), "🇩🇪");
}

TEST(Characters, OfBrokenTextCountByteByByteAndAreNeverLost) {
    struct Row {
        std::string text;
        std::size_t count;
    };
    for (const auto& [text, count] : std::vector<Row>{{"\xc3", 1},
                                                      {"a\xe2\x82", 3},
                                                      {"\x80\x80", 2},
                                                      {"\xff\x80\x80\x80", 4},
                                                      {"\xf0\x9f\x91", 3},
                                                      {"\xc3(", 2},
                                                      {"\xe2\x82\xac\xac", 2}}) {
        EXPECT_EQ(characterCount(text), count) << testing::PrintToString(text);
        EXPECT_EQ(firstCharacters(text, count), text);
    }
    Random random(4);
    for (int i = 0; i < 2000; ++i) {
        std::string text;
        for (std::size_t n = random.index(12); n > 0; --n) {
            text += static_cast<char>(random.index(256));
        }
        const std::size_t count = characterCount(text);
        ASSERT_EQ(firstCharacters(text, count), text);
        ASSERT_TRUE(count == 0 || firstCharacters(text, count - 1).size() < text.size());
    }
}

TEST(Chance, StaysInsideItsBoundsAndReachesBothEnds) {
    Random random(6);
    double least = 9;
    double most = -9;
    for (int i = 0; i < 200000; ++i) {
        const double v = random.uniform(-2, 3);
        ASSERT_GE(v, -2);
        ASSERT_LE(v, 3);
        least = std::min(least, v);
        most = std::max(most, v);
        ASSERT_LT(random.below(0.1), 0.1);
        ASSERT_GE(random.below(1e-9), 0);
    }
    EXPECT_LT(least, -1.999);
    EXPECT_GT(most, 2.999);
    EXPECT_EQ(random.uniform(4, 4), 4);
}

TEST(Chance, IsEvenOverAnyCount) {
    Random random(77);
    for (const std::size_t count : {1u, 2u, 3u, 7u, 10u}) {
        std::vector<int> hits(count);
        constexpr int draws = 70000;
        for (int i = 0; i < draws; ++i) ++hits.at(random.index(count));
        const double expected = static_cast<double>(draws) / static_cast<double>(count);
        double chiSquare = 0;
        for (const int n : hits) chiSquare += std::pow(n - expected, 2) / expected;
        EXPECT_LT(chiSquare, 30) << count;  // 9 degrees of freedom at most
    }
    int heads = 0;
    for (int i = 0; i < 100000; ++i) heads += random.coin() ? 1 : 0;
    EXPECT_NEAR(heads, 50000, 800);
}

TEST(Rectangles, ShareAnAreaOrNothing) {
    const Rect box{0, 0, 10, 10};
    struct Row {
        Rect other;
        Rect shared;
        Rect around;
    };
    for (const auto& [other, shared, around] : std::vector<Row>{
             {{5, 5, 10, 10}, {5, 5, 5, 5}, {0, 0, 15, 15}},
             {{10, 0, 5, 5}, {}, {0, 0, 15, 10}},
             {{5, 5, 0, 0}, {}, box},
             {{5, 5, -3, 4}, {}, box},
             {{2, 3, 4, 5}, {2, 3, 4, 5}, box},
         }) {
        EXPECT_EQ(box.intersected(other), shared);
        EXPECT_EQ(other.intersected(box), shared);
        EXPECT_EQ(box.intersects(other), !shared.isEmpty());
        EXPECT_EQ(other.intersects(box), !shared.isEmpty());
        EXPECT_EQ(box.united(other), around);
        EXPECT_EQ(other.united(box), around);
    }
    EXPECT_TRUE(box.contains({0, 0}));
    EXPECT_FALSE(box.contains({10, 5}));
}

/// Pixels numbered from 1, row by row from the top.
Image numbered(int width, int height) {
    std::vector<Argb> pixels;
    for (int i = 1; i <= width * height; ++i) pixels.push_back(static_cast<Argb>(i));
    return Image::fromArgb(width, height, std::move(pixels));
}

TEST(Pictures, AreCutToWhatLiesInsideThem) {
    const Image whole = numbered(4, 3);
    struct Row {
        int x, y, width, height;
        int cutWidth, cutHeight;
        Argb first;
    };
    for (const auto& r : std::vector<Row>{{1, 1, 2, 2, 2, 2, 6},
                                          {-1, -1, 3, 3, 2, 2, 1},
                                          {3, 2, 9, 9, 1, 1, 12},
                                          {1, 1, INT_MAX, INT_MAX, 3, 2, 6},
                                          {0, 0, 4, 3, 4, 3, 1},
                                          {4, 0, 1, 1, 0, 0, 0},
                                          {1, 1, 0, 2, 0, 0, 0},
                                          {2, 2, -1, -1, 0, 0, 0},
                                          {INT_MIN, INT_MIN, INT_MAX, INT_MAX, 0, 0, 0}}) {
        const Image part = whole.cropped(r.x, r.y, r.width, r.height);
        EXPECT_EQ(part.width(), r.cutWidth);
        EXPECT_EQ(part.height(), r.cutHeight);
        EXPECT_EQ(part.at(0, 0), r.first);
        EXPECT_EQ(static_cast<bool>(part), r.cutWidth > 0);
    }
    const Image inner = whole.cropped(1, 1, 3, 2).cropped(1, 1, 9, 9);
    EXPECT_EQ(inner.at(0, 0), 11u) << "a crop of a crop";
    EXPECT_EQ(inner.at(-1, 0), 0u) << "what was cut off stays out of sight";
    EXPECT_EQ(inner.at(2, 0), 0u);
    EXPECT_EQ(inner.storedBytes(), whole.storedBytes()) << "its pixels are shared";
}

TEST(Pictures, WithAPaletteShowTransparencyForAnInkThatItLacks) {
    const Image image = Image::fromPalette(2, 2, {0, 1, 255, 0}, {0xff000001u, 0xff000002u});
    EXPECT_EQ(image.at(1, 0), 0xff000002u);
    EXPECT_EQ(image.at(0, 1), 0u);
    EXPECT_EQ(image.at(1, 1), 0xff000001u);
    EXPECT_EQ(image.cropped(1, 1, 1, 1).at(0, 0), 0xff000001u);
}

TEST(Pictures, WithTooFewPixelsOrNoSizeAreNone) {
    EXPECT_FALSE(Image::fromArgb(2, 2, {1, 2, 3}));
    EXPECT_FALSE(Image::fromArgb(0, 2, {}));
    EXPECT_FALSE(Image::fromArgb(-2, -2, {1, 2, 3, 4}));
    EXPECT_FALSE(Image::fromPalette(2, 1, {0}, {1}));
    EXPECT_FALSE(Image());
    EXPECT_EQ(Image().at(0, 0), 0u);
    EXPECT_FALSE(Image().cropped(0, 0, 1, 1));
}

}  // namespace
}  // namespace quibbits
