// What the machine tells through the kernel's files: batteries, heat, cameras.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/EventRunLoop.h"
#include "desktop/TemporaryFolder.h"
#include "desktop/session/Cameras.h"
#include "desktop/session/PowerSupplies.h"
#include "desktop/session/Thermometers.h"
#include "sim/VirtualRunLoop.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MachineFolder : public testing::Test {
protected:
    /// Fills a folder: pairs of a file's name and its line.
    void fill(const std::string& folder,
              const std::vector<std::pair<std::string, std::string>>& files) {
        for (const auto& [name, text] : files) write(sys / folder / name, text + "\n");
    }
    void supply(const std::string& name,
                const std::vector<std::pair<std::string, std::string>>& files) {
        fill("class/power_supply/" + name, files);
    }
    std::vector<PowerSource> batteries() const { return session::batteriesIn(sys.path()); }

    TemporaryFolder sys;
};

TEST_F(MachineFolder, EveryBatteryIsASourceInTheOrderOfNames) {
    EXPECT_THAT(batteries(), IsEmpty());
    supply("BAT1", {{"type", "Battery"}, {"capacity", "37"}, {"status", "Discharging"}});
    supply("BAT0", {{"type", "Battery"}, {"capacity", "100"}, {"status", "Full"}});
    supply("mouse", {{"type", "Battery"}, {"capacity", "3"}, {"scope", "Device"}});
    supply("BAT2", {{"type", "Battery"}, {"capacity", "9"}, {"present", "0"}});
    EXPECT_THAT(batteries(), ElementsAre(PowerSource{100, 100, "AC Power"},
                                         PowerSource{37, 100, "Battery Power"}));
    supply("AC", {{"type", "Mains"}, {"online", "0"}});
    EXPECT_EQ(batteries()[0].state, "Battery Power") << "the charger is known to be out";
    supply("ucsi", {{"type", "USB"}, {"online", "1"}});
    EXPECT_EQ(batteries()[1].state, "AC Power");
}

TEST_F(MachineFolder, NonsenseOfABatteryIsLeftOut) {
    struct Case {
        std::vector<std::pair<std::string, std::string>> files;
        std::optional<int> charge;
    };
    const Case cases[] = {
        {{{"capacity", "0"}}, 0},
        {{{"capacity", "101"}}, std::nullopt},
        {{{"capacity", "-1"}}, std::nullopt},
        {{{"capacity", "much"}}, std::nullopt},
        {{{"capacity", "50%"}}, std::nullopt},
        {{}, std::nullopt},
        {{{"energy_now", "21000000"}, {"energy_full", "42000000"}}, 50},
        {{{"charge_now", "500"}, {"charge_full", "400"}}, 100},
        {{{"charge_now", "500"}, {"charge_full", "0"}}, std::nullopt},
    };
    int number = 0;
    for (const auto& [files, charge] : cases) {
        TemporaryFolder one;
        const auto supply = one / "class/power_supply/BAT0";
        write(supply / "type", "Battery\n");
        for (const auto& [name, text] : files) write(supply / name, text + "\n");
        EXPECT_EQ(session::batteriesIn(one.path()).at(0).currentCapacity, charge)
            << "case " << number;
        ++number;
    }
}

class Heat : public MachineFolder {
protected:
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
    ThermalState state() const {
        VirtualRunLoop loop{Date{}};
        session::Thermometers thermometers(loop, sys.path());
        const auto first = thermometers.state();
        int changes = 0;
        thermometers.onChange = [&] { ++changes; };
        thermometers.start();
        EXPECT_EQ(changes, 0) << "how it was from the beginning is no news";
        EXPECT_EQ(thermometers.state(), first);
        return first;
    }
};

TEST_F(Heat, AZoneIsAsHotAsTheTripPointThatItReached) {
    EXPECT_EQ(state(), ThermalState::nominal) << "no thermometer";
    const std::pair<const char*, ThermalState> cases[] = {
        {"84999", ThermalState::nominal},   {"85000", ThermalState::fair},
        {"95000", ThermalState::serious},   {"100000", ThermalState::critical},
        {"-273000", ThermalState::nominal}, {"999999", ThermalState::nominal},
        {"", ThermalState::nominal},
    };
    for (const auto& [temperature, expected] : cases) {
        zone(temperature);
        EXPECT_EQ(state(), expected) << temperature;
    }
}

TEST_F(Heat, AChipIsMeasuredByItsOwnLimits) {
    struct Case {
        const char *max, *critical, *input;
        ThermalState expected;
    };
    const Case cases[] = {
        {"80000", "100000", "79999", ThermalState::nominal},
        {"80000", "100000", "80000", ThermalState::fair},
        {"80000", "100000", "90000", ThermalState::serious},
        {"80000", "100000", "100000", ThermalState::critical},
        {"100000", "100000", "91000",
         ThermalState::serious},                            // half-way, as no lower limit is known
        {"65261850", "0", "90000", ThermalState::nominal},  // neither limit makes sense
        {"80000", "0", "120000", ThermalState::fair},
    };
    for (const auto& [max, critical, input, expected] : cases) {
        fill("class/hwmon/hwmon0",
             {{"temp1_max", max}, {"temp1_crit", critical}, {"temp1_input", input}});
        EXPECT_EQ(state(), expected) << max << " " << critical << " " << input;
    }
}

