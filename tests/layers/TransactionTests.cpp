#include <gtest/gtest.h>

#include "layers/LayerEngine.h"
#include "layers/LayerTree.h"
#include "layers/ManualRunLoop.h"

namespace quibbits {
namespace {

class Transactions : public testing::Test {
protected:
    ManualRunLoop loop;
    LayerEngine engine{loop};
    LayerTree tree{engine};
    LayerRef layer = engine.makeLayer({.bounds = {0, 0, 10, 10}});
    int completed = 0;

    void SetUp() override {
        tree.root().addSublayer(layer);
        loop.runUntil(loop.now() + 1);
    }
    Transaction::Settings counting(Actions actions) {
        return {.actions = actions, .completion = [this] { ++completed; }};
    }
    void addFade(Seconds duration) {
        layer->add(
            {.motion = BasicMotion{.from = 0.0, .to = 1.0}, .timing = {.duration = duration}},
            "fade");
    }
};

TEST_F(Transactions, AChangeFadesInUnlessActionsAreOff) {
    layer->setOpacity(0);
    EXPECT_EQ(layer->model().opacity, 0);
    EXPECT_EQ(layer->presentation().opacity, 1);
    EXPECT_NEAR(layer->presentation(loop.now() + 0.0625).opacity, 1 - 0.4085106, 1e-6);
    loop.runUntil(loop.now() + 0.25);
    EXPECT_EQ(layer->presentation().opacity, 0);
    EXPECT_FALSE(layer->hasAnimations());

    const Transaction still(engine, Transaction::withoutActions());
    layer->setOpacity(1);
    EXPECT_EQ(layer->presentation().opacity, 1);
}

TEST_F(Transactions, AFadeSetsOutFromWhatIsSeen) {
    layer->setPosition({100, 0});
    loop.runUntil(loop.now() + 0.1);
    const Point seen = layer->presentation().position;
    EXPECT_GT(seen.x, 0);
    layer->setPosition({0, 0});
    EXPECT_EQ(layer->presentation().position, seen);
    loop.runUntil(loop.now() + 0.25);
    EXPECT_EQ(layer->presentation().position, (Point{0, 0}));
}

TEST_F(Transactions, WhatNobodyHasSeenYetChangesAtOnce) {
    const auto loose = engine.makeLayer();
    loose->setOpacity(0.5);
    EXPECT_FALSE(loose->hasAnimations()) << "in no tree";
    layer->addSublayer(loose);
    loose->setOpacity(0.25);
    EXPECT_FALSE(loose->hasAnimations()) << "only just there";
    loop.runUntil(loop.now() + 0.1);
    loose->setOpacity(0.5);
    EXPECT_TRUE(loose->hasAnimations());
}

TEST_F(Transactions, HiddenAndContentChangeAtOnce) {
    layer->change([](LayerProperties& l) {
        l.hidden = true;
        l.content = Text{};
        l.anchorPoint = {0, 0};
    });
    EXPECT_FALSE(layer->hasAnimations());
}

TEST_F(Transactions, TheInnermostOneCounts) {
    const Transaction outer(engine, {.duration = 2});
    {
        const Transaction inner(engine, Transaction::withoutActions());
        layer->setOpacity(0.5);
        EXPECT_FALSE(layer->hasAnimations());
    }
    layer->setOpacity(0);
    EXPECT_NEAR(layer->presentation(loop.now() + 1).opacity, 0.5 * (1 - 0.8024034), 1e-6);
}

TEST_F(Transactions, CompletionFollowsTheLastAnimationAddedInside) {
    {
        const Transaction outer(engine, counting(Actions::enabled));
        addFade(1);
        const Transaction inner(engine, counting(Actions::enabled));
        layer->setPosition({5, 5});
    }
    loop.runUntil(loop.now() + 0.25);
    EXPECT_EQ(completed, 1) << "the inner one, after its implicit fade";
    loop.runUntil(loop.now() + 0.74);
    EXPECT_EQ(completed, 1);
    loop.runUntil(loop.now() + 0.01);
    EXPECT_EQ(completed, 2);
}

TEST_F(Transactions, CompletionComesAtTheNextTurnWhenNothingWasAddedOrAllWasRemoved) {
    { const Transaction nothing(engine, counting(Actions::disabled)); }
    EXPECT_EQ(completed, 0);
    loop.turn();
    EXPECT_EQ(completed, 1);

    {
        const Transaction endless(engine, counting(Actions::disabled));
        layer->add({.motion = BasicMotion{.from = 0.0}, .timing = {.repeatCount = forever}}, "a");
    }
    loop.runUntil(loop.now() + 100);
    EXPECT_EQ(completed, 1);
    layer->removeAllAnimations();
    EXPECT_EQ(completed, 1);
    loop.turn();
    EXPECT_EQ(completed, 2);
}

TEST_F(Transactions, CompletionSurvivesTheLayer) {
    {
        const Transaction open(engine, counting(Actions::disabled));
        addFade(1);
    }
    layer->removeFromSuperlayer();
    layer = nullptr;
    loop.turn();
    EXPECT_EQ(completed, 1);
}

}  // namespace
}  // namespace quibbits
