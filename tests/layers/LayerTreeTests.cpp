#include <gtest/gtest.h>

#include <algorithm>

#include "layers/DisplayTree.h"
#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "layers/ManualRunLoop.h"

namespace quibbits {
namespace {

using Rects = std::vector<PixelRect>;

/// A picture of two by two frames of 10 × 10 pixels.
Picture frames() {
    return {Image::fromArgb(20, 20, std::vector<Argb>(400, 0xff102030)), Filter::nearest};
}

class Trees : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};
    Transaction still{engine, Transaction::withoutActions()};

    void SetUp() override {
        tree.setSurface({200, 100}, 1);
        tree.nextFrame(loop.now());
    }
    LayerRef sprite(Point position) {
        auto layer = engine.makeLayer({.bounds = {0, 0, 10, 10},
                                       .position = position,
                                       .content = frames(),
                                       .contentsRect = {0, 0, 0.5, 0.5}});
        tree.root().addSublayer(layer);
        return layer;
    }
    static Animation flicker(std::vector<AnimatedValue> values, Seconds duration) {
        return {.keyPath = KeyPath::contentsRect,
                .motion = KeyframeMotion{.values = std::move(values),
                                         .calculation = Calculation::discrete},
                .timing = {.duration = duration, .repeatCount = forever}};
    }
    static Animation walk(Point from, Point to, Seconds duration) {
        return {.keyPath = KeyPath::position,
                .motion = BasicMotion{.from = from, .to = to},
                .timing = {.duration = duration}};
    }
    std::optional<Seconds> wait() {
        const auto wake = tree.nextWake(loop.now());
        return wake ? std::optional(*wake - loop.now()) : std::nullopt;
    }
    Rects frame() { return tree.nextFrame(loop.now()); }

    const Rect first{0, 0, 0.5, 0.5};
    const Rect second{0.5, 0, 0.5, 0.5};
};

TEST_F(Trees, StillOnesPaintOnceAndWakeNobody) {
    sprite({50, 50});
    EXPECT_EQ(frame(), (Rects{{45, 45, 10, 10}}));
    EXPECT_EQ(frame(), Rects{});
    EXPECT_EQ(wait(), std::nullopt);
    loop.runUntil(loop.now() + 100);
    EXPECT_EQ(frame(), Rects{});
}

TEST_F(Trees, AChangePaintsWhereTheLayerWasAndIs) {
    const auto layer = sprite({50, 50});
    frame();
    layer->setPosition({150, 50});
    EXPECT_EQ(frame(), (Rects{{45, 45, 10, 10}, {145, 45, 10, 10}}));
    layer->setPosition({150.2, 50.1});
    EXPECT_EQ(frame(), Rects{}) << "too little to move a pixel";
    layer->setPosition({152, 50});
    EXPECT_EQ(frame(), (Rects{{145, 45, 12, 10}}));
    layer->removeFromSuperlayer();
    EXPECT_EQ(frame(), (Rects{{147, 45, 10, 10}}));
}

TEST_F(Trees, DamageStaysOnTheSurfaceAndItsRectanglesApart) {
    std::vector<LayerRef> many;
    for (int i = 0; i < 40; ++i) many.push_back(sprite({i * 37 % 230 - 10.0, i * 23 % 120 - 8.0}));
    const auto rects = frame();
    EXPECT_LE(rects.size(), 8u);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        EXPECT_EQ(rects[i], rects[i].intersected({0, 0, 200, 100}));
        for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(rects[i].intersects(rects[k]));
    }
}

TEST_F(Trees, WhatConcernsAWholeBranchPaintsTheBranch) {
    const auto group = engine.makeLayer();
    tree.root().addSublayer(group);
    const auto one = sprite({50, 50});
    const auto other = sprite({80, 50});
    group->addSublayer(one);
    group->addSublayer(other);
    frame();
    group->setOpacity(0.5);
    EXPECT_EQ(frame(), (Rects{{45, 45, 40, 10}}));
    group->setHidden(true);
    EXPECT_EQ(frame(), (Rects{{45, 45, 40, 10}}));
    one->setPosition({20, 20});
    EXPECT_EQ(frame(), Rects{});
    group->setHidden(false);
    EXPECT_EQ(frame(), (Rects{{15, 45, 70, 40}}));
}

