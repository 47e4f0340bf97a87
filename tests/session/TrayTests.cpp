// The tray icon, seen by a tray: one that is there, comes late, restarts or never comes.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/BusValues.h"
#include "desktop/session/TrayIcon.h"
#include "sim/SimulatedComputer.h"

namespace quibbits {
namespace {

using session::Bus;
using session::TrayIcon;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

/// A menu's entry as the bus tells it.
struct Entry {
    std::int32_t id = 0;
    session::BusDictionary properties;
};

/// A tray of the older kind.
struct OldTray final : OtherTray {
    void setImage(Image given) override { image = given; }
    void setWanted(bool is) override { wanted = is; }
    bool isThere() const override { return wanted && there; }
    std::optional<Rect> frame() const override { return isThere() ? place : std::nullopt; }
    Image image;
    bool wanted = false;
    bool there = false;
    std::optional<Rect> place = Rect{600, 776, 24, 24};
};

class TrayTest : public BusTest {
protected:
    TrayTest() {
        screens.screen = Screen{.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 0, 1280, 770}};
    }
    void startTray(bool hasHost = true) {
        tray = serve(watcherName);
        tray->set(watcherPath, watcherName, {{"IsStatusNotifierHostRegistered", hasHost}});
        tray->on("RegisterStatusNotifierItem", [this](sd_bus_message* call) {
            registered.push_back(*session::readText(call));
            return sd_bus_reply_method_return(call, "");
        });
    }
    void makeIcon() {
        bus.emplace(loop, place());
        icon.emplace(
            loop, *bus,
            TrayIcon::Display{.screens = screens,
                              .pointer = pointer,
                              .dock = dock,
                              .pointOf =
                                  [](int x, int y) {
                                      return Point{double(x), 800.0 - y};
                                  },
                              .openMenu = [this](Menu, Point at) { menusAt.push_back(at); },
                              .otherTray = &old});
        icon->onClick = [this] { ++clicks; };
        icon->onRightClick = [this] { ++rightClicks; };
        icon->onNoTray = [this] { ++missing; };
        host.emplace(loop, place());
    }
    void showIcon() {
        makeIcon();
        icon->show(Image::fromArgb(1, 2, {0x80402000, 0xff112233}), "Quibbits");
    }
    bool registers(std::size_t times = 1) {
        return eventually([&] { return registered.size() >= times; });
    }
    /// Calls the icon as its host does; the reply is read in place.
    bool call(const std::string& path, const std::string& interface, const std::string& member,
              const Bus::Fill& fill, const std::function<void(sd_bus_message*)>& read = {}) {
        std::optional<bool> worked;
        const auto question = host->call({.destination = registered.back(),
                                          .path = path,
                                          .interface = interface,
                                          .member = member},
                                         fill, [&](sd_bus_message* reply, const Bus::Failure&) {
                                             worked = reply != nullptr;
                                             if (reply && read) read(reply);
                                         });
        EXPECT_TRUE(eventually([&] { return worked.has_value(); })) << member;
        settle(*host);
        return worked.value_or(false);
    }
    void click(const char* member, int x, int y) {
        EXPECT_TRUE(call("/StatusNotifierItem", itemInterface, member,
                         [=](sd_bus_message* m) { return sd_bus_message_append(m, "ii", x, y); }));
    }
    session::BusDictionary properties() {
        session::BusDictionary all;
        call(
            "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
            [](sd_bus_message* m) { return sd_bus_message_append(m, "s", itemInterface); },
            [&](sd_bus_message* reply) { all = session::readDictionary(reply); });
        return all;
    }
    std::vector<Entry> layout() {
        std::vector<Entry> entries;
        call(
            "/MenuBar", menuInterface, "GetLayout",
            [](sd_bus_message* m) { return sd_bus_message_append(m, "iias", 0, -1, 0); },
            [&](sd_bus_message* reply) {
                std::uint32_t revision = 0;
                std::int32_t root = -1;
                sd_bus_message_read(reply, "u", &revision);
                sd_bus_message_enter_container(reply, 'r', "ia{sv}av");
                sd_bus_message_read(reply, "i", &root);
                EXPECT_EQ(root, 0);
                EXPECT_EQ(session::valueOf<std::string>(session::readDictionary(reply),
                                                        "children-display"),
                          "submenu");
                sd_bus_message_enter_container(reply, 'a', "v");
                while (sd_bus_message_enter_container(reply, 'v', "(ia{sv}av)") > 0) {
                    Entry entry;
                    sd_bus_message_enter_container(reply, 'r', "ia{sv}av");
                    sd_bus_message_read(reply, "i", &entry.id);
                    entry.properties = session::readDictionary(reply);
                    sd_bus_message_skip(reply, "av");
                    sd_bus_message_exit_container(reply);
                    sd_bus_message_exit_container(reply);
                    entries.push_back(entry);
                }
            });
        return entries;
    }
    std::vector<std::string> shortcut(std::int32_t id) {
        std::vector<std::string> keys;
        call(
            "/MenuBar", menuInterface, "GetProperty",
            [=](sd_bus_message* m) { return sd_bus_message_append(m, "is", id, "shortcut"); },
            [&](sd_bus_message* reply) {
                const char* modifier = nullptr;
                const char* key = nullptr;
                if (sd_bus_message_read(reply, "v", "aas", 1, 2, &modifier, &key) > 0) {
                    keys = {modifier, key};
                }
            });
        return keys;
    }
    bool choose(std::int32_t id, const char* event = "clicked") {
        return call("/MenuBar", menuInterface, "Event", [=](sd_bus_message* m) {
            return sd_bus_message_append(m, "isvu", id, event, "i", 0, 0U);
        });
    }

