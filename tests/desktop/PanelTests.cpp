#include <atomic>
#include <cstdio>
#include <thread>

#include "XTest.h"

namespace quibbits {
namespace {

constexpr std::uint32_t red = 0xff0000;
constexpr std::uint32_t white = 0xffffff;
constexpr int screenHeight = 800;

/// A panel over the whole screen with one red square on it: the creature.
struct PanelTest : XTest {
    void showPanel(PanelLevel level = PanelLevel::floating) {
        connect();
        auto made = panels->makePanel(
            {.frame = screens->main()->frame, .level = level, .acceptsDrops = true});
        panel.reset(static_cast<x11::XPanel*>(made.release()));
        creature = engine->makeLayer(
            {.bounds = {0, 0, 60, 60}, .position = {330, 330}, .background = Color::rgb(red)});
        panel->root().addSublayer(creature);
        panel->onMouseMoved = [this] { ++moves; };
        panel->onMouseDown = [this] { ++downs; };
        panel->onMouseDragged = [this] { ++drags; };
        panel->onMouseUp = [this] { ++ups; };
        panel->onRightMouseDown = [this] { ++rightDowns; };
        panel->orderFront();
    }
    void moveCreature(Point to) {
        const Transaction transaction(*engine, Transaction::withoutActions());
        creature->setPosition(to);
    }
    Rect creatureRect() const { return creature->frame(); }
    static int down(double y) { return screenHeight - static_cast<int>(y); }

    int gotten() const { return ups + rightDowns; }
    /// Moves the pointer and waits until a press would go to the panel, or to what lies beneath.
    bool pointAt(int x, int y, bool isPanels) {
        other->movePointer(x, y);
        return eventually([&] {
            const auto window = panel->window();
            return (other->underPointer() == other->frameOf(window)) == isPanels;
        });
    }
    enum class Taker { panel, beneath };
    /// Clicks once the mouse should go there, and tells how many presses and releases the windows
    /// beneath got.
    int click(int x, int y, Taker expected, int button = 1) {
        EXPECT_TRUE(pointAt(x, y, expected == Taker::panel)) << x << ", " << y;
        return XTest::click(button, [this] { return gotten(); });
    }

