// What leaves the companion for the desktop speaks of this desktop.

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "BusTest.h"
#include "desktop/session/BusNotifications.h"
#include "desktop/session/BusValues.h"
#include "desktop/windows/ProcessWindows.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

class WordsOnTheWay : public BusTest {
protected:
    /// Stands in for the program of the windows: writes down what it is told.
    std::filesystem::path listener() {
        const auto program = folder / "listener";
        std::ofstream(program) << "#!/bin/sh\nexec cat <&3 >" << heard().native() << "\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        return program;
    }
    std::filesystem::path heard() const { return folder / "heard"; }
    std::string whatIsHeard() const {
        std::stringstream text;
        text << std::ifstream(heard()).rdbuf();
        return text.str();
    }
    const std::filesystem::path folder = [] {
        std::string name = std::filesystem::temp_directory_path() / "words-XXXXXX";
        return std::filesystem::path(mkdtemp(name.data()));
    }();
    ~WordsOnTheWay() override { std::filesystem::remove_all(folder); }
};

TEST_F(WordsOnTheWay, AWindowIsToldThem) {
    SimulatedAppearance look;
    ProcessWindows windows(loop, listener(), look);
    const auto window = windows.open(
        {.title = "Test"},
        {.content = views::Column{},
         .children = {{.content = views::Section{.heading = "Your Mac"}},
                      {.content = views::Button{.title = "Open Shortcuts"}, .id = "button"}}});
    EXPECT_TRUE(
        eventually([&] { return whatIsHeard().find("Your computer") != std::string::npos; }));
    EXPECT_EQ(whatIsHeard().find("Shortcuts"), std::string::npos);
    window->update({.content = views::Text{"Click the Egg in the menu bar dial."}});
    EXPECT_TRUE(eventually([&] { return whatIsHeard().find("in the tray") != std::string::npos; }));
}

TEST_F(WordsOnTheWay, ANotificationCarriesThem) {
    daemon.start();
    constexpr const char* service = "org.freedesktop.Notifications";
    const auto shower = serve(service);
    std::string body;
    shower->on("GetCapabilities",
               [](sd_bus_message* call) { return sd_bus_reply_method_return(call, "as", 0); });
    shower->on("Notify", [&](sd_bus_message* call) {
        sd_bus_message_skip(call, "suss");
        body = *session::readText(call);
        return sd_bus_reply_method_return(call, "u", 1u);
    });
    session::Bus bus(loop, place());
    session::BusNotifications notifications(loop, bus);
    notifications.send(
        {.title = "Sparrel is hungry", .body = "Drag a berry onto it from the menu bar dial."}, {});
    EXPECT_TRUE(eventually([&] { return !body.empty(); }));
    EXPECT_EQ(body, "Drag a berry onto it from the dial in the tray.");
}

}  // namespace
}  // namespace quibbits
