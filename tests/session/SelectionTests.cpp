// What is selected in a file manager's window, told by made-up file managers that stand on the bus
// as assistive programs see them, and mounted disk images told by a made-up kernel.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/DesktopIcons.h"
#include "desktop/session/MountedVolumes.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr std::uint32_t frameRole = 23, iconRole = 26, paneRole = 30, panelRole = 39, cellRole = 56,
                        textRole = 61, toggleRole = 62, tableRole = 66;
constexpr std::uint32_t active = 1u << 1, checked = 1u << 4, expanded = 1u << 10,
                        selected = 1u << 23, showing = 1u << 25;

/// An accessible object; its path is /root, /root/0, /root/0/3 and so on.
struct Thing {
    std::string name;
    std::uint32_t role = panelRole;
    Rect frame;
    std::uint32_t states = showing;
    std::vector<Thing> children = {};
    std::vector<std::size_t> chosen = {};  // what it says is selected in it
};

class SelectionTest : public BusTest {
protected:
    void SetUp() override {
        BusTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        daemon.start();
        door = serve("org.a11y.Bus");
        door->on("GetAddress", [this](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "s", daemon.address().c_str());
        });
        registry = serve("org.a11y.atspi.Registry");
        registry->on("GetChildren", [](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "a(so)", 1, "org.example.Files", "/root");
        });
        files = serve("org.example.Files");
        files->on("GetChildren", [this](sd_bus_message* call) {
            const std::string path = sd_bus_message_get_path(call);
            sd_bus_message* reply = nullptr;
            sd_bus_message_new_method_return(call, &reply);
            sd_bus_message_open_container(reply, 'a', "(so)");
            for (std::size_t i = 0; i < thing(call).children.size(); ++i) {
                sd_bus_message_append(reply, "(so)", "org.example.Files",
                                      (path + "/" + std::to_string(i)).c_str());
            }
            sd_bus_message_close_container(reply);
            sd_bus_send(nullptr, reply, nullptr);
            sd_bus_message_unref(reply);
            return 1;
        });
        files->on("GetRole", [this](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "u", thing(call).role);
        });
        files->on("GetState", [this](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "au", 2, thing(call).states, 0);
        });
        files->on("Get", [this](sd_bus_message* call) {
            const char* interface = nullptr;
            const char* property = nullptr;
            sd_bus_message_read(call, "ss", &interface, &property);
            if (std::string(property) == "NSelectedChildren") {
                return sd_bus_reply_method_return(call, "v", "i", int(thing(call).chosen.size()));
            }
            return sd_bus_reply_method_return(call, "v", "s", thing(call).name.c_str());
        });
        files->on("GetSelectedChild", [this](sd_bus_message* call) {
            int index = 0;
            sd_bus_message_read(call, "i", &index);
            const auto child = thing(call).chosen.at(static_cast<std::size_t>(index));
            const auto path =
                std::string(sd_bus_message_get_path(call)) + "/" + std::to_string(child);
            return sd_bus_reply_method_return(call, "(so)", "org.example.Files", path.c_str());
        });
        files->on("GetText", [this](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "s", thing(call).name.c_str());
        });
        files->on("GetExtents", [this](sd_bus_message* call) {
            const Rect& r = thing(call).frame;
            return sd_bus_reply_method_return(call, "(iiii)", int(r.x), int(r.y), int(r.width),
                                              int(r.height));
        });
        for (const char* name : {"a.txt", "b.txt", "Places", "folder"}) {
            write(folder / name, "");
        }
    }
    const Thing& thing(sd_bus_message* call) {
        const std::string path = sd_bus_message_get_path(call);
        const Thing* at = &root;
        for (std::size_t slash = path.find('/', 1); slash != path.npos;
             slash = path.find('/', slash + 1)) {
            at = &at->children.at(std::stoul(path.substr(slash + 1)));
        }
        return *at;
    }

    /// The path bar of the folder, the last step first, as some file managers have it.
    Thing bar() const {
        Thing bar;
        for (const auto& step : folder.path()) {
            bar.children.insert(bar.children.begin(), Thing{step.native(), toggleRole, {}, 0});
        }
        bar.children.front().states = showing | checked;
        return bar;
    }
    Thing sidePane() const {
        return {"",
                tableRole,
                {0, 0, 100, 400},
                showing,
                {{"Places", cellRole, {0, 0, 90, 20}, showing | selected}}};
    }
    static Thing icons(std::vector<std::size_t> chosen) {
        return {"",
                paneRole,
                {100, 0, 500, 400},
                showing,
                {{"a.txt", iconRole, {110, 10, 40, 60}},
                 {"b.txt", iconRole, {160, 10, 40, 60}},
                 {"missing", iconRole, {210, 10, 40, 60}}},
                std::move(chosen)};
    }
    static Thing row(const std::string& name, double y, std::uint32_t states) {
        return {"",
                cellRole,
                {120, y, 200, 20},
                states,
                {{"", cellRole, {120, y, 20, 20}, states},
                 {name, cellRole, {140, y, 180, 20}, states}}};
    }
    static Thing cell(const std::string& text, double y, std::uint32_t states) {
        return {text, cellRole, {320, y, 80, 20}, states};
    }
    void show(std::vector<Thing> inside, std::uint32_t states = showing | active,
              const std::string& program = "Caja") {
        root = {program, 75, {}, showing, {}};
        root.children.push_back({folder.path().filename(),
                                 frameRole,
                                 {0, 0, 600, 400},
                                 states,
                                 {{"", panelRole, {}, showing, std::move(inside)}}});
    }
    FileSelection read() {
        session::Bus bus(loop, place());
        session::DesktopIcons browser(loop, bus, display);
        std::optional<FileSelection> found;
        browser.readSelection([&](const FileSelection& selection) { found = selection; });
        EXPECT_TRUE(eventually([&] { return found.has_value(); }));
        return found.value_or(FileSelection{});
    }
    std::string path(const std::string& name) const { return (folder / name).native(); }

    session::DesktopIcons::Display display{
        .screen =
            [] {
                return Size{1000, 700};
            },
        .toPoints =
            [](Rect r) {
                return Rect{r.x, 700 - r.maxY(), r.width, r.height};
            }};
    std::unique_ptr<FakeService> door, registry, files;
    TemporaryFolder folder;
    Thing root;
};

