#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <set>

#include "layers/DisplayTree.h"
#include "layers/Emission.h"
#include "layers/LayerEngine.h"
#include "layers/ManualRunLoop.h"

namespace quibbits {
namespace {

class Bodies : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};
    Transaction still{engine, Transaction::withoutActions()};
    LayerRef body = engine.makeLayer({.position = {50.4, 20}, .artPixel = 3});
    LayerRef sprite = engine.makeLayer(
        {.bounds = {0, 0, 30, 30},
         .content =
             Picture{Image::fromArgb(20, 10, std::vector<Argb>(200, 0xff102030)), Filter::nearest},
         .contentsRect = {0, 0, 0.5, 1}});

    void SetUp() override {
        tree.setSurface({1000, 200}, 1);
        tree.root().addSublayer(body);
        body->addSublayer(sprite);
        sprite->add({.keyPath = KeyPath::contentsRect,
                     .motion = KeyframeMotion{.values = {Rect{0, 0, 0.5, 1}, Rect{0.5, 0, 0.5, 1}},
                                              .calculation = Calculation::discrete},
                     .timing = {.duration = 0.26, .repeatCount = forever}},
                    "frames");
        tree.nextFrame(loop.now());
    }
    void walk(double distance, double speed) {
        const Point from = body->model().position;
        const Point to{from.x + distance, from.y};
        body->setPosition(to);
        body->add({.keyPath = KeyPath::position,
                   .motion = BasicMotion{.from = from, .to = to},
                   .timing = {.duration = std::abs(distance) / speed}},
                  "walk");
    }
    struct Tally {
        int wakes = 0;
        int paints = 0;
        std::set<int> places;
    };
    /// Lives through a stretch of time as a display would.
    Tally watch(Seconds duration) {
        Tally tally;
        const Instant end = loop.now() + duration;
        tree.nextFrame(loop.now());
        while (true) {
            const auto wake = tree.nextWake(loop.now());
            if (!wake || *wake >= end) break;
            loop.runUntil(*wake);
            ++tally.wakes;
            tally.paints += !tree.nextFrame(loop.now()).empty();
            tally.places.insert(drawnAt());
        }
        loop.runUntil(end);
        tree.nextFrame(loop.now());
        return tally;
    }
    int drawnAt() const {
        return tree.state().root.sublayers[0]->sublayers[0]->drawn.sprite->target.x;
    }
};

TEST_F(Bodies, StrollInAtMostTwentyStepsASecond) {
    const int start = drawnAt();
    walk(450, 45);
    const Tally tally = watch(9.99);
    EXPECT_LE(tally.paints, 200);
    EXPECT_LE(tally.wakes, 200);
    EXPECT_GT(tally.paints, 140) << "and yet it does move";
    for (const int place : tally.places) EXPECT_EQ((place - start) % 3, 0) << "off the art grid";
    watch(0.02);
    EXPECT_EQ(drawnAt(), start + 450);
}

TEST_F(Bodies, RunAtTheDisplaysRate) {
    walk(450, 180);
    EXPECT_NEAR(watch(1).paints, 60, 4);
}

TEST_F(Bodies, SlowOnesWakeOnlyWhenTheGridIsCrossed) {
    sprite->removeAllAnimations();
    walk(30, 6);
    const Tally tally = watch(4.99);
    EXPECT_EQ(tally.places.size(), 10u);
    EXPECT_LE(tally.paints, 10);
    EXPECT_LE(tally.wakes, 14);
}

TEST_F(Bodies, NeverStepBackOnTheWay) {
    body->add({.keyPath = KeyPath::position,
               .motion = BasicMotion{.from = Point{50.4, 20}, .to = Point{250, 20}},
               .curve = TimingFunction::easeInEaseOut(),
               .timing = {.duration = 2}},
              "walk");
    int last = drawnAt();
    for (int i = 0; i < 240; ++i) {
        loop.runUntil(loop.now() + 1.0 / 120.5);
        tree.nextFrame(loop.now());
        EXPECT_GE(drawnAt(), last) << i;
        last = drawnAt();
    }
}

TEST_F(Bodies, AreExactForWhoeverAsks) {
    walk(450, 45);
    const Instant now = loop.now() + 0.0131;
    EXPECT_NEAR(body->presentation(now).position.x, 50.4 + 45 * 0.0131, 1e-9);
}

TEST_F(Bodies, ChangeFramesAtTheirOwnInstantsWhileTheyStand) {
    const Instant start = loop.now();
    EXPECT_NEAR(tree.nextWake(start).value(), start + 0.13, 1e-9);
    walk(450, 45);
    tree.nextFrame(start);
    loop.runUntil(start + 0.11);
    tree.nextFrame(loop.now());
    EXPECT_NEAR(tree.nextWake(loop.now()).value(), start + 0.15, 1e-9) << "with the next step";
}

TEST_F(Bodies, RepaintNoMoreOftenThanTheyStepWhileTheyStroll) {
    walk(450, 45);
    const Tally tally = watch(9.99);
    EXPECT_LE(tally.wakes, 152);
    EXPECT_LE(tally.paints, 152);
}

