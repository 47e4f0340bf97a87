#include "TemporaryFolder.h"
#include "XTest.h"
#include "desktop/LinuxComputer.h"
#include "desktop/x11/XWindowList.h"
#include "desktop/x11/XWorkspace.h"

namespace quibbits {
namespace {

struct XDesktop : XTest {};

TEST_F(XDesktop, AStillPointerWakesNobodyAndEveryMoveIsTold) {
    connect();
    int moved = 0;
    const auto listener = pointer->elsewhere.subscribe([&](PointerEvent event) {
        EXPECT_EQ(event, PointerEvent::moved);
        ++moved;
    });
    turnFor(1.5);
    EXPECT_TRUE(eventually([&] {
        const auto wakes = loop.wakes();
        const auto still = loop.timer(1, [] {});
        loop.turn(2);
        return loop.wakes() - wakes == 1;
    }));
    moved = 0;

    const Instant before = loop.now();
    other->movePointer(100, 100);
    loop.turn(patience);
    EXPECT_EQ(moved, 1) << "the first move wakes the program and is told at once";
    EXPECT_EQ(pointer->location(), (Point{100, 700}));
    EXPECT_LE(pointer->untouched(), loop.now() - before);
    const auto shake =
        loop.every(0.002, [&, x = 100]() mutable { other->movePointer(100 + ++x % 1000, 100); });
    moved = 0;
    const Instant start = loop.now();
    EXPECT_TRUE(eventually([&] { return moved >= 10; }));
    EXPECT_LE(moved, (loop.now() - start) * 10 + 3) << "ten a second are enough far away";
    pointer->setPace(this, x11::Pace::quick);
    EXPECT_TRUE(eventually([&] {
        moved = 0;
        turnFor(0.5);
        return moved >= 20;
    }));
}

TEST_F(XDesktop, ReleasesAndKeysAreSeenEverywhere) {
    desktop->startWindowManager();
    connect();
    other->open({.x = 0, .y = 0, .width = 800, .height = 600});
    std::vector<PointerEvent> events;
    const auto listener =
        pointer->elsewhere.subscribe([&](auto event) { events.push_back(event); });
    other->movePointer(100, 100);
    EXPECT_TRUE(eventually([&] { return !events.empty(); }));
    settle();
    events.clear();
    other->press();
    EXPECT_TRUE(eventually([&] { return pointer->buttons().left; }));
    other->movePointer(200, 100);
    EXPECT_TRUE(eventually([&] { return events.size() > 1; }));
    other->release();
    EXPECT_TRUE(eventually([&] { return events.size() > 2; }));
    EXPECT_EQ(events, (std::vector{PointerEvent::leftDown, PointerEvent::leftDragged,
                                   PointerEvent::leftUp}));
    EXPECT_FALSE(pointer->buttons().any());

    constexpr int altKey = 64;
    const Instant touched = loop.now();
    other->key(altKey, true);
    EXPECT_TRUE(eventually([&] { return pointer->modifiers() == Modifiers{.option = true}; }));
    other->key(altKey, false);
    turnFor(1.2);
    EXPECT_FALSE(pointer->modifiers().option);
    const Seconds idle = pointer->idle();
    EXPECT_GT(idle, 1);
    EXPECT_LE(idle, loop.now() - touched + 0.05);
    EXPECT_GT(pointer->untouched(), 1);
}

TEST_F(XDesktop, DocksTakeTheirPartOfTheScreenAndTheBottomOneTellsItsSpan) {
    desktop->startWindowManager();
    connect();
    EXPECT_EQ(screens->main()->visibleFrame, (Rect{0, 0, 1280, 800}));
    EXPECT_TRUE(screens->panels().empty());
    int told = 0;
    const auto listener = screens->panelsChanged.subscribe([&] { ++told; });
    const std::string type = "_NET_WM_WINDOW_TYPE_DOCK";
    const auto dock = other->open({.x = 340,
                                   .y = 752,
                                   .width = 600,
                                   .height = 48,
                                   .type = type,
                                   .strut = {0, 0, 0, 48, 0, 0, 0, 0, 0, 0, 340, 939}});
    other->open({.x = 0,
                 .y = 0,
                 .width = 1280,
                 .height = 30,
                 .type = type,
                 .strut = {0, 0, 30, 0, 0, 0, 0, 0, 0, 1279, 0, 0}});
    EXPECT_TRUE(eventually([&] {
        return screens->main()->visibleFrame == Rect{0, 48, 1280, 722};
    }));
    EXPECT_EQ(screens->panels(), (std::vector{Rect{0, 770, 1280, 30}, Rect{340, 0, 600, 48}}));
    EXPECT_GE(told, 1);
    EXPECT_LE(told, 2) << "once for each";
    other->close(dock);
    EXPECT_TRUE(eventually([&] {
        return screens->panels().size() == 1 &&
               screens->main()->visibleFrame == Rect{0, 0, 1280, 770};
    }));
}

TEST_F(XDesktop, TheMainMonitorIsThePrimaryOneAndEveryPointHasItsMonitor) {
    other->addMonitor("left", {0, 0, 500, 800}, false);
    other->addMonitor("right", {500, 100, 780, 700}, true);
    desktop->startWindowManager();
    connect();
    const Rect left{-500, 0, 500, 800};
    const Rect right{0, 0, 780, 700};
    EXPECT_EQ(screens->main()->frame, right);
    other->open({.x = 0,
                 .y = 760,
                 .width = 500,
                 .height = 40,
                 .type = "_NET_WM_WINDOW_TYPE_DOCK",
                 .strut = {0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 499}});
    EXPECT_TRUE(eventually([&] { return screens->at({-1, 0})->visibleFrame.y == 40; }));
    EXPECT_EQ(screens->main()->visibleFrame, right);
    EXPECT_TRUE(screens->panels().empty()) << "the panel is on the other monitor";
    EXPECT_EQ(screens->at({-10, 750})->frame, left);
    EXPECT_EQ(screens->at({60, 720})->frame, right) << "above it is nothing: the nearest";
    EXPECT_EQ(screens->at({-700, 10})->frame, left);
}

TEST_F(XDesktop, AManagerThatMakesRoomForEveryDockDoesNotGetThePanel) {
    const auto window = other->open({.x = 0, .y = 0, .width = 1278, .height = 798});
    other->setText(window, "_NET_WM_NAME", "i3");
    connect();
    const auto isUnmanaged = [&] {
        auto* tree = xcb_query_tree_reply(other->xcb(), xcb_query_tree(other->xcb(), other->root()),
                                          nullptr);
        const auto front = xcb_query_tree_children(tree)[tree->children_len - 1];
        std::free(tree);
        auto* values = xcb_get_window_attributes_reply(
            other->xcb(), xcb_get_window_attributes(other->xcb(), front), nullptr);
        const bool unmanaged = front != window && values->override_redirect != 0;
        std::free(values);
        return unmanaged;
    };
    const auto panel = panels->makePanel({.frame = screens->main()->frame});
    panel->orderFront();
    turnFor(0.1);
    EXPECT_FALSE(isUnmanaged());
    other->setNumbers(other->root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {window});
    EXPECT_TRUE(eventually(isUnmanaged));

    // Its windows have a border of the server's own, and it raises them without asking.
    const std::uint32_t border = 1;
    xcb_configure_window(other->xcb(), window, XCB_CONFIG_WINDOW_BORDER_WIDTH, &border);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(other->xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    EXPECT_FALSE(isUnmanaged());
    other->setNumbers(other->root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW, {window});
    EXPECT_TRUE(eventually(isUnmanaged)) << "in front again";
    const x11::XWindowList list(*connection, *screens);
    ASSERT_EQ(list.onScreen().size(), 1u);
    EXPECT_EQ(list.onScreen()[0].frame, (Rect{0, 0, 1280, 800}));

    // And it lists no docks.
    other->open({.x = 0,
                 .y = 780,
                 .width = 1280,
                 .height = 20,
                 .type = "_NET_WM_WINDOW_TYPE_DOCK",
                 .strut = {0, 0, 0, 20}});
    other->setNumbers(other->root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, {window});
    EXPECT_TRUE(eventually([&] { return screens->panels() == std::vector{Rect{0, 0, 1280, 20}}; }));
}

TEST_F(XDesktop, WindowsAreListedFrontToBack) {
    desktop->startWindowManager();
    connect();
    const x11::XWindowList list(*connection, *screens);
    EXPECT_TRUE(list.onScreen().empty());
    other->open({.x = 100, .y = 100, .width = 300, .height = 200});
    const auto front = other->open({.x = 200, .y = 150, .width = 300, .height = 200});
    other->open(
        {.x = 0, .y = 0, .width = 1280, .height = 800, .type = "_NET_WM_WINDOW_TYPE_DESKTOP"});
    other->open({.x = 0,
                 .y = 770,
                 .width = 1280,
                 .height = 30,
                 .type = "_NET_WM_WINDOW_TYPE_DOCK",
                 .strut = {0, 0, 0, 30}});
    other->setNumbers(front, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {10, 10, 5, 15});
    other->setNumbers(front, "_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL, {0x80000000});
    other->sync();
    std::vector<WindowInfo> windows;
    ASSERT_TRUE(eventually([&] {
        windows = list.onScreen();
        return windows.size() == 3 && windows[0].layer != 0;
    }));
    EXPECT_NE(windows[0].layer, 0) << "the dock";
    EXPECT_EQ(windows[1].layer, 0);
    EXPECT_EQ(windows[1].process, 4321);
    EXPECT_EQ(windows[1].frame, (Rect{210, 465, 280, 180}));
    EXPECT_NEAR(*windows[1].alpha, 0.5, 0.01);
    EXPECT_EQ(windows[2].frame, (Rect{100, 500, 300, 200}));
    EXPECT_EQ(windows[2].alpha, 1.0);
}

TEST_F(XDesktop, ApplicationsComeGoAndTakeTheFront) {
    desktop->startWindowManager();
    connect();
    x11::XWorkspace workspace(*connection);
    std::string heard;
    const auto note = [&](char c) { return [&heard, c] { heard += c; }; };
    const auto a = workspace.activated.subscribe(note('a'));
    const auto l = workspace.launched.subscribe(note('l'));
    const auto t = workspace.terminated.subscribe(note('t'));
    const auto s = workspace.spaceChanged.subscribe(note('s'));
    const auto editor = other->open({.windowClass = "Editor"});
    EXPECT_TRUE(eventually([&] { return heard.find('l') != std::string::npos; }));
    EXPECT_TRUE(eventually([&] {
        return workspace.frontmost() ==
               Application{.id = "editor", .process = 4321, .windowClass = "editor"};
    }));
    heard.clear();
    other->open({.windowClass = "Editor"});
    turnFor(0.3);
    // A window manager may take the focus off both on its way from one to the other.
    EXPECT_EQ(heard.find_first_of("lt"), heard.npos) << "a second window of the same application";
    other->open({.type = "_NET_WM_WINDOW_TYPE_DOCK", .windowClass = "Panel"});
    turnFor(0.3);
    EXPECT_EQ(workspace.running().size(), 1u);
    const auto mail = other->open({.windowClass = "Mail"});
    EXPECT_TRUE(
        eventually([&] { return workspace.frontmost() && workspace.frontmost()->id == "mail"; }));
    // As programs of one toolkit say it, and as the desktop's own window.
    other->setText(mail, "_GTK_APPLICATION_ID", "org.Some.Mail");
    other->setNumbers(mail, "_NET_WM_PID", XCB_ATOM_CARDINAL, {77});
    other->sync();
    x11::XWorkspace later(*connection);
    ASSERT_TRUE(later.frontmost());
    EXPECT_EQ(later.frontmost()->id, "org.some.mail");
    EXPECT_TRUE(later.frontmost()->isCalled("mail"));
    EXPECT_FALSE(later.frontmost()->isSelf);
    const auto icons =
        other->open({.type = "_NET_WM_WINDOW_TYPE_DESKTOP", .windowClass = "Pcmanfm"});
    other->setNumbers(other->root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {icons});
    EXPECT_TRUE(eventually(
        [&] { return workspace.frontmost() && workspace.frontmost()->id == "pcmanfm"; }));
    EXPECT_EQ(workspace.running().size(), 2u);
    other->close(icons);
    turnFor(0.3);
    heard.clear();
    other->close(mail);
    EXPECT_TRUE(eventually([&] { return heard.find('t') != std::string::npos; }));
    EXPECT_EQ(workspace.running().size(), 1u);
    other->close(editor);
    xcb_client_message_event_t change{};
    change.response_type = XCB_CLIENT_MESSAGE;
    change.format = 32;
    change.window = other->root();
    change.type = other->atom("_NET_CURRENT_DESKTOP");
    change.data.data32[0] = 1;
    xcb_send_event(other->xcb(), 0, other->root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&change));
    xcb_flush(other->xcb());
    EXPECT_TRUE(eventually([&] { return heard.find('s') != std::string::npos; }));
}

TEST_F(XDesktop, TheEndOfTheDisplayEndsTheProgramWithEverythingSaved) {
    TemporaryFolder folder;
    auto [computer, failure] = LinuxComputer::start({.display = desktop->display(),
                                                     .defaults = folder / "defaults.json",
                                                     .sheets = {},
                                                     .sessionBus = "unix:path=/nonexistent"});
    ASSERT_TRUE(computer) << failure;
    Random random(1);
    const Computer parts = computer->computer(random);
    const auto panel = computer->panels().makePanel({.frame = parts.screens.main()->frame});
    panel->orderFront();
    NotificationOutcome outcome;
    parts.notifications.send({}, [&](const auto& told) {
        outcome = told;
        parts.defaults.set("level", std::int64_t{12});
        desktop->endServer();
    });
    const auto guard = computer->loop().timer(patience, [] { std::abort(); });
    computer->run();
    EXPECT_NE(contents(folder / "defaults.json").find("12"), std::string::npos);
    EXPECT_EQ(outcome.error, "no notification service is connected");
}

TEST_F(XDesktop, WithoutADisplayTheReasonIsTold) {
    const auto result = LinuxComputer::start({.display = ":4999"});
    EXPECT_FALSE(result.computer);
    EXPECT_FALSE(result.failure.empty());
}

}  // namespace
}  // namespace quibbits
