#include <gtest/gtest.h>

#include "sim/SimulatedComputer.h"
#include "stage/StageWindow.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

/// A stage with one body on it.
class SmallStage {
public:
    SmallStage() : computer({}, sheets, text), pet(computer.layers, text, 3) {
        window = std::make_unique<StageWindow>(computer.panels(), computer.computer(),
                                               *computer.screens.main());
        window->add(pet, 700);
    }
    void setDockFile(DockPreferences preferences) {
        computer.dock.file = std::move(preferences);
        computer.dock.inset = Rect{0, 0, 1440, 70};
        computer.setDock(std::nullopt);
    }
    void showIcons(std::vector<DesktopIcon> icons) {
        computer.fileBrowser.icons = std::move(icons);
        computer.runLoop.advance(21);
        pet.stage().openSpots();
    }
    void raise() {
        computer.defaults.set("overApps", true);
        computer.workspace.activated.emit();
    }
    /// Brings an application to the front, with a window.
    void front(const std::string& id, Rect frame) {
        computer.putWindow(id, {.process = 7, .frame = frame});
        computer.bringToFront({.id = id, .process = 7});
    }

    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer;
    Pet pet;
    std::unique_ptr<StageWindow> window;
};

TEST(ADockThatOnlyItsFileTellsOf, IsAsWideAsItsTiles) {
    const auto apps = [](std::vector<std::string> ids) {
        std::vector<Application> list;
        for (auto& id : ids) list.push_back({.id = id});
        return list;
    };
    const std::vector<std::string> ten{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"};
    struct Row {
        DockPreferences file;
        std::vector<Application> running;
        std::optional<Range> span;
    };
    const std::vector<Row> rows{
        {{.persistentApps = ten, .persistentOthers = 2, .tileSize = 64}, {}, Range{240, 1200}},
        // A kept application that runs counts once, and so does the file manager.
        {{.persistentApps = ten, .persistentOthers = 2, .tileSize = 64},
         apps({"a", "files"}),
         Range{240, 1200}},
        // One more tile and another gap.
        {{.persistentApps = ten, .persistentOthers = 2, .tileSize = 64},
         apps({"x"}),
         Range{176, 1264}},
        {{.persistentApps = {"a"}, .recentApps = {"x"}, .showRecents = false}, {}, Range{624, 816}},
        {{.persistentApps = {"a"}, .recentApps = {"x"}}, {}, Range{576, 864}},
        {{.orientation = "left", .persistentApps = ten}, {}, std::nullopt},
        {{.persistentApps = ten, .tileSize = 400}, {}, Range{0, 1440}},  // cut to the screen
    };
    for (const auto& [file, running, span] : rows) {
        SmallStage stage;
        stage.computer.workspace.applications = running;
        stage.setDockFile(file);
        const auto& ground = stage.window->ground();
        if (!span) {
            EXPECT_EQ(ground, (std::vector<Ground>{{{0, 1440}, 0, true}}));
            continue;
        }
        EXPECT_EQ(ground,
                  (std::vector<Ground>{
                      {{0, span->lo}, 0, true}, {*span, 70, true}, {{span->hi, 1440}, 0, true}}));
    }
}

TEST(OpenGround, IsWhatWindowsLeaveOfIt) {
    SmallStage stage;
    stage.showIcons({{"icon", {200, 300, 100, 100}}});
    const Ground icon{{208, 292}, 382, false};
    struct Row {
        std::vector<Rect> windows;
        std::vector<Ground> spots;
    };
    const std::vector<Row> rows{
        {{}, {{{0, 1440}, 0, true}, icon}},
        {{{400, 0, 600, 500}}, {{{0, 400}, 0, true}, {{1000, 1440}, 0, true}, icon}},
        {{{400, 30, 600, 500}}, {{{0, 1440}, 0, true}, icon}},  // over a head of 30 points
        {{{61, 0, 2000, 20}}, {{{0, 61}, 0, true}, icon}},
        {{{60, 0, 2000, 20}}, {icon}},  // 60 points of floor are too few
        {{{229, 300, 500, 500}}, {{{0, 1440}, 0, true}, {{208, 229}, 382, false}}},
        {{{228, 300, 500, 500}}, {{{0, 1440}, 0, true}}},
        {{{0, 0, 1440, 900}}, {}},
    };
    for (const auto& [windows, spots] : rows) {
        stage.computer.windows.windows.clear();
        for (const Rect& r : windows) {
            stage.computer.putWindow(std::to_string(r.x), {.process = 7, .frame = r});
        }
        EXPECT_EQ(stage.pet.stage().openSpots(), spots);
    }
    // Raised, the creature walks before the windows, and icons lie behind them.
    stage.raise();
    EXPECT_EQ(stage.pet.stage().openSpots(), (std::vector<Ground>{{{0, 1440}, 0, true}}));
    EXPECT_TRUE(stage.pet.stage().isVisible({700, 100}));
}

TEST(IconsOfTheDesktop, AreReadAtMostEveryTwentySecondsAndGivenUpWhenNobodyTells) {
    SmallStage stage;
    stage.computer.fileBrowser.icons = {{"a", {100, 100, 50, 50}}};
    EXPECT_EQ(stage.pet.stage().openSpots().size(), 2u);
    stage.computer.fileBrowser.icons->push_back({"b", {300, 100, 50, 50}});
    stage.computer.runLoop.advance(20);
    EXPECT_EQ(stage.pet.stage().openSpots().size(), 2u);
    stage.computer.runLoop.advance(0.1);
    EXPECT_EQ(stage.pet.stage().openSpots().size(), 3u);
    stage.computer.fileBrowser.icons->pop_back();
    stage.computer.fileBrowser.iconsRead.emit();  // read late
    EXPECT_EQ(stage.pet.ground().size(), 2u);

    stage.computer.fileBrowser.icons.reset();
    stage.computer.runLoop.advance(21);
    EXPECT_EQ(stage.pet.stage().openSpots().size(), 2u);
    stage.computer.fileBrowser.icons = std::vector<DesktopIcon>{};
    stage.computer.runLoop.advance(21);
    EXPECT_EQ(stage.pet.stage().openSpots().size(), 2u);
}

TEST(AFileOnTheDesktop, IsFoundByItsIcon) {
    SmallStage stage;
    auto& browser = stage.computer.fileBrowser;
    browser.icons = {{"plan.txt", {100, 600, 60, 60}},
                     {"photo", {200, 600, 60, 60}},
                     {"twin", {300, 600, 60, 60}},
                     {"twin", {400, 600, 60, 60}}};
    const auto center = [&](const std::string& file) {
        return stage.pet.stage().iconCenter("/home/user/Desktop/" + file);
    };
    EXPECT_EQ(center("plan.txt"), (Point{130, 630}));
    EXPECT_EQ(center("photo.png"), (Point{230, 630}));  // shown without its extension
    EXPECT_EQ(center("nowhere"), std::nullopt);
    EXPECT_EQ(center("twin.txt"), std::nullopt);
    browser.positions["twin.txt"] = {420, 640};
    EXPECT_EQ(center("twin.txt"), (Point{430, 630}));
    browser.positions["nowhere"] = {9, 8};
    EXPECT_EQ(center("nowhere"), (Point{9, 8}));
    EXPECT_EQ(stage.pet.stage().iconCenter("/home/user/plan.txt"), std::nullopt);
    browser.icons.reset();
    EXPECT_EQ(center("twin.txt"), (Point{420, 640}));
}

TEST(TheFrontWindow, IsTheOneToHauntWhileCreaturesAreOverIt) {
    SmallStage stage;
    stage.front("editor", {100, 100, 300, 200});
    EXPECT_EQ(stage.pet.stage().frontWindow(), std::nullopt);
    stage.raise();
    EXPECT_EQ(stage.pet.stage().frontWindow(), (Rect{100, 100, 300, 200}));
    stage.front("editor", {100, 100, 299, 200});
    EXPECT_EQ(stage.pet.stage().frontWindow(), std::nullopt);
    stage.computer.defaults.set("QuibPhaseWindow", std::string("1,2,3"));
    EXPECT_EQ(stage.pet.stage().frontWindow(), std::nullopt);
    stage.computer.defaults.set("QuibPhaseWindow", std::string("1, 2,,x,3,4.5"));
    EXPECT_EQ(stage.pet.stage().frontWindow(), (Rect{1, 2, 3, 4.5}));
}

TEST(TheStage, RisesOverTheWindowsUnlessSomethingWantsTheScreen) {
    struct Row {
        const char* what;
        std::string front;
        Rect window;
        std::optional<WebPage> page;
        bool onboarded = true;
        bool raised = true;
    };
    const Rect small{100, 100, 600, 400};
    const auto at = [](const char* address) { return WebPage{.address = address}; };
    const auto titled = [](const char* title) { return WebPage{.title = title}; };
    const std::vector<Row> rows{
        {"an ordinary window", "editor", small, {}},
        {"on the list", "slides", small, {}, true, false},
        {"full screen", "game", {0, 0, 1440, 900}, {}, true, false},
        {"one point short", "game", {0, 0, 1439, 899}, {}, true, false},
        {"two points short", "game", {0, 0, 1438, 898}, {}},
        {"a video", "web", small, at("https://www.youtube.com/watch?v=1"), true, false},
        {"a short link", "web", small, at("https://youtu.be/1"), true, false},
        {"another page", "web", small, at("https://www.youtube.com/feed/library")},
        {"before the guide", "web", small, at("https://youtu.be/1"), false, true},
        {"a video's title", "web", small, titled("Cats - YouTube — Browser"), true, false},
        {"a site's title", "web", small, titled("YouTube — Browser")},
    };
    for (const auto& [what, front, window, page, onboarded, raised] : rows) {
        SmallStage stage;
        stage.computer.defaults.set("onboarded", onboarded);
        stage.computer.defaults.set("behindApps", std::string("slides\nother"));
        stage.computer.workspace.frontPage = page;
        stage.front(front, window);
        EXPECT_FALSE(stage.window->isRaised()) << what;
        stage.raise();
        EXPECT_EQ(stage.window->isRaised(), raised) << what;
    }
}

TEST(TheStage, NoticesAFullScreenWindowWithinTwoSecondsAndPollsOnlyWhenItMust) {
    SmallStage stage;
    stage.front("player", {100, 100, 600, 400});
    stage.raise();
    stage.computer.putWindow("player", {.process = 7, .frame = Rect{0, 0, 1440, 900}});
    stage.computer.runLoop.advance(2.6);
    EXPECT_FALSE(stage.window->isRaised());
    stage.computer.closeWindow("player");
    stage.computer.runLoop.advance(2.6);
    EXPECT_TRUE(stage.window->isRaised());
    stage.computer.defaults.set("overApps", false);
    stage.computer.runLoop.advance(2.6);
    EXPECT_FALSE(stage.window->isRaised());
    stage.computer.defaults.set("overApps", true);
    stage.computer.runLoop.advance(100);
    EXPECT_FALSE(stage.window->isRaised());  // not before an application comes to the front
    stage.computer.workspace.spaceChanged.emit();
    EXPECT_TRUE(stage.window->isRaised());
}

}  // namespace
}  // namespace quibbits
