// Where the panels of other programs are, as the eye sees them.
#include <xcb/shape.h>

#include "XTest.h"

namespace quibbits {
namespace {

const std::string dockType = "_NET_WM_WINDOW_TYPE_DOCK";

using Strut = std::vector<std::uint32_t>;

/// What a panel at the bottom reserves, over all of the display or a part of it.
Strut bottom(std::uint32_t height, std::uint32_t first = 0, std::uint32_t last = 0) {
    return {0, 0, 0, height, 0, 0, 0, 0, 0, 0, first, last};
}

struct EdgePanelTest : XTest {
    xcb_window_t dock(const xcb_rectangle_t& place, Strut strut) {
        return other->open({.x = place.x,
                            .y = place.y,
                            .width = place.width,
                            .height = place.height,
                            .type = dockType,
                            .strut = std::move(strut)});
    }
    void settle() { turnFor(0.3); }
    /// As a window manager does when its list has changed.
    void tellOfWindows(const std::vector<std::uint32_t>& windows) {
        other->setNumbers(other->root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, windows);
    }
    bool comesToShow(const std::vector<Rect>& seen) {
        return eventually([&] { return screens->panels() == seen; });
    }
};

TEST_F(EdgePanelTest, EveryPanelHasItsOwnPlaceWhateverTheOrder) {
    struct Panel {
        xcb_rectangle_t place;
        Strut strut;
    };
    struct Case {
        const char* name;
        std::vector<Panel> opened;
        std::vector<Rect> seen;
    };
    const Panel bar{{0, 760, 1280, 40}, bottom(40, 0, 1279)};
    const Panel dockAbove{{440, 710, 400, 50}, bottom(90, 440, 839)};
    const std::vector<Case> cases{
        {"a dock above a bar", {dockAbove, bar}, {{0, 0, 1280, 40}, {440, 0, 400, 90}}},
        {"the same, opened the other way round",
         {bar, dockAbove},
         {{0, 0, 1280, 40}, {440, 0, 400, 90}}},
        {"a bar on top of another, which counts itself only",
         {{{0, 752, 1280, 20}, bottom(20)}, {{0, 772, 1280, 28}, bottom(28)}},
         {{0, 0, 1280, 28}, {0, 0, 1280, 48}}},
        {"two panels in the corners",
         {{{0, 760, 400, 40}, bottom(40, 0, 399)}, {{980, 770, 300, 30}, bottom(30, 980, 1279)}},
         {{0, 0, 400, 40}, {980, 0, 300, 30}}},
        {"a window as wide as the screen that reserves a part",
         {{{0, 740, 1280, 60}, bottom(60, 440, 839)}},
         {{440, 0, 400, 60}}},
        {"a window higher than what it reserves, which is see-through above",
         {{{440, 680, 400, 120}, bottom(50, 440, 839)}},
         {{440, 0, 400, 50}}},
        {"more reserved than is seen", {{{0, 770, 1280, 30}, bottom(60)}}, {{0, 0, 1280, 30}}},
        {"nothing reserved", {{{300, 764, 600, 36}, {}}}, {{300, 0, 600, 36}}},
        {"along the left side", {{{0, 0, 60, 800}, {60, 0, 0, 0}}}, {{0, 0, 60, 800}}},
        {"a window over all of the screen", {{{0, 0, 1280, 800}, {}}}, {}},
    };
    for (const auto& [name, opened, seen] : cases) {
        std::vector<xcb_window_t> windows;
        for (const auto& panel : opened) windows.push_back(dock(panel.place, panel.strut));
        xcb_flush(other->xcb());
        tellOfWindows(windows);
        connect();
        EXPECT_EQ(screens->panels(), seen) << name;
        disconnect();
        for (const auto window : windows) other->close(window);
        xcb_flush(other->xcb());
    }
}

TEST_F(EdgePanelTest, APanelThatHidesItselfIsThereWhileItIsOut) {
    desktop->startWindowManager();
    connect();
    const auto panel = dock({300, 750, 600, 50}, {});
    const std::vector out{Rect{300, 0, 600, 50}};
    EXPECT_TRUE(comesToShow(out));
    const auto moveTo = [&](std::uint32_t y) {
        xcb_configure_window(other->xcb(), panel, XCB_CONFIG_WINDOW_Y, &y);
        xcb_flush(other->xcb());
    };
    moveTo(800);
    EXPECT_TRUE(comesToShow({})) << "it has slid off the screen";
    moveTo(750);
    EXPECT_TRUE(comesToShow(out));
    // Others stay where they are and let the mouse through.
    const auto takeMouse = [&](std::vector<xcb_rectangle_t> parts) {
        xcb_shape_rectangles(other->xcb(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, panel, 0, 0,
                             static_cast<std::uint32_t>(parts.size()), parts.data());
        xcb_flush(other->xcb());
    };
    takeMouse({});
    EXPECT_TRUE(comesToShow({}));
    takeMouse({{100, 10, 400, 40}});
    EXPECT_TRUE(comesToShow({{400, 0, 400, 40}}));
    other->close(panel);
    EXPECT_TRUE(comesToShow({}));
}

TEST_F(EdgePanelTest, ShellsWithoutPanelWindowsTellByWhatTheyLeaveFree) {
    const auto workArea = [&](const std::string& name, const std::vector<std::uint32_t>& values) {
        other->setNumbers(other->root(), name, XCB_ATOM_CARDINAL, values);
    };
    workArea("_NET_WORKAREA", {0, 0, 1280, 760});
    connect();
    EXPECT_EQ(screens->panels(), (std::vector{Rect{0, 0, 1280, 40}}));
    EXPECT_EQ(screens->main()->visibleFrame, (Rect{0, 40, 1280, 760}));
    workArea("_NET_WORKAREA", {70, 27, 1210, 773});
    EXPECT_TRUE(comesToShow({{0, 0, 70, 773}})) << "a dock along the left, under a bar at the top";
    EXPECT_EQ(screens->main()->visibleFrame, (Rect{70, 0, 1210, 773}));
    // The windows of panels and what they reserve are no news.
    workArea("_NET_WORKAREA", {0, 0, 1280, 760});
    dock({440, 760, 400, 40}, bottom(40, 440, 839));
    xcb_flush(other->xcb());
    tellOfWindows({});
    EXPECT_TRUE(comesToShow({{440, 0, 400, 40}}));
    EXPECT_EQ(screens->main()->visibleFrame, (Rect{0, 40, 1280, 760}));
    workArea("_NET_WORKAREA", {0, 0, 10, 10});
    settle();
    EXPECT_EQ(screens->panels().size(), 1u) << "nobody can live there";
}

TEST_F(EdgePanelTest, OfSeveralMonitorsEachHasAWorkAreaOfItsOwn) {
    other->addMonitor("left", {0, 0, 500, 800}, false);
    other->addMonitor("right", {500, 0, 780, 800}, true);
    other->setNumbers(other->root(), "_NET_WORKAREA", XCB_ATOM_CARDINAL, {0, 0, 1280, 700});
    connect();
    EXPECT_TRUE(screens->panels().empty()) << "it may be the other monitor's";
    other->setNumbers(other->root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {1});
    other->setNumbers(other->root(), "_GTK_WORKAREAS_D1", XCB_ATOM_CARDINAL,
                      {0, 0, 500, 800, 500, 0, 780, 752});
    other->setNumbers(other->root(), "_NET_WORKAREA", XCB_ATOM_CARDINAL, {0, 0, 1280, 752});
    EXPECT_TRUE(comesToShow({{0, 0, 780, 48}}));
}

TEST_F(EdgePanelTest, APanelAtTheLowerEdgeOfAnUpperMonitorIsOne) {
    other->addMonitor("main", {0, 0, 1280, 500}, true);
    other->addMonitor("below", {0, 500, 1280, 300}, false);
    for (const auto& [name, strut] : {std::pair{"counts from the display's edge", bottom(330)},
                                      std::pair{"counts from its monitor's", bottom(30)},
                                      std::pair{"reserves nothing", Strut{}}}) {
        const auto panel = dock({0, 470, 1280, 30}, strut);
        xcb_flush(other->xcb());
        connect();
        EXPECT_EQ(screens->panels(), (std::vector{Rect{0, 0, 1280, 30}})) << name;
        EXPECT_EQ(screens->main()->visibleFrame.y, strut.empty() ? 0 : 30) << name;
        disconnect();
        other->close(panel);
        xcb_flush(other->xcb());
    }
}

TEST_F(EdgePanelTest, APanelThatNobodyListsIsFoundThoughItComesAfterUs) {
    connect();
    dock({0, 772, 1280, 28}, bottom(28));
    xcb_flush(other->xcb());
    EXPECT_TRUE(eventually([&] { return !screens->panels().empty(); }, 6));
    EXPECT_EQ(screens->panels(), (std::vector{Rect{0, 0, 1280, 28}}));
}

}  // namespace
}  // namespace quibbits
