#include <gtest/gtest.h>

#include "desktop/x11/DrawnShape.h"
#include "desktop/x11/DropData.h"
#include "desktop/x11/HotArea.h"
#include "desktop/x11/XSettings.h"

namespace quibbits::x11 {
namespace {

constexpr Point farAway{1000, 1000};

int changes(HotArea& area, Point pointer, Instant from, Instant to, double pointsPerStep) {
    int count = 0;
    auto last = area.decide(pointer, from).region;
    double x = 0;
    for (Instant now = from; now < to; now += 0.05) {
        area.setWanted({{x += pointsPerStep, 0, 60, 60}}, now);
        const auto region = area.decide(pointer, now).region;
        count += region != last;
        last = region;
    }
    return count;
}

TEST(HotArea, AWalkFarFromThePointerChangesTheRegionOnce) {
    HotArea area;
    area.setWanted({{0, 0, 60, 60}}, 0);
    EXPECT_FALSE(area.decide(farAway, 10).region.rects.empty());
    EXPECT_EQ(changes(area, farAway, 10, 20, 2.25), 1);
    EXPECT_TRUE(area.decide(farAway, 20).region.rects.empty());
    const auto again = area.decide(farAway, 20).askAgain;
    ASSERT_TRUE(again);
    EXPECT_FALSE(area.decide(farAway, *again).region.rects.empty());
    EXPECT_FALSE(area.decide(farAway, *again).isStale);
}

TEST(HotArea, NearThePointerTheRegionFollows) {
    HotArea close;
    EXPECT_LE(changes(close, {30, 140}, 10, 11, 2.25), 12) << "close by: ten times a second";
    HotArea touching;
    EXPECT_GE(changes(touching, {30, 70}, 10, 10.4, 2.25), 7) << "touching: at every step";
}

TEST(HotArea, ComingCloseSetsTheRegionAtOnce) {
    HotArea area;
    area.decide(farAway, 0);
    area.setWanted({{0, 0, 60, 60}}, 10);
    EXPECT_TRUE(area.decide(farAway, 10).region.rects.empty());
    EXPECT_TRUE(area.decide(farAway, 10).isStale);
    EXPECT_EQ(area.decide({30, 30}, 10.01).region.rects.size(), 1u);
}

TEST(HotArea, TakingTheMouseIsNeededOnlyOutsideTheHotArea) {
    HotArea area;
    area.setWanted({{0, 0, 60, 60}}, 0);
    area.setIgnores(false);
    EXPECT_FALSE(area.decide({30, 30}, 10).region.whole);
    EXPECT_TRUE(area.decide({90, 30}, 10).region.whole);
    area.setIgnores(true);
    EXPECT_EQ(area.decide({90, 30}, 10).region.rects.size(), 1u);
}

TEST(DropData, OnlyFilesOfThisMachineAreTaken) {
    using Files = std::vector<std::string>;
    EXPECT_EQ(filesOfUriList(std::string("file:///a\0", 10)), std::vector<std::string>{"/a"});
    EXPECT_TRUE(filesOfUriList(std::string("file:///a\0b", 11)).empty());
    EXPECT_EQ(filesOfUriList("file:///a\nfile:/b\r\nfile://localhost/c%25d\n"),
              (Files{"/a", "/b", "/c%d"}));
    EXPECT_EQ(filesOfUriList("file://elsewhere.example/a\nsmb://x/a\nfile:relative\nfile://\n"
                             "file:///bad%2\nfile:///bad%zz\nfile:///nul%00\n#file:///x\n\n"),
              Files{});
}

TEST(DrawnShape, EqualRowsAreOneRectangle) {
    constexpr std::uint32_t o = 0xff112233;
    constexpr std::uint32_t h = 0x40000000;  // too faint to count
    const std::uint32_t pixels[] = {
        0, o, o, 0, o,  //
        0, o, o, h, o,  //
        h, h, h, h, h,  //
        o, o, o, o, o,
    };
    const auto all = opaqueRectangles({10, 20, 5, 4}, pixels);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].x, 11);
    EXPECT_EQ(all[0].y, 20);
    EXPECT_EQ(all[0].width, 2);
    EXPECT_EQ(all[0].height, 2);
    EXPECT_EQ(all[2].y, 23);
    EXPECT_EQ(all[2].width, 5);
    EXPECT_EQ(all[2].height, 1);
}

TEST(XSettings, ANumberIsFoundBehindOtherSettingsInEitherByteOrder) {
    const std::string little(
        "\0\0\0\0\1\0\0\0\2\0\0\0"
        "\1\0\3\0abc\0\0\0\0\0\5\0\0\0hello\0\0\0"
        "\0\0\3\0Fac\0\7\0\0\0\2\0\0\0",
        12 + 24 + 16);
    EXPECT_EQ(integerSetting(little, "Fac"), 2);
    EXPECT_FALSE(integerSetting(little, "abc"));
    const std::string big(
        "\1\0\0\0\0\0\0\1\0\0\0\1"
        "\0\0\0\3Fac\0\0\0\0\7\0\0\0\2",
        12 + 16);
    EXPECT_EQ(integerSetting(big, "Fac"), 2);
    for (std::size_t size = 0; size < little.size(); ++size) {
        EXPECT_FALSE(integerSetting(little.substr(0, size), "Fac")) << size;
    }
}

}  // namespace
}  // namespace quibbits::x11
