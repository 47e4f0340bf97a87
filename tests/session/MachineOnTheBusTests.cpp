// What the machine tells through the message bus and the kernel's sockets.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/LinuxMachine.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* upower = "org.freedesktop.UPower";
constexpr const char* upowerPath = "/org/freedesktop/UPower";
constexpr const char* display = "/org/freedesktop/UPower/devices/DisplayDevice";
constexpr const char* deviceInterface = "org.freedesktop.UPower.Device";
constexpr const char* manager = "org.freedesktop.NetworkManager";
constexpr const char* managerPath = "/org/freedesktop/NetworkManager";

class MachineOnTheBus : public BusTest {
protected:
    /// Both buses are the same one here.
    void startMachine() {
        bus.emplace(loop, place());
        machine.emplace(loop, session::LinuxMachine::Buses{*bus, *bus},
                        session::LinuxMachine::Roots{folder / "sys", folder / "dev"});
        subscriptions.push_back(machine->powerChanged.subscribe([this] { ++powerChanges; }));
        subscriptions.push_back(
            machine->networkReported.subscribe([this](bool on) { network.push_back(on); }));
        subscriptions.push_back(machine->playerReported.subscribe(
            [this](const auto& state) { players.push_back(state.value_or("none")); }));
    }
    void battery(const std::string& capacity) {
        write(folder / "sys/class/power_supply/BAT0/type", "Battery\n");
        write(folder / "sys/class/power_supply/BAT0/capacity", capacity + "\n");
    }
    std::unique_ptr<FakeService> startUPower(double percentage) {
        auto service = serve(upower);
        service->set(upowerPath, upower, {{"OnBattery", true}});
        service->set(display, deviceInterface,
                     {{"Type", 2U}, {"IsPresent", true}, {"Percentage", percentage}});
        return service;
    }
    bool eventuallySource(PowerSource expected) {
        return eventually([&] { return machine->powerSources() == std::vector{expected}; });
    }

    TemporaryFolder folder;
    std::optional<session::Bus> bus;
    std::optional<session::LinuxMachine> machine;
    std::vector<Subscription> subscriptions;
    int powerChanges = 0;
    std::vector<bool> network;
    std::vector<std::string> players;
};

TEST_F(MachineOnTheBus, UPowerIsBelievedWhileItRunsAndTheFilesBeforeAndAfter) {
    daemon.start();
    battery("37");
    startMachine();
    EXPECT_EQ(machine->powerSources().at(0).currentCapacity, 37) << "known from the start";
    auto service = startUPower(54.6);
    EXPECT_TRUE(eventuallySource({54, 100, "Battery Power"}));
    service->change(upowerPath, upower, {{"OnBattery", false}});
    EXPECT_TRUE(eventuallySource({54, 100, "AC Power"}));
    service->change(display, deviceInterface, {{"Percentage", 56.0}});
    EXPECT_TRUE(eventuallySource({56, 100, "AC Power"}));
    EXPECT_EQ(powerChanges, 3);
    service->change(display, deviceInterface, {{"Percentage", std::string("much")}});
    EXPECT_TRUE(eventuallySource({std::nullopt, 100, "AC Power"}));

    battery("36");
    end(service);
    EXPECT_TRUE(eventuallySource({36, 100, "Battery Power"}));
    service = startUPower(80);
    EXPECT_TRUE(eventuallySource({80, 100, "Battery Power"}));
    service->change(display, deviceInterface, {{"Type", 0U}, {"IsPresent", false}});
    EXPECT_TRUE(eventually([&] { return machine->powerSources().empty(); }));
}

TEST_F(MachineOnTheBus, AnOldUPowerWithoutACombinedBatteryIsAskedForItsFirst) {
    daemon.start();
    auto service = serve(upower);
    service->set(upowerPath, upower, {{"OnBattery", false}});
    service->on("EnumerateDevices", [](sd_bus_message* call) {
        return sd_bus_reply_method_return(call, "ao", 3, "/ac", "/mouse", "/battery");
    });
    service->set("/ac", deviceInterface, {{"Type", 1U}});
    service->set("/mouse", deviceInterface,
                 {{"Type", 2U}, {"PowerSupply", false}, {"Percentage", 3.0}});
    service->set("/battery", deviceInterface,
                 {{"Type", 2U}, {"Energy", 21.0}, {"EnergyFull", 42.0}});
    startMachine();
    EXPECT_TRUE(eventuallySource({50, 100, "AC Power"}));
    service->change("/battery", deviceInterface, {{"Energy", 10.5}});
    EXPECT_TRUE(eventuallySource({25, 100, "AC Power"}));
}

