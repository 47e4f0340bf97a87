#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <set>

#include "body/FileIcons.h"
#include "body/HandmadeSet.h"
#include "body/Pixels.h"
#include "body/Sheets.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

using Names = std::vector<std::string>;

// Descriptions.

TEST(ADescription, IsReadWhateverStandsAroundItsValues) {
    HandmadeSet set;
    set.open("Sheet");
    set.text("\n  ");
    set.open("Anim");
    set.element("Name", "\n  Walk\t");
    set.element("FrameHeight", " 24 ");
    set.open("Durations");
    set.element("Duration", "6");
    set.open("Odd");
    set.open("Duration");
    set.text("1");
    set.text("2");
    set.close("Duration");
    set.close("Odd");
    set.close("Durations");
    set.element("Comment", "99");
    set.close("Anim");
    set.close("Sheet");
    const auto data = AnimData::parse(set.events);
    ASSERT_EQ(data.order, Names{"Walk"});
    const auto& walk = data.anims.at("Walk");
    EXPECT_EQ(walk.height, 24);
    EXPECT_EQ(walk.durations, (std::vector{6, 12}));
    EXPECT_EQ(walk.copyOf, std::nullopt);
}

TEST(ADescription, TakesNonsenseAsOneTickAndAsNoHeight) {
    struct Row {
        std::string text;
        int height;
        int duration;
    };
    for (const auto& [text, height, duration] : std::vector<Row>{{"12", 12, 12},
                                                                 {"0", 0, 0},
                                                                 {"", 0, 1},
                                                                 {"x", 0, 1},
                                                                 {"4.5", 0, 1},
                                                                 {"4 5", 0, 1},
                                                                 {"-4", 0, 1},
                                                                 {"0x10", 0, 1},
                                                                 {"99999999999", 0, 1}}) {
        HandmadeSet set;
        set.describe({.name = "A", .height = text, .durations = {text}});
        const auto data = AnimData::parse(set.events);
        EXPECT_EQ(data.anims.at("A").height, height) << text;
        EXPECT_EQ(data.anims.at("A").durations, std::vector{duration}) << text;
    }
}

TEST(ADescription, ThatBreaksOffKeepsItsFinishedEntries) {
    HandmadeSet set;
    set.describe({.name = "A"});
    const auto whole = set.events;
    set.describe({.name = "B"});
    for (std::size_t cut = whole.size(); cut < set.events.size(); ++cut) {
        const auto data = AnimData::parse({set.events.begin(), set.events.begin() + cut});
        ASSERT_EQ(data.order, Names{"A"}) << cut;
    }
}

TEST(ADescription, WithoutEndFillsNoMemory) {
    HandmadeSet set;
    set.draw({.name = "Idle", .durations = {"3000", "1"}});
    const std::size_t most = 1'000'000;
    while (set.events.size() < most) {
        set.describe({.name = "Copy", .durations = {}, .copyOf = "Idle"});
    }
    const Sheets sheets(set, "set", {});
    EXPECT_LE(sheets.all.size(), 1024u);
    EXPECT_EQ(sheets.idle.frames.size(), 3001u);
}

// Strips.

Image solid(int width, int height) {
    return Image::fromArgb(width, height,
                           std::vector<Argb>(static_cast<std::size_t>(width * height), 0xffffffff));
}

TEST(AStrip, RepeatsAFrameForAsLongAsItLasts) {
    struct Row {
        std::vector<int> ticks;
        std::vector<int> frames;  // which frame of the strip is shown in turn
        double ticksInAll;
    };
    for (const auto& [ticks, frames, inAll] : std::vector<Row>{
             {{4, 8, 4}, {0, 1, 1, 2}, 16},
             {{6}, {0}, 6},
             {{2, 3}, {0, 0, 1, 1, 1}, 5},
             {{0, 6, 12}, {0, 1, 2, 2}, 18},
             {{0, 0}, {0, 1}, 0},
         }) {
        const auto anim = Anim::fromStrip(solid(30, 10), ticks);
        std::vector<int> shown;
        for (const Rect& frame : anim.frames) {
            const auto count = static_cast<double>(ticks.size());
            shown.push_back(static_cast<int>(std::lround(frame.x * count)));
            EXPECT_NEAR(frame.width, 1 / count, 1e-12);
            EXPECT_EQ(frame.height, 1);
        }
        EXPECT_EQ(shown, frames);
        EXPECT_NEAR(anim.duration, inAll / 60, 1e-12);
        EXPECT_TRUE(anim.isPlayable());
    }
}