    SimulatedScreens screens;
    SimulatedDock dock;
    SimulatedPointer pointer{loop};
    OldTray old;
    std::unique_ptr<FakeService> tray;
    std::optional<Bus> bus;
    std::optional<TrayIcon> icon;
    std::optional<Bus> host;
    std::vector<std::string> registered;
    std::vector<Point> menusAt;
    int clicks = 0, rightClicks = 0, missing = 0;
};

TEST_F(TrayTest, ATrayIsToldAllAboutTheIconAndItsClicksArrive) {
    daemon.start();
    startTray();
    makeIcon();
    letPass(0.2);
    EXPECT_THAT(registered, IsEmpty()) << "there is nothing to show yet";
    icon->show(Image::fromArgb(1, 1, {0xff112233}), "Quibbits");
    ASSERT_TRUE(registers());
    EXPECT_EQ(registered[0], "org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1");
    auto all = properties();
    EXPECT_EQ(session::valueOf<std::string>(all, "Id"), "quibbits");
    EXPECT_EQ(session::valueOf<std::string>(all, "Title"), "Quibbits");
    EXPECT_EQ(session::valueOf<std::string>(all, "Category"), "ApplicationStatus");
    EXPECT_EQ(session::valueOf<std::string>(all, "Status"), "Active");
    EXPECT_EQ(session::valueOf<bool>(all, "ItemIsMenu"), false);
    EXPECT_EQ(session::valueOf<std::string>(all, "Menu"), "/NO_DBUSMENU");

    click("Activate", 1000, 10);
    click("SecondaryActivate", 1000, 10);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(icon->frame(), (Rect{988, 770, 24, 30})) << "in the panel at the upper edge";
    click("ContextMenu", 200, 790);
    EXPECT_EQ(rightClicks, 1);
    EXPECT_EQ(icon->frame(), (Rect{188, 0, 24, 24})) << "no panel at the lower edge";
    icon->popUp({{{"Line", [] {}}}});
    EXPECT_THAT(menusAt, ElementsAre(Point{200, 24}));
    EXPECT_TRUE(call("/StatusNotifierItem", itemInterface, "Scroll", [](sd_bus_message* m) {
        return sd_bus_message_append(m, "is", 1, "vertical");
    }));
    pointer.place = {640, 790};
    pointer.lastMouse = loop.now() + 3600;  // at no time long ago
    click("Activate", 0, 0);
    EXPECT_EQ(icon->frame()->midX(), 640) << "a host that knows no place";
    EXPECT_EQ(missing, 0);
}

TEST_F(TrayTest, ThePictureIsTheIconInSeveralSizes) {
    daemon.start();
    startTray();
    showIcon();
    ASSERT_TRUE(registers());
    struct Size {
        int width, height;
        std::vector<std::uint8_t> bytes;
    };
    std::vector<Size> sizes;
    call(
        "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
        [](sd_bus_message* m) {
            return sd_bus_message_append(m, "ss", itemInterface, "IconPixmap");
        },
        [&](sd_bus_message* reply) {
            sd_bus_message_enter_container(reply, 'v', "a(iiay)");
            sd_bus_message_enter_container(reply, 'a', "(iiay)");
            while (sd_bus_message_enter_container(reply, 'r', "iiay") > 0) {
                Size size{};
                const void* bytes = nullptr;
                std::size_t length = 0;
                sd_bus_message_read(reply, "ii", &size.width, &size.height);
                sd_bus_message_read_array(reply, 'y', &bytes, &length);
                const auto* first = static_cast<const std::uint8_t*>(bytes);
                size.bytes.assign(first, first + length);
                sizes.push_back(size);
                sd_bus_message_exit_container(reply);
            }
        });
    ASSERT_EQ(sizes.size(), 6u);
    for (const auto& size : sizes) {
        EXPECT_EQ(size.width, size.height);
        EXPECT_EQ(size.bytes.size(), static_cast<std::size_t>(size.width * size.height) * 4);
    }
    // A column of two pixels, 8 times as large, in the middle of 16 × 16.
    const auto at = [&](std::size_t x, std::size_t y) {
        const auto* pixel = &sizes[0].bytes[(y * 16 + x) * 4];
        return std::vector<int>(pixel, pixel + 4);
    };
    EXPECT_THAT(at(3, 0), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(at(4, 0), ElementsAre(0x80, 0x80, 0x40, 0)) << "not premultiplied";
    EXPECT_THAT(at(11, 7), ElementsAre(0x80, 0x80, 0x40, 0));
    EXPECT_THAT(at(11, 8), ElementsAre(0xff, 0x11, 0x22, 0x33));
    EXPECT_THAT(at(12, 8), ElementsAre(0, 0, 0, 0));
}

TEST(WithoutATray, ThingsComeFromTheMiddleOfTheFloor) {
    const Screen screen{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 36, 1440, 864}};
    EXPECT_EQ(session::middleOfTheFloor(screen), (Rect{708, 36, 24, 0}));
}

TEST(TrayPictures, EnlargedArtIsTakenBackToItsPixels) {
    std::vector<Argb> pixels;
    for (int y = 0; y < 36; ++y) {
        for (int x = 0; x < 36; ++x) {
            pixels.push_back(0xff000000U + static_cast<Argb>((x / 3) * 16 + y / 3));
        }
    }
    const auto pictures = session::trayPictures(Image::fromArgb(36, 36, std::move(pixels)));
    ASSERT_EQ(pictures.size(), 6u);
    EXPECT_EQ(pictures[2].side, 24);
    EXPECT_EQ(pictures[2].bytes[(1 * 24 + 1) * 4 + 3], 0x00);
    EXPECT_EQ(pictures[2].bytes[(1 * 24 + 2) * 4 + 3], 0x10) << "the next art pixel";
    EXPECT_TRUE(session::trayPictures({}).empty());
}

TEST(TrayPictures, FillTheirSquareAndAllColumnsOfTheArtAreEquallyWide) {
    for (int striped = 0; striped < 12; ++striped) {
        std::vector<Argb> pixels;
        for (int i = 0; i < 12 * 12; ++i) {
            pixels.push_back(i % 12 == striped ? 0xffffffffU : 0xff000000U);
        }
        const auto picture = session::trayPicture(Image::fromArgb(12, 12, std::move(pixels)), 22);
        double white = 0;
        for (std::size_t x = 0; x < 22; ++x) {
            EXPECT_EQ(picture.bytes[x * 4], 0xff) << "no rim";
            white += picture.bytes[x * 4 + 1] / 255.0;
        }
        EXPECT_NEAR(white, 22.0 / 12, 0.02) << striped;
    }
}

TEST_F(TrayTest, ATrayThatOpensTheMenuItselfGetsItsLinesAndTellsTheChoice) {
    daemon.start();
    startTray();
    makeIcon();
    std::vector<std::string> chosen;
    bool hasMore = false;
    icon->onMenu = [&] {
        Menu menu{{{"Settings…", [&] { chosen.emplace_back("settings"); }, ','},
                   {},
                   {"Quit_Quibbits", [&] { chosen.emplace_back("quit"); }, 'q'}}};
        if (hasMore) menu.items.insert(menu.items.begin(), {"Nobody is out", {}});
        return menu;
    };
    icon->show(Image::fromArgb(1, 1, {0xff112233}), "Quibbits");
    ASSERT_TRUE(registers());
    EXPECT_EQ(session::valueOf<std::string>(properties(), "Menu"), "/MenuBar");
    auto lines = layout();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(session::valueOf<std::string>(lines[0].properties, "label"), "Settings…");
    EXPECT_EQ(session::valueOf<std::string>(lines[1].properties, "type"), "separator");
    EXPECT_EQ(session::valueOf<std::string>(lines[2].properties, "label"), "Quit__Quibbits");
    EXPECT_THAT(shortcut(lines[0].id), ElementsAre("Control", "comma"));
    EXPECT_THAT(shortcut(lines[2].id), ElementsAre("Control", "q"));
    EXPECT_TRUE(choose(lines[2].id, "hovered"));
    EXPECT_TRUE(choose(lines[1].id));
    EXPECT_THAT(chosen, IsEmpty());
    EXPECT_TRUE(choose(lines[2].id));
    EXPECT_THAT(chosen, ElementsAre("quit"));
    EXPECT_FALSE(choose(4711));

    std::vector<std::uint32_t> revisions;
    const auto news = host->match(
        std::string("type='signal',interface='") + menuInterface + "',member='LayoutUpdated'",
        [&](sd_bus_message* signal) { revisions.push_back(*session::readNumber(signal)); });
    settle(*host);
    hasMore = true;
    int needsUpdate = -1;
    call(
        "/MenuBar", menuInterface, "AboutToShow",
        [](sd_bus_message* m) { return sd_bus_message_append(m, "i", 0); },
        [&](sd_bus_message* reply) { sd_bus_message_read(reply, "b", &needsUpdate); });
    EXPECT_EQ(needsUpdate, 1);
    EXPECT_EQ(revisions.size(), 1u);
    EXPECT_FALSE(choose(lines[2].id)) << "a line of the menu before";
    const auto now = layout();
    ASSERT_EQ(now.size(), 4u);
    EXPECT_EQ(session::valueOf<bool>(now[0].properties, "enabled"), false);
    EXPECT_TRUE(choose(now[0].id)) << "nothing happens";
    EXPECT_EQ(chosen.size(), 1u);

    std::vector<std::int32_t> unknown;
    call(
        "/MenuBar", menuInterface, "EventGroup",
        [&](sd_bus_message* m) {
            return sd_bus_message_append(m, "a(isvu)", 2, 4711, "clicked", "i", 0, 0U, now[1].id,
                                         "clicked", "i", 0, 0U);
        },
        [&](sd_bus_message* reply) {
            std::int32_t id = 0;
            sd_bus_message_enter_container(reply, 'a', "i");
            while (sd_bus_message_read_basic(reply, 'i', &id) > 0) unknown.push_back(id);
        });
    EXPECT_THAT(unknown, ElementsAre(4711));
    EXPECT_THAT(chosen, ElementsAre("quit", "settings"));
    EXPECT_FALSE(call("/MenuBar", menuInterface, "Event", nullptr)) << "a broken call";
    EXPECT_EQ(layout().size(), 4u) << "the icon survived it";
}

TEST_F(TrayTest, ATrayThatComesLateOrRestartsFindsTheIcon) {
    daemon.start();
    showIcon();
    EXPECT_TRUE(eventually([&] { return missing == 1; }));
    startTray();
    ASSERT_TRUE(registers());
    EXPECT_FALSE(properties().empty());
    end(tray);
    settle(*bus);
    startTray();
    ASSERT_TRUE(registers(2)) << "it restarted";
    end(tray);
    letPass(5);
    EXPECT_EQ(missing, 1) << "told once";
}

TEST_F(TrayTest, ATrayWithoutAHostIsNoneUntilTheHostComes) {
    daemon.start();
    startTray(false);
    showIcon();
    ASSERT_TRUE(registers());
    letPass(1);
    EXPECT_EQ(missing, 0) << "patience";
    tray->emit(watcherPath, watcherName, "StatusNotifierHostRegistered", [](sd_bus_message*) {});
    letPass(5);
    EXPECT_EQ(missing, 0);
    end(tray);
    startTray(false);
    EXPECT_TRUE(eventually([&] { return missing == 1; }));
}

TEST_F(TrayTest, WithoutABusTheIconWaitsForOne) {
    showIcon();
    EXPECT_TRUE(eventually([&] { return missing == 1; }));
    EXPECT_EQ(icon->frame(), session::middleOfTheFloor(*screens.screen));
    daemon.start();
    startTray();
    EXPECT_TRUE(registers());
    EXPECT_FALSE(properties().empty());
}

TEST_F(TrayTest, AnOlderTrayServesWhileThereIsNoneOnTheBus) {
    daemon.start();
    old.there = true;
    showIcon();
    EXPECT_TRUE(eventually([&] { return old.wanted; }));
    EXPECT_EQ(old.image.width(), 1);
    old.onClick();
    old.onRightClick();
    EXPECT_TRUE(eventually([&] { return clicks == 1 && rightClicks == 1; }));
    EXPECT_EQ(icon->frame(), old.place);
    icon->popUp({});
    EXPECT_THAT(menusAt, ElementsAre(Point{600, 770})) << "beside the panel";
    letPass(5);
    EXPECT_EQ(missing, 0) << "the icon is shown";
    startTray();
    ASSERT_TRUE(registers());
    EXPECT_TRUE(eventually([&] { return !old.wanted; })) << "one icon is enough";
}

TEST(TrayPlace, IsInThePanelThatWasClicked) {
    const Screen bare{.frame = {0, 0, 1000, 800}, .visibleFrame = {0, 0, 1000, 800}};
    Screen lower = bare;
    lower.visibleFrame = {0, 40, 1000, 760};
    Screen left = bare;
    left.visibleFrame = {50, 0, 950, 800};
    using session::trayPlaceAt;
    EXPECT_EQ(trayPlaceAt(bare, {500, 795}), (Rect{488, 776, 24, 24}));
    EXPECT_EQ(trayPlaceAt(bare, {999, 5}), (Rect{976, 0, 24, 24}));
    EXPECT_EQ(trayPlaceAt(lower, {0, 20}), (Rect{0, 0, 24, 40}));
    EXPECT_EQ(trayPlaceAt(left, {20, 400}), (Rect{0, 388, 50, 24}));
    EXPECT_EQ(session::usualTrayPlace(bare, {}), (Rect{964, 776, 24, 24}));
    EXPECT_EQ(session::usualTrayPlace(lower, Rect{200, 0, 600, 40}), (Rect{764, 0, 24, 40}));
}

}  // namespace
}  // namespace quibbits
