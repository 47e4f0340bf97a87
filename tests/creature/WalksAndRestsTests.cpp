#include <gtest/gtest.h>

#include <set>

#include "support/CompanionProbe.h"
#include "support/LivingCreature.h"

namespace quibbits {
namespace {

const std::vector<Ground> floorAlone{{{0, 1000}, 0, true}};

TEST(AStroll, StaysAwayFromTheEndsAndWithinItsRadius) {
    Random random(3);
    for (int i = 0; i < 200; ++i) {
        const auto target = strollTarget({100, 0}, floorAlone, floorAlone, 260, random);
        ASSERT_TRUE(target);
        EXPECT_GE(target->x, 20);
        EXPECT_LE(target->x, 360);
        EXPECT_EQ(target->y, 0);
    }
}

TEST(AStroll, HasNoTargetOnAStretchThatIsAllMargin) {
    Random random(1);
    const std::vector<Ground> narrow{{{0, 40}, 0, true}};
    EXPECT_FALSE(strollTarget({20, 0}, narrow, narrow, 260, random));
    const std::vector<Ground> wider{{{0, 41}, 0, true}};
    EXPECT_TRUE(strollTarget({20, 0}, wider, wider, 260, random));
    EXPECT_FALSE(strollTarget({20, 0}, wider, {}, 260, random));
}

TEST(AStroll, FromCoveredGroundLeadsFortyPointsIntoTheNearestOpenStretch) {
    Random random(1);
    const std::vector<Ground> open{{{0, 200}, 0, true}, {{600, 1000}, 0, true}};
    const auto target = strollTarget({500, 0}, floorAlone, open, 260, random);
    ASSERT_TRUE(target);
    EXPECT_EQ(*target, (Point{640, 0}));
}

TEST(AStroll, FromAnIconClimbsDownAboutEveryOtherTime) {
    Random random(9);
    const Ground icon{{400, 460}, 120, false};
    const std::vector<Ground> ground{floorAlone[0], icon};
    int down = 0;
    for (int i = 0; i < 1000; ++i) {
        const auto target = strollTarget({430, 120}, ground, ground, 260, random);
        ASSERT_TRUE(target);
        if (target->y == 0)
            ++down;
        else
            EXPECT_TRUE(target->x >= 420 && target->x <= 440);
    }
    EXPECT_NEAR(down, 500, 60);

    const std::vector<Ground> iconAlone{icon};
    for (int i = 0; i < 50; ++i) {
        const auto target = strollTarget({430, 120}, iconAlone, iconAlone, 260, random);
        EXPECT_TRUE(target && target->y == 120);
    }
}

TEST(ComingOver, StopsFortyPointsShortOnItsOwnSide) {
    struct Row {
        double cursor;
        std::optional<double> x;
    };
    for (const auto& [cursor, x] : std::vector<Row>{{560, std::nullopt},
                                                    {561, 521},
                                                    {440, std::nullopt},
                                                    {439, 479},
                                                    {990, 950},
                                                    {5, 45},
                                                    {1200, std::nullopt}}) {
        const auto spot = spotNearCursor({500, 0}, {cursor, 300}, floorAlone);
        ASSERT_EQ(spot.has_value(), x.has_value()) << cursor;
        EXPECT_EQ(spot ? spot->x : 0, x.value_or(0)) << cursor;
    }
}

/// Icons 60 points wide whose walking lines lie at the height given.
std::vector<DesktopIcon> iconsAt(const std::vector<Point>& places) {
    std::vector<DesktopIcon> icons;
    for (const Point& p : places) {
        icons.push_back({"file", {p.x - 30, p.y - 0.32 * 60 - 30, 60, 60}});
    }
    return icons;
}

TEST(Files, ANewOneIsOfferedOnceAndOnlyIfItCanBeReached) {
    LivingCreature life({.defaults = {{"overApps", false}, {"pet.energy", 1.0}},
                         .prepare = [](SimulatedComputer& computer) {
                             computer.fileBrowser.icons = iconsAt({{300, 80}, {500, 80}});
                         }});
    life.untilDecisions(20);
    for (const Mind& mind : life.minds) EXPECT_FALSE(mind.newFile);

    life.computer.fileBrowser.icons = iconsAt({{300, 80}, {500, 80}, {700, 80}, {900, 900}});
    const auto before = life.minds.size();
    life.untilDecisions(20);
    int offered = 0;
    for (std::size_t i = before; i < life.minds.size(); ++i) offered += life.minds[i].newFile;
    EXPECT_EQ(offered, 1);
}

TEST(Files, AreExploredAndOfferedAgainAfterFiveMinutes) {
    LivingCreature life({.defaults = {{"overApps", false}, {"pet.energy", 1.0}}});
    life.computer.fileBrowser.icons = iconsAt({{600, 70}});
    bool onIcon = false;
    bool rested = false;
    for (int i = 0; i < 36000 && !(onIcon && rested); ++i) {
        life.advance(0.1);
        CompanionProbe::needs(life.creature()).energy = 1;
        const Point at = life.pet().position();
        onIcon = onIcon || (std::abs(at.y - 70) < 1 && std::abs(at.x - 600) < 26);
        rested = rested || (onIcon && !life.minds.back().filesToExplore);
    }
    EXPECT_TRUE(onIcon) << "it never stood on the icon";
    EXPECT_TRUE(rested) << "a file that was just explored is not offered";
    const auto before = life.minds.size();
    life.advance(400);
    bool again = false;
    for (std::size_t i = before; i < life.minds.size(); ++i) again |= life.minds[i].filesToExplore;
    EXPECT_TRUE(again);
}

TEST(Files, AreLeftAloneWhenClimbingIsSwitchedOff) {
    LivingCreature life({.defaults = {{"overApps", false}, {"exploreFiles", false}}});
    life.computer.fileBrowser.icons = iconsAt({{600, 70}});
    life.advance(1800);
    for (const Mind& mind : life.minds) EXPECT_FALSE(mind.filesToExplore);
}

TEST(ASit, EndsAtItsTimeInTheIdlePose) {
    LivingCreature life({});
    Companion& creature = life.creature();
    creature.stop([] {});
    bool done = false;
    creature.sit(5, [&] { done = true; });
    EXPECT_EQ(life.pet().sprite().animation("frames"), nullptr) << "a held frame, not an animation";
    life.advance(4.99);
    EXPECT_FALSE(done);
    life.advance(0.02);
    EXPECT_TRUE(done);
}

TEST(ANap, IsLongerAtNightAndLeavesItFresh) {
    struct Row {
        int hour;
        int minute;
        Seconds least;
        Seconds most;
    };
    for (const auto& [hour, minute, least, most] :
         std::vector<Row>{{22, 30, 30, 90}, {23, 0, 60, 180}, {5, 30, 60, 180}, {6, 0, 30, 90}}) {
        for (std::uint64_t seed = 1; seed <= 6; ++seed) {
            LivingCreature life(
                {.defaults = {{"pet.energy", 0.02}, {"chatter", false}, {"faces", false}},
                 .seed = seed,
                 .begin = {.year = 2026, .month = 3, .day = 2, .hour = hour, .minute = minute}});
            if (life.decisions.front() != Intent::nap) continue;
            const Instant began = life.computer.runLoop.now();
            life.untilDecisions(1);
            const Seconds waking = 40.0 / 60 * 2;  // wake and stretch
            const Seconds slept = life.computer.runLoop.now() - began - waking;
            EXPECT_GE(slept, least - 0.2) << hour;
            EXPECT_LE(slept, most + 0.2) << hour;
            EXPECT_GT(life.minds.back().energy, 0.9);
        }
    }
}

TEST(Walking, KeepsThePaceOfItsNature) {
    struct Row {
        const char* nature;
        double factor;
    };
    for (const auto& [nature, factor] :
         std::vector<Row>{{"Hardy", 1.0}, {"Jolly", 1.25}, {"Brave", 0.8}}) {
        LivingCreature life({.defaults = {{"pet.nature", std::string(nature)}}});
        Companion& creature = life.creature();
        creature.stop([] {});
        const double from = life.pet().position().x;
        std::optional<Instant> arrived;
        creature.go({.to = {from + 100, 0}, .speed = 50},
                    [&] { arrived = life.computer.runLoop.now(); });
        const Instant began = life.computer.runLoop.now();
        life.advance(10);
        ASSERT_TRUE(arrived);
        EXPECT_NEAR(*arrived - began, 2 / factor, 1e-6);
    }
}

TEST(Walking, CrossesTheDockByAJumpUpAndAJumpDown) {
    LivingCreature life({});
    life.computer.setDock(Rect{400, 0, 600, 70});
    Companion& creature = life.creature();
    creature.stop([] {});
    life.pet().drag({200, 0});
    std::set<double> heights;
    bool arrived = false;
    creature.go({.to = {1200, 0}, .speed = 100}, [&] { arrived = true; });
    for (int i = 0; i < 400 && !arrived; ++i) {
        life.advance(0.05);
        if (!life.pet().isAirborne()) heights.insert(std::round(life.pet().position().y));
    }
    EXPECT_TRUE(arrived);
    EXPECT_TRUE(heights.contains(70));
    EXPECT_NEAR(life.pet().position().x, 1200, 1e-6);
    EXPECT_NEAR(life.pet().position().y, 0, 1e-6);
}

TEST(TheGround, GivingWayUnderAStandingCreatureBringsItDownAndItGoesOn) {
    LivingCreature life({});
    life.computer.setDock(Rect{0, 0, 1440, 70});
    life.advance(1);
    EXPECT_GE(life.pet().position().y, 69);
    life.creature().stop([] {});
    life.creature().sit(20, [&] { life.creature().think(); });
    life.computer.setDock(std::nullopt);
    life.advance(2);
    EXPECT_NEAR(life.pet().position().y, 0, 1e-6);
    const auto before = life.decisions.size();
    life.advance(120);
    EXPECT_GT(life.decisions.size(), before);
}

TEST(AFile, ThatVanishesUnderACreatureHasItDecideOnceItIsDown) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        LivingCreature life({.seed = seed});
        life.computer.fileBrowser.icons = {{"high", {700, 300, 60, 60}}};
        life.advance(30);
        life.creature().stop([] {});
        life.pet().drag(life.pet().ground().back().middle());
        life.creature().sit(22, [&] { life.creature().think(); });
        life.computer.fileBrowser.icons = std::vector<DesktopIcon>{};
        life.decisions.clear();
        life.times.clear();
        while (life.times.empty()) life.advance(0.05);
        EXPECT_FALSE(life.pet().isAirborne());
        life.advance(0.6);
        EXPECT_EQ(life.decisions.size(), 1u) << seed;
    }
}