TEST_F(SelectionTest, OfIconsHasTheirPathsAndPlaces) {
    show({bar(), sidePane(), icons({0, 1})});
    const auto found = read();
    EXPECT_THAT(found.paths, ElementsAre(path("a.txt"), path("b.txt")));
    ASSERT_TRUE(found.window);
    const auto& elements = found.window->elements;
    ASSERT_EQ(elements[0].selectedChildren.size(), 2u);
    const auto& second = elements[elements[0].selectedChildren[1]];
    EXPECT_EQ(second.title, "b.txt");
    EXPECT_EQ(second.frame, (Rect{160, 630, 40, 60}));
}

TEST_F(SelectionTest, OfRowsIsTheFirstCellOfEach) {
    const auto on = showing | selected;
    show(
        {{path(""), textRole},  // a location field in place of the buttons
         {"",
          tableRole,
          {100, 0, 500, 400},
          showing,
          {row("b.txt", 40, on), cell("folder", 40, on), row("Places", 60, showing),
           cell("a.txt", 60, showing), row("a.txt", 80, selected), cell("folder", 80, selected)}}});
    const auto found = read();
    EXPECT_THAT(found.paths, ElementsAre(path("b.txt"), path("a.txt")));
    ASSERT_TRUE(found.window && found.window->elements[0].selectedRows);
    EXPECT_EQ(found.window->elements[0].selectedRows->size(), 2u);
}

TEST_F(SelectionTest, IsNothingWhereItWouldBeAGuess) {
    const auto on = showing | selected;
    show({bar(), sidePane(), icons({0, 2})});
    EXPECT_THAT(read().paths, IsEmpty()) << "one of them is no file of this folder";
    show({bar(), sidePane(), icons({})});
    EXPECT_THAT(read().paths, IsEmpty()) << "the side pane is no selection";
    show({icons({0})});
    EXPECT_THAT(read().paths, IsEmpty()) << "the folder is unknown";
    show({{"/etc", textRole}, icons({0})});
    EXPECT_THAT(read().paths, IsEmpty()) << "somebody is typing another location";
    show({bar(),
          {"",
           tableRole,
           {100, 0, 500, 400},
           showing,
           {row("b.txt", 40, showing | expanded), row("a.txt", 60, on)}}});
    EXPECT_THAT(read().paths, IsEmpty()) << "the row may lie in the folder that is unfolded";
    show({bar(), icons({0})}, showing);
    EXPECT_THAT(read().paths, IsEmpty()) << "the window is not active";
    show({bar(), icons({0})}, showing | active, "editor");
    EXPECT_THAT(read().paths, IsEmpty()) << "no file manager";
    root.name = "Caja";
    root.children.push_back(root.children.front());
    EXPECT_THAT(read().paths, IsEmpty()) << "two windows that say they are active";
}

