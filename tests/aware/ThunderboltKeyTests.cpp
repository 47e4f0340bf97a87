#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "aware/ThunderboltKey.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class ThunderboltKeyTest : public testing::Test {
protected:
    ThunderboltKeyTest() { computer.defaults.set("thunderbolt", true); }
    void launch() {
        key = std::make_unique<ThunderboltKey>(
            ThunderboltKey::World{.hotKeys = computer.hotKeys,
                                  .workspace = computer.workspace,
                                  .fileBrowser = computer.fileBrowser,
                                  .accessibility = computer.accessibility,
                                  .loop = computer.runLoop,
                                  .defaults = computer.defaults});
        key->onStrike = [this](const auto& paths, const auto& points) {
            struck.push_back(paths);
            spots = points;
        };
    }
    void toFront(const std::string& application) { computer.bringToFront({.id = application}); }
    bool press() {
        const bool held = computer.hotKeys.press(ThunderboltKey::combination());
        computer.runLoop.advance(0);
        return held;
    }

    DrawnSheets sheets{{}};
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
    std::unique_ptr<ThunderboltKey> key;
    std::vector<std::vector<std::string>> struck;
    ThunderboltKey::Spots spots;
};

TEST_F(ThunderboltKeyTest, IsHeldWhileTheFileManagerIsInFront) {
    launch();
    computer.select({"/a/b.txt"}, {{"b.txt", {10, 20, 40, 60}}});
    EXPECT_FALSE(press());
    toFront("files");
    toFront("files");
    EXPECT_EQ(computer.hotKeys.held, 1);
    EXPECT_TRUE(press());
    EXPECT_THAT(struck, ElementsAre(ElementsAre("/a/b.txt")));
    EXPECT_THAT(spots, ElementsAre(Pair("/a/b.txt", Point{30, 50})));
    EXPECT_FALSE(computer.hotKeys.press({.modifiers = {.command = true}}));
    toFront("editor");
    EXPECT_FALSE(press());
    toFront("files");
    launch();
    EXPECT_EQ(computer.hotKeys.held, 1) << "also when it is in front at the launch";
    key.reset();
    EXPECT_EQ(computer.hotKeys.held, 0);
}

TEST_F(ThunderboltKeyTest, ASwitchCountsAtThePressAndAtTheNextActivation) {
    toFront("files");
    launch();
    computer.select({"/a"}, {});
    computer.defaults.set("thunderbolt", false);
    EXPECT_TRUE(press()) << "it is still held";
    EXPECT_THAT(struck, IsEmpty());
    toFront("files");
    EXPECT_FALSE(press());
    computer.defaults.set("thunderbolt", true);
    EXPECT_FALSE(press());
    toFront("files");
    EXPECT_TRUE(press());
    EXPECT_EQ(struck.size(), 1u);
}

TEST_F(ThunderboltKeyTest, AKeyThatAnotherProgramHasIsAskedForAgain) {
    computer.hotKeys.taken = true;
    toFront("files");
    launch();
    EXPECT_FALSE(press());
    computer.hotKeys.taken = false;
    toFront("files");
    EXPECT_TRUE(press());
}

TEST_F(ThunderboltKeyTest, NothingSelectedIsNothingAndNobodyToLookIsNoPoint) {
    toFront("files");
    launch();
    press();
    EXPECT_THAT(struck, IsEmpty());
    computer.fileBrowser.selection = {.paths = {"/a", "/b"}};
    press();
    EXPECT_THAT(struck, ElementsAre(ElementsAre("/a", "/b")));
    EXPECT_THAT(spots, IsEmpty());
    key->onStrike = nullptr;
    press();
    EXPECT_EQ(struck.size(), 1u);
}

/// A window with one selected element, whose label lies so many levels down in it.
AccessibleWindow windowWith(Rect frame, const std::string& name, Rect label, int levels) {
    AccessibleWindow window{.elements = {{.children = {1}, .selectedRows = {{1}}}}};
    window.elements.push_back({.frame = frame});
    for (int i = 0; i < levels; ++i) {
        window.elements.back().children = {window.elements.size()};
        window.elements.push_back({.frame = label});
    }
    window.elements.back().title = name;
    return window;
}

TEST(Spots, AreTheMiddleOfAnIconAndLeftOfTheLabelOfARow) {
    const Rect label{50, 100, 80, 20};
    const auto spot = [&](Rect frame, const std::string& name, int levels) {
        return ThunderboltKey::spots({"/d/plan.txt", "/d/plan.pdf"},
                                     windowWith(frame, name, label, levels));
    };
    const Rect icon{10, 20, 59, 20};
    const Rect row{10, 20, 60, 20};  // three times as wide as high
    EXPECT_THAT(spot(icon, "plan.txt", 1), ElementsAre(Pair("/d/plan.txt", Point{39.5, 30})));
    EXPECT_THAT(spot(row, "plan.txt", 1), ElementsAre(Pair("/d/plan.txt", Point{40, 110})));
    EXPECT_THAT(spot(row, "plan.pdf", 4), ElementsAre(Pair("/d/plan.pdf", Point{40, 110})));
    EXPECT_THAT(spot(row, "plan.pdf", 5), IsEmpty()) << "too deep";
    EXPECT_THAT(spot(row, "plan", 1), ElementsAre(Pair("/d/plan.txt", Point{40, 110})))
        << "a name without its extension is the first that fits";
    EXPECT_THAT(spot(row, "pla", 1), IsEmpty());
}

TEST(Spots, AreLookedForInThreeThousandElements) {
    AccessibleWindow window;
    const auto fill = [&](std::size_t place) {
        window.elements.assign(place + 2, {});
        for (std::size_t i = 1; i <= place; ++i) window.elements[0].children.push_back(i);
        window.elements[place].selectedChildren = {place + 1};
        window.elements[place + 1] = {.filename = "a", .title = "b", .frame = Rect{0, 0, 2, 2}};
    };
    fill(2999);
    EXPECT_THAT(ThunderboltKey::spots({"/a"}, window), ElementsAre(Pair("/a", Point{1, 1})));
    EXPECT_THAT(ThunderboltKey::spots({"/b"}, window), IsEmpty()) << "a file name comes first";
    fill(3000);
    EXPECT_THAT(ThunderboltKey::spots({"/a"}, window), IsEmpty());
    EXPECT_THAT(ThunderboltKey::spots({"/a"}, {}), IsEmpty());
}

TEST_F(ThunderboltKeyTest, TellsOnceThatItMayNotSeeAndChangesNobodysSettings) {
    launch();
    int told = 0;
    key->onUntrusted = [&] { ++told; };
    toFront("files");
    computer.accessibility.trusted = true;
    press();
    computer.accessibility.trusted = false;
    computer.fileBrowser.selection = {};
    press();
    EXPECT_EQ(told, 0) << "nothing is selected";
    computer.fileBrowser.selection.isKnown = false;
    for (int i = 0; i < 3; ++i) press();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(computer.accessibility.questions, 0);
}

}  // namespace
}  // namespace quibbits