TEST(TheGround, GoingAwayUnderAWalkIsNoticedWhenTheLegEnds) {
    for (const double start : {500.0, 200.0}) {  // on the dock, and on the way to it
        LivingCreature life({});
        life.computer.setDock(Rect{300, 0, 900, 70});
        life.advance(30);
        life.creature().stop([] {});
        life.pet().drag({start, start > 300 ? 70.0 : 0});
        life.creature().go({.to = {900, 70}, .speed = 100},
                           [&] { life.creature().sit(60, [&] { life.creature().think(); }); });
        life.advance(0.5);
        ASSERT_TRUE(life.pet().node().animation("move"));
        life.computer.setDock(std::nullopt);
        while (life.pet().node().animation("move")) life.advance(0.05);
        life.advance(1);
        EXPECT_NEAR(life.pet().position().y, 0, 1e-6) << start;
        const auto before = life.decisions.size();
        life.advance(120);
        EXPECT_GT(life.decisions.size(), before);
    }
}

TEST(TheGround, RisingOverAWalkingCreatureLiftsItUp) {
    LivingCreature life({});
    life.creature().stop([] {});
    life.pet().drag({600, 0});
    life.creature().go({.to = {900, 0}, .speed = 50}, [&] { life.creature().think(); });
    life.advance(1);
    life.computer.setDock(Rect{300, 0, 900, 60});
    life.advance(20);
    EXPECT_NEAR(life.pet().position().y, 60, 1e-6);
    const auto before = life.decisions.size();
    life.advance(120);
    EXPECT_GT(life.decisions.size(), before);
}

