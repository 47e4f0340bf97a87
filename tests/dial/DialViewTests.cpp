#include <gtest/gtest.h>

#include "FakeParty.h"
#include "body/Pixels.h"
#include "dial/DialView.h"

namespace quibbits {
namespace {

std::string textOf(const Layer& layer) {
    const auto* text = std::get_if<Text>(&layer.model().content);
    return text ? text->text.runs.front().text : "";
}

class TheDial : public ::testing::Test {
protected:
    DialView& show(std::vector<FakeCreature> creatures) {
        party_.emplace(std::move(creatures));
        view_.emplace(desk_.computer.layers, desk_.text, party_->members());
        return *view_;
    }
    const Layer& cardPart(std::size_t index) const {
        return *view_->cardLayer()->sublayers()[index];
    }
    std::vector<Item> tray() const {
        std::vector<Item> items;
        for (const auto& entry : view_->items()) items.push_back(entry.item);
        return items;
    }
    void hoverSlot(int index) { view_->hover(DialShape::slotCenter(index)); }

    /// Every text below the layer lies within its own bounds.
    void expectTextsFit(const Layer& layer) {
        if (const auto* text = std::get_if<Text>(&layer.model().content)) {
            ++texts_;
            const Size bounds = layer.model().bounds.size();
            std::size_t from = 0;
            const std::string& words = text->text.runs.front().text;
            for (std::size_t end = 0; end < words.size(); from = end + 1) {
                end = std::min(words.find('\n', from), words.size());
                StyledText line = text->text;
                line.runs.front().text = words.substr(from, end - from);
                EXPECT_LE(desk_.text.measure(line, {9999, 9999}).width, bounds.width + 0.01)
                    << words;
            }
        }
        for (const auto& sublayer : layer.sublayers()) expectTextsFit(*sublayer);
    }

