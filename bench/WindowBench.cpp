// Reading the windows on screen, beside one empty round trip to the same server. Needs a display
// with a window manager.

#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "desktop/EventRunLoop.h"
#include "desktop/x11/XScreens.h"
#include "desktop/x11/XWindowList.h"

namespace {

using namespace quibbits;

/// Another program with many windows.
class Neighbour {
public:
    Neighbour() : xcb_(xcb_connect(nullptr, nullptr)) {}
    ~Neighbour() { xcb_disconnect(xcb_); }
    Neighbour(const Neighbour&) = delete;
    Neighbour& operator=(const Neighbour&) = delete;

    void open(int count) {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data;
        for (int i = 0; i < count; ++i) {
            const xcb_window_t window = xcb_generate_id(xcb_);
            const auto at = static_cast<std::int16_t>(10 * i);
            xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, screen->root, at, at, 300, 200, 0,
                              XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
            xcb_map_window(xcb_, window);
        }
        xcb_flush(xcb_);
    }

    void roundTrip() {
        std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
    }

private:
    xcb_connection_t* xcb_;
};

void emptyRoundTrip(benchmark::State& state) {
    Neighbour neighbour;
    for (auto _ : state) neighbour.roundTrip();
}
BENCHMARK(emptyRoundTrip)->UseRealTime();

void readWindows(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    EventRunLoop loop;
    const auto connection = x11::Connection::open(loop, "");
    if (!connection) return state.SkipWithError("no display");
    const x11::XScreens screens(*connection);
    const x11::XWindowList list(*connection, screens);
    Neighbour neighbour;
    neighbour.open(static_cast<int>(count));
    for (int i = 0; i < 100 && list.onScreen().size() < count; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (list.onScreen().size() < count) return state.SkipWithError("no window manager");
    std::this_thread::sleep_for(std::chrono::seconds(2));  // until everybody has drawn them
    for (auto _ : state) benchmark::DoNotOptimize(list.onScreen());
}
BENCHMARK(readWindows)->Arg(1)->Arg(10)->Arg(50)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