TEST_F(Trees, ANewOrderPaintsWhatChangedPlaces) {
    sprite({50, 50});
    const auto above = sprite({55, 50});
    frame();
    tree.root().insertSublayer(above, 0);
    EXPECT_EQ(frame(), (Rects{{45, 45, 10, 10}}));
}

TEST_F(Trees, ALayerMovesBetweenTreesWithDamageInBoth) {
    LayerTree other(engine);
    other.setSurface({100, 100}, 1);
    other.nextFrame(loop.now());
    const auto layer = sprite({50, 50});
    frame();
    other.root().addSublayer(layer);
    EXPECT_EQ(frame(), (Rects{{45, 45, 10, 10}}));
    EXPECT_EQ(other.nextFrame(loop.now()), (Rects{{45, 45, 10, 10}}));
    tree.root().addSublayer(layer);
    EXPECT_EQ(other.nextFrame(loop.now()), (Rects{{45, 45, 10, 10}}));
    EXPECT_EQ(frame(), (Rects{{45, 45, 10, 10}}));
}

TEST_F(Trees, ABranchThatComesBackIsSeenAsItIsAndNotAsItLeft) {
    LayerTree other(engine);
    other.setSurface({200, 100}, 1);
    const auto body = sprite({50, 50});
    const auto hand = sprite({10, 10});
    hand->setMask(engine.makeLayer({.bounds = {0, 0, 10, 10}, .position = {5, 5}}));
    const auto spark = sprite({25, 25});
    body->addSublayer(hand);
    body->addSublayer(spark);
    other.root().addSublayer(body);
    other.nextFrame(loop.now());
    // It leaves a tree that nobody paints any more, changes in this one, and goes back.
    tree.root().addSublayer(body);
    frame();
    spark->removeFromSuperlayer();
    hand->setMask(nullptr);
    hand->setPosition({40, 10});
    frame();
    EXPECT_EQ(frame(), Rects{});
    other.root().addSublayer(body);
    const Rects damage = other.nextFrame(loop.now());
    const auto damaged = [&](int x, int y) {
        return std::ranges::any_of(damage, [&](PixelRect r) { return r.intersects({x, y, 1, 1}); });
    };
    EXPECT_TRUE(damaged(70, 30)) << "where the spark was";
    EXPECT_TRUE(damaged(85, 45)) << "where the hand is";
    const auto& seen = *other.state().root.sublayers.at(0);
    ASSERT_EQ(seen.sublayers.size(), 1u);
    EXPECT_EQ(seen.sublayers[0]->mask, nullptr);
    EXPECT_EQ(other.nextFrame(loop.now()), Rects{});
    EXPECT_EQ(other.nextWake(loop.now()), std::nullopt);
}

TEST_F(Trees, ADiscreteAnimationWakesAtEachOtherFrameExactly) {
    const auto layer = sprite({50, 50});
    layer->add(flicker({first, first, second, second, second}, 1), "frames");
    frame();
    EXPECT_NEAR(wait().value(), 0.4, 1e-9);
    int wakes = 0;
    int paints = 0;
    const Instant end = loop.now() + 10.1;
    for (auto wake = tree.nextWake(loop.now()); *wake < end; wake = tree.nextWake(loop.now())) {
        loop.runUntil(*wake);
        ++wakes;
        paints += !frame().empty();
    }
    EXPECT_EQ(wakes, 20);
    EXPECT_EQ(paints, 20);

    layer->add(flicker({first, first}, 1), "frames");
    frame();
    EXPECT_EQ(wait(), std::nullopt) << "all frames alike";
}

