// An open window follows the truth, whoever changes it.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

class OpenWindows : public LivingCreature {
public:
    explicit OpenWindows(Options options) : LivingCreature(std::move(options)) {}
    SimulatedViewWindow* settings() { return computer.viewWindows.titled("Quibbits"); }
    SimulatedViewWindow* guide() { return computer.viewWindows.titled("Welcome to Quibbits"); }
    static bool shows(SimulatedViewWindow* window, const std::string& words) {
        const auto all = views::texts(window->tree);
        return std::ranges::find(all, words) != all.end();
    }
    static bool isOn(SimulatedViewWindow* window, const std::string& id) {
        return views::find(window->tree, id)->as<views::Toggle>()->isOn;
    }
};

LivingCreature::Options onGeneral() {
    return {.defaults = {{"onboarded", true}, {"QuibSettings", std::string("general")}}};
}

TEST(AnOpenPage, FollowsWhatTheGuideChanges) {
    OpenWindows life(onGeneral());
    life.settings()->act("welcome");
    life.guide()->act("next");
    life.guide()->act("default:overApps", false);
    life.advance(0.2);
    EXPECT_FALSE(life.isOn(life.settings(), "default:overApps"));
    EXPECT_FALSE(views::find(life.settings()->tree, "behind these")->enabled);
}

TEST(AnOpenPage, FollowsAnAddressAndAnotherProgram) {
    OpenWindows life(onGeneral());
    EXPECT_TRUE(life.shows(life.settings(), "Awake"));
    life.app->open({"quibbits://focus"});
    life.advance(0.2);
    EXPECT_TRUE(life.shows(life.settings(), "Asleep: a Focus is on"));
    life.computer.defaults.set("music", false);  // as a tool for the defaults does
    life.advance(0.2);
    EXPECT_FALSE(life.isOn(life.settings(), "default:music"));
}

TEST(AnOpenPage, FollowsACreaturesLife) {
    OpenWindows life(
        {.stage = "egg", .defaults = {{"onboarded", true}, {"QuibSettings", std::string("pet")}}});
    EXPECT_TRUE(life.shows(life.settings(), "Egg"));
    life.creature().toggleBall({});
    life.advance(30);
    EXPECT_TRUE(life.shows(life.settings(), "Mizzle")) << "its name in the sidebar";
}

TEST(ManyChanges, AreOneUpdate) {
    OpenWindows life(onGeneral());
    life.advance(1);
    const int before = life.settings()->updates;
    for (const char* key : {"music", "heat", "wifi", "faces"})
        life.computer.defaults.set(key, false);
    life.advance(0.15);
    EXPECT_EQ(life.settings()->updates, before + 1);
    life.settings()->close();
    life.computer.defaults.set("music", true);
    life.advance(1);  // must not touch the closed window
}

TEST(AGuideThatCouldNotBeShown, HasNotBeenSeen) {
    OpenWindows life({});
    life.guide()->canBeSeen = false;
    life.guide()->close();
    EXPECT_FALSE(life.computer.defaults.boolean("onboarded"));
    EXPECT_EQ(life.app->downloads(), nullptr) << "nobody's folder is watched before that";
    life.quit();
    life.launch();
    ASSERT_NE(life.guide(), nullptr) << "the next start tries again";
    life.guide()->close();
    EXPECT_TRUE(life.computer.defaults.boolean("onboarded"));
    EXPECT_NE(life.app->downloads(), nullptr);
}

TEST(TheButtonOfQuietTimes, StaysTheSameButton) {
    OpenWindows life(onGeneral());
    const auto title = [&] {
        return views::find(life.settings()->tree, "quiet")->as<views::Button>()->title;
    };
    EXPECT_EQ(title(), "Quiet Now");
    life.settings()->act("quiet");
    EXPECT_EQ(title(), "Wake It Up");
    life.settings()->act("quiet");
    EXPECT_EQ(title(), "Quiet Now");
    EXPECT_FALSE(life.creature().isQuiet());
}