    Desk desk_;
    std::optional<FakeParty> party_;
    std::optional<DialView> view_;
    int texts_ = 0;
};

TEST_F(TheDial, TellsOnItsPlateWhatThePointerIsOn) {
    show({{.stats = sparrelStats(), .isOut = true}, {.stats = eggStats()}});
    FakeCreature& first = party_->creatures.front();
    const auto plate = [this] {
        return textOf(view_->nameLayer()) + "|" + textOf(view_->statusLayer());
    };
    const auto unfolded = [&] {
        std::string text = plate();
        if (const auto fold = text.find('\n'); fold != std::string::npos) {
            text.replace(fold, 1, " · ");
        }
        return text;
    };
    EXPECT_EQ(plate(), "Party|Drag a berry onto it");
    hoverSlot(0);
    EXPECT_EQ(unfolded(), "Sparrel|Out · click to return");
    hoverSlot(1);
    EXPECT_EQ(unfolded(), "Egg|Something's moving · click to hatch");
    hoverSlot(4);
    EXPECT_EQ(plate(), "Empty slot|More Quibbit soon");
    first.isOut = false;  // the words are asked for afresh
    hoverSlot(0);
    EXPECT_EQ(unfolded(), "Sparrel|In its ball · click to send out");
    view_->hover({158, 60});
    EXPECT_EQ(plate(), "Party|Drag a berry onto it");

    show({{.stats = eggStats()}, {.stats = sparrelStats()}});
    EXPECT_EQ(plate(), "Party|2 of 6");
}

TEST_F(TheDial, LightsTheSlotUnderThePointerAndOnlyThatOne) {
    show({{.stats = sparrelStats(), .isOut = true}, {.stats = eggStats()}});
    hoverSlot(1);
    EXPECT_EQ(view_->hovered(), 1);
    const auto& lit = view_->slotLayers(1);
    EXPECT_EQ(lit.disc->model().borderWidth, 2);
    EXPECT_EQ(lit.disc->model().borderColor, (Color{1.0, 0.85, 0.3, 1.0}));
    EXPECT_EQ(lit.container->model().transform.scaleX, 1.16);
    const Animation* spring = lit.container->animation("hover");
    ASSERT_TRUE(spring);
    EXPECT_EQ(spring->timing.duration, std::get<SpringMotion>(spring->motion).settlingDuration());
    const auto& other = view_->slotLayers(0);
    EXPECT_EQ(other.disc->model().borderWidth, 1);
    EXPECT_EQ(other.disc->model().borderColor, Color::white(0.16));
    EXPECT_EQ(other.container->model().transform.scaleX, 1);

    desk_.computer.runLoop.advance(0.05);  // in mid-swing it goes back from where it is
    const double seen = lit.container->presentation().transform.scaleX;
    EXPECT_GT(seen, 1.0);
    view_->hover({0, 0});
    EXPECT_NEAR(lit.container->presentation().transform.scaleX, seen, 1e-9);
    desk_.computer.runLoop.advance(3);
    EXPECT_FALSE(lit.container->hasAnimations());
    EXPECT_EQ(lit.disc->presentation().borderWidth, 1);
}

TEST_F(TheDial, ShowsWhoIsInItsBallAndWhichSlotsAreEmpty) {
    show({{.stats = sparrelStats(), .isOut = true},
          {.stats = sparrelStats(), .isOut = false},
          {.stats = eggStats(), .isOut = false}});
    const auto portrait = [this](int slot) {
        return view_->slotLayers(slot).disc->sublayers().front()->model();
    };
    const auto badges = [this](int slot) {
        return view_->slotLayers(slot).container->sublayers().size() - 1;
    };
    EXPECT_EQ(portrait(0).bounds, (Rect{0, 0, 26, 26}));
    EXPECT_EQ(portrait(0).position, (Point{23, 23}));
    EXPECT_EQ(portrait(0).contentsRect, (Rect{0, 0, 0.5, 1})) << "the first frame";
    EXPECT_EQ(portrait(0).opacity, 1);
    EXPECT_EQ(badges(0), 0u);
    EXPECT_EQ(portrait(1).opacity, 0.45);
    ASSERT_EQ(badges(1), 1u);
    EXPECT_EQ(view_->slotLayers(1).container->sublayers().back()->frame(), (Rect{31, -1, 16, 16}));
    EXPECT_EQ(portrait(2).opacity, 1) << "an egg is in no ball";
    EXPECT_EQ(badges(2), 0u);
    for (int i = 3; i < 6; ++i) {
        const LayerProperties inside = portrait(i);
        const auto* circle = std::get_if<Shape>(&inside.content);
        ASSERT_TRUE(circle);
        EXPECT_EQ(circle->dash, (std::vector<double>{3, 4}));
    }
}

TEST_F(TheDial, TellsTheCreaturesNumbersInTheCardsHeading) {
    struct Row {
        const char* heading;
        PetStats stats;
    };
    PetStats plain = sparrelStats();
    PetStats shiny = plain;
    shiny.shiny = true;
    PetStats ill = shiny;
    ill.shimmerpox = PetStats::Shimmerpox::infected;
    PetStats cured = plain;
    cured.shimmerpox = PetStats::Shimmerpox::cured;
    PetStats grown = plain;
    grown.level = 100;
    grown.levelProgress = 1;
    for (const auto& [heading, stats] : std::vector<Row>{
             {"Sparrel ♀  ·  Lv 23  ·  45%", plain},
             {"Sparrel ♀ ★  ·  Lv 23  ·  45%", shiny},
             {"Sparrel ♀ ★ · SHPX  ·  Lv 23  ·  45%", ill},
             {"Sparrel ♀  ·  Lv 23  ·  45%", cured},
             {"Sparrel ♀  ·  Lv 100  ·  100%", grown},
         }) {
        show({{.stats = stats, .isOut = true}});
        std::string shown = textOf(cardPart(1));
        if (const auto fold = shown.find('\n'); fold != std::string::npos) {
            shown.replace(fold, 1, "  ·  ");
        }
        EXPECT_EQ(shown, heading);
    }
}

TEST_F(TheDial, KeepsEveryTextInsideItsFrame) {
    PetStats longest = sparrelStats();
    longest.name = "Coralian Thrummet";
    longest.shiny = true;
    longest.shimmerpox = PetStats::Shimmerpox::infected;
    longest.level = 100;
    longest.levelProgress = 1;
    show({{.stats = longest, .isOut = true}, {.stats = sparrelStats()}, {.stats = eggStats()}});
    for (int slot = 0; slot < 6; ++slot) {
        hoverSlot(slot);
        expectTextsFit(*view_->layer());
    }
    EXPECT_EQ(texts_, 6 * 6);
    EXPECT_NE(textOf(cardPart(1)).find("SHPX\nLv 100"), std::string::npos)
        << "a heading that is far too long goes on two lines";
}

TEST_F(TheDial, ShowsTheFirstCreatureThatIsOutOrElseTheFirst) {
    PetStats other = sparrelStats();
    other.name = "Gloamer";
    show({{.stats = sparrelStats()}, {.stats = other, .isOut = true}});
    EXPECT_EQ(textOf(cardPart(1)).find("Gloamer"), 0u);
    show({{.stats = sparrelStats()}, {.stats = other}});
    EXPECT_EQ(textOf(cardPart(1)).find("Sparrel"), 0u);

    show({{.stats = eggStats()}, {.stats = other}});
    EXPECT_EQ(textOf(cardPart(1)), "Egg");
    EXPECT_EQ(textOf(cardPart(2)), "Something is moving inside!\nClick it above to hatch it.");
    EXPECT_EQ(view_->cardLayer()->sublayers().size(), 3u) << "no bars and no tray";
    EXPECT_TRUE(view_->items().empty());

    show({});
    EXPECT_FALSE(view_->cardLayer());
}

TEST_F(TheDial, FillsTheBarsByWhatTheCreatureHasLeft) {
    PetStats stats = sparrelStats();
    stats.friendship = 0;
    stats.hunger = 0.25;
    stats.energy = 1.2;
    show({{.stats = stats, .isOut = true}});
    const double expected[] = {0.04 * 108, 0.75 * 108, 108};
    const char* labels[] = {"Friendship", "Belly", "Energy"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(textOf(cardPart(2 + 2 * i)), labels[i]);
        const Layer& bar = cardPart(3 + 2 * i);
        EXPECT_EQ(bar.frame(), (Rect{162, 70 - 11.0 * static_cast<double>(i), 108, 4}));
        EXPECT_NEAR(bar.sublayers().front()->frame().width, expected[i], 1e-9) << labels[i];
    }
}

TEST_F(TheDial, OffersBerriesAndWhatSomebodyCanEvolveWithNow) {
    using enum Item;
    const std::vector<Item> berries{azurine, blushum, cinnet, hazzel, myrrow, sourling};
    PetStats ready = sparrelStats();
    ready.canEvolve = true;
    PetStats ghost = ready;
    ghost.evolveItem = tetherLoop;

    show({{.stats = sparrelStats(), .isOut = true}});
    EXPECT_EQ(tray(), berries) << "it cannot evolve yet";
    EXPECT_EQ(view_->items()[2].rect, (Rect{30 + 12 + 64, 14, 26, 26}));

    auto withPebble = berries;
    withPebble.push_back(stormPebble);
    show({{.stats = ready}, {.stats = ready, .isOut = true}});
    EXPECT_EQ(tray(), withPebble) << "one tile for two who want it";
    EXPECT_EQ(view_->items()[6].rect.x, 30 + 12 + 192);

    show({{.stats = ghost}, {.stats = ready}});
    EXPECT_EQ(tray(), std::vector<Item>(allItems.begin(), allItems.end()));
    for (const auto& entry : view_->items()) EXPECT_LE(entry.rect.maxX(), 286 - 12);
}

TEST_F(TheDial, PopsItsSlotsUpOneAfterTheOther) {
    show({{.stats = sparrelStats(), .isOut = true}});
    view_->appear();
    const auto scale = [this](int slot) {
        return view_->slotLayers(slot).container->presentation().transform.scaleX;
    };
    EXPECT_EQ(view_->layer()->presentation().opacity, 0);
    EXPECT_NEAR(scale(0), 0.4, 1e-9);
    EXPECT_NEAR(scale(5), 0.4, 1e-9);
    desk_.computer.runLoop.advance(0.14);
    EXPECT_GT(scale(0), 0.7);
    EXPECT_NEAR(scale(5), 0.4, 1e-9) << "its turn comes after 0.15 s";
    desk_.computer.runLoop.advance(3);
    EXPECT_EQ(scale(5), 1);
    EXPECT_EQ(view_->layer()->presentation().opacity, 1);
}

TEST_F(TheDial, LetsAnItemBeDraggedOutOnlyFromWhereItLies) {
    show({{.stats = sparrelStats(), .isOut = true}});
    std::vector<ItemDrag> drags;
    std::vector<std::optional<Point>> steps;
    view_->onItemDragBegan = [&](ItemDrag drag) { drags.push_back(std::move(drag)); };
    view_->onDrag = [&](std::optional<Point> at) { steps.push_back(at); };

    view_->mouseDragged();  // nothing was pressed
    view_->mouseDown({40, 60});
    view_->mouseDragged();
    EXPECT_TRUE(drags.empty());

    view_->mouseDown(view_->items()[1].rect.center());
    view_->mouseDragged();
    view_->mouseDragged();
    ASSERT_EQ(drags.size(), 1u);
    EXPECT_EQ(drags[0].item, "blushum");
    EXPECT_EQ(drags[0].image.width(), 4 * Pixels::item(Item::blushum).width());
    EXPECT_EQ(drags[0].size, (Size{32, 32}));
    drags[0].onMove({7, 8});
    drags[0].onEnd();
    EXPECT_EQ(steps, (std::vector<std::optional<Point>>{Point{7, 8}, std::nullopt}));
}

}  // namespace
}  // namespace quibbits
