// The program itself on a virtual desktop, as its user has it: what is seen, what a mouse can do
// and how it ends. With the focus mode on, a Sparrel sleeps on the floor, a third of the screen's
// width from the left.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>
#include <utility>

#include "RunningProgram.h"
#include "TemporaryFolder.h"
#include "XTest.h"
#include "body/Sheets.h"
#include "codecs/Json.h"
#include "desktop/files/DiskResources.h"

namespace quibbits {
namespace {

constexpr int screenWidth = 1280;
constexpr int screenHeight = 800;
constexpr double artScale = 3;  // points per sheet pixel
constexpr double rim = 6;       // points at the sprite's edges that let the mouse through

/// Whoever has not been shown around gets a guide in front of everything.
constexpr const char* sleepingSparrel =
    R"({"onboarded": true, "pet.stage": "sparrel", "focus.on": true,
        "chatter": false, "faces": false})";

/// The whole screen as the user sees it, 0xRRGGBB.
struct Picture {
    std::vector<std::uint32_t> pixels;

    std::uint32_t at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y) * screenWidth + static_cast<std::size_t>(x)];
    }
    /// The smallest rectangle around all that differs, in pixels from the top.
    PixelRect difference(const Picture& other) const {
        PixelRect all;
        for (int y = 0; y < screenHeight; ++y) {
            for (int x = 0; x < screenWidth; ++x) {
                if (at(x, y) != other.at(x, y)) all = all.united({x, y, 1, 1});
            }
        }
        return all;
    }
    int differing(const Picture& other, const PixelRect& within) const {
        int count = 0;
        const auto part = within.intersected({0, 0, screenWidth, screenHeight});
        for (int y = part.y; y < part.y + part.height; ++y) {
            for (int x = part.x; x < part.x + part.width; ++x) count += at(x, y) != other.at(x, y);
        }
        return count;
    }
};

struct CompanionTest : XTest {
    enum class Compositor { present, absent };

    /// A desktop with a window over most of it, and what it looks like without the program.
    void prepare(Compositor compositor = Compositor::present) {
        desktop->startWindowManager();
        if (compositor == Compositor::present) desktop->startCompositor();
        beneath = other->open({.x = 10, .y = 10, .width = 1200, .height = 780, .color = 0x808890});
        EXPECT_TRUE(shows(100, 100, 0x808890));
        other->takenClicks();
        empty = look();
        EXPECT_TRUE(eventually([&] {
            turnFor(0.4);
            return std::exchange(empty, look()).difference(empty).isEmpty();
        }));
    }
    void start(const std::string& defaults) {
        write(defaultsFile(), defaults);
        program = std::make_unique<RunningProgram>(desktop->display(), folder.path());
    }
    std::filesystem::path defaultsFile() const { return folder / "config/quibbits/defaults.json"; }