// What is not a matter of creatures ---------------------------------------------------------------

TEST(StartingWithTheDesktop, IsOffUntilItIsChosenAndOfferedAtTheGuidesEnd) {
    auto options = onGeneral();
    options.prepare = [](SimulatedComputer& computer) { computer.session.starts = false; };
    OpenWindows life(options);
    EXPECT_FALSE(life.isOn(life.settings(), "starts with session"));
    life.settings()->act("starts with session", true);
    EXPECT_EQ(life.computer.session.starts, true);
    EXPECT_TRUE(life.isOn(life.settings(), "starts with session"));
    life.computer.defaults.set("QuibWelcomePage", std::int64_t{7});
    life.settings()->act("welcome");
    life.guide()->act("starts with session", false);
    EXPECT_EQ(life.computer.session.starts, false);
}

TEST(StartingWithTheDesktop, IsNotOfferedWhereItCannotBeChosen) {
    OpenWindows life(onGeneral());
    EXPECT_EQ(views::find(life.settings()->tree, "starts with session"), nullptr);
    EXPECT_EQ(views::find(life.settings()->tree, "services"), nullptr);
    EXPECT_EQ(views::find(life.settings()->tree, "monitor"), nullptr);
}

TEST(TheMonitor, CanBeChosenWhereThereAreSeveral) {
    auto options = onGeneral();
    options.prepare = [](SimulatedComputer& computer) {
        computer.screens.outputs = {"eDP-1", "HDMI-1"};
    };
    OpenWindows life(options);
    const auto choices = [&] {
        std::vector<std::string> titles;
        const auto* view = views::find(life.settings()->tree, "default:screen.name");
        for (const auto& each : view->as<views::Picker>()->choices) titles.push_back(each.title);
        return titles;
    };
    EXPECT_EQ(choices(), (std::vector<std::string>{"Primary monitor", "eDP-1", "HDMI-1"}));
    life.settings()->act("default:screen.name", std::string("HDMI-1"));
    EXPECT_EQ(life.computer.defaults.string("screen.name"), "HDMI-1");
    life.computer.screens.outputs = {"eDP-1", "DP-2"};
    life.computer.screens.changed.emit();
    life.advance(0.2);
    EXPECT_EQ(choices().back(), "HDMI-1 (not connected)") << "the wish is kept";
}

TEST(WhatTheDesktopLacks, IsSaidWhereItIsMissed) {
    auto options = onGeneral();
    options.prepare = [](SimulatedComputer& computer) {
        computer.session.services = {{SessionService::tray, true},
                                     {SessionService::notifications, false},
                                     {SessionService::accessibility, false}};
    };
    OpenWindows life(options);
    const auto value = [&](const char* service) {
        const auto* fact = views::find(life.settings()->tree, std::string("service ") + service);
        return fact->as<views::Fact>()->value;
    };
    EXPECT_EQ(value("Tray"), "Ready");
    EXPECT_EQ(value("Notification service"), "Missing");
    EXPECT_EQ(value("Accessibility"), "Missing");
    life.settings()->act("turn accessibility on");
    EXPECT_EQ(life.computer.accessibility.questions, 1);
    life.computer.session.services[SessionService::accessibility] = true;
    life.computer.session.changed.emit();
    life.advance(0.2);
    EXPECT_EQ(value("Accessibility"), "Ready");

    life.computer.defaults.set("QuibWelcomePage", std::int64_t{6});
    life.settings()->act("welcome");
    EXPECT_EQ(views::find(life.guide()->tree, "ask"), nullptr) << "nobody can be asked for it";
    EXPECT_TRUE(life.shows(life.guide(), "Missing"));
    life.computer.session.services[SessionService::notifications] = true;
    life.computer.session.changed.emit();
    life.advance(0.2);
    EXPECT_TRUE(life.shows(life.guide(), "Allowed"));
}

}  // namespace
}  // namespace quibbits
