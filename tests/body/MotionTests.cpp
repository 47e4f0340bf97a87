#include <gtest/gtest.h>

#include <cmath>

#include "body/PetOnALoop.h"

namespace quibbits {
namespace {

using PetMotion = PetOnALoop;

TEST_F(PetMotion, AFinitePlayEndsOnItsLastFrameAndAnEndlessOneGoesRound) {
    pet->play(walking, 1);
    EXPECT_EQ(frameShown().x, 0);
    advance(0.15);
    EXPECT_EQ(frameShown().x, 0.5);
    advance(100);
    EXPECT_EQ(frameShown().x, 0.5);

    pet->play(walking);
    advance(0.05);
    EXPECT_EQ(frameShown().x, 0);
    advance(0.1);
    EXPECT_EQ(frameShown().x, 0.5);
    advance(20.1);
    EXPECT_EQ(frameShown().x, 0);

    pet->play(walking, forever, 2);
    advance(0.06);
    EXPECT_EQ(frameShown().x, 0.5) << "at double speed";
}

TEST_F(PetMotion, EveryAnimationStandsOnTheFootPoint) {
    for (const int emptyRows : {0, 2, 9}) {
        const Anim anim = strip({6}, emptyRows);
        pet->play(anim);
        EXPECT_EQ(pet->frame().size(), (Size{60, 60}));
        EXPECT_EQ(pet->frame().midX(), 200);
        EXPECT_NEAR(pet->frame().minY(), -3.0 * emptyRows, 1e-9);
    }
    pet->face(false);
    EXPECT_EQ(pet->frame().midX(), 200);
}

TEST_F(PetMotion, WhatCannotBePlayedLeavesThePictureAlone) {
    pet->play(walking, 1);
    const Image before = imageShown();
    pet->play(strip({}));
    pet->hold(strip({}), 3);
    pet->play(Anim{});
    EXPECT_EQ(imageShown(), before);
    EXPECT_NE(pet->sprite().animation("frames"), nullptr);
    pet->play(strip({0, 0}));
    EXPECT_EQ(pet->sprite().animation("frames"), nullptr) << "no time, no motion";
}

TEST_F(PetMotion, HoldingShowsOneFrameAtMostTheLast) {
    const Anim anim = strip({4, 8, 4});
    for (const auto& [index, x] : std::vector<std::pair<std::size_t, double>>{
             {0, 0}, {2, 1.0 / 3}, {3, 2.0 / 3}, {99, 2.0 / 3}}) {
        pet->hold(anim, index);
        advance(1);
        EXPECT_NEAR(frameShown().x, x, 1e-12) << index;
    }
    EXPECT_FALSE(pet->sprite().hasAnimations());
}

TEST_F(PetMotion, WhatWaitsRunsOnTimeUnlessTheBodyIsInterruptedOrGone) {
    pet->after(1, note());
    advance(0.999);
    EXPECT_TRUE(doneAt.empty());
    advance(0.001);
    EXPECT_EQ(doneAt, std::vector<Instant>{1});
    pet->after(1, note());
    pet->interrupt();
    pet->after(2, note());
    advance(5);
    EXPECT_EQ(doneAt, (std::vector<Instant>{1, 3}));
    pet->after(1, note());
    pet->walk(900, walking, 45, 1, note());
    pet->hearts();
    pet->showFace({.image = walking.image, .caption = "Good-bye"});
    pet.reset();
    advance(100);
    EXPECT_EQ(doneAt.size(), 2u);
}

TEST_F(PetMotion, AnInterruptionUndoesWhatWasBegunTheLastFirstAndOnce) {
    std::vector<std::string> undone;
    const int before = pet->token();
    const auto undoing = [&](const char* name) {
        return pet->begin([&, name] {
            undone.push_back(name);
            EXPECT_NE(pet->token(), before) << "what it starts is not void at once";
        });
    };
    Begun first = undoing("first");
    Begun second = undoing("second");
    {
        const Begun third = undoing("third");
        EXPECT_TRUE(third);
        pet->interrupt();
        EXPECT_FALSE(third);
    }
    EXPECT_EQ(undone, (std::vector<std::string>{"third", "second", "first"}));
    first = undoing("again");
    first = undoing("another");
    second.end();
    EXPECT_EQ(undone.size(), 4u) << "what another replaces is undone too";
    pet->interrupt();
    EXPECT_EQ(undone.size(), 5u);
    pet.reset();
    first.end();
    EXPECT_EQ(undone.size(), 5u);
}

TEST_F(PetMotion, AnInterruptionLeavesTheBodyWhereItIsSeen) {
    pet->walk(400, walking, 50, 1, note());
    advance(2);
    pet->interrupt();
    EXPECT_EQ(pet->position(), (Point{300, 0}));
    advance(10);
    EXPECT_EQ(pet->position(), (Point{300, 0}));
    EXPECT_TRUE(doneAt.empty());

    pet->jump({400, 0}, hopping, leaping, note());
    advance(0.1);
    const Point seen = pet->position();
    EXPECT_GT(seen.y, 5);
    pet->interrupt();
    advance(3);
    EXPECT_EQ(pet->position(), seen) << "it hangs where it was";
    EXPECT_TRUE(pet->isAirborne());
    EXPECT_TRUE(doneAt.empty());
}

TEST_F(PetMotion, AWalkTakesItsTimeAndStaysInTheWalkArea) {
    pet->walk(290, walking, 45, 1, note());
    EXPECT_TRUE(pet->facesRight());
    advance(1);
    EXPECT_NEAR(pet->position().x, 245, 1e-9);
    advance(1);
    EXPECT_EQ(doneAt, std::vector<Instant>{2});
    pet->walk(-500, walking, 290, 1, note());
    EXPECT_FALSE(pet->facesRight());
    EXPECT_EQ(pet->sprite().model().transform, Transform::mirrored());
    advance(1);
    EXPECT_EQ(pet->position(), (Point{0, 0}));
    EXPECT_EQ(doneAt, (std::vector<Instant>{2, 3}));
}

TEST_F(PetMotion, AStepOfAPointIsDoneAtOnceWithoutTurning) {
    pet->face(false);
    pet->hold(hopping, 0);
    for (const double x : {201.0, 199.0, 200.0, 200.5}) pet->walk(x, walking, 45, 1, note());
    EXPECT_EQ(doneAt, (std::vector<Instant>{0, 0, 0, 0}));
    EXPECT_FALSE(pet->facesRight());
    EXPECT_EQ(imageShown(), hopping.image);
    EXPECT_EQ(pet->position(), (Point{200, 0}));
    pet->walk(201.1, walking, 45, 1, note());
    EXPECT_TRUE(pet->facesRight());
}

TEST_F(PetMotion, AJumpIsALeapWithSparksFromThirtyFiveArtPixelsUp) {
    struct Row {
        Point to;
        bool leap;
        double apex;
        Seconds duration;
    };
    for (const auto& [to, leap, apex, duration] :
         std::vector<Row>{{{300, 105}, false, 135, 0.45},
                          {{300, 106}, true, 124, 0.45},
                          {{300, 0}, false, 30, 0.45},
                          {{200, -300}, false, 30, 0.5},
                          {{600, 300}, true, 318, 500.0 / 600}}) {
        pet->interrupt();
        pet->drag({200, 0});
        const std::size_t before = extras();
        const Instant start = loop.now();
        doneAt.clear();
        pet->jump(to, hopping, leaping, note());
        EXPECT_EQ(imageShown(), leap ? leaping.image : hopping.image) << to.y;
        EXPECT_EQ(extras() - before, leap ? 1u : 0u) << to.y;
        double highest = -1e9;
        for (int i = 0; i <= 1000; ++i) {
            highest = std::max(highest, heightOf(start + duration * i / 1000 * 0.999999));
        }
        // The curve's control point lifts its middle to the apex; its top may lie a little beside.
        EXPECT_NEAR(heightOf(start + duration / 2), apex, 1e-6) << to.y;
        EXPECT_GE(highest, apex - 1e-6);
        advance(duration - 1e-6);
        EXPECT_TRUE(doneAt.empty());
        advance(2e-6);
        EXPECT_EQ(doneAt.size(), 1u);
        EXPECT_EQ(pet->position(), to);
        advance(5);
    }
}

TEST_F(PetMotion, AFallTakesAsLongAsItIsHigh) {
    struct Row {
        double y;
        Pet::Falling how;
        double height;
        Seconds duration;
    };
    using enum Pet::Falling;
    for (const auto& [y, how, height, duration] :
         std::vector<Row>{{600, freely, 600, std::sqrt(0.5)},
                          {600, floating, 600, 600.0 / 220},
                          {100, floating, 100, 0.8},
                          {2, freely, 2, std::sqrt(4.0 / 2400)},
                          {1, freely, 0, 0.1},
                          {1, floating, 0, 0.1},
                          {0, freely, 0, 0.1},
                          {-30, freely, 0, 0.1}}) {
        pet->drag({-50, y});
        const Instant start = loop.now();
        doneAt.clear();
        EXPECT_EQ(pet->fall(how, note()), height) << y;
        advance(5);
        ASSERT_EQ(doneAt.size(), 1u) << y;
        EXPECT_NEAR(doneAt[0] - start, duration, 1e-9) << y;
        EXPECT_EQ(pet->position(), (Point{0, 0})) << "it comes down inside the walk area";
    }
}

TEST_F(PetMotion, AFallEndsOnAnIconOnTheWay) {
    change([](Terrain& t) { t.ground.push_back({{150, 250}, 100, false}); });
    pet->drag({200, 400});
    EXPECT_EQ(pet->fall(Pet::Falling::freely, note()), 300);
    advance(2);
    EXPECT_EQ(pet->position(), (Point{200, 100}));
    EXPECT_FALSE(pet->isAirborne());
    change([](Terrain& t) { t.ground.pop_back(); });
    EXPECT_TRUE(pet->isAirborne()) << "its icon was taken away";
}

TEST_F(PetMotion, ADragCountsItsReversalsAndNoTrembling) {
    struct Row {
        const char* what;
        std::vector<Point> points;
        int swings;
    };
    for (const auto& [what, points, swings] : std::vector<Row>{
             {"one way", {{0, 0}, {20, 0}, {40, 0}}, 0},
             {"there and back twice", {{0, 0}, {20, 0}, {0, 0}, {20, 0}, {0, 0}}, 3},
             {"trembling", {{0, 0}, {8, 0}, {0, 0}, {8, 0}, {0, 0}}, 0},
             {"a tremble between", {{0, 0}, {20, 0}, {15, 0}, {35, 0}, {15, 0}}, 1},
             {"round a corner", {{0, 0}, {20, 0}, {20, 20}, {0, 20}, {0, 0}}, 0},
             {"up and down", {{0, 0}, {0, 9}, {0, 0}}, 1},
             {"slowly there and back", {{0, 0}, {5, 0}, {10, 0}, {15, 0}, {10, 0}, {5, 0}}, 0},
         }) {
        pet->forgetSwings();
        for (const Point point : points) {
            pet->drag(point);
            EXPECT_EQ(pet->position(), point);
        }
        EXPECT_EQ(pet->swings(), swings) << what;
    }
}

TEST_F(PetMotion, ATripGoesByItsLegsAndIsDoneOnce) {
    change([](Terrain& t) { t.ground = {{{0, 400}, 0, true}, {{400, 1000}, 70, true}}; });
    pet->travel({700, 75}, {.walk = walking, .hop = hopping, .leap = leaping, .speed = 100},
                note());
    advance(1.82);  // 182 points to the take-off
    EXPECT_NEAR(pet->position().x, 382, 1e-6);
    EXPECT_EQ(imageShown(), hopping.image);
    advance(0.46);
    EXPECT_EQ(pet->position().y, 70);
    EXPECT_EQ(imageShown(), walking.image);
    EXPECT_TRUE(doneAt.empty());
    advance(10);
    EXPECT_EQ(pet->position(), (Point{700, 70}));
    ASSERT_EQ(doneAt.size(), 1u);
    EXPECT_NEAR(doneAt[0], 1.82 + 0.45 + 2.82, 1e-6);
}

TEST_F(PetMotion, ATripWithoutAWayIsDoneAtOnceAndABrokenOneNever) {
    const Gait gait{.walk = walking, .hop = hopping, .leap = leaping};
    change([](Terrain& t) { t.ground = {{{0, 400}, 0, true}, {{500, 1000}, 0, true}}; });
    pet->travel({700, 0}, gait, note());
    pet->travel({450, 0}, gait, note());
    pet->travel({300, -20}, gait, note());
    EXPECT_EQ(doneAt.size(), 3u) << "a gap, no ground, under the ground";
    EXPECT_EQ(pet->position(), (Point{200, 0}));
    pet->travel({300, 0}, gait, note());
    advance(1);
    pet->interrupt();
    advance(10);
    EXPECT_EQ(doneAt.size(), 3u);
    EXPECT_NEAR(pet->position().x, 245, 1e-9);
}

TEST_F(PetMotion, ABlinkFadesOutHereAndInThere) {
    pet->blink({600, 50}, note());
    advance(0.125);
    EXPECT_NEAR(pet->node().presentation().opacity, 0.5, 1e-9);
    advance(0.145);
    EXPECT_EQ(pet->node().presentation().opacity, 0);
    EXPECT_EQ(pet->position().x, 200);
    advance(0.02);
    EXPECT_EQ(pet->position(), (Point{600, 50}));
    EXPECT_LT(pet->node().presentation().opacity, 0.1);
    advance(1);
    EXPECT_EQ(pet->node().presentation().opacity, 1);
    ASSERT_EQ(doneAt.size(), 1u);
    EXPECT_NEAR(doneAt[0], 0.58, 1e-9);

    pet->blink({100, 0}, note());
    advance(0.27);
    pet->interrupt();
    EXPECT_EQ(pet->node().presentation().opacity, 1) << "nobody stays invisible";
    advance(1);
    EXPECT_EQ(pet->position().x, 600);
    EXPECT_EQ(doneAt.size(), 1u);
}

TEST_F(PetMotion, WhatIsInFrontOfABodyAtTheScreensEdgeIsBehindIt) {
    pet->drag({900, 10});
    EXPECT_EQ(pet->inFront({30, 6}), (Point{990, 28}));
    pet->drag({980, 10});
    EXPECT_EQ(pet->inFront({30, 6}), (Point{890, 28}));
    pet->face(false);
    EXPECT_EQ(pet->inFront({30, 6}), (Point{890, 28}));
    pet->drag({40, 10});
    EXPECT_EQ(pet->inFront({30, 6}), (Point{130, 28}));
}

}  // namespace
}  // namespace quibbits
