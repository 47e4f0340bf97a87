#include <gtest/gtest.h>

#include "sim/SimulatedComputer.h"
#include "stage/StageWindow.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

TEST(AFilmThatFillsAnotherScreen, DoesNotDriveCreaturesBehindTheWindowsOfTheirOwn) {
    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer({}, sheets, text);
    computer.defaults.set("overApps", true);
    StageWindow stage(computer.panels(), computer.computer(), *computer.screens.main());
    struct Case {
        const char* name;
        Rect film;
        bool raised;
    };
    for (const auto& [name, film, raised] : {
             Case{"on this screen", {0, 0, 1440, 900}, false},
             Case{"on the one to the right, of the same size", {1440, 0, 1440, 900}, true},
             Case{"on the one to the left", {-1440, 0, 1440, 900}, true},
             Case{"over both", {-1440, 0, 2880, 900}, false},
         }) {
        computer.putWindow("film", {.process = 7, .frame = film});
        computer.bringToFront({.id = "player", .process = 7});
        EXPECT_EQ(stage.isRaised(), raised) << name;
        computer.closeWindow("film");
    }
}

}  // namespace
}  // namespace quibbits
