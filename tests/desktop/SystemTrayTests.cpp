// The icon in a tray of the older kind, which another program is here.

#include "PanelWithTray.h"
#include "XTest.h"
#include "desktop/x11/SystemTray.h"

namespace quibbits {
namespace {

constexpr std::uint32_t grey = 0x808890;
constexpr std::uint32_t red = 0xff0000;
constexpr int side = PanelWithTray::side;

struct SystemTrayTest : XTest {
    void prepare() {
        connect();
        icon = std::make_unique<x11::SystemTray>(*connection, *screens, *pointer);
        icon->onClick = [this] { ++clicks; };
        icon->onRightClick = [this] { ++rightClicks; };
        icon->setImage(Image::fromArgb(2, 1, {0xffff0000, 0}));
        program = std::make_unique<OtherProgram>(desktop->display());
    }
    bool isTakenIn() {
        return eventually([&] {
            tray->turn();
            return icon->frame().has_value();
        });
    }
    void click(int x, int y, int button) {
        other->movePointer(x, y);
        XTest::click(button, [this] { return clicks + rightClicks; });
    }

    std::unique_ptr<x11::SystemTray> icon;
    std::unique_ptr<OtherProgram> program;
    std::unique_ptr<PanelWithTray> tray;
    int clicks = 0, rightClicks = 0;
};

TEST_F(SystemTrayTest, TheIconIsTakenInShownAndClicked) {
    prepare();
    tray = std::make_unique<PanelWithTray>(*program);
    turnFor(0.1);
    tray->turn();
    EXPECT_EQ(tray->icon, 0u) << "nobody wanted it";
    icon->setWanted(true);
    EXPECT_TRUE(icon->isThere());
    ASSERT_TRUE(isTakenIn());
    EXPECT_EQ(icon->frame(), (Rect{1000, 773, side, side})) << "exactly";
    EXPECT_TRUE(shows(1006, 15, red)) << "12 times as large";
    EXPECT_TRUE(shows(1018, 15, grey)) << "see-through";
    EXPECT_TRUE(shows(1006, 5, grey)) << "above the picture";

    int elsewhere = 0;
    const auto listener = pointer->elsewhere.subscribe(
        [&](PointerEvent event) { elsewhere += event == PointerEvent::leftDown; });
    click(1006, 15, 1);
    click(1006, 15, 3);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(rightClicks, 1);
    EXPECT_EQ(elsewhere, 0) << "the icon is this program's own";
    icon->setImage(Image::fromArgb(1, 1, {0xff00ff00}));
    EXPECT_TRUE(shows(1018, 15, 0x00ff00));
    icon->setWanted(false);
    EXPECT_FALSE(icon->frame());
    EXPECT_TRUE(shows(1006, 15, grey));
}

TEST_F(SystemTrayTest, ATrayThatComesLateOrRestartsTakesItIn) {
    prepare();
    icon->setWanted(true);
    turnFor(0.1);
    EXPECT_FALSE(icon->isThere());
    EXPECT_FALSE(icon->frame());
    tray = std::make_unique<PanelWithTray>(*program);
    ASSERT_TRUE(isTakenIn());
    EXPECT_TRUE(shows(1006, 15, red));
    program->close(tray->panel);
    EXPECT_TRUE(eventually([&] { return !icon->isThere(); }));
    EXPECT_FALSE(icon->frame());
    tray = std::make_unique<PanelWithTray>(*program);
    ASSERT_TRUE(isTakenIn());
    EXPECT_TRUE(shows(1006, 15, red));
}

}  // namespace
}  // namespace quibbits
