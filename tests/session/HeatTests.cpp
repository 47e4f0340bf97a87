// How hot the machine runs, by the kernel's files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/TemporaryFolder.h"
#include "desktop/session/Thermometers.h"
#include "sim/VirtualRunLoop.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using enum ThermalState;

class HeatOfTheMachine : public testing::Test {
protected:
    using Files = std::vector<std::pair<std::string, std::string>>;
    void fill(const std::string& folder, const Files& files) {
        for (const auto& [name, text] : files) write(sys / folder / name, text + "\n");
    }
    void zone(const std::string& temperature) {
        fill("class/thermal/thermal_zone0", {{"temp", temperature},
                                             {"trip_point_0_type", "critical"},
                                             {"trip_point_0_temp", "100000"},
                                             {"trip_point_1_type", "hot"},
                                             {"trip_point_1_temp", "95000"},
                                             {"trip_point_2_type", "passive"},
                                             {"trip_point_2_temp", "85000"},
                                             {"trip_point_3_type", "active"},
                                             {"trip_point_3_temp", "40000"}});
    }
    void chip(const Files& files) { fill("class/hwmon/hwmon0", files); }
    /// Reads what is there until it is settled, the machine having been cool before.
    ThermalState settledAfter(const std::function<void(const std::string&)>& show,
                              const std::string& temperature) {
        show("30000");
        VirtualRunLoop loop{Date{}};
        session::Thermometers thermometers(loop, sys.path());
        EXPECT_EQ(thermometers.state(), nominal);
        thermometers.start();
        show(temperature);
        loop.advance(100);
        return thermometers.state();
    }

    TemporaryFolder sys;
};

TEST_F(HeatOfTheMachine, AZoneIsAsHotAsTheTripPointThatItReached) {
    VirtualRunLoop loop{Date{}};
    EXPECT_EQ(session::Thermometers(loop, sys.path()).state(), nominal) << "no thermometer";
    const std::pair<const char*, ThermalState> cases[] = {
        {"84999", nominal},   {"85000", fair},     {"95000", serious}, {"100000", critical},
        {"-273000", nominal}, {"999999", nominal}, {"", nominal},
    };
    for (const auto& [temperature, expected] : cases) {
        EXPECT_EQ(settledAfter([this](const auto& t) { zone(t); }, temperature), expected)
            << temperature;
    }
}

TEST_F(HeatOfTheMachine, AChipIsMeasuredByItsOwnLimitsAndIsCriticalOnlyWhereItSaysSo) {
    struct Case {
        const char* name;
        Files files;
        const char* input;
        ThermalState expected;
    };
    const Case cases[] = {
        {"below", {{"temp1_max", "80000"}, {"temp1_crit", "100000"}}, "79999", nominal},
        {"above the first", {{"temp1_max", "80000"}, {"temp1_crit", "100000"}}, "80000", fair},
        {"a processor at work", {{"temp1_max", "100000"}, {"temp1_crit", "100000"}}, "91000", fair},
        {"close to the end", {{"temp1_max", "80000"}, {"temp1_crit", "100000"}}, "95000", serious},
        {"where it slows down",
         {{"temp1_max", "100000"}, {"temp1_crit", "100000"}},
         "100000",
         serious},
        {"an alarm",
         {{"temp1_max", "100000"}, {"temp1_crit", "100000"}, {"temp1_crit_alarm", "1"}},
         "100000",
         critical},
        {"an alarm of yesterday",
         {{"temp1_max", "100000"}, {"temp1_crit", "100000"}, {"temp1_crit_alarm", "1"}},
         "60000",
         nominal},
        {"limits without sense",
         {{"temp1_max", "65261850"}, {"temp1_crit", "0"}},
         "90000",
         nominal},
        {"no end is known", {{"temp1_max", "80000"}, {"temp1_crit", "0"}}, "120000", fair},
        {"nothing is connected",
         {{"temp1_crit", "125000"}, {"temp1_fault", "1"}, {"temp1_crit_alarm", "1"}},
         "127000",
         nominal},
        {"the board's chip", {{"name", "nct6775"}, {"temp1_max", "80000"}}, "95000", nominal},
    };
    for (const auto& [name, files, input, expected] : cases) {
        std::filesystem::remove_all(sys / "class");
        chip(files);
        EXPECT_EQ(settledAfter(
                      [this](const auto& t) {
                          chip({{"temp1_input", t}});
                      },
                      input),
                  expected)
            << name;
    }
}