    Picture look() {
        auto* xcb = other->xcb();
        auto* image =
            xcb_get_image_reply(xcb,
                                xcb_get_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, other->root(), 0, 0,
                                              screenWidth, screenHeight, ~0u),
                                nullptr);
        Picture picture{std::vector<std::uint32_t>(std::size_t{screenWidth} * screenHeight)};
        if (image) {
            std::memcpy(picture.pixels.data(), xcb_get_image_data(image),
                        picture.pixels.size() * sizeof(std::uint32_t));
        }
        std::free(image);
        for (auto& pixel : picture.pixels) pixel &= 0xffffff;
        return picture;
    }
    /// Whether the panel of a creature's stage is on a display, in a frame or in none.
    static bool hasPanel(OtherProgram& eye) {
        const auto takesDrops = [&](xcb_window_t window, int depth, const auto& self) -> bool {
            if (!eye.numbers(window, "XdndAware").empty()) return true;
            auto* tree =
                xcb_query_tree_reply(eye.xcb(), xcb_query_tree(eye.xcb(), window), nullptr);
            if (!tree) return false;
            const auto* first = xcb_query_tree_children(tree);
            const bool found =
                depth > 0 && std::any_of(first, first + tree->children_len,
                                         [&](auto child) { return self(child, depth - 1, self); });
            std::free(tree);
            return found;
        };
        return takesDrops(eye.root(), 2, takesDrops);
    }
    bool panelIsThere() { return hasPanel(*other); }
    bool appears() {
        return eventually([&] { return !look().difference(empty).isEmpty(); });
    }
    /// Waits until it has ended, and tells how.
    std::optional<int> ending() {
        std::optional<int> status;
        eventually([&] { return (status = program->ending()).has_value(); });
        return status;
    }
    /// Moves the pointer and waits until a press would go to the creature, or beneath it.
    bool pointAt(int x, int y, bool isCreatures) {
        other->movePointer(x, y);
        return eventually(
            [&] { return (other->underPointer() != other->frameOf(beneath)) == isCreatures; });
    }

    /// The sleeping creature's sprite on the stage, from the floor up.
    static Rect sleeper() {
        const DiskResources resources({QUIBBITS_SHEETS_DIR});
        const Anim sleep = Sheets(resources, "sparrel", {}).sleep;
        const double width = sleep.frameSize.width * artScale;
        const double height = sleep.frameSize.height * artScale;
        return {screenWidth / 3.0 - width / 2, sleep.feet * artScale - height / 2, width, height};
    }
    static PixelRect onScreen(const Rect& r) {
        return PixelRect::around({r.x, screenHeight - r.maxY(), r.width, r.height});
    }
    static int down(double y) { return screenHeight - static_cast<int>(y); }

    TemporaryFolder folder;
    xcb_window_t beneath = 0;
    Picture empty;
    std::unique_ptr<RunningProgram> program;
};

TEST_F(CompanionTest, ASleeperIsSeenOnTheFloorAndNothingElseChanges) {
    prepare();
    start(sleepingSparrel);
    PixelRect seen;
    EXPECT_TRUE(eventually([&] {
        seen = look().difference(empty);
        return seen.width > 60 && seen.y + seen.height == screenHeight;
    })) << "it is not on the floor";
    turnFor(1);
    seen = look().difference(empty);
    const auto frame = onScreen(sleeper());
    EXPECT_EQ(seen.united(frame), frame)
        << seen.x << ' ' << seen.y << ' ' << seen.width << ' ' << seen.height;
}

TEST_F(CompanionTest, WithoutACompositorNothingTurnsBlackAroundTheCreature) {
    prepare(Compositor::absent);
    start(sleepingSparrel);
    ASSERT_TRUE(eventually([&] { return look().difference(empty).width > 60; }));
    turnFor(1);
    const auto seen = look().difference(empty);
    const auto frame = onScreen(sleeper());
    EXPECT_EQ(seen.united(frame), frame);
}

TEST_F(CompanionTest, TwoEggsShowNothing) {
    prepare();
    start(R"({"onboarded": true})");
    ASSERT_TRUE(eventually([&] { return panelIsThere(); }));
    turnFor(1);
    EXPECT_FALSE(program->ending());
    const auto seen = look().difference(empty);
    EXPECT_TRUE(seen.isEmpty()) << seen.x << ' ' << seen.y << ' ' << seen.width << ' '
                                << seen.height;
}

TEST_F(CompanionTest, AQuickPressCatchesTheCreatureWhichIsCarriedAndFalls) {
    prepare();
    start(sleepingSparrel);
    ASSERT_TRUE(appears());
    const Rect at = sleeper();
    const int x = static_cast<int>(at.midX());
    const int y = down(at.midY());
    EXPECT_TRUE(pointAt(x, y, true));
    other->movePointer(x + 600, y);
    turnFor(1.5);
    other->movePointer(x, y);
    turnFor(0.1);
    other->press();
    turnFor(0.3);
    const PixelRect old = onScreen(at);
    struct Place {
        int x, y;
        PixelRect around() const { return {x - 60, y - 60, 120, 120}; }
    };
    constexpr Place last{800, 300};
    for (const Place& place : {Place{600, 400}, last}) {
        other->movePointer(place.x, place.y);
        EXPECT_TRUE(eventually([&] {
            const auto now = look();
            return now.differing(empty, place.around()) > 500 && now.differing(empty, old) == 0;
        })) << "carried to "
            << place.x << ", " << place.y;
    }
    other->release();
    EXPECT_TRUE(eventually([&] {
        const auto now = look();
        return now.differing(empty, last.around()) == 0 &&
               now.differing(empty, {740, screenHeight - 90, 120, 90}) > 500;
    })) << "let go, it falls to the floor";
    EXPECT_EQ(other->takenClicks(), 0) << "the window below was clicked";
}

