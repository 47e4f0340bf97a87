// The settings window of a running companion, used as a person would.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/LivingCreature.h"

namespace quibbits {
namespace {

using Texts = std::vector<std::string>;

class SettingsOf : public LivingCreature {
public:
    explicit SettingsOf(Options options) : LivingCreature(finished(std::move(options))) {
        app->showSettings();
    }
    SimulatedViewWindow* window() { return computer.viewWindows.titled("Quibbits"); }
    bool act(const std::string& id, views::Action::Value value = {}) {
        return window()->act(id, std::move(value));
    }
    void turnTo(const std::string& page) { act("sidebar", page); }
    bool shows(const std::string& words) {
        const Texts all = views::texts(window()->tree);
        return std::ranges::find(all, words) != all.end();
    }
    const views::View* find(const std::string& id) { return views::find(window()->tree, id); }

private:
    static Options finished(Options options) {
        options.defaults.emplace("onboarded", true);
        return options;
    }
};

TEST(TheSettings, OpenOnTheAskedPageAndOnceOnly) {
    const auto pageFor = [](std::optional<std::string> word) {
        SettingsOf life({.prepare = [&](SimulatedComputer& computer) {
            if (word) computer.defaults.set("QuibSettings", *word);
        }});
        return life.window()->tree.as<views::Split>()->chosen;
    };
    EXPECT_EQ(pageFor(std::nullopt), "party");
    EXPECT_EQ(pageFor("general"), "general");
    EXPECT_EQ(pageFor("credits"), "credits");
    EXPECT_EQ(pageFor("umbrool"), "umbrool");

    SettingsOf life({.defaults = {{"QuibSettings", std::string("nobody")}}});
    EXPECT_TRUE(life.find("page nobody")->children.empty());
    EXPECT_EQ(life.window()->spec.size, (Size{760, 680}));
    life.turnTo("general");
    life.app->showSettings();
    EXPECT_EQ(life.computer.viewWindows.all().size(), 1u);
    EXPECT_GT(life.window()->timesInFront, 1);
    EXPECT_NE(life.find("page general"), nullptr) << "the open window keeps its page";
    life.window()->close();
    EXPECT_EQ(life.window(), nullptr);
    life.app->showSettings();
    EXPECT_NE(life.find("page nobody"), nullptr) << "a new one begins again";
}

TEST(TheParty, ShowsEverySpeciesAndOpensThoseThatLive) {
    SettingsOf life({.defaults = {{"pet.gender", std::string("♀")},
                                  {"pet.shiny", true},
                                  {"pet.exp", 1000.0},
                                  {"pet.friendship", 51.0}}});
    EXPECT_TRUE(life.shows("Sparrel ♀ ★"));
    EXPECT_TRUE(life.shows("Lv 10 · Electric"));
    EXPECT_TRUE(life.shows("Umbrool · Egg"));
    EXPECT_TRUE(life.shows("Waiting to hatch in the dial"));
    const views::View* bar = &life.find("pet:pet")->children[1].children[2];
    EXPECT_NEAR(bar->as<views::Meter>()->amount, 0.2, 1e-6);
    EXPECT_EQ(life.find("coming emberhog")->opacity, 0.6);
    EXPECT_FALSE(life.find("coming emberhog")->as<views::Card>()->opens);
    life.act("pet:umbrool");
    EXPECT_TRUE(
        life.shows("Something is moving inside! Click it in the menu bar dial to hatch it."));
}

TEST(ACreaturesPage, TellsHowItIs) {
    SettingsOf life({.defaults = {{"QuibSettings", std::string("pet")},
                                  {"pet.gender", std::string("♂")},
                                  {"pet.exp", 9000.0},
                                  {"pet.friendship", 120.9},
                                  {"pet.hunger", 0.25},
                                  {"pet.nature", std::string("Jolly")}}});
    EXPECT_TRUE(life.shows("Sparrel ♂  ·  Lv 20"));
    EXPECT_TRUE(
        life.shows("Jolly nature · Ability: Lightning Rod · Medium Fast growth · "
                   "Shimmerpox cured"));
    EXPECT_TRUE(life.shows("Friendship  120 / 255"));
    EXPECT_TRUE(life.shows("EXP " + screens::grouped(life.creature().identity().exp) + " / 9,261"));
    EXPECT_TRUE(
        life.shows("Ready to evolve: drag the Storm Pebble from the menu bar dial onto it."));
    EXPECT_TRUE(life.shows("Sparrel's own tricks"));
    EXPECT_TRUE(life.act("default:region", std::string("coralis")));
    EXPECT_EQ(life.computer.defaults.string("region"), "coralis");
    EXPECT_EQ(life.find("default:region")->as<views::Picker>()->chosen, "coralis");

    life.turnTo("umbrool");
    EXPECT_FALSE(life.shows("Sparrel's own tricks"));
    EXPECT_TRUE(life.find("default:umbrool.pranks")->as<views::Toggle>()->isOn);
    life.act("default:umbrool.pranks", false);
    EXPECT_EQ(life.computer.defaults.onlyBoolean("umbrool.pranks"), false);
    EXPECT_FALSE(life.find("default:umbrool.pranks")->as<views::Toggle>()->isOn);
}

TEST(ACreaturesPage, BeginsAnewForEachCreature) {
    SettingsOf life(
        {.defaults = {{"QuibSettings", std::string("pet")}, {"QuibSettingsTab", std::int64_t{2}}}});
    EXPECT_NE(life.find("guide Evolution"), nullptr);
    life.act("guide", std::string("Moves"));
    EXPECT_NE(life.find("guide Moves"), nullptr);
    life.act("tab", std::int64_t{1});
    EXPECT_NE(life.find("gallery"), nullptr);
    life.turnTo("umbrool");
    EXPECT_NE(life.find("guide Evolution"), nullptr) << "the first tab and page again";
    for (const std::int64_t nonsense : {-1, 4, 99}) life.act("tab", nonsense);
    EXPECT_NE(life.find("guide Evolution"), nullptr);
}

TEST(TheGallery, PlaysAndSwitchesMoves) {
    SettingsOf life(
        {.defaults = {{"QuibSettings", std::string("pet")}, {"QuibSettingsTab", std::int64_t{1}}}});
    life.advance(5);
    const Texts playfuls = life.creature().playful();
    for (const NamedAnim& anim : life.creature().a().all) {
        const bool playful = std::ranges::find(playfuls, anim.name) != playfuls.end();
        EXPECT_EQ(life.find("default:move." + anim.name) != nullptr, playful) << anim.name;
        EXPECT_NE(life.find("play:" + anim.name), nullptr);
    }
    ASSERT_FALSE(life.creature().playful().empty());
    const std::string move = life.creature().playful().front();
    life.act("default:move." + move, false);
    EXPECT_EQ(life.computer.defaults.onlyBoolean("move." + move), false);

    const int before = life.pet().token();
    life.act("play:" + move);
    EXPECT_NE(life.pet().token(), before) << "it breaks off what it did";
    life.creature().toggleBall({});
    life.advance(10);
    const int inside = life.pet().token();
    life.act("play:" + move);
    EXPECT_EQ(life.pet().token(), inside) << "not from its ball";
}

int shownPreviews(const views::View& view) {
    const auto* preview = view.as<views::Preview>();
    int count = preview && !preview->frames.empty() ? 1 : 0;
    for (const views::View& child : view.children) count += shownPreviews(child);
    return count;
}

TEST(TheGallery, ReadsWhatIsSeenFirstAndTheRestALittleLater) {
    SettingsOf life({.defaults = {{"QuibSettings", std::string("pet")}}});
    life.advance(5);
    const auto all = static_cast<int>(life.creature().a().all.size());
    ASSERT_GT(all, 9);
    life.act("tab", std::int64_t{1});
    EXPECT_EQ(shownPreviews(life.window()->tree), 9);
    life.advance(1);
    EXPECT_EQ(shownPreviews(life.window()->tree), all);
    const int told = life.window()->updates;
    life.advance(1);
    EXPECT_LE(life.window()->updates - told, 2) << "then it is quiet";
}

TEST(TheCredits, LeadToWhatTheyName) {
    SettingsOf life({.defaults = {{"QuibSettings", std::string("credits")}}});
    Texts addresses;
    const std::function<void(const views::View&)> collect = [&](const views::View& view) {
        if (const auto* link = view.as<views::Link>()) {
            addresses.push_back(link->address);
            EXPECT_TRUE(life.act(view.id)) << link->title;
        }
        for (const views::View& child : view.children) collect(child);
    };
    collect(views::View(life.window()->tree));
    EXPECT_FALSE(addresses.empty());
    EXPECT_EQ(life.computer.workspace.opened, addresses);
}

TEST(StartingOver, IsAskedFirst) {
    SettingsOf life(
        {.defaults = {{"QuibSettings", std::string("pet")}, {"QuibSettingsTab", std::int64_t{2}}}});
    EXPECT_EQ(life.find("confirm"), nullptr);
    life.act("start over");
    ASSERT_NE(life.find("confirm"), nullptr);
    EXPECT_EQ(life.find("confirm")->as<views::Alert>()->message,
              "Sparrel (Lv 1) goes away for good, and a new Egg appears in the dial.");
    life.act("confirm", false);
    EXPECT_EQ(life.find("confirm"), nullptr);
    life.advance(5);
    EXPECT_EQ(life.creature().stage(), Stage::sparrel);
    life.act("start over");
    life.act("confirm", true);
    life.advance(10);
    EXPECT_EQ(life.creature().stage(), Stage::egg);
}

TEST(General, HoldsEveryRuleAndItsLimits) {
    SettingsOf life({.defaults = {{"QuibSettings", std::string("general")},
                                  {"behindApps", std::string("firefox\ngone")}},
                     .prepare = [](SimulatedComputer& computer) {
                         computer.workspace.catalogue = {{"firefox", "Firefox", "firefox"},
                                                         {"gimp", "Image Editor", "gimp"}};
                     }});
    for (const SettingRow& row : allSettings()) {
        EXPECT_NE(life.find("default:" + std::string(row.key)), nullptr) << row.key;
    }
    EXPECT_FALSE(life.act("default:breakMinutes", std::int64_t{75})) << "greyed out";
    life.act("default:breakReminder", true);
    EXPECT_TRUE(life.act("default:breakMinutes", std::int64_t{75}));
    EXPECT_TRUE(life.shows("Remind me after 75 minutes"));

    EXPECT_TRUE(life.shows("Firefox"));
    EXPECT_TRUE(life.shows("gone")) << "an application that nobody knows any more";
    life.act("add applications", std::vector<std::string>{"gimp", "firefox"});
    EXPECT_EQ(life.computer.defaults.string("behindApps"), "firefox\ngone\ngimp");
    life.act("behind:gone");
    EXPECT_EQ(life.computer.defaults.string("behindApps"), "firefox\ngimp");
    life.act("default:overApps", false);
    EXPECT_FALSE(life.act("behind:firefox")) << "the list rests while they stay on the desktop";

    EXPECT_TRUE(life.shows("Awake"));
    life.act("quiet");
    EXPECT_TRUE(life.creature().isQuiet());
    EXPECT_TRUE(life.shows("Asleep: a Focus is on"));
    EXPECT_TRUE(life.shows("Wake It Up"));
    EXPECT_TRUE(life.computer.workspace.opened.empty()) << "its own addresses stay at home";
    life.window()->onAction({.id = "open:https://example.org"});
    EXPECT_EQ(life.computer.workspace.opened, Texts{"https://example.org"});
    life.act("welcome");
    EXPECT_NE(life.computer.viewWindows.titled("Welcome to Quibbits"), nullptr);
}

TEST(ALostProgram, LeavesAWindowThatDoesNothing) {
    SettingsOf life({.defaults = {{"QuibSettings", std::string("party")}}});
    SimulatedViewWindow* window = life.window();
    const auto act = window->onAction;
    life.quit();
    EXPECT_EQ(life.window(), nullptr) << "it is closed with its owner";
    act({.id = "sidebar", .value = std::string("general")});  // must not crash
}

}  // namespace
}  // namespace quibbits
