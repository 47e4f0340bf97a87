// Popup menus and carried items on a real X server, with the mouse and the keys of a user.

#include <gmock/gmock.h>

#include <cmath>

#include "XTest.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int screenHeight = 800;
constexpr std::uint32_t grey = 0x808890;

// Key codes of a usual keyboard.
constexpr int escapeKey = 9;
constexpr int controlKey = 37;
constexpr int returnKey = 36;
constexpr int nKey = 57;
constexpr int upKey = 111;
constexpr int downKey = 116;

struct MenuTest : XTest {
    void prepare() {
        desktop->startWindowManager();
        desktop->startCompositor();
        beneath = other->open({.x = 10, .y = 10, .width = 1200, .height = 780, .color = grey});
        EXPECT_TRUE(shows(600, 400, grey));
        connect();
        panel = panels->makePanel({.frame = screens->main()->frame});
        panel->mouseAreas = [] { return std::vector{Rect{300, 300, 60, 60}}; };
        panel->orderFront();
        takesMouse({330, 330}, true);
        moveTo({1200, 100});
        other->takenClicks();
    }
    /// Waits until a press at a place would go to the panel, or to what lies beneath.
    void takesMouse(Point at, bool does) {
        moveTo(at);
        EXPECT_TRUE(eventually([&] {
            return (other->underPointer() != other->frameOf(beneath)) == does;
        })) << at.x
            << ", " << at.y;
    }
    Menu menu() {
        const auto choosing = [this](const char* name) {
            return [this, name] { chosen.emplace_back(name); };
        };
        return {{{"Evolve Now", choosing("evolve")},
                 {"Not Yet", choosing("later"), 'n'},
                 {},
                 {"No lines left to choose", {}},
                 {"Forget It", choosing("forget")}}};
    }
    const PopupMenu& open(Point at = {500, 500}) {
        panel->popUp(menu(), at);
        settle();
        EXPECT_TRUE(isOpen());
        return panels->menu()->menu();
    }
    bool isOpen() const { return panels->menu() != nullptr; }
    bool closes() {
        return eventually([&] { return !isOpen(); });
    }
    void moveTo(Point at) {
        other->movePointer(static_cast<int>(at.x), screenHeight - static_cast<int>(at.y));
        settle();
        EXPECT_TRUE(eventually([&] {
            const Point seen = pointer->location();
            return std::abs(seen.x - at.x) < 1 && std::abs(seen.y - at.y) <= 1;
        }));
    }
    void click(Point at, int button = 1) {
        moveTo(at);
        other->press(button);
        other->release(button);
        settle();
    }
    void strike(int key) {
        other->key(key, true);
        other->key(key, false);
        settle();
    }
    /// Clicks that reach the window beneath once the window manager has passed them on.
    bool windowGetsClick(Point at) {
        int taken = 0;
        moveTo(at);
        other->takenClicks();
        other->press();
        other->release();
        return eventually([&] { return (taken += other->takenClicks()) >= 2; });
    }
    /// Nobody holds the mouse or the keys any more.
    void expectFreeInput() {
        EXPECT_TRUE(windowGetsClick({800, 200})) << "the window below does not get the mouse";
        EXPECT_TRUE(eventually([&] {
            auto* keys =
                xcb_grab_keyboard_reply(other->xcb(),
                                        xcb_grab_keyboard(other->xcb(), 0, other->root(), 0,
                                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                        nullptr);
            const bool free = keys && keys->status == XCB_GRAB_STATUS_SUCCESS;
            std::free(keys);
            return free;
        }));
        xcb_ungrab_keyboard(other->xcb(), 0);
    }

    xcb_window_t beneath = 0;
    std::unique_ptr<Panel> panel;
    std::vector<std::string> chosen;
};

TEST_F(MenuTest, TheLineUnderThePointerIsPickedAndAClickChoosesIt) {
    prepare();
    const auto& shown = open();
    EXPECT_FALSE(shown.picked());
    moveTo(shown.frameOf(1).center());
    EXPECT_EQ(shown.picked(), 1u);
    EXPECT_TRUE(shows(static_cast<int>(shown.frameOf(1).maxX()) - 4,
                      screenHeight - static_cast<int>(shown.frameOf(1).midY()), 0xffd94d));
    moveTo(shown.frameOf(2).center());
    EXPECT_FALSE(shown.picked()) << "a separator";
    click(shown.frameOf(3).center());
    EXPECT_FALSE(shown.picked()) << "a line that cannot be chosen";
    EXPECT_TRUE(isOpen());
    click(shown.frameOf(4).center());
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre("forget"));
    EXPECT_EQ(other->takenClicks(), 0);
    expectFreeInput();
}