TEST_F(CompanionTest, AClickAPointBesideTheCreatureReachesTheWindowBelow) {
    prepare();
    start(sleepingSparrel);
    ASSERT_TRUE(appears());
    const Rect area = sleeper().inset(rim);
    struct Case {
        const char* place;
        double x, y;
        bool caught;
    };
    for (const auto& [place, x, y, caught] : {
             Case{"left of it", area.minX() - 1, area.midY(), false},
             Case{"its left edge", area.minX() + 1, area.midY(), true},
             Case{"its right edge", area.maxX() - 1, area.midY(), true},
             Case{"right of it", area.maxX() + 1, area.midY(), false},
             Case{"above it", area.midX(), area.maxY() + 2, false},
         }) {
        // The one that was clicked stands for a while before it lies down again.
        EXPECT_TRUE(pointAt(static_cast<int>(x), down(y), caught)) << place;
        other->takenClicks();
        other->press();
        other->release();
        int taken = 0;
        const auto count = [&] { return (taken += other->takenClicks()) >= 2; };
        if (caught) {
            turnFor(1);
            count();
            EXPECT_EQ(taken, 0) << place;
        } else {
            EXPECT_TRUE(eventually(count)) << place;
        }
    }
}

TEST_F(CompanionTest, TheSignalToEndEndsItWithSuccess) {
    prepare();
    start(sleepingSparrel);
    ASSERT_TRUE(appears());
    program->signal(SIGTERM);
    const auto status = ending();
    ASSERT_TRUE(status) << "it hangs";
    EXPECT_TRUE(WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 0);
    EXPECT_TRUE(eventually([&] { return look().difference(empty).isEmpty(); }));
}

TEST_F(CompanionTest, TheEndOfTheDisplayEndsItWithSuccess) {
    prepare();
    start(sleepingSparrel);
    ASSERT_TRUE(appears());
    desktop->endServer();
    const auto status = ending();
    ASSERT_TRUE(status) << "it hangs";
    EXPECT_TRUE(WIFEXITED(*status));
    EXPECT_EQ(WEXITSTATUS(*status), 0);
}

TEST_F(CompanionTest, WithBrokenDefaultsItStartsAnewAndTheFirstSaveSetsThemAside) {
    prepare();
    const std::string broken = R"({"pet.stage": "spar)";
    start(broken);
    ASSERT_TRUE(eventually([&] { return panelIsThere(); }));
    turnFor(0.5);
    EXPECT_FALSE(program->ending());
    const std::string save = "XDG_CONFIG_HOME='" + (folder / "config").native() + "' '" +
                             QUIBBITS_BIN_DIR "/quibbits-defaults' write ";
    EXPECT_EQ(std::system((save + "pet.stage sparrel").c_str()), 0);
    EXPECT_EQ(std::system((save + "onboarded true").c_str()), 0);
    EXPECT_EQ(contents(defaultsFile().native() + ".broken-1"), broken);
    program->signal(SIGTERM);
    EXPECT_EQ(ending(), 0);
    EXPECT_TRUE(eventually([&] { return look().difference(empty).isEmpty(); })) << "its guide";
    program = std::make_unique<RunningProgram>(desktop->display(), folder.path());
    EXPECT_TRUE(appears()) << "what was saved since is not read";
}

