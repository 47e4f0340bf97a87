// The desktop's icons, told by file managers that stand on the bus as assistive programs see them.

#include <gmock/gmock.h>
#include <systemd/sd-bus.h>

#include "BusTest.h"
#include "desktop/session/DesktopIcons.h"

namespace quibbits {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* registry = "org.a11y.atspi.Registry";

/// An accessible object of a made-up program; its path is /root, /root/0, /root/0/3 and so on.
struct Thing {
    std::string name;
    std::uint32_t role = 39;  // a panel
    Rect frame;
    std::vector<Thing> children = {};
};
constexpr std::uint32_t frameRole = 23, iconRole = 26, menuBarRole = 34, unknownRole = 67;

class DesktopIconsTest : public BusTest {
protected:
    void SetUp() override {
        BusTest::SetUp();
        if (!IsSkipped() && !HasFatalFailure()) daemon.start();
    }
    void startAccessibility() {
        door = serve("org.a11y.Bus");
        door->on("GetAddress", [this](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "s", daemon.address().c_str());
        });
        list = serve(registry);
        list->on("GetChildren", [this](sd_bus_message* call) {
            std::vector<std::string> names;
            for (const auto& [service, root] : trees) names.push_back(service);
            return replyRefs(call, names, "/root");
        });
    }
    void startProgram(const std::string& service, Thing root) {
        trees[service] = std::move(root);
        programs.push_back(serve(service));
        FakeService& program = *programs.back();
        program.on("GetChildren", [this, service](sd_bus_message* call) {
            ++questions;
            const std::string path = sd_bus_message_get_path(call);
            std::vector<std::string> paths;
            for (std::size_t i = 0; i < thing(call, service).children.size(); ++i) {
                paths.push_back(path + "/" + std::to_string(i));
            }
            return replyRefs(call, paths, nullptr, service);
        });
        program.on("GetRole", [this, service](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "u", thing(call, service).role);
        });
        program.on("Get", [this, service](sd_bus_message* call) {
            return sd_bus_reply_method_return(call, "v", "s", thing(call, service).name.c_str());
        });
        program.on("GetExtents", [this, service](sd_bus_message* call) {
            const Rect& r = thing(call, service).frame;
            return sd_bus_reply_method_return(call, "(iiii)", int(r.x), int(r.y), int(r.width),
                                              int(r.height));
        });
    }
    const Thing& thing(sd_bus_message* call, const std::string& service) {
        const std::string path = sd_bus_message_get_path(call);
        const Thing* at = &trees.at(service);
        for (std::size_t slash = path.find('/', 1); slash != path.npos;
             slash = path.find('/', slash + 1)) {
            at = &at->children.at(std::stoul(path.substr(slash + 1)));
        }
        return *at;
    }
    /// Services with one path, or paths of one service.
    static int replyRefs(sd_bus_message* call, const std::vector<std::string>& items,
                         const char* path, const std::string& service = {}) {
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(call, &reply);
        sd_bus_message_open_container(reply, 'a', "(so)");
        for (const auto& item : items) {
            sd_bus_message_append(reply, "(so)", path ? item.c_str() : service.c_str(),
                                  path ? path : item.c_str());
        }
        sd_bus_message_close_container(reply);
        sd_bus_send(nullptr, reply, nullptr);
        sd_bus_message_unref(reply);
        return 1;
    }

    /// A screen of 1000 × 700 pixels, two to a point.
    session::DesktopIcons::Display display{
        .screen =
            [] {
                return Size{1000, 700};
            },
        .toPoints =
            [](Rect r) {
                return Rect{r.x / 2, (700 - r.maxY()) / 2, r.width / 2, r.height / 2};
            }};
    std::unique_ptr<FakeService> door, list;
    std::vector<std::unique_ptr<FakeService>> programs;
    std::map<std::string, Thing> trees;
    int questions = 0;
};

const Rect whole{0, 0, 1000, 700};
const DesktopIcon plan{"plan.txt", {10, 300, 40, 40}};
const DesktopIcon photo{"photo", {10, 250, 40, 40}};

Thing desktopOf(const std::string& program) {
    return {
        program,
        75,
        {},
        {{"a folder", frameRole, {50, 50, 400, 300}, {{"deep.txt", iconRole, {60, 60, 50, 50}}}},
         {"Desktop",
          frameRole,
          whole,
          {{"", menuBarRole, whole, {{"File", unknownRole, {0, 0, 40, 20}}}},
           {"",
            39,
            whole,
            {{"plan.txt", iconRole, {20, 20, 80, 80}},
             {"", iconRole, {20, 70, 80, 80}},
             {"off screen", iconRole, {-2147483648.0, -2147483648.0, 1, 1}},
             {"photo", unknownRole, {20, 120, 80, 80}}}}}}}};
}

TEST_F(DesktopIconsTest, AreThoseOfTheWindowThatCoversTheScreen) {
    startAccessibility();
    startProgram("org.example.Editor", desktopOf("editor"));
    startProgram("org.example.Caja", desktopOf("caja"));
    session::Bus bus(loop, place());
    session::DesktopIcons icons(loop, bus, display);
    int told = 0;
    const auto heard = icons.iconsRead.subscribe([&] { ++told; });
    EXPECT_EQ(icons.desktopIcons(), std::nullopt);
    EXPECT_TRUE(icons.isReading());
    ASSERT_TRUE(eventually([&] { return told == 1; }));
    EXPECT_THAT(icons.desktopIcons(), Optional(ElementsAre(plan, photo)));
    EXPECT_FALSE(icons.isReading());
    const int asked = questions;
    icons.desktopIcons();
    letPass(0.2);
    EXPECT_EQ(questions, asked);  // not again so soon
    EXPECT_EQ(told, 1);
}

TEST_F(DesktopIconsTest, AreNoneWhereNobodyTells) {
    session::Bus bus(loop, place());
    session::DesktopIcons icons(loop, bus, display);
    icons.desktopIcons();
    ASSERT_TRUE(eventually([&] { return !icons.isReading(); }));
    EXPECT_THAT(icons.desktopIcons(), Optional(IsEmpty()));
}

TEST_F(DesktopIconsTest, SurviveAProgramThatNeverAnswers) {
    startAccessibility();
    startProgram("org.example.Caja", desktopOf("caja"));
    programs.back()->on("GetRole", [](sd_bus_message*) { return 1; });  // taken, never answered
    session::Bus bus(loop, place());
    session::DesktopIcons icons(loop, bus, display);
    icons.desktopIcons();
    letPass(0.5);
    EXPECT_TRUE(icons.isReading());
    ASSERT_TRUE(eventually([&] { return !icons.isReading(); }));
    EXPECT_THAT(icons.desktopIcons(), Optional(IsEmpty()));
}

TEST_F(DesktopIconsTest, MayEndInTheMiddleOfAWalk) {
    startAccessibility();
    startProgram("org.example.Caja", desktopOf("caja"));
    session::Bus bus(loop, place());
    for (int turns = 0; turns < 12; ++turns) {
        session::DesktopIcons icons(loop, bus, display);
        icons.desktopIcons();
        for (int i = 0; i < turns; ++i) turn();
    }
    letPass(0.1);
}

}  // namespace
}  // namespace quibbits