TEST_F(Heat, BrokenAndSleepingThermometersDoNotHideTheOthers) {
    zone("nonsense");
    fill("class/thermal/thermal_zone1", {{"temp", "86000"}});  // without trip points
    fill("class/thermal/thermal_zone2", {{"mode", "disabled"},
                                         {"temp", "150000"},
                                         {"trip_point_0_type", "critical"},
                                         {"trip_point_0_temp", "100000"}});
    fill("class/hwmon/hwmon1", {{"temp1_max", "70000"}, {"temp1_input", "99000"}});
    fill("class/hwmon/hwmon1/device/power", {{"runtime_status", "suspended"}});
    EXPECT_EQ(state(), ThermalState::nominal);
    fill("class/hwmon/hwmon2", {{"temp3_max", "70000"}, {"temp3_input", "71000"}});
    EXPECT_EQ(state(), ThermalState::fair);
}

TEST_F(Heat, ChangesAreToldOnceAndOnlyWhileSomebodyListens) {
    VirtualRunLoop loop{Date{}};
    session::Thermometers thermometers(loop, sys.path());
    int changes = 0;
    thermometers.onChange = [&] { ++changes; };
    zone("20000");
    loop.advance(3600);
    thermometers.start();
    zone("86000");
    loop.advance(29);
    EXPECT_EQ(changes, 0) << "not read more often than every half minute";
    loop.advance(20);
    EXPECT_EQ(changes, 1);
    loop.advance(600);
    EXPECT_EQ(changes, 1);
    thermometers.stop();
    zone("20000");
    loop.advance(3600);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(thermometers.state(), ThermalState::fair);
}

class CameraDevices : public testing::Test {
protected:
    CameraDevices() {
        for (const char* name : {"video0", "video2", "video10", "videos", "vide", "null"}) {
            write(devices / name, "");
        }
        cameras.emplace(loop, devices.path());
        cameras->onChange = [this] { told.push_back(cameras->inUse()); };
    }
    FileDescriptor open(const std::string& name) {
        return FileDescriptor(::open((devices / name).c_str(), O_RDONLY | O_CLOEXEC));
    }
    void letPass(Seconds time) {
        for (const Instant end = loop.now() + time; loop.now() < end;) loop.turn(0.05);
    }
    bool isTold(std::size_t times) {
        for (const Instant end = loop.now() + 60; told.size() < times && loop.now() < end;) {
            loop.turn(0.05);
        }
        return told.size() >= times;
    }

    EventRunLoop loop;
    TemporaryFolder devices;
    std::optional<session::Cameras> cameras;
    std::vector<std::vector<bool>> told;
};

TEST_F(CameraDevices, ACameraIsInUseFromItsFirstOpeningToItsLastClosing) {
    EXPECT_THAT(cameras->inUse(), ElementsAre(false, false, false));
    auto first = open("video10");
    auto second = open("video10");  // so soon that the kernel tells of one opening
    EXPECT_TRUE(isTold(1));
    first = {};
    letPass(1.2);
    EXPECT_THAT(told, ElementsAre(ElementsAre(false, false, true)));
    second = {};
    std::filesystem::remove(devices / "video0");
    EXPECT_TRUE(isTold(2));
    letPass(1.2);
    ASSERT_EQ(told.size(), 2U);
    EXPECT_THAT(told[1], ElementsAre(false, false, false));
}

TEST_F(CameraDevices, TwoUsesThatEndInOneMomentAreBothOver) {
    auto first = open("video0");
    letPass(0.1);
    auto second = open("video0");
    EXPECT_TRUE(isTold(1));
    first = {};
    second = {};
    EXPECT_TRUE(isTold(2));
    EXPECT_THAT(told,
                ElementsAre(ElementsAre(true, false, false), ElementsAre(false, false, false)));
}

TEST_F(CameraDevices, AQuickLookIntoACameraIsNoUse) {
    for (int i = 0; i < 5; ++i) {
        open("video0");
        letPass(0.05);
    }
    letPass(1.2);
    EXPECT_THAT(told, IsEmpty());
    write(devices / "video3", "");  // plugged in later
    const auto late = open("video3");
    letPass(1.2);
    EXPECT_THAT(told, IsEmpty());
}

TEST(Cameras, AFolderWithoutCamerasHasNone) {
    EventRunLoop loop;
    EXPECT_THAT(session::Cameras(loop, "/nonexistent").inUse(), IsEmpty());
}

}  // namespace
}  // namespace quibbits