TEST(AStrip, ThatAsksForTheImpossibleIsBoundedOrNotPlayed) {
    const auto endless = Anim::fromStrip(solid(20, 10), {INT_MAX, 1});
    EXPECT_LE(endless.frames.size(), 10000u);
    EXPECT_TRUE(endless.isPlayable());
    const auto crowded = Anim::fromStrip(solid(20, 10), std::vector<int>(100000, 1));
    EXPECT_LE(crowded.frames.size(), 10000u);
    EXPECT_FALSE(crowded.isPlayable()) << "its frames are thinner than a pixel";
    EXPECT_FALSE(Anim::fromStrip(solid(20, 10), {}).isPlayable());
    EXPECT_FALSE(Anim::fromStrip({}, {4}).isPlayable());
}

TEST(AStrip, StandsOnTheLowestRowThatCanBeSeen) {
    const auto withRows = [](int height, int from, int to, Argb color) {
        std::vector<Argb> pixels(static_cast<std::size_t>(4 * height));
        for (int y = from; y <= to; ++y) pixels[static_cast<std::size_t>(4 * y + y % 4)] = color;
        return Anim::fromStrip(Image::fromArgb(4, height, std::move(pixels)), {1, 1});
    };
    struct Row {
        int height, from, to;
        Argb color;
        double feet, tall;
    };
    for (const auto& r : std::vector<Row>{{10, 3, 7, 0xffffffff, 3, 5},
                                          {10, 0, 9, 0xffffffff, 5, 10},
                                          {7, 6, 6, 0xffffffff, 3.5, 1},
                                          {10, 0, 0, 0xffffffff, -4, 1},
                                          {10, 3, 7, 0x1a000000, 3, 5},
                                          {10, 3, 7, 0x19000000, 5, 10},
                                          {10, 1, 0, 0, 5, 10}}) {
        const auto anim = withRows(r.height, r.from, r.to, r.color);
        EXPECT_EQ(anim.feet, r.feet);
        EXPECT_EQ(anim.height, r.tall);
    }
}

// Sets.

TEST(ASet, ShowsTheSideViewAndTheFrontWhereThereIsNoOther) {
    for (const auto& [rows, side, up, down] : std::vector<std::array<int, 4>>{
             {8, 2, 3, 1}, {4, 2, 3, 1}, {3, 2, 0, 1}, {2, 0, 0, 1}, {1, 0, 0, 0}}) {
        HandmadeSet set;
        set.draw({.name = "Idle", .durations = {"5", "5", "5"}}, rows);
        const Sheets sheets(set, "set", {});
        EXPECT_EQ(rowShown(sheets.idle), side) << rows;
        EXPECT_EQ(rowShown(sheets.lookUp), up) << rows;
        EXPECT_EQ(rowShown(sheets.lookDown), down) << rows;
        EXPECT_EQ(sheets.lookUp.image.width(), 10) << "one frame";
        EXPECT_EQ(sheets.lookUp.frames.size(), 1u);
        EXPECT_NEAR(sheets.lookUp.duration, 5.0 / 60, 1e-12);
        EXPECT_EQ(sheets.idle.frameSize, (Size{10, 10}));
    }
}

