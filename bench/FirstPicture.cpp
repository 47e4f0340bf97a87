// How long a program takes from its start to the first picture: bench-first-picture COMMAND...
// Runs the command on a still display and looks at the screen until something on it differs.

#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Look {
    xcb_connection_t* connection;
    const xcb_screen_t* screen;

    /// The lowest rows of the screen, where creatures stand.
    std::vector<std::uint8_t> operator()() const {
        constexpr std::uint16_t rows = 160;
        const auto top = static_cast<std::int16_t>(screen->height_in_pixels - rows);
        const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0,
                                          top, screen->width_in_pixels, rows, ~0u);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
            xcb_get_image_reply(connection, cookie, nullptr), &std::free);
        if (!reply) return {};
        const std::uint8_t* data = xcb_get_image_data(reply.get());
        return {data, data + xcb_get_image_data_length(reply.get())};
    }
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "Usage: bench-first-picture COMMAND...\n");
        return 2;
    }
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) return 1;
    const Look look{connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data};
    const auto still = look();

    const auto began = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[1], argv + 1);
        _exit(127);
    }
    double milliseconds = -1;
    while (Clock::now() - began < std::chrono::seconds(10)) {
        if (look() != still) {
            milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - began).count();
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    kill(child, SIGTERM);
    waitpid(child, nullptr, 0);
    xcb_disconnect(connection);
    std::printf("%.0f\n", milliseconds);
    return milliseconds < 0 ? 1 : 0;
}