TEST_F(CompanionTest, ASecondStartHandsOverAndAnotherDisplayHasACompanionOfItsOwn) {
    prepare();
    start(sleepingSparrel);
    ASSERT_TRUE(appears());
    auto first = std::move(program);
    for (const std::string& same : {desktop->display(), desktop->display() + ".0"}) {
        program = std::make_unique<RunningProgram>(same, folder.path());
        EXPECT_EQ(ending(), 0) << same;
        EXPECT_FALSE(first->ending());
    }
    const VirtualDesktop second;
    OtherProgram eye(second.display());
    program = std::make_unique<RunningProgram>(second.display(), folder.path());
    EXPECT_TRUE(eventually([&] { return hasPanel(eye); })) << "it does not run there";
    EXPECT_FALSE(program->ending());

    program = std::move(first);
    program->signal(SIGKILL);
    ASSERT_TRUE(ending());
    ASSERT_TRUE(eventually([&] { return !panelIsThere(); }));
    program = std::make_unique<RunningProgram>(desktop->display(), folder.path());
    EXPECT_TRUE(eventually([&] { return panelIsThere(); })) << "what was left behind keeps it out";
    EXPECT_FALSE(program->ending());
}

TEST_F(CompanionTest, AddressesOfALaterStartAreHeardInTurnWhateverTheirLetters) {
    prepare();
    start(R"({"onboarded": true, "pet.stage": "sparrel", "focus.on": false})");
    ASSERT_TRUE(appears());
    const auto isFocused = [&] {
        const auto saved = Json::parse(contents(defaultsFile()));
        const auto* focus = saved.value ? saved.value->find("focus.on") : nullptr;
        return focus && *focus == Json(true);
    };
    const auto say = [&](const std::string& words) {
        const std::string command = "DISPLAY=" + desktop->display() + " XDG_RUNTIME_DIR='" +
                                    (folder / "run").native() +
                                    "' '" QUIBBITS_BIN_DIR "/quibbits' " + words;
        return WEXITSTATUS(std::system(command.c_str()));
    };
    EXPECT_EQ(say("quibbits://unfocus 'quibbits://grüße an alle' quibbits://focus"), 0);
    EXPECT_TRUE(eventually(isFocused));
    EXPECT_EQ(say("quibbits://focus quibbits://me@unfocus:80/now"), 0);
    EXPECT_TRUE(eventually([&] { return !isFocused(); }));
    EXPECT_EQ(say("quibbits://focus nonsense 2>/dev/null"), 2);
}

/// Killed at any moment of a hundred starts, while it thinks and saves.
TEST_F(CompanionTest, AKillAtAnyMomentLeavesWhatWasSaved) {
    prepare();
    write(defaultsFile(),
          R"({"onboarded": true, "mine": "kept", "pet.stage": "sparrel", "pet.exp": 5000})");
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 chance(seed);
    double exp = 5000;
    int saves = 0;
    int longest = 250'000;  // microseconds; a busy machine takes more before the first save
    for (int i = 0; i < 100; ++i) {
        if (saves * 4 < i) longest = std::min(longest + 50'000, 10'000'000);
        const std::string before = contents(defaultsFile());
        struct stat was {};
        stat(defaultsFile().c_str(), &was);
        {
            const RunningProgram killed(desktop->display(), folder.path());
            const auto wait = std::uniform_int_distribution(0, longest)(chance);
            std::this_thread::sleep_for(std::chrono::microseconds(wait));
        }
        struct stat is {};
        stat(defaultsFile().c_str(), &is);
        saves += was.st_ino != is.st_ino || was.st_mtim.tv_nsec != is.st_mtim.tv_nsec;
        const auto read = Json::parse(contents(defaultsFile()));
        ASSERT_TRUE(read.value) << i << ": " << contents(defaultsFile());
        const auto* stage = read.value->find("pet.stage");
        const auto* mine = read.value->find("mine");
        const auto* experience = read.value->find("pet.exp");
        ASSERT_TRUE(stage && mine && experience) << i << ": " << contents(defaultsFile());
        EXPECT_EQ(*stage, Json("sparrel")) << i;
        EXPECT_EQ(*mine, Json("kept")) << i;
        EXPECT_GE(experience->number().value_or(0), exp) << i;
        exp = experience->number().value_or(exp);
    }
    EXPECT_GT(saves, 10) << "too few of the starts came as far as saving";
}

}  // namespace
}  // namespace quibbits