    std::unique_ptr<x11::XPanel> panel;
    LayerRef creature;
    int moves = 0, downs = 0, drags = 0, ups = 0, rightDowns = 0;
};

TEST_F(PanelTest, ACreatureStandsOverWindowsAndTheRestIsSeeThrough) {
    desktop->startWindowManager();
    desktop->startCompositor();
    other->open({.x = 200, .y = 300, .width = 400, .height = 300});
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    EXPECT_TRUE(shows(301, down(301), red));
    EXPECT_TRUE(shows(298, down(330), white)) << "the window beside the creature";
    moveCreature({500, 330});
    EXPECT_TRUE(shows(500, down(330), red));
    EXPECT_TRUE(shows(330, down(330), white)) << "where the creature stood";
}

TEST_F(PanelTest, WhileNothingChangesNobodyWakes) {
    desktop->startWindowManager();
    desktop->startCompositor();
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    // A second until the pointer counts as still, and up to ten until the buffer is given back.
    EXPECT_TRUE(eventually([&] { return panel->stats().bufferBytes == 0; }));
    turnFor(1.5);
    const auto before = panel->stats();
    EXPECT_TRUE(eventually([&] {
        const auto wakes = loop.wakes();
        const auto end = loop.timer(2, [] {});
        loop.turn(3);
        return loop.wakes() - wakes == 1;  // the timer of this test alone
    }));
    EXPECT_EQ(panel->stats().wakes, before.wakes);
    EXPECT_EQ(panel->stats().repaints, before.repaints);
}

TEST_F(PanelTest, OnlyWhatChangesIsPainted) {
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    turnFor(0.5);
    const auto before = panel->stats();
    for (int i = 1; i <= 10; ++i) {
        moveCreature({330.0 + 4 * i, 330});
        moveCreature({330.0 + 5 * i, 330});
        turnFor(0.05);
    }
    const auto after = panel->stats();
    EXPECT_LE(after.repaints - before.repaints, 10u);
    EXPECT_LE(after.pixels - before.pixels, 10u * 70 * 62 * 2);
}

TEST_F(PanelTest, ClicksFallThroughAndTheHotAreaCatchesThemToThePoint) {
    desktop->startWindowManager();
    desktop->startCompositor();
    other->open({.x = 200, .y = 300, .width = 400, .height = 300});
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    EXPECT_EQ(click(330, down(330), Taker::beneath), 2);
    EXPECT_EQ(downs, 0);

    panel->mouseAreas = [this] { return std::vector{creatureRect()}; };
    const auto regions = panel->stats().regionChanges;
    other->movePointer(1000, 100);
    EXPECT_TRUE(eventually([&] { return panel->stats().regionChanges > regions; }));
    struct Case {
        const char* place;
        int x, y;
        bool caught;
    };
    for (const auto& [place, x, y, caught] : {
             Case{"middle", 330, down(330), true},
             Case{"first column", 300, down(330), true},
             Case{"left of it", 299, down(330), false},
             Case{"last column", 359, down(330), true},
             Case{"right of it", 360, down(330), false},
             Case{"first row", 330, down(360), true},
             Case{"above it", 330, down(361), false},
             Case{"below it", 330, down(300), false},
         }) {
        downs = ups = 0;
        EXPECT_EQ(click(x, y, caught ? Taker::panel : Taker::beneath), caught ? 0 : 2) << place;
        EXPECT_EQ(downs, caught) << place;
        EXPECT_EQ(ups, caught) << place;
    }
    EXPECT_EQ(click(330, down(330), Taker::panel, 3), 0);
    EXPECT_EQ(rightDowns, 1);
}

TEST_F(PanelTest, AQuickPressCatchesAWalkingCreature) {
    desktop->startWindowManager();
    desktop->startCompositor();
    other->open({.x = 10, .y = 10, .width = 1200, .height = 780});
    showPanel();
    double x = 330;
    const auto walk = loop.every(0.05, [&] { moveCreature({x += 2.25, 330}); });
    panel->mouseAreas = [this] { return std::vector{creatureRect()}; };
    for (const Seconds rest : {1.4, 0.3}) {  // the pointer was still, or moving a moment ago
        const auto isCaught = [&] {
            other->movePointer(1000, down(700));
            eventually([&] { return pointer->location() == Point{1000, 700}; });
            turnFor(rest);
            const auto regions = panel->stats().regionChanges;
            turnFor(0.4);
            EXPECT_EQ(panel->stats().regionChanges, regions) << "walking far away costs nothing";
            downs = 0;
            other->movePointer(static_cast<int>(x), down(330));
            turnFor(0.1);
            return XTest::click(1, [this] { return gotten(); }) == 0 && downs == 1;
        };
        int attempts = 0;
        // How soon the display server comes to run is not this program's doing.
        EXPECT_TRUE(eventually([&] { return ++attempts > 0 && isCaught(); })) << rest;
        if (attempts > 1) std::printf("caught at attempt %d\n", attempts);
    }
}

TEST_F(PanelTest, WhereAWalkingCreatureWasClicksReachTheWindow) {
    desktop->startWindowManager();
    other->open({.x = 10, .y = 10, .width = 1200, .height = 780});
    showPanel();
    panel->mouseAreas = [this] { return std::vector{creatureRect()}; };
    EXPECT_TRUE(shows(330, down(330), red));
    moveCreature({700, 330});
    EXPECT_EQ(click(330, down(330), Taker::beneath), 2);
    EXPECT_EQ(downs, 0);
}

TEST_F(PanelTest, ACarriedCreatureFollowsThePointerOutsideItsAreaUntilTheRelease) {
    desktop->startWindowManager();
    other->open({.x = 10, .y = 10, .width = 1200, .height = 780});
    showPanel();
    int elsewhere = 0;
    const auto listener = pointer->elsewhere.subscribe([&](PointerEvent) { ++elsewhere; });
    panel->mouseAreas = [this] { return std::vector{creatureRect()}; };
    EXPECT_TRUE(pointAt(330, down(330), true));
    other->press();
    EXPECT_TRUE(eventually([&] { return downs == 1; }));
    elsewhere = 0;
    for (int x = 400; x <= 800; x += 100) {
        const int before = drags;
        other->movePointer(x, 200);
        EXPECT_TRUE(eventually([&] {
            return drags > before && pointer->location() == Point{double(x), 600};
        })) << x;
        EXPECT_TRUE(pointer->buttons().left);
    }
    EXPECT_EQ(elsewhere, 0);
    other->release();
    EXPECT_TRUE(eventually([&] { return ups == 1; }));
    EXPECT_EQ(downs, 1);
    EXPECT_FALSE(pointer->buttons().left);
    EXPECT_EQ(other->takenClicks(), 0);
    other->movePointer(900, 300);
    EXPECT_TRUE(eventually([&] { return elsewhere > 0; })) << "the pointer is not given back";
}

TEST_F(PanelTest, TakingTheMouseCoversThePanelOutsideTheHotArea) {
    desktop->startWindowManager();
    desktop->startCompositor();
    other->open({.x = 10, .y = 10, .width = 1200, .height = 780});
    showPanel();
    panel->setIgnoresMouse(false);
    EXPECT_EQ(click(700, 300, Taker::panel), 0);
    EXPECT_EQ(downs, 1);
    panel->setIgnoresMouse(true);
    EXPECT_EQ(click(700, 300, Taker::beneath), 2);
    EXPECT_EQ(downs, 1);
}

TEST_F(PanelTest, TheLevelDecidesWhetherWindowsCoverTheCreature) {
    desktop->startWindowManager();
    desktop->startCompositor();
    other->open({.x = 200, .y = 300, .width = 400, .height = 300});
    showPanel(PanelLevel::desktop);
    EXPECT_TRUE(eventually([&] { return panel->stats().repaints > 0; }));
    turnFor(0.5);
    EXPECT_TRUE(shows(330, down(330), white));
    panel->setLevel(PanelLevel::floating);
    EXPECT_TRUE(shows(330, down(330), red));
    panel->setLevel(PanelLevel::desktop);
    EXPECT_TRUE(shows(330, down(330), white));
    panel->setLevel(PanelLevel::floating);
    other->open({.x = 250, .y = 350, .width = 300, .height = 200, .color = 0x00ff00});
    EXPECT_TRUE(shows(330, down(330), red)) << "a window that opens later";
}

TEST_F(PanelTest, WithoutACompositorThePanelIsCutToWhatIsDrawn) {
    desktop->startWindowManager();
    other->open({.x = 200, .y = 300, .width = 600, .height = 300});
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    EXPECT_TRUE(shows(298, down(330), white));
    moveCreature({500, 330});
    EXPECT_TRUE(shows(500, down(330), red));
    EXPECT_TRUE(shows(330, down(330), white));

    desktop->startCompositor();
    EXPECT_TRUE(eventually([&] { return panels->hasCompositor(); }));
    EXPECT_TRUE(shows(500, down(330), red));
    moveCreature({400, 330});
    EXPECT_TRUE(shows(400, down(330), red));
    EXPECT_TRUE(shows(500, down(330), white));

    desktop->stopCompositor();
    EXPECT_TRUE(eventually([&] { return !panels->hasCompositor(); }));
    EXPECT_TRUE(shows(400, down(330), red));
    EXPECT_TRUE(shows(298, down(330), white)) << "the panel turned black";
}

TEST_F(PanelTest, AServerThatLacksAnExtensionShowsTheCreatureAllTheSame) {
    for (const char* lacking : {"XFIXES", "RANDR", "MIT-SHM"}) {
        SCOPED_TRACE(lacking);
        desktop = std::make_unique<VirtualDesktop>(std::vector<std::string>{"-extension", lacking});
        other = std::make_unique<OtherProgram>(desktop->display());
        showPanel();
        EXPECT_TRUE(shows(330, down(330), red));
        EXPECT_FALSE(connection->ended());
        creature.reset();
        panel.reset();
        disconnect();
    }
}

TEST_F(PanelTest, WithoutACompositorAMovingCreatureIsNeverCut) {
    showPanel();
    creature->change([](LayerProperties& l) { l.bounds = {0, 0, 300, 300}; });
    moveCreature({200, 330});
    EXPECT_TRUE(shows(60, down(330), red));
    // Somebody else looks at the screen all the time.
    std::atomic<bool> ended = false;
    std::atomic<std::size_t> looks = 0;
    std::size_t fewest = 90'000;
    std::thread watcher([&] {
        OtherProgram eyes(desktop->display());
        for (; !ended; ++looks) {
            fewest = std::min(fewest, eyes.count({0, 300, 1280, 350}, red));
        }
    });
    int step = 0;
    EXPECT_TRUE(eventually([&] {
        moveCreature({++step % 2 == 0 ? 200.0 : 800.0, 330});
        turnFor(0.02);
        return step >= 60 && looks > 50;
    }));
    ended = true;
    watcher.join();
    EXPECT_EQ(fewest, 90'000u);
}

TEST_F(PanelTest, AnotherScreenSizeIsFollowed) {
    desktop->startWindowManager();
    desktop->startCompositor();
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    int changes = 0;
    const auto listener = screens->changed.subscribe([&] { ++changes; });
    other->resizeScreen(1024, 768);
    EXPECT_TRUE(eventually([&] { return screens->main()->frame == Rect{0, 0, 1024, 768}; }));
    EXPECT_GT(changes, 0);
    EXPECT_EQ(panel->frame(), screens->main()->frame);
    EXPECT_TRUE(shows(330, 768 - 330, red)) << "still as high above the lower edge";
}

TEST_F(PanelTest, TwiceAsFineAScreenShowsEverythingTwiceAsLarge) {
    other->setText(other->root(), "RESOURCE_MANAGER", "Xft.antialias:\t1\nXft.dpi:\t192\n");
    showPanel();
    EXPECT_EQ(screens->main()->frame, (Rect{0, 0, 640, 400}));
    moveCreature({300, 200});
    EXPECT_TRUE(shows(600, 400, red));
    EXPECT_TRUE(shows(541, 341, red));
    EXPECT_TRUE(shows(658, 458, red));
    EXPECT_NE(other->pixel(661, 400), red);
    other->movePointer(600, 400);
    EXPECT_TRUE(eventually([&] { return pointer->location() == Point{300, 200}; }));
}

TEST_F(PanelTest, AHiddenPanelPaintsNothingAndComesBackUpToDate) {
    showPanel();
    EXPECT_TRUE(shows(330, down(330), red));
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    turnFor(0.2);
    const auto before = panel->stats().wakes;
    moveCreature({500, 330});
    turnFor(0.2);
    EXPECT_EQ(panel->stats().wakes, before);
    panel->orderFront();
    EXPECT_TRUE(shows(500, down(330), red));
}

TEST_F(PanelTest, LiesWhereItShouldInWhateverFrameItIsPut) {
    showPanel();
    const auto window = static_cast<x11::XPanel&>(*panel).window();
    const auto place = [&] {
        auto* at = xcb_translate_coordinates_reply(
            other->xcb(), xcb_translate_coordinates(other->xcb(), window, other->root(), 0, 0),
            nullptr);
        const Point found{double(at->dst_x), double(at->dst_y)};
        std::free(at);
        return found;
    };
    EXPECT_TRUE(shows(330, down(330), red));
    EXPECT_EQ(place(), Point{});
    const auto frame = other->open({.x = 3, .y = 20, .width = 1280, .height = 800});
    xcb_reparent_window(other->xcb(), window, frame, 0, 0);
    const std::uint32_t x = 1;
    xcb_configure_window(other->xcb(), window, XCB_CONFIG_WINDOW_X, &x);
    xcb_flush(other->xcb());
    EXPECT_EQ(place(), (Point{4, 20}));
    EXPECT_TRUE(eventually([&] { return place() == Point{}; }));
}

// The other program drags something over the panel, as a file manager does.
struct DragTest : PanelTest {
    void begin(const std::vector<std::string>& types) {
        EXPECT_TRUE(eventually([&] { return (target = panelWindow()) != 0; }));
        source = xcb_generate_id(other->xcb());
        xcb_create_window(other->xcb(), XCB_COPY_FROM_PARENT, source, other->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(other->xcb(), source, other->atom("XdndSelection"), 0);
        std::vector<std::uint32_t> data{source, 5u << 24};
        for (const auto& type : types) data.push_back(other->atom(type));
        other->message(target, "XdndEnter", data);
    }
    xcb_window_t panelWindow() {
        for (const auto window : other->numbers(other->root(), "_NET_CLIENT_LIST")) {
            if (!other->numbers(window, "XdndAware").empty()) return window;
        }
        return 0;
    }
    /// Serves the dragged data until a message of the type comes, and gives its second word.
    std::optional<std::uint32_t> answer(const std::string& type) {
        std::optional<std::uint32_t> found;
        eventually([&] {
            while (auto* event = other->nextEvent()) {
                if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST) {
                    serve(*reinterpret_cast<xcb_selection_request_event_t*>(event));
                }
                if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
                    serveMore(*reinterpret_cast<xcb_property_notify_event_t*>(event));
                }
                const auto& message = *reinterpret_cast<xcb_client_message_event_t*>(event);
                if ((event->response_type & 0x7f) == XCB_CLIENT_MESSAGE &&
                    message.type == other->atom(type)) {
                    found = message.data.data32[1];
                }
                std::free(event);
            }
            return found.has_value();
        });
        return found;
    }
    void serve(const xcb_selection_request_event_t& request) {
        const auto& text = request.target == other->atom("text/uri-list") ? uris : item;
        if (piece > 0) {
            const std::uint32_t listen = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(other->xcb(), request.requestor, XCB_CW_EVENT_MASK,
                                         &listen);
            other->setNumbers(request.requestor, "_QUIBBITS_DROP", other->atom("INCR"),
                              {static_cast<std::uint32_t>(text.size())});
            rest = text;
        } else {
            put(request.requestor, request.property, text);
        }
        xcb_selection_notify_event_t ready{};
        ready.response_type = XCB_SELECTION_NOTIFY;
        ready.requestor = request.requestor;
        ready.selection = request.selection;
        ready.target = request.target;
        ready.property = request.property;
        xcb_send_event(other->xcb(), 0, request.requestor, 0,
                       reinterpret_cast<const char*>(&ready));
        xcb_flush(other->xcb());
    }
    void put(xcb_window_t window, xcb_atom_t property, std::string_view text) {
        xcb_change_property(other->xcb(), XCB_PROP_MODE_REPLACE, window, property,
                            other->atom("text/uri-list"), 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
        xcb_flush(other->xcb());
    }
    /// The next piece, once the one before was taken; an empty one at the end.
    void serveMore(const xcb_property_notify_event_t& change) {
        if (!rest || change.state != XCB_PROPERTY_DELETE) return;
        const std::string next = rest->substr(0, piece);
        put(change.window, change.atom, next);
        rest = next.empty() ? std::nullopt : std::optional(rest->substr(next.size()));
    }
    bool moveTo(int x, int y) {
        other->message(
            target, "XdndPosition",
            {source, 0, static_cast<std::uint32_t>(x << 16 | y), 0, other->atom("XdndActionCopy")});
        const auto status = answer("XdndStatus");
        EXPECT_TRUE(status);
        return status && (*status & 1);
    }

    xcb_window_t target = 0;
    xcb_window_t source = 0;
    std::string uris =
        "file:///tmp/a%20b.txt\r\n# comment\r\nhttp://example.org/x\r\nfile://localhost/c\r\n";
    std::string item = "berry";
    std::size_t piece = 0;            // bytes at a time; 0 for all at once
    std::optional<std::string> rest;  // of what is served piece by piece
};

TEST_F(DragTest, FilesAndItemsAreDroppedWhereTheCoreTakesThem) {
    desktop->startWindowManager();
    showPanel();
    std::vector<DragInfo> dropped;
    panel->onDragOver = [&](const DragInfo& drag) {
        return creatureRect().contains(drag.location);
    };
    panel->onDrop = [&](const DragInfo& drag) {
        dropped.push_back(drag);
        return true;
    };
    begin({"text/plain", "text/uri-list"});
    EXPECT_FALSE(moveTo(100, 100));
    EXPECT_TRUE(moveTo(330, down(330)));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 1u);
    ASSERT_EQ(dropped.size(), 1u);
    EXPECT_EQ(dropped[0].files, (std::vector<std::string>{"/tmp/a b.txt", "/c"}));
    EXPECT_FALSE(dropped[0].item);
    EXPECT_EQ(dropped[0].location, (Point{330, 330}));

    begin({"com.quibbits.item"});
    EXPECT_TRUE(moveTo(330, down(330)));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 1u);
    ASSERT_EQ(dropped.size(), 2u);
    EXPECT_EQ(dropped[1].item, "berry");
    EXPECT_TRUE(dropped[1].files.empty());

