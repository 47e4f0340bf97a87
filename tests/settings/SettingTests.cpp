#include <gtest/gtest.h>

#include <algorithm>

#include "settings/model/Setting.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

using Ids = std::vector<std::string>;

TEST(AFirstLaunch, FindsEverySwitchOnButTheBreakReminders) {
    SimulatedDefaults defaults;
    Settings::registerDefaults(defaults);
    for (const auto& setting : allSettings()) {
        EXPECT_EQ(isOn(defaults, setting.setting), setting.setting != Setting::breakReminder)
            << setting.key;
    }
    EXPECT_EQ(defaults.integer("breakMinutes"), 60);
    EXPECT_TRUE(defaults.all().empty()) << "what the user has not chosen is not written out";
}

TEST(ASwitch, CountsFromTheNextReadAndOutlivesALaunch) {
    SimulatedDefaults defaults;
    defaults.set("music", std::string("NO"));
    defaults.set("breakMinutes", std::int64_t{25});
    Settings::registerDefaults(defaults);
    EXPECT_FALSE(isOn(defaults, Setting::music));
    EXPECT_EQ(defaults.integer("breakMinutes"), 25);
    defaults.remove("music");
    EXPECT_TRUE(isOn(defaults, Setting::music));
}

TEST(Sections, HoldEverySwitchOnceInItsOrder) {
    std::vector<Setting> shown;
    std::vector<std::size_t> sizes;
    for (const auto& group : allSettingGroups()) {
        const auto members = settingsOf(group.group);
        EXPECT_TRUE(std::ranges::is_sorted(members)) << group.title;
        shown.insert(shown.end(), members.begin(), members.end());
        sizes.push_back(members.size());
    }
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 2, 2, 4, 6, 1}));
    std::ranges::sort(shown);
    EXPECT_EQ(shown.size(), settingCount);
    EXPECT_EQ(std::ranges::adjacent_find(shown), shown.end());
}

TEST(RoutineSwitches, MoveFromTheirOldNamesToTheNewOnes) {
    for (const auto& [before, now] :
         std::vector<std::pair<std::string, std::string>>{{"move.Stretch", "move.DeepBreath"},
                                                          {"move.Twirl", "move.Rotate"},
                                                          {"move.Somersault", "move.Tumble"},
                                                          {"move.Dance", "move.Double"}}) {
        SimulatedDefaults defaults;
        defaults.set(before, false);
        Settings::registerDefaults(defaults);
        EXPECT_EQ(defaults.onlyBoolean(now), false) << before;
        EXPECT_EQ(defaults.stored(before), std::nullopt) << before;
        Settings::registerDefaults(defaults);
        EXPECT_EQ(defaults.all().size(), 1u) << "a second launch changes nothing";
    }
}

TEST(RoutineSwitches, ThatStandUnderTheNewNameWin) {
    SimulatedDefaults defaults;
    defaults.set("move.Twirl", false);
    defaults.set("move.Rotate", true);
    defaults.set("move.Dance", std::int64_t{1});
    Settings::registerDefaults(defaults);
    EXPECT_EQ(defaults.onlyBoolean("move.Rotate"), true);
    EXPECT_EQ(defaults.onlyBoolean("move.Double"), true) << "whatever was stored is a boolean now";
    EXPECT_EQ(defaults.all().size(), 2u);
}

TEST(TheAppsToStayBehind, AreReadLineByLine) {
    struct Row {
        std::string stored;
        Ids ids;
    };
    SimulatedDefaults defaults;
    EXPECT_EQ(Settings::behindApps(defaults), Ids{});
    for (const auto& [stored, ids] : std::vector<Row>{{"", {}},
                                                      {"a", {"a"}},
                                                      {"b\na\nc", {"b", "a", "c"}},
                                                      {"\n\na\n\n\nb\n", {"a", "b"}},
                                                      {"\n", {}}}) {
        defaults.set("behindApps", stored);
        EXPECT_EQ(Settings::behindApps(defaults), ids) << stored;
    }
    defaults.set("behindApps", Ids{"a", "b"});
    EXPECT_EQ(Settings::behindApps(defaults), Ids{}) << "a value of another kind is no list";
}

TEST(TheAppsToStayBehind, AreAddedAtTheEndOnceAndTakenOutSingly) {
    SimulatedDefaults defaults;
    Settings::addBehindApps(defaults, {"player", "browser"});
    Settings::addBehindApps(defaults, {"editor", "player", "", "editor", "mail"});
    EXPECT_EQ(defaults.string("behindApps"), "player\nbrowser\neditor\nmail");
    Settings::removeBehindApp(defaults, "browser");
    Settings::removeBehindApp(defaults, "unknown");
    EXPECT_EQ(Settings::behindApps(defaults), (Ids{"player", "editor", "mail"}));
    for (const char* id : {"player", "editor", "mail"}) Settings::removeBehindApp(defaults, id);
    EXPECT_EQ(defaults.string("behindApps"), "");
}

}  // namespace
}  // namespace quibbits
