#include <gtest/gtest.h>

#include <numbers>

#include "body/PetOnALoop.h"
#include "body/Pixels.h"

namespace quibbits {
namespace {

Image portrait() {
    return Image::fromArgb(40, 40, std::vector<Argb>(1600, 0xff884422));
}

class PetSpeech : public PetOnALoop {
protected:
    const Layer& bubble() const { return part(1); }
    const Layer& dialog() const { return part(2); }
    const Layer& thought() const { return part(3); }
    std::string caption() const {
        std::string all;
        for (const auto& run : std::get<Text>(dialog().sublayers()[1]->model().content).text.runs) {
            all += run.text;
        }
        return all;
    }
    bool shows(const Layer& layer) const { return layer.model().opacity > 0; }
};

TEST_F(PetSpeech, AFaceAloneStandsOverTheHeadForItsTime) {
    pet->showFace({.image = portrait(), .seconds = 2});
    EXPECT_EQ(bubble().model().position, (Point{0, 30 + 78}));
    EXPECT_EQ(bubble().model().bounds.size(), (Size{60, 60}));
    EXPECT_NEAR(bubble().presentation().transform.scaleX, 0.3, 1e-9) << "it pops up";
    EXPECT_FALSE(shows(dialog()));
    EXPECT_FALSE(shows(thought()));
    advance(1.999);
    EXPECT_TRUE(shows(bubble()));
    EXPECT_NEAR(bubble().presentation().transform.scaleX, 1, 0.01);
    advance(0.001);
    EXPECT_FALSE(shows(bubble()));
}

TEST_F(PetSpeech, APanelFitsItsTextAndCarriesTheFaceOnItsCorner) {
    pet->showFace({.image = portrait(), .caption = "Hello you!", .speaker = "Bo"});
    // 14 characters of 6 points.
    EXPECT_EQ(dialog().frame(), (Rect{-56, 84, 112, 41}));
    EXPECT_EQ(bubble().frame(), (Rect{-56, 127, 60, 60}));
    EXPECT_EQ(dialog().sublayers()[1]->frame(), (Rect{14, 14, 86, 17}));
    const std::string hundred(100, 'x');
    pet->showFace({.image = portrait(), .caption = hundred});
    EXPECT_EQ(dialog().frame().width, 258) << "the text breaks at 230";
    EXPECT_EQ(dialog().frame().height, 3 * 15 + 26);
}

TEST_F(PetSpeech, ACaptionIsTypedLetterByLetterInNineTenthsOfASecondAtMost) {
    struct Row {
        std::string caption;
        Seconds step;
        std::size_t letters;
    };
    for (const auto& [words, step, letters] : std::vector<Row>{{"ten letter", 0.03, 10},
                                                               {std::string(100, 'x'), 0.009, 100},
                                                               {"Grüße ♥\ufe0f!", 0.03, 8},
                                                               {"", 0.03, 0}}) {
        pet->showFace({.image = portrait(), .caption = words, .speaker = "Bo", .seconds = 1});
        advance(step * 0.5);
        EXPECT_EQ(caption(), "Bo: ") << "the speaker stands there at once";
        for (std::size_t n = 1; n <= letters; ++n) {
            advance(step);
            ASSERT_EQ(caption(), "Bo: " + firstCharacters(words, n));
        }
        advance(0.99 - step * 0.5);
        EXPECT_TRUE(shows(dialog())) << "the time counts from the last letter on";
        advance(0.02);
        EXPECT_FALSE(shows(dialog()));
        EXPECT_FALSE(shows(bubble()));
    }
}

TEST_F(PetSpeech, ANewerFaceTakesOverFromAnOlderOne) {
    pet->showFace({.image = portrait(), .caption = std::string(100, 'a'), .seconds = 1});
    advance(0.5);
    pet->showFace({.image = portrait(), .caption = "bbbb", .thought = Pixels::zzz(), .seconds = 3});
    advance(0.13);
    EXPECT_EQ(caption(), "bbbb");
    advance(2);
    EXPECT_EQ(caption(), "bbbb") << "the older one types no more";
    EXPECT_TRUE(shows(dialog())) << "and does not hide the newer one";
    EXPECT_TRUE(shows(thought()));
    pet->showFace({.image = portrait(), .seconds = 1});
    EXPECT_FALSE(shows(dialog()));
    EXPECT_FALSE(shows(thought()));
    EXPECT_TRUE(thought().sublayers().empty());
    advance(0.99);
    EXPECT_TRUE(shows(bubble()));
    advance(0.01);
    EXPECT_FALSE(shows(bubble()));
}

TEST_F(PetSpeech, ABubbleStandsClearOfATallCreature) {
    pet->showFace({.image = portrait(), .caption = "Hi", .tall = 24});
    EXPECT_EQ(dialog().frame().y, 84) << "a usual one";
    pet->showFace({.image = portrait(), .caption = "Hi", .tall = 40});
    EXPECT_EQ(dialog().frame().y, 41 * 3 + 6);
    pet->showFace({.image = portrait(), .tall = 40});
    EXPECT_EQ(bubble().frame().y, 41 * 3);
}

TEST_F(PetSpeech, ABubbleFollowsOntoTheScreenWhileItsCreatureIsCarried) {
    change([](Terrain& t) { t.skyline = 600; });
    pet->drag({500, 300});
    pet->showFace({.image = portrait(), .caption = "Whee", .thought = Pixels::zzz()});
    const Rect panel = dialog().frame();
    const Rect face = bubble().frame();
    const auto onScreen = [&](const Layer& layer) {
        const Rect on = layer.frame().offset(pet->node().model().position - Point{});
        return on.minX() >= -20 && on.maxX() <= 1020 && on.minY() >= 0 && on.maxY() <= 600;
    };
    for (const Point at : {Point{500, 560}, Point{980, 560}, Point{20, 300}, Point{20, 590}}) {
        pet->drag(at);
        for (int i = 1; i <= 3; ++i) EXPECT_TRUE(onScreen(part(i))) << at.x << ", " << at.y;
    }
    EXPECT_LT(dialog().frame().maxY(), 0) << "beneath the feet, where it hides nobody";
    EXPECT_EQ(bubble().frame().y - dialog().frame().y, face.y - panel.y) << "all of it moves";
    pet->drag({500, 300});
    EXPECT_EQ(dialog().frame(), panel) << "and back over the head where there is room";
    pet->drag({500, 560});
    pet->fall(Pet::Falling::freely, {});
    EXPECT_EQ(dialog().frame(), panel) << "so that nothing is under the floor after a fall";
}

TEST_F(PetSpeech, ABubbleChangesSidesOfTheHeadWithoutAJump) {
    change([](Terrain& t) { t.skyline = 600; });
    pet->drag({500, 560});
    pet->showFace({.image = portrait(), .caption = "Whee", .seconds = 100});
    const auto seen = [&] {
        return pet->position().y + part(1).presentation().position.y;  // on the screen
    };
    double before = seen();
    const auto glides = [&](int frames) {
        for (int frame = 0; frame < frames; ++frame) {
            advance(1.0 / 60);
            EXPECT_LT(std::abs(seen() - before), 60) << frame;
            before = seen();
        }
    };
    pet->fall(Pet::Falling::floating, {});
    glides(180);
    EXPECT_GT(before, 20) << "over the head, on the floor";
    pet->move({500, 560}, {.duration = 2}, {});
    glides(180);
    EXPECT_LT(before, 560) << "under the feet, at the top";
}

TEST_F(PetSpeech, ABubbleIsOnTheScreenAllTheWayOfAWalk) {
    change([](Terrain& t) { t.skyline = 600; });
    pet->drag({100, 0});
    pet->showFace({.image = portrait(), .caption = "On my way to the very edge", .seconds = 100});
    ASSERT_GT(dialog().frame().minX() + 100, -20);
    for (const double to : {0.0, 120.0, 1000.0, 930.0}) {
        pet->walk(to, walking, 45, 1, {});
        for (int i = 0; i < 400 && pet->position().x != to; ++i) {
            const double x = pet->position().x;
            ASSERT_GE(dialog().frame().minX() + x, to == 1000 ? -60 : -20) << to << " at " << x;
            ASSERT_LE(dialog().frame().maxX() + x, 1020) << to << " at " << x;
            advance(0.1);
        }
    }
}

TEST_F(PetSpeech, AThoughtIsEnlargedByTheWholeFactorThatFits) {
    for (const Image* icon : {&Pixels::question(), &Pixels::exclaim(), &Pixels::file()}) {
        pet->showFace({.image = portrait(), .thought = *icon});
        ASSERT_EQ(thought().sublayers().size(), 1u);
        const Rect frame = thought().sublayers()[0]->frame();
        const int longest = std::max(icon->width(), icon->height());
        EXPECT_EQ(frame.width, icon->width() * (20 / longest));
        EXPECT_EQ(frame.center(), (Point{15, 15}));
        EXPECT_EQ(thought().model().position, (Point{28, 108 + 28}));
    }
}

class PetEffects : public PetOnALoop {
protected:
    static const Emitter& emitterOf(const Layer& layer) {
        return std::get<Emitter>(layer.model().content);
    }
};

TEST_F(PetEffects, BurstsEndAndTheirEmittersGoTwoSecondsLater) {
    struct Row {
        void (Pet::*start)();
        Seconds duration;
    };
    for (const auto& [start, duration] :
         std::vector<Row>{{&Pet::hearts, 0.7}, {&Pet::stars, 0.5}}) {
        (pet.get()->*start)();
        ASSERT_EQ(extras(), 1u);
        advance(duration - 0.01);
        EXPECT_EQ(emitterOf(extra()).birthRate, 1);
        advance(0.02);
        ASSERT_EQ(extras(), 1u);
        EXPECT_EQ(emitterOf(extra()).birthRate, 0) << "what flies lives out";
        advance(1.98);
        EXPECT_EQ(extras(), 1u);
        advance(0.02);
        EXPECT_EQ(extras(), 0u);
    }
}

TEST_F(PetEffects, SparksGoOnUntilSomebodyStopsThem) {
    const LayerRef sparks = pet->sparks(12);
    const auto& cells = emitterOf(*sparks).cells;
    ASSERT_EQ(cells.size(), 2u);
    EXPECT_EQ(cells[0].birthRate, 12);
    EXPECT_EQ(cells[1].birthRate, 4);
    EXPECT_EQ(cells[1].velocity, 0);
    EXPECT_EQ(emitterOf(*sparks).area, (Size{84, 78}));
    EXPECT_EQ(sparks->model().position, (Point{0, 48}));
    advance(1000);
    pet->interrupt();
    EXPECT_EQ(extras(), 1u);
    EXPECT_EQ(emitterOf(*sparks).birthRate, 1);
    pet->stopEmitting(sparks);
    pet->stopEmitting(sparks);
    EXPECT_EQ(emitterOf(*sparks).birthRate, 0);
    advance(2);
    EXPECT_EQ(extras(), 0u);
}

TEST_F(PetEffects, AnEmitterOutlivesItsBodyWithoutHarm) {
    const LayerRef sparks = pet->sparks(12, 1);
    pet->hearts();
    pet->dizzy(1, 20);
    pet->stopEmitting(sparks);
    pet.reset();
    advance(10);
    EXPECT_EQ(loop.pendingJobs(), 0u);
    EXPECT_EQ(sparks->superlayer(), nullptr);
}

TEST_F(PetEffects, ADizzyBodySwaysUnderARingThatGoes) {
    pet->play(strip({6}));
    pet->dizzy(1.8, 20);
    ASSERT_EQ(extras(), 1u);
    EXPECT_EQ(extra().model().position, (Point{0, 60 - 6}));
    ASSERT_EQ(extra().sublayers().size(), 1u);
    const Layer& wheel = *extra().sublayers()[0];
    EXPECT_EQ(wheel.sublayers().size(), 3u);
    advance(0.15);
    EXPECT_NEAR(pet->node().presentation().transform.rotation, 0.14, 1e-9);
    EXPECT_NEAR(wheel.presentation().transform.rotation, 2 * std::numbers::pi * 0.15 / 0.8, 1e-9);
    advance(1.64);
    EXPECT_EQ(extras(), 1u);
    advance(0.02);
    EXPECT_EQ(extras(), 0u);
    EXPECT_EQ(pet->node().presentation().transform.rotation, 0);
}

TEST_F(PetEffects, FoodShrinksABiteAtATimeAndStaysEaten) {
    const LayerRef food =
        pet->holdFood({.image = Pixels::item(Item::cinnet), .bites = 3, .over = 4, .at = 8});
    EXPECT_EQ(food->frame(), (Rect{-12, 12, 24, 24}));
    for (const double size : {1.0, 2.0 / 3, 1.0 / 3, 0.0, 0.0}) {
        advance(0.5);
        EXPECT_NEAR(food->presentation().transform.scaleX, size, 1e-12);
        EXPECT_NEAR(food->presentation().transform.scaleY, size, 1e-12);
        advance(0.5);
    }
}

TEST_F(PetEffects, MunchingLiftsTheFoodAndDropsCrumbsOfItsMiddle) {
    const Image& berry = Pixels::item(Item::cinnet);
    const LayerRef food = pet->holdFood({.image = berry, .over = 3, .at = 8});
    pet->munch(*food, {.crumbs = berry, .duration = 2, .chew = 0.5});
    ASSERT_EQ(extras(), 2u);
    const EmitterCell& crumbs = emitterOf(extra()).cells.at(0);
    EXPECT_EQ(crumbs.image.width(), 2);
    EXPECT_EQ(crumbs.image.at(0, 0), berry.at(3, 3));
    EXPECT_EQ(crumbs.image.at(1, 1), berry.at(4, 4));
    EXPECT_EQ(crumbs.birthRate, 4);
    EXPECT_NEAR(crumbs.scale, 2.4, 1e-12);
    EXPECT_EQ(extra().model().position, (Point{0, 24 + 15}));
    advance(0.125);
    EXPECT_NEAR(food->presentation().position.y, 24 + 12, 1e-9) << "it is lifted to the mouth";
    EXPECT_NEAR(pet->node().presentation().transform.scaleY, 0.95, 1e-9);
    advance(1.5);
    EXPECT_NEAR(food->presentation().position.y, 24 + 12, 1e-9) << "at each of four bites";
    advance(0.4);
    EXPECT_EQ(food->presentation().position.y, 24);
    EXPECT_EQ(pet->node().presentation().transform.scaleY, 1);
    advance(2);
    EXPECT_EQ(extras(), 1u) << "the food is its giver's to take away";
}

TEST_F(PetEffects, ASilhouetteKeepsTheShapeOfItsMoment) {
    pet->play(hopping);
    advance(0.15);  // the second frame
    const LayerRef shape = pet->silhouette(Color::white());
    ASSERT_EQ(pet->sprite().sublayers().size(), 1u);
    EXPECT_EQ(shape->frame(), pet->sprite().model().bounds);
    EXPECT_EQ(shape->model().background, Color::white());
    ASSERT_TRUE(shape->mask());
    EXPECT_NEAR(shape->mask()->model().contentsRect.x, 1.0 / 3, 1e-12);
    advance(0.1);
    EXPECT_NEAR(frameShown().x, 2.0 / 3, 1e-12);
    EXPECT_NEAR(shape->mask()->presentation().contentsRect.x, 1.0 / 3, 1e-12);
    shape->removeFromSuperlayer();
    EXPECT_TRUE(pet->sprite().sublayers().empty());
}

TEST_F(PetSpeech, MovesIntoSightWhenTheBodySetsOutForTheEdge) {
    change([](Terrain& t) { t.walkArea = {20, 980}; });
    pet->drag({500, 0});
    pet->showFace({.image = {}, .caption = "Something long enough to say"});
    const double half = dialog().model().bounds.width / 2;
    EXPECT_NEAR(dialog().frame().midX(), 0, 1e-9);
    pet->move({30, 0}, {.duration = 4}, {});
    advance(4);
    const double left = 30 + dialog().presentation().position.x - half;
    EXPECT_NEAR(left, 4, 1e-6);
    pet->move({500, 0}, {.duration = 4}, {});
    advance(4);
    pet->showFace({.image = {}, .caption = "Something long enough to say"});
    EXPECT_NEAR(dialog().frame().midX(), 0, 1e-9);
}

}  // namespace
}  // namespace quibbits