TEST(TheGround, ShrinkingWithTheScreenBringsACreatureBackIntoSight) {
    LivingCreature life({});
    life.creature().stop([] {});
    life.pet().drag({1400, 0});
    life.creature().sit(20, [&] { life.creature().think(); });
    life.computer.setScreen({1024, 768}, 1);
    life.advance(1);
    EXPECT_LE(life.pet().position().x, 1004);
    life.computer.setScreen({2560, 1440}, 1);
    life.advance(1);
    EXPECT_EQ(life.pet().walkArea(), (Range{20, 2540}));
}

TEST(AScreen, ThatShrinksBringsEverybodyIntoSight) {
    struct Row {
        const char* when;
        std::function<void(LivingCreature&)> begins;
        Seconds until;
        Seconds settles;  // afterwards
    };
    const auto fly = [](LivingCreature& l) {
        l.creature().stop([] {});
        l.creature().go({.to = {1300, 850}, .speed = 200}, [] {});
    };
    for (const auto& [when, begins, until, settles] : std::vector<Row>{
             {"flying up", fly, 1, 3},
             {"high up", fly, 30, 3},
             {"evolving", [](LivingCreature& l) { l.creature().evolve({.to = Stage::umbrool}); }, 3,
              0.2},
             {"coming out",
              [](LivingCreature& l) {
                  l.creature().toggleBall();
                  l.advance(8);
                  l.creature().toggleBall();
              },
              1, 1.5},
         }) {
        LivingCreature life({.store = "umbrool", .stage = "gloamer"});
        life.advance(8);
        life.pet().drag({1200, life.pet().position().y});
        begins(life);
        life.advance(until);
        life.computer.setScreen({700, 500}, 1);
        life.advance(settles);
        const Point at = life.pet().position();
        EXPECT_LE(at.x, 700) << when;
        EXPECT_LE(at.y, 500) << when;
        const std::size_t before = life.decisions.size();
        life.advance(120);
        EXPECT_GT(life.decisions.size(), before) << when;
    }
}

TEST(TheGround, ShrinkingUnderAHovererEndsItsBobbing) {
    LivingCreature life({.store = "umbrool", .stage = "gloamer"});
    life.creature().stop([] {});
    life.creature().go({.to = {1400, 300}}, [] {});
    life.advance(20);
    ASSERT_TRUE(life.pet().sprite().animation("bob")) << "a ghost that has arrived in the air";
    life.computer.setScreen({1024, 768}, 1);
    life.advance(1);
    EXPECT_FALSE(life.pet().sprite().animation("bob"));
    EXPECT_NEAR(life.pet().position().y, 0, 1e-6);
}

TEST(TheGround, GivingWayUnderASleeperLowersItWithoutWakingIt) {
    LivingCreature life({});
    life.computer.setDock(Rect{0, 0, 1440, 70});
    life.advance(1);
    life.creature().hook("focus");
    life.advance(5);
    life.computer.setDock(std::nullopt);
    life.advance(1);
    EXPECT_NEAR(life.pet().position().y, 0, 1e-6);
    EXPECT_TRUE(life.creature().presence().isDozing());
}

}  // namespace
}  // namespace quibbits
