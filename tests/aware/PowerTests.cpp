#include <gtest/gtest.h>

#include "aware/Power.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

class PowerTests : public testing::Test {
protected:
    using Reading = std::pair<int, bool>;

    Reading readingOf(std::vector<PowerSource> sources) {
        computer.machine.sources = std::move(sources);
        const Power power(computer.machine, computer.runLoop, computer.defaults);
        return {power.level(), power.charging()};
    }
    /// Plays a script from now on and notes what is read after each step of a second.
    std::vector<Reading> played(const std::string& script, int steps) {
        computer.defaults.set("QuibPowerScript", script);
        computer.defaults.set("QuibPowerStep", 1.0);
        const Power power(computer.machine, computer.runLoop, computer.defaults);
        std::vector<Reading> readings;
        for (int i = 0; i < steps; ++i) {
            readings.emplace_back(power.level(), power.charging());
            computer.runLoop.advance(1);
        }
        return readings;
    }

    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
};

const std::string mains = "AC Power";
const std::string battery = "Battery Power";

TEST_F(PowerTests, TakesTheFirstSourceThatTellsItsCharge) {
    struct Row {
        std::vector<PowerSource> sources;
        Reading reading;
    };
    for (const auto& [sources, reading] : std::vector<Row>{
             {{}, {100, true}},
             {{{57, 100, battery}}, {57, false}},
             {{{57, 100, mains}}, {57, true}},
             {{{1999, 4000, mains}}, {49, true}},
             {{{3, 100, std::nullopt}}, {3, false}},
             {{{0, 100, battery}}, {0, false}},
             {{{std::nullopt, 100, battery}}, {100, true}},
             {{{50, std::nullopt, battery}}, {100, true}},
             {{{50, 0, battery}}, {100, true}},
             {{{50, -1, battery}, {20, 80, battery}, {90, 100, mains}}, {25, false}},
             {{{2000000000, 2000000000, "ac power"}}, {100, false}},
         }) {
        EXPECT_EQ(readingOf(sources), reading);
    }
}

TEST_F(PowerTests, TellsEveryChangeOfAPercentAndNothingElse) {
    computer.setBattery(55, false);
    Power power(computer.machine, computer.runLoop, computer.defaults);
    std::vector<Reading> told;
    power.onChange = [&] { told.emplace_back(power.level(), power.charging()); };
    computer.setBattery(55, false);
    computer.setBattery(57, false);
    computer.setBattery(57, false);
    computer.setBattery(57, true);
    computer.setBattery(std::nullopt, true);
    EXPECT_EQ(told, (std::vector<Reading>{{57, false}, {57, true}, {100, true}}));
}

TEST_F(PowerTests, PlaysAScriptOverAndOverInPlaceOfTheBattery) {
    computer.setBattery(33, false);
    EXPECT_EQ(played("80  50c 5", 5),
              (std::vector<Reading>{{80, false}, {50, true}, {5, false}, {80, false}, {50, true}}));
    EXPECT_EQ(
        played("c abc x 1c2 99999999999", 5),
        (std::vector<Reading>{{100, true}, {100, true}, {100, false}, {12, false}, {100, false}}));
    for (const char* none : {"", "   "}) {
        EXPECT_EQ(played(none, 2), (std::vector<Reading>{{33, false}, {33, false}}));
    }
}

TEST_F(PowerTests, TellsTheStepsOfAScriptAndIgnoresTheBatteryMeanwhile) {
    computer.defaults.set("QuibPowerScript", std::string("80 80 20c"));
    computer.defaults.set("QuibPowerStep", -3.0);
    Power power(computer.machine, computer.runLoop, computer.defaults);
    int told = 0;
    power.onChange = [&] { ++told; };
    computer.runLoop.advance(12);
    computer.setBattery(1, false);
    EXPECT_EQ(told, 0);
    computer.runLoop.advance(11.9);
    EXPECT_EQ(power.level(), 80);
    computer.runLoop.advance(0.2);
    EXPECT_EQ(power.level(), 20) << "a step of no use is 12 seconds";
    EXPECT_EQ(told, 1);
}

TEST_F(PowerTests, EndsItsScriptAndItsListeningWithItself) {
    computer.defaults.set("QuibPowerScript", std::string("80 20"));
    std::make_unique<Power>(computer.machine, computer.runLoop, computer.defaults).reset();
    EXPECT_FALSE(computer.machine.powerChanged.hasListeners());
    computer.runLoop.advance(100);
    EXPECT_EQ(computer.runLoop.pendingJobs(), 0u);
}

}  // namespace
}  // namespace quibbits
