// What is said of the ball where a tray says nothing itself.

#include <gtest/gtest.h>

#include "BusTest.h"
#include "desktop/session/TrayIcon.h"
#include "menus/ToolTip.h"
#include "sim/SimulatedComputer.h"
#include "support/DrawnSheets.h"
#include "support/FlatText.h"

namespace quibbits {
namespace {

struct OlderTray final : OtherTray {
    void setImage(Image) override {}
    void setWanted(bool) override {}
    bool isThere() const override { return true; }
    std::optional<Rect> frame() const override { return Rect{600, 776, 24, 24}; }
};

class ToolTipTest : public BusTest {
protected:
    ToolTipTest() {
        computer.screens.screen =
            Screen{.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 0, 1280, 770}};
        icon.show(Image::fromArgb(1, 1, {0xff112233}), "Quibbits");
    }
    bool isShown() const { return !shown.expired(); }

    DrawnSheets sheets = DrawnSheets::ofWalker();
    FlatText text;
    SimulatedComputer computer{{}, sheets, text};
    OlderTray tray;
    session::Bus bus{loop, place()};
    std::string said;
    std::weak_ptr<void> shown;
    session::TrayIcon icon{loop,
                           bus,
                           {.screens = computer.screens,
                            .pointer = computer.pointer,
                            .dock = computer.dock,
                            .pointOf = {},
                            .openMenu = {},
                            .otherTray = &tray,
                            .toolTip = [this](const std::string& words, Rect) {
                                said = words;
                                const std::shared_ptr<void> tip = std::make_shared<int>();
                                shown = tip;
                                return tip;
                            }}};
};

TEST_F(ToolTipTest, ComesWhenThePointerRestsOnTheIconAndGoesWithIt) {
    tray.onHover(true);
    letPass(0.3);
    EXPECT_FALSE(isShown()) << "not in passing";
    letPass(0.5);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(said, "Quibbits");
    tray.onHover(false);
    EXPECT_FALSE(isShown());
    tray.onHover(true);
    letPass(0.3);
    tray.onClick();
    letPass(0.6);
    EXPECT_FALSE(isShown()) << "a click has other answers";
}

TEST_F(ToolTipTest, LiesBesideTheIconAndInsideTheScreen) {
    struct Row {
        const char* where;
        Rect icon;
        bool isBelow;
    };
    const Rect screen{0, 0, 1280, 800};
    for (const auto& [where, at, isBelow] :
         std::vector<Row>{{"at the top", {600, 776, 24, 24}, true},
                          {"in the upper right corner", {1256, 776, 24, 24}, true},
                          {"at the bottom", {600, 0, 24, 24}, false},
                          {"in the lower left corner", {0, 0, 24, 24}, false}}) {
        const ToolTip tip(computer.panels(), text, "Quibbits", {.subject = at, .bounds = screen});
        const Rect frame = tip.panel().frame();
        EXPECT_TRUE(tip.panel().isVisible());
        EXPECT_EQ(frame.maxY() < at.minY(), isBelow) << where;
        EXPECT_EQ(frame.minY() > at.maxY(), !isBelow) << where;
        EXPECT_GE(frame.minX(), 0) << where;
        EXPECT_LE(frame.maxX(), 1280) << where;
    }
}

}  // namespace
}  // namespace quibbits