TEST_F(MachineOnTheBus, RoutesDecideAndTheManagerOnlyWhetherItsOwnConnectionLeadsAnywhere) {
    daemon.start();
    startMachine();
    ASSERT_TRUE(eventually([&] { return !network.empty(); })) << "the kernel's routes";
    const bool routes = network.back();
    auto service = serve(manager);
    const auto say = [&](std::uint32_t word, const std::string& connection) {
        service->set(managerPath, manager,
                     {{"Connectivity", word}, {"PrimaryConnection", connection}});
        service->change(managerPath, manager,
                        {{"Connectivity", word}, {"PrimaryConnection", connection}});
        settle(*bus);
        settle(*bus);
        return network.back();
    };
    const std::string own = "/org/freedesktop/NetworkManager/ActiveConnection/1";
    EXPECT_EQ(say(1, "/"), routes) << "nothing to do with it";
    EXPECT_FALSE(say(1, own)) << "its connection leads nowhere";
    for (const std::uint32_t word : {0U, 2U, 3U, 4U}) EXPECT_EQ(say(word, own), routes) << word;
    say(1, own);
    end(service);
    EXPECT_TRUE(eventually([&] { return network.back() == routes; }));
    for (std::size_t i = 1; i < network.size(); ++i) EXPECT_NE(network[i], network[i - 1]);
}

TEST_F(MachineOnTheBus, AManagerThatIsThereAtTheStartHasItsSayInTheFirstReport) {
    daemon.start();
    auto service = serve(manager);
    service->set(managerPath, manager,
                 {{"Connectivity", 1U}, {"PrimaryConnection", std::string("/connection")}});
    startMachine();
    ASSERT_TRUE(eventually([&] { return !network.empty(); }));
    letPass(0.7);
    EXPECT_THAT(network, ElementsAre(false));
}

TEST_F(MachineOnTheBus, TheFirstReportOfTheNetworkWaitsForAListener) {
    startMachine();  // on a bus that is not there
    subscriptions.clear();
    letPass(0.8);
    ASSERT_THAT(network, IsEmpty());
    subscriptions.push_back(
        machine->networkReported.subscribe([this](bool on) { network.push_back(on); }));
    EXPECT_TRUE(eventually([&] { return !network.empty(); }));
    letPass(0.1);
    EXPECT_EQ(network.size(), 1U);
}

TEST_F(MachineOnTheBus, EveryPlayerIsHeardAndOneThatLeavesHasStopped) {
    constexpr const char* path = "/org/mpris/MediaPlayer2";
    constexpr const char* interface = "org.mpris.MediaPlayer2.Player";
    daemon.start();
    startMachine();
    auto one = serve("org.mpris.MediaPlayer2.one");
    auto two = serve("org.mpris.MediaPlayer2.two.instance7");
    auto silent = serve("org.mpris.MediaPlayer2.silent");
    settle(*bus);
    const auto say = [&](FakeService& player, FakeService::Values values) {
        player.change(path, interface, std::move(values));
        settle(*bus);
    };
    say(*one, {{"PlaybackStatus", std::string("Playing")}});
    say(*one, {{"Volume", 0.5}});
    say(*one, {{"PlaybackStatus", std::string("Dancing")}});
    say(*one, {{"PlaybackStatus", true}});
    one->change("/elsewhere", interface, {{"PlaybackStatus", std::string("Stopped")}});
    say(*two, {{"PlaybackStatus", std::string("Paused")}});
    EXPECT_THAT(players, ElementsAre("Playing", "Paused"));
    end(silent);
    settle(*bus);
    EXPECT_EQ(players.size(), 2U) << "it never reported";
    end(one);
    EXPECT_TRUE(eventually([&] { return players.size() == 3; }));
    end(two);
    EXPECT_TRUE(eventually([&] { return players.size() == 4; }));
    EXPECT_THAT(players, ElementsAre("Playing", "Paused", "Stopped", "Stopped"));
}

TEST_F(MachineOnTheBus, ABusThatComesLateGoesAndReturnsIsUsedEachTime) {
    battery("20");
    startMachine();
    letPass(0.3);
    for (int round = 0; round < 2; ++round) {
        daemon.start();
        auto service = startUPower(60);
        EXPECT_TRUE(eventuallySource({60, 100, "Battery Power"})) << round;
        services.clear();
        daemon.stop();
        EXPECT_TRUE(eventuallySource({20, 100, "Battery Power"})) << round;
    }
}

TEST_F(MachineOnTheBus, WithNothingHappeningNobodyWakes) {
    daemon.start();
    startMachine();
    letPass(1);
    EXPECT_TRUE(eventually([&] {
        const Instant before = loop.now();
        loop.turn(3);
        return loop.now() - before > 2.9;
    }));
}

}  // namespace
}  // namespace quibbits