TEST_F(MenuTest, KeysWalkThroughTheLinesThatCanBeChosen) {
    prepare();
    const auto& shown = open();
    strike(upKey);
    EXPECT_EQ(shown.picked(), 4u);
    strike(downKey);
    EXPECT_EQ(shown.picked(), 0u);
    strike(upKey);
    strike(upKey);
    EXPECT_EQ(shown.picked(), 1u);
    strike(returnKey);
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre("later"));
    open();
    strike(downKey);
    strike(escapeKey);
    EXPECT_TRUE(closes());
    EXPECT_EQ(chosen.size(), 1u);
    open();
    strike(nKey);
    EXPECT_TRUE(isOpen()) << "the letter alone chooses nothing";
    other->key(controlKey, true);
    strike(nKey);
    other->key(controlKey, false);
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, ElementsAre("later", "later"));
    expectFreeInput();
}

TEST_F(MenuTest, APressOutsideClosesItAndReachesNobodyElse) {
    prepare();
    for (const int button : {1, 3}) {
        open();
        int elsewhere = 0;
        const auto listener = pointer->elsewhere.subscribe([&](PointerEvent event) {
            elsewhere += event == PointerEvent::leftDown || event == PointerEvent::rightDown;
        });
        moveTo({900, 200});
        other->press(button);
        EXPECT_TRUE(closes()) << button;
        other->release(button);
        turnFor(0.3);
        EXPECT_EQ(elsewhere, 0);
    }
    EXPECT_THAT(chosen, IsEmpty());
    expectFreeInput();
}

TEST_F(MenuTest, PressedDrawnAndLetGoOnALineChoosesItAndAClickLeavesItOpen) {
    prepare();
    panel->onRightMouseDown = [this] { panel->popUp(menu(), pointer->location()); };
    takesMouse({330, 330}, true);
    other->press(3);
    settle();
    other->release(3);
    ASSERT_TRUE(eventually([&] { return isOpen(); }));
    settle();
    ASSERT_TRUE(isOpen());
    EXPECT_FALSE(panels->menu()->menu().picked());
    strike(escapeKey);
    EXPECT_TRUE(closes());

    moveTo({800, 100});
    takesMouse({330, 330}, true);
    other->press(3);
    ASSERT_TRUE(eventually([&] { return isOpen(); }));
    settle();
    moveTo(panels->menu()->menu().frameOf(1).center());
    EXPECT_EQ(panels->menu()->menu().picked(), 1u);
    other->release(3);
    EXPECT_TRUE(closes());
    EXPECT_TRUE(eventually([&] { return !chosen.empty(); }));
    EXPECT_THAT(chosen, ElementsAre("later"));
}

TEST_F(MenuTest, TheMenuStaysOnTheScreen) {
    prepare();
    const Rect screen = screens->main()->frame;
    struct Case {
        const char* corner;
        Point at;
        bool fits;
    };
    for (const auto& [corner, at, fits] :
         {Case{"upper left", {0, 800}, false}, Case{"upper right", {1279, 799}, false},
          Case{"lower left", {1, 1}, false}, Case{"lower right", {1279, 0}, false},
          Case{"middle", {500, 500}, true}}) {
        const Rect frame = open(at).frame();
        EXPECT_EQ(frame.intersected(screen), frame) << corner;
        EXPECT_EQ(frame.minX() == at.x && frame.maxY() == at.y, fits) << corner;
        const int x = static_cast<int>(frame.minX()) + 12;
        EXPECT_TRUE(eventually([&] {
            return other->pixel(x, screenHeight - static_cast<int>(frame.midY())) != grey;
        })) << corner;
        strike(escapeKey);
        EXPECT_TRUE(closes());
    }
    const Rect frame = open({600, 60}).frame();
    EXPECT_EQ(frame.minY(), 60) << "without room beneath it stands on its corner";
}