TEST(ASet, GivesEightDirectionsAndTheFrontForThoseItLacks) {
    HandmadeSet set;
    set.draw({.name = "Idle"}, 2).draw({.name = "Walk"}, 8);
    const Sheets sheets(set, "set", {});
    const auto rowsOf = [&](const char* name) {
        std::vector<int> rows;
        for (const Anim& side : sheets.directions(set, name)) rows.push_back(rowShown(side));
        return rows;
    };
    EXPECT_EQ(rowsOf("Idle"), (std::vector{0, 1, 0, 0, 0, 0, 0, 0}));
    set.reads = 0;
    EXPECT_EQ(rowsOf("Walk"), (std::vector{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(set.reads, 1) << "a sheet is decoded from its top each time";
    EXPECT_TRUE(rowsOf("Fly").empty());
}

TEST(ASet, WhoseRowsHaveNoHeightIsOneStrip) {
    for (const char* height : {"0", "", "nonsense", "500"}) {
        HandmadeSet set;
        set.describe({.name = "Idle", .height = height});
        set.pictures["set-idle"] = HandmadeSet::rowsOf(20, 4, 10);
        const Sheets sheets(set, "set", {});
        EXPECT_EQ(sheets.idle.frameSize, (Size{10, 40})) << height;
    }
}

TEST(ASet, FallsBackAlongItsChains) {
    struct Row {
        Names drawn;  // beside "Idle"
        Anim Sheets::*field;
        std::string expected;
    };
    for (const auto& [drawn, field, expected] : std::vector<Row>{
             {{}, &Sheets::walk, "Idle"},
             {{}, &Sheets::shock, "Idle"},
             {{"Attack", "Shoot"}, &Sheets::shock, "Shoot"},
             {{"Hurt"}, &Sheets::crash, "Hurt"},
             {{"Pose"}, &Sheets::eat, "Pose"},
             {{"Sleep", "Faint"}, &Sheets::faint, "Faint"},
             {{"Sleep"}, &Sheets::faint, "Sleep"},
             {{"Rotate"}, &Sheets::tumble, "Rotate"},
             {{"Tumble"}, &Sheets::twirl, "Idle"},
         }) {
        HandmadeSet set;
        set.draw({.name = "Idle"});
        set.describe({.name = "Walk"});  // without a picture it is as good as absent
        for (const auto& name : drawn) set.draw({.name = name});
        const Sheets sheets(set, "set", {});
        EXPECT_EQ((sheets.*field).image, sheets.anim(expected)->image) << expected;
    }
}

TEST(ASet, WakesOnTheFootLineOnWhichItRests) {
    HandmadeSet set;
    set.draw({.name = "Idle"}).describe({.name = "Wake"});
    std::vector<Argb> high(200);
    std::fill_n(high.begin(), 60, 0xffffffff);
    set.pictures["set-wake"] = Image::fromArgb(20, 10, std::move(high));
    const Sheets sheets(set, "set", {});
    EXPECT_EQ(sheets.idle.feet, 5);
    EXPECT_EQ(sheets.wake.feet, 5);
    EXPECT_EQ(sheets.wake.height, 3) << "it is its own picture, and shorter";
    EXPECT_EQ(sheets.anim("Wake")->feet, -2);
}

TEST(ASet, BorrowsPictureAndTimingOneStepFar) {
    HandmadeSet set;
    set.draw({.name = "Idle"});
    set.draw({.name = "Swing", .durations = {"2", "4"}});
    set.describe({.name = "Strike", .durations = {"9"}, .copyOf = "Swing"});
    set.describe({.name = "Pull", .durations = {}, .copyOf = "Strike"});
    set.describe({.name = "Push", .durations = {}, .copyOf = "Nowhere"});
    set.describe({.name = "Round", .durations = {}, .copyOf = "Round"});
    const Sheets sheets(set, "set", {});
    const Anim* strike = sheets.anim("Strike");
    ASSERT_TRUE(strike);
    EXPECT_EQ(strike->image, sheets.anim("Swing")->image);
    EXPECT_NEAR(strike->duration, 6.0 / 60, 1e-12);
    for (const char* none : {"Pull", "Push", "Round"}) {
        EXPECT_EQ(sheets.anim(none), nullptr) << none;
        EXPECT_TRUE(sheets.directions(set, none).empty()) << none;
    }
}

TEST(ASet, FindsARoleByTheFirstNameThatItHolds) {
    HandmadeSet set;
    set.draw({.name = "Idle"}).draw({.name = "Attack"}).describe({.name = "MultiStrike"});
    const Sheets sheets(set, "set",
                        {{"throw", {"MultiStrike", "Attack"}}, {"nap", {"EventSleep"}}});
    EXPECT_EQ(sheets.role("throw"), sheets.anim("Attack"));
    ASSERT_TRUE(sheets.roleName("throw"));
    EXPECT_EQ(*sheets.roleName("throw"), "Attack");
    EXPECT_EQ(sheets.role("nap"), nullptr);
    EXPECT_EQ(sheets.role("bask"), nullptr);
    EXPECT_EQ(sheets.roleName("nap"), nullptr);
}

TEST(ASet, ThatIsMissingOrCannotBeDecodedShowsNothing) {
    HandmadeSet missing;
    HandmadeSet broken;
    broken.draw({.name = "Idle"}).draw({.name = "Walk"});
    broken.broken = true;
    HandmadeSet bare;
    bare.describe({.name = "Idle"});
    for (const HandmadeSet* set : {&missing, &broken, &bare}) {
        const Sheets sheets(*set, "set", {{"nap", {"Idle"}}});
        EXPECT_TRUE(sheets.all.empty());
        for (const Anim* anim : {&sheets.idle, &sheets.walk, &sheets.lookUp, &sheets.wake}) {
            EXPECT_TRUE(anim->isPlayable());
            EXPECT_EQ(anim->image.at(0, 0), 0u);
        }
        EXPECT_EQ(sheets.role("nap"), nullptr);
        EXPECT_TRUE(sheets.directions(*set, "Idle").empty());
    }
}

// Pictures from letters.

TEST(APictureOfLetters, HasItsFirstRowOnTopAndHolesForUnknownLetters) {
    const std::vector<std::string_view> rows{"kw.", "?r", "\xffggg"};
    const Image image = Pixels::image(rows);
    EXPECT_EQ(image.width(), 3);
    EXPECT_EQ(image.height(), 3);
    const std::vector<Argb> expected{0xff181010, 0xffffffff, 0,          0,         0xfff83850,
                                     0,          0,          0xffc0c0c8, 0xffc0c0c8};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(image.at(i % 3, i / 3), expected[i]) << i;
    EXPECT_FALSE(Pixels::image({}));
}

TEST(AFilesIcon, ShowsWhatItIsByTheEndOfItsName) {
    SimulatedFiles files;
    files.files = {"/d/album/one.jpg"};
    const auto icon = [&](const std::string& path) { return &iconForFile(files, path); };
    const Image* plain = icon("/d/notes");
    EXPECT_EQ(icon("/d/x.unheard"), plain);
    EXPECT_EQ(icon("/d.zip/x"), plain) << "the folder's name is not the file's";
    EXPECT_EQ(icon("/d/x."), plain);
    EXPECT_EQ(icon("/d/A.JPG"), icon("/d/b.png"));
    EXPECT_EQ(icon("/d/a.tar.gz"), icon("/d/b.zip"));
    std::set<const Image*> kinds{plain, icon("/d/album")};
    for (const char* name : {"a.txt", "a.png", "a.mp3", "a.mkv", "a.zip", "a.deb"}) {
        const Image* each = icon(std::string("/d/") + name);
        EXPECT_TRUE(kinds.insert(each).second) << name;
        EXPECT_NE(*each, *plain);
    }
}

void expectStacked(const Image& whole, const Image& top, const Image& bottom, int seam) {
    EXPECT_EQ(top.height(), seam);
    EXPECT_EQ(top.height() + bottom.height(), whole.height());
    for (int y = 0; y < whole.height(); ++y) {
        for (int x = 0; x < whole.width(); ++x) {
            ASSERT_EQ(whole.at(x, y), y < seam ? top.at(x, y) : bottom.at(x, y - seam));
        }
    }
}

TEST(TheCapsuleAndTheEgg, ComeApartAndFitTogether) {
    expectStacked(Pixels::homeball(), Pixels::homeballTop(), Pixels::homeballBottom(), 6);
    expectStacked(Pixels::egg(), Pixels::eggTop(), Pixels::eggBottom(), 7);
}

TEST(TheEgg, CracksAcrossItsShellAndStaysWholeItself) {
    const Image& egg = Pixels::egg();
    for (int col = 2; col <= 9; ++col) {
        EXPECT_NE(egg.at(col, 6), 0u);
        EXPECT_NE(egg.at(col, 7), 0u);
    }
    const auto cracks = [&](const Image& cracked) {
        std::set<std::pair<int, int>> cells;
        for (int y = 0; y < egg.height(); ++y) {
            for (int x = 0; x < egg.width(); ++x) {
                if (cracked.at(x, y) == egg.at(x, y)) continue;
                EXPECT_EQ(cracked.at(x, y), 0xff181010u);
                cells.emplace(y, x);
            }
        }
        return cells;
    };
    const auto first = cracks(Pixels::eggCracked()[0]);
    const auto second = cracks(Pixels::eggCracked()[1]);
    EXPECT_EQ(first, (std::set<std::pair<int, int>>{{6, 4}, {6, 6}, {7, 5}, {7, 7}}));
    EXPECT_EQ(second.size(), 8u);
    EXPECT_TRUE(std::ranges::includes(second, first)) << "the crack grows";
}

TEST(AFrameOfMinutes, TakesNoMorePlacesInThePlaybackListThanThereAre) {
    const Image strip = Image::fromArgb(30, 10, std::vector<Argb>(300, 0xff336699u));
    for (const std::vector<int>& ticks : {std::vector{1, 7113, 11}, std::vector{1, 1, 2000000}}) {
        const Anim anim = Anim::fromStrip(strip, ticks);
        EXPECT_LE(anim.frames.size(), 4096u);
        EXPECT_GT(anim.frames.size(), 2000u);
        EXPECT_NEAR(anim.duration, (ticks[0] + ticks[1] + ticks[2]) / 60.0, 1e-9);
    }
}

}  // namespace
}  // namespace quibbits