TEST_F(HeatOfTheMachine, ASensorThatNeverMovesIsStuck) {
    chip({{"temp1_max", "70000"}, {"temp1_input", "95000"}});
    VirtualRunLoop loop{Date{}};
    session::Thermometers thermometers(loop, sys.path());
    thermometers.start();
    loop.advance(3600);
    EXPECT_EQ(thermometers.state(), nominal);
    chip({{"temp1_input", "95250"}});
    loop.advance(100);
    EXPECT_EQ(thermometers.state(), fair) << "it was hot from the beginning";
}

TEST_F(HeatOfTheMachine, BrokenAndSleepingThermometersDoNotHideTheOthers) {
    zone("nonsense");
    fill("class/thermal/thermal_zone1", {{"temp", "86000"}});  // without trip points
    fill(
        "class/thermal/thermal_zone2",
        {{"mode", "disabled"}, {"trip_point_0_type", "critical"}, {"trip_point_0_temp", "100000"}});
    fill("class/hwmon/hwmon1", {{"temp1_max", "70000"}});
    fill("class/hwmon/hwmon1/device/power", {{"runtime_status", "suspended"}});
    const auto heatUp = [this](const std::string& t) {
        fill("class/thermal/thermal_zone2", {{"temp", t}});
        fill("class/hwmon/hwmon1", {{"temp1_input", t}});
    };
    EXPECT_EQ(settledAfter(heatUp, "99000"), nominal);
    fill("class/hwmon/hwmon2", {{"temp3_max", "70000"}});
    EXPECT_EQ(settledAfter(
                  [this](const auto& t) {
                      fill("class/hwmon/hwmon2", {{"temp3_input", t}});
                  },
                  "71000"),
              fair);
}

TEST_F(HeatOfTheMachine, ChangesAreToldOnceWhenTheyLastAndOnlyWhileSomebodyListens) {
    VirtualRunLoop loop{Date{}};
    session::Thermometers thermometers(loop, sys.path());
    int changes = 0;
    thermometers.onChange = [&] { ++changes; };
    zone("20000");
    loop.advance(3600);
    thermometers.start();
    zone("86000");
    loop.advance(45);
    EXPECT_EQ(changes, 0) << "one reading is no news";
    loop.advance(45);
    EXPECT_EQ(changes, 1);
    loop.advance(600);
    EXPECT_EQ(changes, 1);
    thermometers.stop();
    zone("20000");
    loop.advance(3600);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(thermometers.state(), fair);
}

TEST_F(HeatOfTheMachine, AboutALimitItDoesNotFlutter) {
    VirtualRunLoop loop{Date{}};
    session::Thermometers thermometers(loop, sys.path());
    std::vector<ThermalState> told;
    thermometers.onChange = [&] { told.push_back(thermometers.state()); };
    zone("30000");
    thermometers.start();
    for (int i = 0; i < 60; ++i) {
        zone(i % 2 == 0 ? "96000" : "94000");
        loop.advance(60);
    }
    zone("90000");
    loop.advance(200);
    EXPECT_THAT(told, ElementsAre(serious)) << "95 degrees are the limit";
    zone("89999");
    loop.advance(200);
    zone("20000");
    loop.advance(200);
    EXPECT_THAT(told, ElementsAre(serious, fair, nominal));
}

}  // namespace
}  // namespace quibbits