TEST_F(MenuTest, AMenuThatLosesTheMouseIsClosed) {
    prepare();
    open();
    ASSERT_TRUE(eventually([&] { return panels->menu()->holdsInput(); }));
    // The topmost window is the menu's; another program takes it off the screen.
    auto* tree =
        xcb_query_tree_reply(other->xcb(), xcb_query_tree(other->xcb(), other->root()), nullptr);
    ASSERT_TRUE(tree);
    const auto* windows = xcb_query_tree_children(tree);
    for (int i = xcb_query_tree_children_length(tree) - 1; i >= 0 && isOpen(); --i) {
        const auto name = other->numbers(windows[i], "_NET_WM_PID");
        if (name.empty() || name[0] != static_cast<std::uint32_t>(getpid())) continue;
        xcb_unmap_window(other->xcb(), windows[i]);
        xcb_flush(other->xcb());
        break;
    }
    std::free(tree);
    EXPECT_TRUE(closes());
    EXPECT_THAT(chosen, IsEmpty());
    expectFreeInput();
}

TEST_F(MenuTest, WhileAnotherProgramHasTheMouseTheMenuWaitsForIt) {
    prepare();
    auto* taken = xcb_grab_pointer_reply(
        other->xcb(),
        xcb_grab_pointer(other->xcb(), 0, other->root(), XCB_EVENT_MASK_BUTTON_PRESS,
                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, 0, 0, 0),
        nullptr);
    ASSERT_TRUE(taken && taken->status == XCB_GRAB_STATUS_SUCCESS);
    std::free(taken);
    open();
    EXPECT_FALSE(panels->menu()->holdsInput());
    xcb_ungrab_pointer(other->xcb(), 0);
    xcb_flush(other->xcb());
    EXPECT_TRUE(eventually([&] { return panels->menu()->holdsInput(); }));
    click({900, 200});
    EXPECT_TRUE(closes());
}

TEST_F(MenuTest, APanelThatEndsClosesItsMenu) {
    prepare();
    open();
    panel.reset();
    EXPECT_FALSE(isOpen());
    expectFreeInput();
}

// Presses elsewhere.

TEST_F(MenuTest, OnlyPressesThatNoPanelGetsAreToldAsElsewhere) {
    prepare();
    std::vector<PointerEvent> presses;
    const auto listener = pointer->elsewhere.subscribe([&](PointerEvent event) {
        if (event == PointerEvent::leftDown || event == PointerEvent::rightDown) {
            presses.push_back(event);
        }
    });
    int downs = 0;
    panel->onMouseDown = panel->onRightMouseDown = [&] { ++downs; };
    const auto arePressed = [&](std::size_t count) {
        return eventually([&] { return presses.size() >= count; });
    };
    click({800, 200});
    EXPECT_TRUE(arePressed(1));
    EXPECT_THAT(presses, ElementsAre(PointerEvent::leftDown));
    click({800, 200}, 3);
    EXPECT_TRUE(arePressed(2));
    click({800, 200}, 2);
    EXPECT_THAT(presses, ElementsAre(PointerEvent::leftDown, PointerEvent::rightDown));
    presses.clear();
    for (const int button : {1, 3}) {
        takesMouse({330, 330}, true);
        click({330, 330}, button);
    }
    EXPECT_TRUE(eventually([&] { return downs == 2; }));
    turnFor(0.5);
    EXPECT_THAT(presses, IsEmpty());
    takesMouse({800, 200}, false);
    other->press();
    EXPECT_TRUE(arePressed(1));
    turnFor(0.3);
    EXPECT_THAT(presses, ElementsAre(PointerEvent::leftDown)) << "before it is released";
    other->release();
}

// Carried items.

struct CarryTest : MenuTest {
    /// A shelf with an item, beside the panel over the screen, which takes drops around a place.
    void prepareShelf() {
        prepare();
        panel.reset();
        panel = panels->makePanel({.frame = screens->main()->frame, .acceptsDrops = true});
        panel->onDragOver = [this](const DragInfo& drag) {
            overs.push_back(drag.location);
            return creature.contains(drag.location);
        };
        panel->onDrop = [this](const DragInfo& drag) {
            dropped.push_back(drag.item.value_or("nothing"));
            return true;
        };
        panel->orderFront();
        shelf = panels->makePanel({.frame = {500, 500, 100, 100}, .level = PanelLevel::menu});
        shelf->setIgnoresMouse(false);
        shelf->onMouseUp = [this] { ++ups; };
        shelf->onMouseDragged = [this] {
            if (std::exchange(dragging, true)) return;
            shelf->beginItemDrag({.item = "berry",
                                  .image = Image::fromArgb(2, 2, std::vector<Argb>(4, 0xffff0000)),
                                  .size = {32, 32},
                                  .onMove =
                                      [this](Point at) {
                                          moves.push_back(at);
                                          if (shelf) shelf->setAlpha(0);
                                      },
                                  .onEnd = [this] { ++ends; }});
        };
        shelf->onMouseDown = [this] { ++downs; };
        shelf->orderFront();
        takesMouse({550, 550}, true);
    }
    void pressOnTheShelf() {
        takesMouse({550, 550}, true);
        const int before = downs;
        other->press();
        EXPECT_TRUE(eventually([&] { return downs > before; }));
    }
    void beginCarrying() {
        pressOnTheShelf();
        moveTo({560, 560});
        EXPECT_TRUE(eventually([&] { return dragging; }));
        moveTo({600, 400});
    }
    bool ended() {
        return eventually([&] { return ends > 0; });
    }