TEST_F(Trees, AContinuousOneWakesAtTheDisplaysFramesUntilItHasEnded) {
    const auto layer = sprite({50, 50});
    layer->add(walk({50, 50}, {50, 90}, 0.1), "walk");
    int wakes = 0;
    frame();
    while (const auto wake = tree.nextWake(loop.now())) {
        EXPECT_NEAR(*wake * 60, std::round(*wake * 60), 1e-6);
        loop.runUntil(*wake);
        frame();
        ++wakes;
    }
    EXPECT_EQ(wakes, 6);
}

struct WakeCase {
    const char* name;
    Animation animation;
    std::optional<Seconds> wait;
};

TEST_F(Trees, WakeForWhatWillBeSeenOnly) {
    const auto soon = 1.0 / 60;
    const WakeCase cases[] = {
        {"a delayed start",
         {.motion = BasicMotion{.from = 0.0}, .timing = {.duration = 1, .beginDelay = 0.5}},
         0.5},
        {"an end that shows",
         {.motion = BasicMotion{.from = 0.5, .to = 0.5}, .timing = {.duration = 0.7}},
         0.7},
        {"a hold between two keyframes",
         {.motion = KeyframeMotion{.values = {0.5, 0.5, 1.0}}, .timing = {.duration = 1}},
         0.5},
        {"an animation out of nothing",
         {.motion = BasicMotion{.from = 0.0, .to = 1.0}, .timing = {.duration = 1}},
         soon},
        {"a discrete one with an even end",
         {.motion = KeyframeMotion{.values = {0.5, 0.7}, .calculation = Calculation::discrete},
          .timing = {.duration = 1, .repeatCount = 2}},
         0.5},
    };
    const auto layer = sprite({50, 50});
    loop.runUntil(std::round(loop.now()));
    for (const auto& row : cases) {
        layer->removeAllAnimations();
        layer->add(row.animation, "a");
        frame();
        EXPECT_NEAR(wait().value_or(-1), row.wait.value_or(-1), 1e-9) << row.name;
    }
}

TEST_F(Trees, WhatIsOutOfSightWakesNobody) {
    const auto parent = engine.makeLayer();
    tree.root().addSublayer(parent);
    const auto layer = sprite({50, 50});
    parent->addSublayer(layer);
    layer->add(flicker({first, second}, 0.2), "frames");
    layer->add({.keyPath = KeyPath::transformRotation,
                .motion = BasicMotion{.from = 0.0, .to = 1.0},
                .timing = {.repeatCount = forever}},
               "spin");
    const auto wakes = [&] {
        frame();
        return wait().has_value();
    };
    EXPECT_TRUE(wakes());
    parent->setHidden(true);
    EXPECT_FALSE(wakes()) << "hidden";
    parent->setHidden(false);
    EXPECT_TRUE(wakes());
    parent->setOpacity(0);
    EXPECT_FALSE(wakes()) << "fully transparent";
    parent->add(
        {.motion = BasicMotion{.from = 0.0, .to = 1.0}, .timing = {.duration = 5, .beginDelay = 3}},
        "appear");
    frame();
    EXPECT_NEAR(wait().value(), 3, 1e-9) << "but it will appear";
    parent->removeAllAnimations();
    parent->setOpacity(1);
    parent->setPosition({500, 0});
    EXPECT_FALSE(wakes()) << "outside the surface";
    parent->add(walk({500, 0}, {0, 0}, 10), "walk");
    EXPECT_TRUE(wakes()) << "but it walks in";
    parent->add(walk({500, 0}, {700, 0}, 10), "walk");
    EXPECT_FALSE(wakes()) << "it walks farther away";
    parent->removeAllAnimations();
    parent->setPosition({0, 0});
    const auto frameLayer = engine.makeLayer({.bounds = {0, 0, 20, 20}, .masksToBounds = true});
    tree.root().addSublayer(frameLayer);
    frameLayer->addSublayer(parent);
    EXPECT_FALSE(wakes()) << "cut away by what holds it";
}