TEST_F(SelectionTest, WaitsForTheWindowThatAHeldKeyHasTakenTheFocusFrom) {
    show({bar(), icons({0})}, showing);
    const auto released = loop.timer(0.35, [&] { root.children[0].states |= active; });
    EXPECT_THAT(read().paths, ElementsAre(path("a.txt")));
}

TEST_F(SelectionTest, IsNothingWithoutAnybodyToAsk) {
    show({bar(), icons({0})});
    end(door);
    const auto found = read();
    EXPECT_THAT(found.paths, IsEmpty());
    EXPECT_FALSE(found.window);
}

TEST_F(SelectionTest, IsCopiedWhereNobodyTells) {
    using Copied = session::DesktopIcons::Display::Files;
    int copies = 0;
    Copied copied = std::vector<std::string>{"/tmp/a"};
    display.copied = [&](const std::function<void(const Copied&)>& done) {
        ++copies;
        loop.post([done, copied] { done(copied); });
    };
    show({bar(), icons({0})});
    EXPECT_THAT(read().paths, ElementsAre(path("a.txt")));
    EXPECT_EQ(copies, 0) << "the window tells by itself";
    show({bar(), icons({})});
    const auto found = read();
    EXPECT_THAT(found.paths, ElementsAre("/tmp/a"));
    EXPECT_TRUE(found.window && found.isKnown) << "where things lie is known all the same";
    show({bar(), icons({0})}, showing | active, "editor");
    EXPECT_THAT(read().paths, ElementsAre("/tmp/a"));
    end(door);
    EXPECT_THAT(read().paths, ElementsAre("/tmp/a"));
    copied = std::nullopt;
    EXPECT_FALSE(read().isKnown);
}

TEST_F(SelectionTest, SurvivesAProgramThatNeverAnswers) {
    show({bar(), icons({0})});
    files->on("GetRole", [](sd_bus_message*) { return 1; });
    EXPECT_THAT(read().paths, IsEmpty());
}

TEST(MountedVolumes, TellWhatComesAndGoesAndTheImagesBehindLoopDevices) {
    TemporaryFolder folder;
    const auto mounts = folder / "mountinfo";
    const std::string disk = "22 1 8:1 / / rw shared:1 master:2 - ext4 /dev/sda1 rw\n";
    write(mounts, disk);
    write(folder / "sys/class/block/loop0/loop/backing_file", "/home/user/Downloads/my app.dmg\n");
    write(folder / "sys/devices/loop1/loop/backing_file", "/home/user/disk.img\n");
    std::filesystem::create_directories(folder / "sys/devices/loop1/loop1p2");
    std::filesystem::create_directory_symlink(folder / "sys/devices/loop1/loop1p2",
                                              folder / "sys/class/block/loop1p2");
    EventRunLoop loop;
    session::MountedVolumes volumes(loop, {.mounts = mounts, .system = folder / "sys"});
    std::vector<std::string> news;
    const auto came = volumes.mounted.subscribe([&] { news.push_back("+"); });
    const auto went = volumes.unmounted.subscribe([&](auto& place) { news.push_back(place); });

    write(mounts, disk +
                      "40 22 7:0 / /media/My\\040App ro,nosuid - iso9660 /dev/loop0 ro\n"
                      "41 22 259:3 / /media/part rw - ext4 /dev/loop1p2 rw\n"
                      "42 22 8:17 / /media/stick rw - vfat /dev/sdb1 rw\n"
                      "a line that is broken\n");
    volumes.refresh();
    EXPECT_THAT(*volumes.images(),
                ElementsAre(Pair("/media/My App", "/home/user/Downloads/my app.dmg"),
                            Pair("/media/part", "/home/user/disk.img")));
    write(mounts, disk +
                      "40 22 8:33 / /media/My\\040App ro,nosuid - vfat /dev/sdc1 ro\n"
                      "41 22 259:3 / /media/part rw - ext4 /dev/loop1p2 rw\n");
    volumes.refresh();
    EXPECT_THAT(news, ElementsAre("+", "/media/My App", "/media/stick", "+"))
        << "another volume came where the first one was";
    write(mounts, disk);
    volumes.refresh();
    volumes.refresh();
    EXPECT_THAT(news, ElementsAre("+", "/media/My App", "/media/stick", "+", "/media/My App",
                                  "/media/part"));
    EXPECT_THAT(*volumes.images(), IsEmpty());
}

}  // namespace
}  // namespace quibbits
