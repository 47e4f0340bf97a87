#include <gtest/gtest.h>

#include "sim/SimulatedComputer.h"
#include "stage/Footing.h"
#include "stage/StageWindow.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

TEST(TheLowerEdgeOfTheScreen, IsWhatThePanelsThereMakeOfIt) {
    const auto row = [](double lo, double hi, double y) { return Ground{{lo, hi}, y, true}; };
    struct Case {
        const char* name;
        std::vector<Rect> panels;
        Range room;
        std::vector<Ground> rows;
    };
    const std::vector<Case> cases{
        {"no panel", {}, {0, 1280}, {row(0, 1280, 0)}},
        {"a dock in the middle",
         {{440, 0, 400, 50}},
         {0, 1280},
         {row(0, 440, 0), row(440, 840, 50), row(840, 1280, 0)}},
        {"a bar from side to side",
         {{0, 0, 1280, 40}},
         {0, 1280},
         {row(0, 0, 0), row(0, 1280, 40), row(1280, 1280, 0)}},
        {"a dock above a bar, the bar last",
         {{440, 40, 400, 50}, {0, 0, 1280, 40}},
         {0, 1280},
         {row(0, 0, 0), row(0, 440, 40), row(440, 840, 90), row(840, 1280, 40),
          row(1280, 1280, 0)}},
        {"a panel in each corner, each of its own height",
         {{980, 0, 300, 30}, {0, 0, 400, 40}},
         {0, 1280},
         {row(0, 0, 0), row(0, 400, 40), row(400, 980, 0), row(980, 1280, 30), row(1280, 1280, 0)}},
        {"two of one height side by side",
         {{0, 0, 640, 40}, {640, 0, 640, 40}},
         {0, 1280},
         {row(0, 0, 0), row(0, 1280, 40), row(1280, 1280, 0)}},
        {"one along the left side", {{0, 0, 60, 800}}, {60, 1280}, {row(60, 1280, 0)}},
        {"along both sides, above a bar",
         {{0, 30, 60, 770}, {1200, 30, 80, 770}, {0, 0, 1280, 30}},
         {60, 1200},
         {row(60, 60, 0), row(60, 1200, 30), row(1200, 1200, 0)}},
        {"along a side, with room for a body beneath",
         {{0, 200, 60, 500}},
         {0, 1280},
         {row(0, 1280, 0)}},
        {"floating a little over the edge",
         {{340, 6, 600, 44}},
         {0, 1280},
         {row(0, 340, 0), row(340, 940, 50), row(940, 1280, 0)}},
        {"at the top, or in mid-air",
         {{0, 770, 1280, 30}, {300, 300, 200, 100}},
         {0, 1280},
         {row(0, 1280, 0)}},
        {"on another monitor", {{-500, 0, 500, 40}}, {0, 1280}, {row(0, 1280, 0)}},
    };
    for (const auto& [name, panels, room, rows] : cases) {
        const Footing footing = footingOf({1280, 800}, panels);
        EXPECT_EQ(footing.room, room) << name;
        EXPECT_EQ(footing.rows, rows) << name;
    }
}

TEST(APanelThatComesUnderACreature, BecomesItsGroundAndOneBesideItBoundsItsRoom) {
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer({}, sheets, text);
    Pet pet(computer.layers, text, 3);
    StageWindow stage(computer.panels(), computer.computer(), *computer.screens.main());
    stage.add(pet, 700);
    int told = 0;
    pet.listen({.onGroundChanged = [&] { ++told; }});

    computer.setPanels({{0, 0, 1440, 30}, {500, 30, 400, 50}});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(pet.floorY(700), 80);
    EXPECT_EQ(pet.floorY(100), 30);
    EXPECT_EQ(pet.walkArea(), (Range{20, 1420}));

    computer.setPanels({{0, 0, 64, 900}});
    EXPECT_EQ(pet.floorY(700), 0);
    EXPECT_EQ(pet.walkArea(), (Range{84, 1420}));
    for (const Ground& spot : pet.stage().openSpots()) EXPECT_GE(spot.span.lo, 64);

    computer.setPanels({});
    EXPECT_EQ(pet.walkArea(), (Range{20, 1420}));
}

}  // namespace
}  // namespace quibbits
