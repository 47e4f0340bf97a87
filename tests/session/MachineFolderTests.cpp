// What the machine tells through the kernel's files: batteries and cameras.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/EventRunLoop.h"
#include "desktop/TemporaryFolder.h"
#include "desktop/session/Cameras.h"
#include "desktop/session/PowerSupplies.h"
#include "session/CameraNews.h"

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

TEST_F(MachineFolder, AllBatteriesAreOneSource) {
    EXPECT_THAT(batteries(), IsEmpty());
    supply("BAT1", {{"type", "Battery"}, {"capacity", "37"}, {"status", "Discharging"}});
    EXPECT_THAT(batteries(), ElementsAre(PowerSource{37, 100, "Battery Power"}));
    supply("BAT0", {{"type", "Battery"}, {"capacity", "100"}, {"status", "Full"}});
    supply("mouse", {{"type", "Battery"}, {"capacity", "3"}, {"scope", "Device"}});
    supply("BAT2", {{"type", "Battery"}, {"capacity", "9"}, {"present", "0"}});
    EXPECT_THAT(batteries(), ElementsAre(PowerSource{68, 100, "Battery Power"}))
        << "one discharges, and nothing else is told of their sizes";
    supply("BAT0", {{"energy_now", "2000000"}, {"energy_full", "20000000"}, {"capacity", "10"}});
    supply("BAT1", {{"energy_now", "58000000"}, {"energy_full", "60000000"}});
    EXPECT_THAT(batteries(), ElementsAre(PowerSource{75, 100, "Battery Power"})) << "60 of 80";
    supply("AC", {{"type", "Mains"}, {"online", "0"}});
    supply("ucsi", {{"type", "USB"}, {"online", "1"}});
    EXPECT_EQ(batteries()[0].state, "AC Power");
}

TEST_F(MachineFolder, NonsenseOfABatteryIsLeftOut) {
    struct Case {
        std::vector<std::pair<std::string, std::string>> files;
        std::optional<int> charge;
    };
    const Case cases[] = {
        {{{"capacity", "0"}}, 0},
        {{{"capacity", "101"}}, 100},  // of a battery that was measured anew
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

class CameraDevices : public CameraNews<std::vector<bool>> {
protected:
    CameraDevices() {
        for (const char* name : {"video0", "video2", "video10", "videos", "vide", "null"}) {
            write(devices / name, "");
        }
        cameras.emplace(loop, session::CameraRoots{.devices = devices.path()});
        cameras->onChange = [this] { told.push_back(cameras->inUse()); };
    }
    FileDescriptor open(const std::string& name) {
        return FileDescriptor(::open((devices / name).c_str(), O_RDONLY | O_CLOEXEC));
    }

    TemporaryFolder devices;
    std::optional<session::Cameras> cameras;
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
    EXPECT_THAT(session::Cameras(loop, {.devices = "/nonexistent"}).inUse(), IsEmpty());
}

}  // namespace
}  // namespace quibbits
