#include <gtest/gtest.h>

#include <numbers>

#include "layers/AnimationList.h"
#include "layers/LayerEngine.h"
#include "layers/ManualRunLoop.h"
#include "layers/PathMeasure.h"

namespace quibbits {
namespace {

class Animations : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerRef layer = engine.makeLayer();

    static constexpr Instant start = 100;  // where the loop's clock begins

    double opacityAt(Seconds age) const { return layer->presentation(start + age).opacity; }
    static Animation fade(double from, double to, AnimationTiming timing) {
        return {.keyPath = KeyPath::opacity,
                .motion = BasicMotion{.from = from, .to = to},
                .timing = timing};
    }
};

struct TimedValue {
    Seconds age;
    double expected;
};

struct TimingCase {
    const char* name;
    AnimationTiming timing;
    std::vector<TimedValue> seen;
};

TEST_F(Animations, ShowTheValueThatTheirTimingAsksFor) {
    // The layer's own opacity is 0.9; the animation runs from 0 to 1.
    const TimingCase cases[] = {
        {"once", {.duration = 1}, {{0, 0}, {0.25, 0.25}, {0.999, 0.999}, {1, 0.9}, {2, 0.9}}},
        {"twice as fast", {.duration = 1, .speed = 2}, {{0.25, 0.5}, {0.5, 0.9}}},
        {"two and a half times",
         {.duration = 1,
          .repeatCount = 2.5,
          .fill = FillMode::forwards,
          .removedOnCompletion = false},
         {{1.25, 0.25}, {2.25, 0.25}, {2.5, 0.5}, {9, 0.5}}},
        {"there and back",
         {.duration = 1, .autoreverses = true},
         {{0.75, 0.75}, {1.25, 0.75}, {1.75, 0.25}, {2, 0.9}}},
        {"for ever", {.duration = 1, .repeatCount = forever}, {{1000.25, 0.25}}},
        {"later", {.duration = 1, .beginDelay = 2}, {{0, 0.9}, {1.9, 0.9}, {2.5, 0.5}, {3, 0.9}}},
        {"later, shown before",
         {.duration = 1, .beginDelay = 2, .fill = FillMode::backwards},
         {{0, 0}, {1.9, 0}, {2.5, 0.5}, {3, 0.9}}},
        {"kept at its end",
         {.duration = 1, .fill = FillMode::both, .removedOnCompletion = false},
         {{1, 1}, {50, 1}}},
        {"kept without filling", {.duration = 1, .removedOnCompletion = false}, {{1, 0.9}}},
        {"filling though it goes", {.duration = 1, .fill = FillMode::forwards}, {{1, 0.9}}},
        {"of no length", {.duration = 0}, {{0, 0.9}}},
    };
    layer->setOpacity(0.9);
    for (const auto& row : cases) {
        layer->add(fade(0, 1, row.timing), "fade");
        for (const auto& [age, expected] : row.seen) {
            EXPECT_NEAR(opacityAt(age), expected, 1e-9) << row.name << " at " << age;
        }
    }
}

TEST_F(Animations, ApplyInTheOrderOfAddingAndAdditiveOnesAdd) {
    layer->setPosition({10, 10});
    layer->add({.keyPath = KeyPath::position,
                .motion = BasicMotion{.from = Point{0, 0}, .to = Point{100, 0}},
                .timing = {.duration = 1}},
               "walk");
    layer->add({.keyPath = KeyPath::positionY,
                .motion = KeyframeMotion{.values = {0.0, 8.0}},
                .timing = {.duration = 1},
                .additive = true},
               "hop");
    EXPECT_EQ(layer->presentation(start + 0.5).position, (Point{50, 4}));
    layer->add({.keyPath = KeyPath::positionX,
                .motion = BasicMotion{.from = 7.0, .to = 7.0},
                .timing = {.duration = 1}},
               "pin");
    EXPECT_EQ(layer->presentation(start + 0.5).position, (Point{7, 4}));
    EXPECT_EQ(layer->model().position, (Point{10, 10}));
}

TEST_F(Animations, AnEndThatIsLeftOutIsTheLayersOwnValue) {
    layer->setOpacity(0.5);
    layer->add({.motion = BasicMotion{.from = 0.0}, .timing = {.duration = 1}}, "in");
    EXPECT_NEAR(opacityAt(0.5), 0.25, 1e-12);
    layer->add({.motion = BasicMotion{.to = 1.0}, .timing = {.duration = 1}}, "in");
    EXPECT_NEAR(opacityAt(0.5), 0.75, 1e-12);
}

TEST_F(Animations, OneScaleSetsBothAxes) {
    layer->add({.keyPath = KeyPath::transformScale,
                .motion = BasicMotion{.from = 1.0, .to = 3.0},
                .timing = {.duration = 1}},
               "grow");
    const auto seen = layer->presentation(start + 0.5).transform;
    EXPECT_EQ(seen, Transform::scaled(2, 2));
}

struct KeyframeCase {
    const char* name;
    KeyframeMotion motion;
    std::vector<TimedValue> seen;
};

TEST_F(Animations, KeyframesPassTheirValuesInTime) {
    const std::vector<AnimatedValue> three{0.0, 1.0, 0.5};
    const KeyframeCase cases[] = {
        {"even", {.values = three}, {{0.25, 0.5}, {0.5, 1}, {0.75, 0.75}}},
        {"by key times", {.values = three, .keyTimes = {0, 0.8, 1}}, {{0.4, 0.5}, {0.9, 0.75}}},
        {"discrete",
         {.values = three, .calculation = Calculation::discrete},
         {{0, 0}, {0.3, 0}, {0.34, 1}, {0.65, 1}, {0.67, 0.5}, {0.99, 0.5}}},
        {"discrete with one key time a value",
         {.values = three, .keyTimes = {0, 0.1, 0.9}, .calculation = Calculation::discrete},
         {{0.05, 0}, {0.1, 1}, {0.89, 1}, {0.9, 0.5}}},
        {"discrete with a last key time",
         {.values = three, .keyTimes = {0, 0.1, 0.9, 1}, .calculation = Calculation::discrete},
         {{0.05, 0}, {0.1, 1}, {0.89, 1}, {0.95, 0.5}}},
        {"one value", {.values = {0.25}}, {{0, 0.25}, {0.9, 0.25}}},
        {"no value", {}, {{0.5, 1}}},
    };
    for (const auto& row : cases) {
        layer->add({.motion = row.motion, .timing = {.duration = 1}}, "keys");
        for (const auto& [age, expected] : row.seen) {
            EXPECT_NEAR(opacityAt(age), expected, 1e-9) << row.name << " at " << age;
        }
    }
}

TEST_F(Animations, APathIsWalkedByTheLengthOfItsPieces) {
    const auto path = Path{}.moveTo({0, 0}).lineTo({30, 0}).lineTo({30, 10});
    layer->add({.keyPath = KeyPath::position,
                .motion = KeyframeMotion{.path = path},
                .timing = {.duration = 4}},
               "walk");
    const auto at = [&](Seconds age) { return layer->presentation(start + age).position; };
    EXPECT_NEAR(distance(at(1), {10, 0}), 0, 1e-9);
    EXPECT_NEAR(distance(at(3), {30, 0}), 0, 1e-9);
    EXPECT_NEAR(distance(at(3.9), {30, 9}), 0, 1e-9);
    // Along one curve its own parameter runs evenly, so the height of a jump is gravity's.
    EXPECT_EQ(PathMeasure(Path::quad({0, 0}, {8, 0}, {4, 16})).at(0.25), (Point{2, 6}));
}

TEST_F(Animations, AGroupRunsItsPartsAndCutsThemAtItsEnd) {
    layer->setOpacity(0.9);
    layer->add(
        AnimationGroup{
            .animations = {fade(0, 1, {.duration = 4}),
                           {.keyPath = KeyPath::positionX,
                            .motion = BasicMotion{.from = 0.0, .to = 10.0},
                            .timing = {.duration = 1}}},
            .timing = {.duration = 2, .fill = FillMode::forwards, .removedOnCompletion = false}},
        "both");
    EXPECT_NEAR(opacityAt(1), 0.25, 1e-12);
    EXPECT_NEAR(layer->presentation(start + 0.5).position.x, 5, 1e-12);
    EXPECT_NEAR(layer->presentation(start + 1.5).position.x, 0, 1e-12);
    EXPECT_NEAR(opacityAt(5), 0.5, 1e-12) << "held where the group cut it";
}

struct CurveCase {
    TimingFunction curve;
    double share;
    double expected;
};

TEST(TimingCurves, EaseTheShareOfTime) {
    const CurveCase cases[] = {
        {TimingFunction::linear(), 0.3, 0.3},
        {TimingFunction::easeInEaseOut(), 0.5, 0.5},
        {TimingFunction::easeIn(), 0.5, 0.3153568},
        {TimingFunction::easeOut(), 0.5, 0.6846432},
        {TimingFunction::defaultCurve(), 0.25, 0.4085106},
        {TimingFunction::easeIn(), 0, 0},
        {TimingFunction::easeIn(), 1, 1},
    };
    for (const auto& row : cases) EXPECT_NEAR(row.curve.at(row.share), row.expected, 1e-6);
}

TEST(Springs, SwingCreepOrDoNeitherAsTheirEquationSays) {
    for (const double damping : {2.0, 11.0, 14.0, 20.0, 35.0}) {
        for (const double velocity : {0.0, 6.0, -3.0, 80.0}) {
            const SpringMotion spring{.damping = damping, .initialVelocity = velocity};
            double way = 0;  // x'' = 100 (1 − x) − c x', by small steps
            double speed = velocity;
            const double step = 1e-5;
            for (int i = 0; i < 50000; ++i) {
                const double pull = 100 * (1 - way) - damping * speed;
                way += (speed + pull * step / 2) * step;
                speed += pull * step;
            }
            EXPECT_NEAR(spring.at(0.5), way, 2e-3) << damping << " " << velocity;
        }
    }
}

TEST(Springs, HaveSettledWhenTheyStayWithinAThousandthOfTheirWay) {
    for (const double damping : {4.0, 11.0, 14.0, 19.9, 20.0, 45.0}) {
        for (const double velocity : {0.0, 6.0, -4.0, 60.0}) {
            const SpringMotion spring{.damping = damping, .initialVelocity = velocity};
            const Seconds settled = spring.settlingDuration();
            double later = 0;
            for (double t = settled; t < settled + 5; t += 1e-3) {
                later = std::max(later, std::abs(1 - spring.at(t)));
            }
            EXPECT_LE(later, 0.001 + 1e-9) << damping << " " << velocity;
            EXPECT_NEAR(std::abs(1 - spring.at(settled)), 0.001, 1e-6)
                << damping << " " << velocity << ": not before";
        }
    }
}

TEST(Springs, AreNeverFartherFromTheirEndThanTheyTell) {
    for (const double damping : {0.0, 4.0, 14.0, 19.99, 20.0, 45.0}) {
        for (const double velocity : {0.0, 6.0, -4.0, 60.0, -60.0}) {
            const SpringMotion spring{.damping = damping, .initialVelocity = velocity};
            double farthest = 0;
            for (double t = 0; t < 5; t += 1e-4) {
                farthest = std::max(farthest, std::abs(1 - spring.at(t)));
            }
            EXPECT_NEAR(spring.farthest(), farthest, 1e-4) << damping << " " << velocity;
        }
    }
}

class AnimationEnds : public Animations {
protected:
    std::vector<std::string> told;
    Layer::AnimationEnd tell(std::string name) {
        return [this, name = std::move(name)](bool finished) {
            told.push_back(name + (finished ? " finished" : " cut"));
        };
    }
};

TEST_F(AnimationEnds, ComeAtTheExactInstantWhetherOrNotAnybodyLooks) {
    layer->setHidden(true);
    layer->add(fade(0, 1, {.duration = 0.3, .repeatCount = 3, .beginDelay = 0.1}), "a", tell("a"));
    loop.runUntil(start + 0.999);
    EXPECT_TRUE(told.empty());
    loop.runUntil(start + 1.0);
    EXPECT_EQ(told, (std::vector<std::string>{"a finished"}));
    EXPECT_FALSE(layer->hasAnimations());
}

TEST_F(AnimationEnds, TellFalseFromTheRunLoopWhenReplacedRemovedOrLeftWithoutALayer) {
    layer->add(fade(0, 1, {.duration = 1}), "a", tell("first"));
    layer->add(fade(0, 1, {.duration = 1}), "a", tell("second"));
    EXPECT_TRUE(told.empty()) << "not in the middle of the call";
    loop.turn();
    layer->removeAnimation("a");
    loop.turn();
    layer->add(fade(0, 1, {.duration = 1}), "a", tell("third"));
    layer = nullptr;
    loop.runUntil(start + 5);
    EXPECT_EQ(told, (std::vector<std::string>{"first cut", "second cut", "third cut"}));
}

TEST_F(AnimationEnds, FindTheStateAlreadyChanged) {
    layer->setOpacity(0.9);
    double seen = 0;
    bool stillThere = true;
    auto other = engine.makeLayer();
    layer->add(fade(0, 1, {.duration = 1}), "a", [&](bool) {
        seen = other->presentation().opacity;
        stillThere = layer->animation("a") != nullptr;
    });
    other->add(fade(0, 0, {.duration = 1}), "a");
    loop.runUntil(start + 1);
    EXPECT_EQ(seen, 1) << "what ends at the same instant has ended too";
    EXPECT_FALSE(stillThere);
}

TEST_F(AnimationEnds, MayReplaceTheAnimationOrDropTheLayer) {
    layer->add(fade(0, 1, {.duration = 1}), "a", [&](bool) {
        layer->add(fade(0, 1, {.duration = 1}), "a", [&](bool) {
            layer = nullptr;
            told.push_back("gone");
        });
    });
    loop.runUntil(start + 3);
    EXPECT_EQ(told, (std::vector<std::string>{"gone"}));
}

TEST_F(AnimationEnds, OfOneThatStaysForItsFillModeComesOnce) {
    layer->add(
        fade(0, 0.5, {.duration = 1, .fill = FillMode::forwards, .removedOnCompletion = false}),
        "a", tell("a"));
    loop.runUntil(start + 2);
    EXPECT_EQ(opacityAt(2), 0.5);
    layer->removeAllAnimations();
    loop.runUntil(start + 3);
    EXPECT_EQ(told, (std::vector<std::string>{"a finished"}));
    EXPECT_EQ(opacityAt(3), 1);
}

}  // namespace
}  // namespace quibbits