    begin({"com.quibbits.item", "text/uri-list"});
    EXPECT_TRUE(moveTo(330, down(330)));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 1u);
    ASSERT_EQ(dropped.size(), 3u);
    EXPECT_EQ(dropped[2].item, "berry");
    EXPECT_EQ(dropped[2].files.size(), 2u) << "whoever does not know the item has the files";

    begin({"text/uri-list"});
    EXPECT_FALSE(moveTo(100, 100));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 0u);
    begin({"text/plain"});
    EXPECT_FALSE(moveTo(330, down(330)));
    EXPECT_EQ(dropped.size(), 3u);
}

TEST_F(DragTest, AListTooLongForOneMessageComesInPieces) {
    desktop->startWindowManager();
    showPanel();
    uris.clear();
    for (int i = 0; i < 4000; ++i) uris += "file:///tmp/file%20" + std::to_string(i) + "\r\n";
    std::vector<std::string> files;
    panel->onDragOver = [](const DragInfo&) { return true; };
    panel->onDrop = [&](const DragInfo& drag) {
        files = drag.files;
        return true;
    };
    piece = 9001;
    begin({"text/uri-list"});
    EXPECT_TRUE(moveTo(330, down(330)));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 1u);
    ASSERT_EQ(files.size(), 4000u);
    EXPECT_EQ(files.back(), "/tmp/file 3999");
}

TEST_F(DragTest, APanelMayEndAtADrop) {
    desktop->startWindowManager();
    showPanel();
    panel->onDragOver = [](const DragInfo&) { return true; };
    panel->onDrop = [&](const DragInfo&) {
        panel.reset();
        return true;
    };
    begin({"text/uri-list"});
    EXPECT_TRUE(moveTo(330, down(330)));
    other->message(target, "XdndDrop", {source, 0, 0});
    EXPECT_EQ(answer("XdndFinished"), 1u);
    EXPECT_FALSE(panel);
}

}  // namespace
}  // namespace quibbits