    std::unique_ptr<Panel> shelf;
    Rect creature{800, 100, 60, 60};
    std::vector<Point> overs, moves;
    std::vector<std::string> dropped;
    bool dragging = false;
    int downs = 0, ups = 0, ends = 0;
};

TEST_F(CarryTest, AnItemIsCarriedWithItsPictureAndDroppedOnAnotherPanel) {
    prepareShelf();
    int elsewhere = 0;
    beginCarrying();
    const auto listener = pointer->elsewhere.subscribe([&](PointerEvent) { ++elsewhere; });
    EXPECT_TRUE(shows(600, screenHeight - 400, 0xff0000));
    EXPECT_TRUE(shows(585, screenHeight - 400 - 15, 0xff0000));
    EXPECT_NE(other->pixel(600 - 18, screenHeight - 400), 0xff0000u);
    moveTo({830, 130});
    EXPECT_TRUE(shows(830, screenHeight - 130, 0xff0000));
    EXPECT_TRUE(eventually([&] { return overs.back() == Point{830, 130}; }));
    EXPECT_EQ(moves.back(), (Point{830, 130}));
    EXPECT_THAT(dropped, IsEmpty());
    other->release();
    EXPECT_TRUE(ended());
    turnFor(0.3);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(ups, 0);
    EXPECT_EQ(elsewhere, 0) << "while it is carried nothing happens elsewhere";
    EXPECT_THAT(dropped, ElementsAre("berry"));
    EXPECT_TRUE(shows(830, screenHeight - 130, grey)) << "its picture is gone";
    EXPECT_EQ(other->takenClicks(), 0);
    EXPECT_FALSE(pointer->buttons().left);
    expectFreeInput();
}

TEST_F(CarryTest, WhereNobodyTakesItNothingIsDroppedAndItEndsAllTheSame) {
    prepareShelf();
    beginCarrying();
    other->release();
    EXPECT_TRUE(ended());
    EXPECT_THAT(dropped, IsEmpty());
    expectFreeInput();
}

TEST_F(CarryTest, EscapeCallsItOff) {
    prepareShelf();
    beginCarrying();
    moveTo({830, 130});
    strike(escapeKey);
    EXPECT_TRUE(ended());
    other->release();
    turnFor(0.3);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(dropped, IsEmpty());
    expectFreeInput();
}

TEST_F(CarryTest, TheEndOfItsPanelEndsIt) {
    prepareShelf();
    beginCarrying();
    shelf.reset();
    EXPECT_TRUE(ended());
    other->release();
    turnFor(0.2);
    EXPECT_EQ(ends, 1);
    expectFreeInput();
}

TEST_F(CarryTest, AClickTooQuickToCarryAnythingEndsAtOnce) {
    prepareShelf();
    pressOnTheShelf();
    other->movePointer(555, screenHeight - 555);
    other->release();
    EXPECT_TRUE(eventually([&] { return dragging ? ends > 0 : ups > 0; }));
    turnFor(0.2);
    EXPECT_EQ(ends, dragging ? 1 : 0);
    expectFreeInput();
}

TEST_F(CarryTest, AnInvisiblePanelLetsTheMouseThrough) {
    prepareShelf();
    click({550, 550});
    EXPECT_TRUE(eventually([&] { return downs == 1; }));
    shelf->setAlpha(0);
    takesMouse({560, 560}, false);
    EXPECT_TRUE(windowGetsClick({560, 560}));
    EXPECT_EQ(downs, 1);
    shelf->setAlpha(1);
    moveTo({800, 200});
    takesMouse({560, 560}, true);
    click({560, 560});
    EXPECT_TRUE(eventually([&] { return downs == 2; }));
}

}  // namespace
}  // namespace quibbits
