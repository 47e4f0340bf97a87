// How long the program takes from what the user does until the screen shows it, on a desktop of its
// own with a window manager and a compositor: a press on a sleeping creature, and a click on the
// icon in the tray. The compositor's own delay is part of the figures.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "desktop/PanelWithTray.h"
#include "desktop/RunningProgram.h"
#include "desktop/TemporaryFolder.h"

namespace {

using namespace quibbits;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 15;
constexpr xcb_rectangle_t floorArea{0, 640, 1280, 160};
constexpr xcb_rectangle_t dialArea{840, 40, 340, 280};  // below the icon

class User {
public:
    User(OtherProgram& program, PanelWithTray& tray) : program_(program), tray_(tray) {}

    void wait(Clock::duration time) {
        const auto end = Clock::now() + time;
        do {
            tray_.turn();
            std::this_thread::sleep_for(5ms);
        } while (Clock::now() < end);
    }
    /// The middle of what lies on the floor and was not in the picture.
    std::optional<std::pair<int, int>> creature(const std::vector<std::uint32_t>& before) {
        const auto now = program_.pixels(floorArea);
        int left = floorArea.width, right = 0, top = floorArea.height, bottom = 0;
        for (int y = 0; y < floorArea.height; ++y) {
            for (int x = 0; x < floorArea.width; ++x) {
                const auto at = static_cast<std::size_t>(y * floorArea.width + x);
                if (now[at] == before[at]) continue;
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
        if (left > right) return std::nullopt;
        return std::pair{(left + right) / 2, floorArea.y + (top + bottom) / 2};
    }
    void waitUntilStill(const xcb_rectangle_t& area) {
        auto before = program_.pixels(area);
        for (int still = 0; still < 10;) {
            wait(40ms);
            auto now = program_.pixels(area);
            still = now == before ? still + 1 : 0;
            before = std::move(now);
        }
    }
    /// Milliseconds from the deed to the first change in the area; nothing without one.
    std::optional<double> reaction(const xcb_rectangle_t& area, const std::function<void()>& deed) {
        waitUntilStill(area);
        const auto before = program_.pixels(area);
        const auto start = Clock::now();
        deed();
        while (Clock::now() - start < 2s) {
            if (program_.pixels(area) != before) {
                return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
            }
        }
        return std::nullopt;
    }

private:
    OtherProgram& program_;
    PanelWithTray& tray_;
};

void print(const char* what, std::vector<double> times) {
    if (times.empty()) return static_cast<void>(std::printf("%s: no reaction seen\n", what));
    std::ranges::sort(times);
    std::printf("%s: median %.0f ms, longest of %zu %.0f ms\n", what, times[times.size() / 2],
                times.size(), times.back());
}

xcb_rectangle_t around(std::pair<int, int> middle) {
    constexpr int half = 60;
    return {static_cast<std::int16_t>(middle.first - half),
            static_cast<std::int16_t>(std::min(middle.second - half, 800 - 2 * half)), 2 * half,
            2 * half};
}

}  // namespace

int main() {
    const TemporaryFolder folder;
    write(folder / "config/quibbits/defaults.json",
          R"({"pet.stage": "sparrel", "focus.on": true, "chatter": false, "faces": false,)"
          R"( "onboarded": true})");
    VirtualDesktop desktop;
    desktop.startWindowManager();
    desktop.startCompositor();
    OtherProgram program(desktop.display());
    PanelWithTray tray(program);
    User user(program, tray);
    program.movePointer(200, 200);
    user.wait(1s);
    const auto empty = program.pixels(floorArea);
    const RunningProgram companion(desktop.display(), folder.path());
    user.wait(5s);

    std::vector<double> presses;
    for (int i = 0; i < rounds; ++i) {
        user.waitUntilStill(floorArea);
        const auto creature = user.creature(empty);
        if (!creature) continue;
        program.movePointer(creature->first, creature->second);
        const auto took = user.reaction(around(*creature), [&] { program.press(); });
        program.release();
        program.movePointer(200, 200);
        user.wait(2s);
        if (took) presses.push_back(*took);
    }
    print("From a press on a sleeping creature to its reaction", presses);

    std::vector<double> clicks;
    for (int i = 0; i < rounds; ++i) {
        const auto& icon = PanelWithTray::place;
        program.movePointer(icon.x + icon.width / 2, icon.y + icon.height / 2);
        const auto click = [&] {
            program.press();
            program.release();
        };
        if (const auto took = user.reaction(dialArea, click)) clicks.push_back(*took);
        user.wait(1s);
        click();
        user.wait(500ms);
    }
    print("From a click on the icon to the dial", clicks);
    return presses.empty() || clicks.empty() ? 1 : 0;
}