TEST_F(Bodies, ChangeFramesInTimeWhileTheyHardlyMove) {
    walk(4, 1);
    std::vector<Instant> changes;
    const Instant start = loop.now();
    while (loop.now() < start + 3.9) {
        if (!tree.nextFrame(loop.now()).empty()) changes.push_back(loop.now());
        loop.runUntil(tree.nextWake(loop.now()).value());
    }
    for (std::size_t i = 1; i < changes.size(); ++i) {
        EXPECT_LT(changes[i] - changes[i - 1], 0.13 + 2 * 0.05 + 1e-6) << i;
    }
    EXPECT_GT(changes.size(), 25u);
}

class Emitters : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop, 7};
    LayerTree tree{engine};
    Transaction still{engine, Transaction::withoutActions()};
    EmitterCell cell{.image = Image::fromArgb(1, 1, {0xffffffff}),
                     .birthRate = 10,
                     .lifetime = 1,
                     .velocity = 40,
                     .emissionLongitude = std::numbers::pi / 2,
                     .acceleration = {0, -10},
                     .alphaSpeed = -0.5};

    std::size_t count(const LayerTree& of) const {
        return of.state().root.sublayers[0]->drawn.particles.size();
    }
    LayerRef add(const Emitter& emitter) {
        auto layer = engine.makeLayer({.position = {50, 50}, .content = emitter});
        tree.setSurface({100, 100}, 1);
        tree.root().addSublayer(layer);
        return layer;
    }
};

TEST_F(Emitters, GiveBirthSteadilyAndLetWhatFliesLiveOut) {
    const auto layer = add({.cells = {cell}});
    const Instant start = loop.now();
    const auto countAt = [&](Seconds age) {
        tree.nextFrame(start + age);
        return count(tree);
    };
    EXPECT_EQ(countAt(0.45), 5u);
    EXPECT_EQ(countAt(3.05), 10u);
    loop.runUntil(start + 3.05);
    layer->change(
        [&](LayerProperties& l) { l.content = Emitter{.cells = {cell}, .birthRate = 0}; });
    EXPECT_EQ(countAt(3.55), 5u);
    EXPECT_TRUE(tree.nextWake(start + 3.55));
    EXPECT_EQ(countAt(4.1), 0u);
    EXPECT_FALSE(tree.nextWake(start + 4.1));
    EXPECT_EQ(countAt(3.3), 7u) << "the same however often and in whichever order one asks";
}

TEST_F(Emitters, MoveParticlesByVelocityAndPull) {
    std::unique_ptr<Emission> emission;
    const Emitter emitter{.cells = {cell}};
    Emission::record(emission, &emitter, 0);
    const auto particles = emission->particles(emitter, 1, 0.55);
    ASSERT_EQ(particles.size(), 6u);
    const double age = 0.55;
    EXPECT_NEAR(particles[0].place.x, 0, 1e-9);
    EXPECT_NEAR(particles[0].place.y, 40 * age - 5 * age * age, 1e-9);
    EXPECT_NEAR(particles[0].opacity, 1 - 0.5 * age, 1e-9);
}

TEST_F(Emitters, SpreadWithinTheirRangesAndTheirArea) {
    cell.velocityRange = 16;
    cell.lifetimeRange = 0.5;
    cell.birthRate = 200;
    cell.emissionRange = std::numbers::pi / 3;
    cell.acceleration = {};
    std::unique_ptr<Emission> emission;
    Emitter emitter{.cells = {cell}};
    Emission::record(emission, &emitter, 0);
    double widest = 0;
    double fastest = 0;
    double slowest = 100;
    const double age = 0.49;
    const auto all = emission->particles(emitter, 1, age);
    ASSERT_EQ(all.size(), 99u) << "none dies before the shortest life";
    for (std::size_t i = 0; i < 50; ++i) {
        const double life = age - static_cast<double>(i) / 200;
        const Vector way = all[i].place - Point{};
        widest = std::max(widest, std::abs(std::atan2(way.dx, way.dy)));
        fastest = std::max(fastest, way.length() / life);
        slowest = std::min(slowest, way.length() / life);
    }
    EXPECT_LE(widest, std::numbers::pi / 6 + 1e-9);
    EXPECT_GT(widest, std::numbers::pi / 6 * 0.8);
    EXPECT_LE(fastest, 56 + 1e-9);
    EXPECT_GT(fastest, 52);
    EXPECT_GE(slowest, 24 - 1e-9);

    emitter.area = {20, 10};
    emitter.cells[0].velocity = emitter.cells[0].velocityRange = 0;
    Rect box;
    for (const auto& p : emission->particles(emitter, 1, age)) {
        EXPECT_LE(std::abs(p.place.x), 10);
        EXPECT_LE(std::abs(p.place.y), 5);
        box = box.united({p.place.x, p.place.y, 1e-6, 1e-6});
    }
    EXPECT_GT(box.width, 15);
    EXPECT_GT(box.height, 7.5);
}

TEST_F(Emitters, WakeForABirthThatIsLongInComing) {
    cell.birthRate = 0.25;
    add({.cells = {cell}});
    const Instant start = loop.now();
    tree.nextFrame(start + 1.5);
    EXPECT_NEAR(tree.nextWake(start + 1.5).value(), start + 4, 1e-9);
}

}  // namespace
}  // namespace quibbits