TEST_F(Trees, AnAnimationOutOfSightWakesNobodyWhateverItChanges) {
    const Animation blink{.motion = BasicMotion{.from = 0.0, .to = 1.0},
                          .timing = {.duration = 1, .repeatCount = forever, .autoreverses = true}};
    const Animation widen{.keyPath = KeyPath::bounds,
                          .motion = BasicMotion{.from = Rect{0, 0, 5, 5}, .to = Rect{0, 0, 20, 20}},
                          .timing = {.duration = 1, .repeatCount = forever}};
    const auto wakes = [&] {
        frame();
        return wait().has_value();
    };
    const auto layer = sprite({-100, 50});
    for (const auto& animation : {blink, widen, flicker({first, second}, 0.2)}) {
        layer->removeAllAnimations();
        layer->add(animation, "a");
        EXPECT_FALSE(wakes()) << "beside the surface";
    }
    layer->add(walk({-100, 50}, {-50, 50}, 1), "walk");
    EXPECT_FALSE(wakes()) << "it walks, and does not come in";

    const auto child = sprite({150, 0});
    layer->addSublayer(child);
    layer->removeAllAnimations();
    layer->add(flicker({first, second}, 0.2), "frames");
    EXPECT_FALSE(wakes()) << "only what it carries is in sight";
    layer->add(walk({-100, 50}, {-90, 50}, 1), "walk");
    EXPECT_TRUE(wakes()) << "it carries that along";
    layer->removeAllAnimations();
}

TEST_F(Trees, ASurfaceWithoutPixelsWakesNobody) {
    const auto layer = sprite({50, 50});
    layer->add(flicker({first, second}, 0.2), "frames");
    tree.setSurface({200, 0}, 1);
    EXPECT_EQ(frame(), Rects{});
    EXPECT_EQ(wait(), std::nullopt);
    tree.setSurface({200, 100}, 1);
    EXPECT_TRUE(wait());
    EXPECT_EQ(frame(), (Rects{{0, 0, 200, 100}}));
}

TEST_F(Trees, WhatIsStillTransparentWakesForItsFirstColour) {
    const auto layer = engine.makeLayer({.bounds = {0, 0, 10, 10}, .position = {50, 50}});
    tree.root().addSublayer(layer);
    layer->add({.keyPath = KeyPath::backgroundColor,
                .motion = BasicMotion{.from = Color{0, 0, 0, 0}, .to = Color::black()},
                .timing = {.duration = 1}},
               "colour");
    frame();
    EXPECT_TRUE(wait());
}

TEST_F(Trees, TellOfAChangeOnceUntilTheNextFrame) {
    const auto layer = sprite({50, 50});
    frame();
    int told = 0;
    tree.onChange = [&] { ++told; };
    layer->setPosition({60, 60});
    layer->setOpacity(0.5);
    layer->add(flicker({first, second}, 1), "frames");
    EXPECT_EQ(told, 1);
    frame();
    EXPECT_EQ(told, 1);
    layer->removeAnimation("frames");
    EXPECT_EQ(told, 2);
    frame();
    layer->setOpacity(0.5);
    EXPECT_EQ(told, 2) << "nothing changed";
    layer->removeFromSuperlayer();
    EXPECT_EQ(told, 3);
    frame();
    layer->setOpacity(1);
    EXPECT_EQ(told, 3) << "no longer in the tree";
}

TEST_F(Trees, ASpringThatSwingsIntoSightWakes) {
    const auto layer = sprite({-300, 50});
    frame();
    const auto springTo = [&](double x, double velocity) {
        layer->add(
            {.keyPath = KeyPath::positionX,
             .motion =
                 SpringMotion{.from = -300.0, .to = x, .damping = 5, .initialVelocity = velocity},
             .timing = {.duration = 2}},
            "swing");
        frame();
        return wait().has_value();
    };
    EXPECT_FALSE(springTo(-200, 0)) << "it swings too far by less than its way";
    EXPECT_TRUE(springTo(-200, 40)) << "so hard a push takes it across the surface";
    EXPECT_TRUE(springTo(-400, -60)) << "pushed away from its end";
}

}  // namespace
}  // namespace quibbits
