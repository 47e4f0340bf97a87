// What the session has for the program, and starting with it.

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "BusTest.h"
#include "desktop/session/PortalAppearance.h"
#include "desktop/session/SessionServices.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

namespace fs = std::filesystem;

class SessionTest : public BusTest {
protected:
    ~SessionTest() override { fs::remove_all(folder); }
    session::SessionServices::World world() {
        return {.tray = [this] { return tray; },
                .accessibility = [] { return false; },
                .defaults = defaults,
                .autostart = folder / "autostart",
                .program = "/opt/some \"place\"/quibbits"};
    }
    std::string file() const {
        std::stringstream text;
        text << std::ifstream(folder / "autostart/quibbits.desktop").rdbuf();
        return text.str();
    }

    const fs::path folder = [] {
        std::string name = fs::temp_directory_path() / "session-XXXXXX";
        return fs::path(mkdtemp(name.data()));
    }();
    SimulatedDefaults defaults;
    bool tray = false;
};

TEST_F(SessionTest, AServiceOfNotificationsCountsWhileItIsThere) {
    daemon.start();
    session::Bus bus(loop, place());
    session::SessionServices offered(bus, world());
    int changes = 0;
    const auto heard = offered.changed.subscribe([&] { ++changes; });
    EXPECT_TRUE(eventually([&] { return offered.has(SessionService::notifications) == false; }));
    settle(bus);
    changes = 0;
    auto shower = serve("org.freedesktop.Notifications");
    EXPECT_TRUE(eventually([&] { return changes == 1; }));
    EXPECT_EQ(offered.has(SessionService::notifications), true);
    end(shower);
    EXPECT_TRUE(eventually([&] { return changes == 2; }));
    EXPECT_EQ(offered.has(SessionService::notifications), false);
    EXPECT_EQ(offered.has(SessionService::tray), false);
    tray = true;
    EXPECT_EQ(offered.has(SessionService::tray), true);
}

TEST_F(SessionTest, StartsTheProgramByAFileThatTheDesktopUnderstands) {
    session::Bus bus(loop, place());
    session::SessionServices offered(bus, world());
    EXPECT_EQ(offered.startsProgram(), false) << "off until it is chosen";
    offered.setStartsProgram(false);
    EXPECT_FALSE(fs::exists(folder / "autostart")) << "nothing to turn off";
    offered.setStartsProgram(true);
    EXPECT_EQ(offered.startsProgram(), true);
    EXPECT_NE(file().find("\nExec=\"/opt/some \\\\\"place\\\\\"/quibbits\"\n"), std::string::npos)
        << file();
    EXPECT_NE(file().find("\nTryExec=/opt/some \"place\"/quibbits\n"), std::string::npos)
        << "once the program is gone, a login passes it over\n"
        << file();
    offered.setStartsProgram(false);
    EXPECT_EQ(offered.startsProgram(), false);
    EXPECT_NE(file().find("\nHidden=true\n"), std::string::npos) << "and nothing is deleted";
    // The desktop's own settings turn entries off like this.
    std::ofstream(folder / "autostart/quibbits.desktop")
        << "[Desktop Entry]\nExec=quibbits\nX-GNOME-Autostart-enabled=false\n";
    EXPECT_EQ(offered.startsProgram(), false);
}

TEST_F(SessionTest, InASandboxThePortalStartsIt) {
    daemon.start();
    auto portal = serve("org.freedesktop.portal.Desktop");
    bool asked = false;
    portal->on("RequestBackground", [&](sd_bus_message* call) {
        asked = true;
        return sd_bus_reply_method_return(call, "o", "/org/freedesktop/portal/desktop/request/1");
    });
    session::Bus bus(loop, place());
    auto sandboxed = world();
    sandboxed.inSandbox = true;
    session::SessionServices offered(bus, sandboxed);
    letPass(0.1);
    offered.setStartsProgram(true);
    EXPECT_TRUE(eventually([&] { return asked; }));
    EXPECT_EQ(offered.startsProgram(), false) << "the user has not agreed yet";
    portal->emit("/org/freedesktop/portal/desktop/request/1", "org.freedesktop.portal.Request",
                 "Response", [](sd_bus_message* signal) {
                     sd_bus_message_append(signal, "ua{sv}", 0, 1, "autostart", "b", 1);
                 });
    EXPECT_TRUE(eventually([&] { return offered.startsProgram() == true; }));
    EXPECT_FALSE(fs::exists(folder / "autostart"));
}

TEST_F(SessionTest, TheLookIsKnownWhenThePortalHasAnsweredOrNobodyCan) {
    daemon.start();
    session::Bus bus(loop, place());
    session::PortalAppearance nobody(bus);
    EXPECT_FALSE(nobody.isKnown());
    EXPECT_TRUE(eventually([&] { return nobody.isKnown(); }));
    EXPECT_FALSE(nobody.isDark());

    auto portal = serve("org.freedesktop.portal.Desktop");
    portal->on("Read", [](sd_bus_message* call) {
        return sd_bus_reply_method_return(call, "v", "v", "u", 1u);
    });
    session::PortalAppearance look(bus);
    std::vector<bool> told;
    const auto heard = look.changed.subscribe([&] { told.push_back(look.isDark()); });
    EXPECT_TRUE(eventually([&] { return !told.empty(); }));
    portal->emit("/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings",
                 "SettingChanged", [](sd_bus_message* signal) {
                     sd_bus_message_append(signal, "ssv", "org.freedesktop.appearance",
                                           "color-scheme", "u", 2u);
                 });
    EXPECT_TRUE(eventually([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace quibbits
