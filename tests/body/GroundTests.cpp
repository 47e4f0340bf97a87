#include <gtest/gtest.h>

#include "body/Ground.h"
#include "platform/Random.h"

namespace quibbits {
namespace {

constexpr JumpAbility leaper{3, true};
constexpr JumpAbility hopper{3, false};

const Ground floorLeft{{0, 400}, 0, true};
const Ground dock{{400, 1000}, 70, true};
const Ground icon{{100, 180}, 250, false};

TEST(TheSurfaceUnderAFoot, MayLieAPointAboveIt) {
    const std::vector<Ground> ground{{{0, 100}, 0, true}, {{0, 100}, 50, false}};
    struct Row {
        Point foot;
        std::optional<std::size_t> index;
    };
    for (const auto& [foot, index] : std::vector<Row>{{{50, 60}, 1},
                                                      {{50, 49.5}, 1},
                                                      {{50, 49}, 1},
                                                      {{50, 48.5}, 0},
                                                      {{0, 60}, 1},
                                                      {{100, 60}, 1},
                                                      {{100.1, 60}, std::nullopt},
                                                      {{50, -1}, 0},
                                                      {{50, -1.5}, std::nullopt}}) {
        EXPECT_EQ(surfaceIndex(ground, foot), index) << foot.x << ", " << foot.y;
    }
    EXPECT_EQ(surfaceIndex({}, {0, 0}), std::nullopt);
}

TEST(TheSurfaceUnderAFoot, IsTheFirstOfEquals) {
    const std::vector<Ground> ground{
        {{0, 10}, 5, false}, {{40, 100}, 20, false}, {{0, 60}, 20, true}, {{0, 60}, 20, false}};
    EXPECT_EQ(surfaceIndex(ground, {50, 30}), 1u);
    EXPECT_EQ(surfaceIndex(ground, {30, 30}), 2u);
}

TEST(TheFloor, IsTheHighestSolidSurfaceWhetherOrNotItIsAbove) {
    const std::vector<Ground> ground{floorLeft, dock, icon, {{350, 450}, 30, true}};
    EXPECT_EQ(floorY(ground, 150), 0) << "an icon is no floor";
    EXPECT_EQ(floorY(ground, 380), 30);
    EXPECT_EQ(floorY(ground, 400), 70);
    EXPECT_EQ(floorY(ground, 2000), 0);
    EXPECT_EQ(floorY(std::vector<Ground>{{{0, 10}, -20, true}}, 5), -20);
}

TEST(AJump, IsHighOrWideOnlyUpToItsLimits) {
    const auto reaches = [](double rise, double gap, JumpAbility ability) {
        const Ground from{{0, 200}, 0, true};
        const Ground to{{200 + gap, 400 + gap}, rise, false};
        return jumpLeg(from, to, ability).has_value();
    };
    EXPECT_TRUE(reaches(90, 10, hopper));
    EXPECT_FALSE(reaches(91, 10, hopper));
    EXPECT_TRUE(reaches(300, 10, leaper));
    EXPECT_FALSE(reaches(301, 10, leaper));
    EXPECT_TRUE(reaches(-5000, 10, hopper)) << "down is always allowed";
    EXPECT_TRUE(reaches(0, 90, leaper));
    EXPECT_FALSE(reaches(0, 91, leaper));
    EXPECT_FALSE(reaches(-100, 91, leaper));
}

TEST(AJump, TakesOffAndLandsAMarginFromTheEnds) {
    struct Row {
        const char* what;
        Ground from, to;
        std::optional<Leg> leg;
    };
    const Ground narrow{{430, 460}, 40, false};
    const Ground wide{{0, 1000}, 0, true};
    for (const auto& [what, from, to, leg] : std::vector<Row>{
             {"up to the touching dock", floorLeft, dock, Leg{382, {418, 70}}},
             {"down from it", dock, floorLeft, Leg{418, {382, 0}}},
             {"up past an icon's left end", floorLeft, icon, Leg{82, {118, 250}}},
             {"down off its left end", icon, floorLeft, Leg{118, {82, 0}}},
             {"up at the right end where the left has no ground",
              {{110, 400}, 0, true},
              icon,
              Leg{198, {162, 250}}},
             {"down off the right end", icon, {{110, 400}, 0, true}, Leg{162, {198, 0}}},
             {"across to a narrow one", floorLeft, narrow, Leg{382, {445, 40}}},
             {"back from it", narrow, floorLeft, Leg{445, {382, 0}}},
             {"up to a narrow one above", wide, narrow, Leg{412, {445, 40}}},
             {"up to the same span",
              {{0, 400}, 0, true},
              {{0, 400}, 100, true},
              Leg{18, {18, 100}}},
             {"down to the same span", {{0, 400}, 100, true}, {{0, 400}, 0, true}, std::nullopt},
             {"to itself", floorLeft, floorLeft, std::nullopt},
             {"to its double a point higher", floorLeft, {{0, 400}, 1, false}, std::nullopt},
             {"level with an overlap",
              {{0, 400}, 0, true},
              {{300, 700}, 0, true},
              Leg{382, {418, 0}}},
         }) {
        const auto found = jumpLeg(from, to, leaper);
        ASSERT_EQ(found.has_value(), leg.has_value()) << what;
        if (!leg) continue;
        EXPECT_EQ(found->takeoff, leg->takeoff) << what;
        EXPECT_EQ(found->landing, leg->landing) << what;
    }
}

TEST(AJump, UsesTheMiddleOfASurfaceNoWiderThanTwoMargins) {
    const auto landing = [](double width) {
        return jumpLeg(floorLeft, {{420, 420 + width}, 30, false}, leaper)->landing.x;
    };
    EXPECT_EQ(landing(20), 430);
    EXPECT_EQ(landing(36), 438);
    EXPECT_EQ(landing(38), 438);
    EXPECT_EQ(landing(100), 438);
}

TEST(ARoute, HasTheFewestJumpsAndPrefersLowerRows) {
    const std::vector<Ground> stairs{{{0, 1000}, 0, true},
                                     {{100, 160}, 80, false},
                                     {{300, 360}, 80, false},
                                     {{200, 260}, 160, false}};
    const auto up = route(stairs, 0, 3, hopper);
    ASSERT_TRUE(up);
    ASSERT_EQ(up->size(), 2u);
    EXPECT_EQ((*up)[0].landing.y, 80);
    EXPECT_LT((*up)[0].landing.x, 200) << "by the step that comes first in the list";
    EXPECT_EQ((*up)[1].landing.y, 160);
    EXPECT_EQ(route(stairs, 0, 3, leaper)->size(), 1u) << "a leaper needs no step";
    EXPECT_EQ(route(stairs, 2, 2, hopper), Route{});
    EXPECT_EQ(route({stairs.data(), 1}, 0, 0, hopper), Route{});
}

TEST(ARoute, IsNoneWhereNoJumpLeads) {
    const std::vector<Ground> apart{
        {{0, 100}, 0, true}, {{191, 300}, 0, true}, {{20, 80}, 301, false}};
    EXPECT_EQ(route(apart, 0, 1, leaper), std::nullopt);
    EXPECT_EQ(route(apart, 0, 2, leaper), std::nullopt);
    const auto down = route(apart, 2, 0, leaper);
    ASSERT_TRUE(down) << "one can come down from where one cannot get up";
    EXPECT_EQ(down->size(), 1u);
}

TEST(ARoute, EndsOnItsTargetOverJumpsThatArePossibleAndAgreesWithReachability) {
    Random random(31);
    for (int desktop = 0; desktop < 60; ++desktop) {
        std::vector<Ground> ground{{{0, 1440}, 0, true}};
        for (int i = 0; i < 14; ++i) {
            const double x = random.uniform(0, 1300);
            ground.push_back({{x, x + random.uniform(10, 120)}, random.uniform(0, 700), false});
        }
        for (const JumpAbility ability : {leaper, hopper}) {
            const auto found = reachable(ground, 0, ability);
            for (std::size_t to = 0; to < ground.size(); ++to) {
                const auto way = route(ground, 0, to, ability);
                ASSERT_EQ(way.has_value(), found[to]);
                if (!way || way->empty()) continue;
                ASSERT_EQ(way->back().landing.y, ground[to].y);
                ASSERT_TRUE(ground[to].span.contains(way->back().landing.x));
                double y = 0;
                for (const Leg& leg : *way) {
                    ASSERT_LE(leg.landing.y - y, ability.canLeap ? 300 : 90);
                    y = leg.landing.y;
                }
            }
        }
    }
}

}  // namespace
}  // namespace quibbits
