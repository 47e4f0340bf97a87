#include "VirtualDesktop.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace quibbits {
namespace {

using namespace std::chrono_literals;

/// For as long as the busiest of machines may take.
void waitUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("the virtual desktop did not come up");
        }
        std::this_thread::sleep_for(10ms);
    }
}

bool isInstalled(const std::string& program) {
    const std::string path = std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin";
    for (std::size_t at = 0; at < path.size();) {
        const auto end = std::min(path.find(':', at), path.size());
        if (access((path.substr(at, end - at) + "/" + program).c_str(), X_OK) == 0) return true;
        at = end + 1;
    }
    return false;
}

}  // namespace

std::string VirtualDesktop::missingTool() {
    for (const char* tool : {"Xvfb", "openbox", "picom"}) {
        if (!isInstalled(tool)) return tool;
    }
    return {};
}

VirtualDesktop::VirtualDesktop(const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    std::vector<std::string> command{"Xvfb",        "-displayfd", "3",    "-screen",  "0",
                                     "1280x800x24", "-nolisten",  "tcp",  "-noreset", "+extension",
                                     "Composite",   "+extension", "RANDR"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    server_ = start(command, ends[1]);
    ::close(ends[1]);
    char digit = 0;
    display_ = ":";
    while (read(ends[0], &digit, 1) == 1 && digit != '\n') display_ += digit;
    ::close(ends[0]);
    if (digit != '\n') throw std::runtime_error("Xvfb did not start");
}

VirtualDesktop::~VirtualDesktop() {
    stop(compositor_);
    stop(windowManager_);
    stop(server_);
}

pid_t VirtualDesktop::start(const std::vector<std::string>& command, int keepOpen) const {
    std::vector<char*> words;
    for (const auto& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    std::vector<std::string> values{"DISPLAY=" + display_};
    for (char** each = environ; *each; ++each) {
        if (!std::string_view(*each).starts_with("DISPLAY=")) values.emplace_back(*each);
    }
    std::vector<char*> environment;
    for (auto& value : values) environment.push_back(value.data());
    environment.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    if (keepOpen >= 0) posix_spawn_file_actions_adddup2(&files, keepOpen, 3);
    posix_spawn_file_actions_addopen(&files, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, 2, "/dev/null", O_WRONLY, 0);
    // The program under test blocks the signals that end it; others must not inherit that.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t process = 0;
    const int failed =
        posix_spawnp(&process, words[0], &files, &attributes, words.data(), environment.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (failed) throw std::runtime_error("cannot start " + command[0]);
    return process;
}

void VirtualDesktop::stop(pid_t& process) {
    if (process <= 0) return;
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    process = 0;
}

void VirtualDesktop::endServer() {
    stop(server_);
}

void VirtualDesktop::startWindowManager() {
    windowManager_ = start({"openbox", "--sm-disable"});
    OtherProgram eye(display_);
    waitUntil([&] { return !eye.numbers(eye.root(), "_NET_SUPPORTING_WM_CHECK").empty(); });
    // It may still forget windows now; it is ready once it has taken one in.
    const auto probe = eye.open({});
    waitUntil([&] { return !eye.numbers(eye.root(), "_NET_CLIENT_LIST").empty(); });
    eye.close(probe);
    waitUntil([&] { return eye.numbers(eye.root(), "_NET_CLIENT_LIST").empty(); });
}

void VirtualDesktop::startCompositor() {
    compositor_ = start({"picom", "--backend", "xrender", "--config", "/dev/null"});
    OtherProgram eye(display_);
    waitUntil([&] {
        auto* owner = xcb_get_selection_owner_reply(
            eye.xcb(), xcb_get_selection_owner(eye.xcb(), eye.atom("_NET_WM_CM_S0")), nullptr);
        const bool present = owner && owner->owner != XCB_NONE;
        std::free(owner);
        return present;
    });
    // It paints from the moment on at which a window that lets everything through is not seen.
    constexpr std::uint32_t red = 0xff0000;
    const auto probe = eye.open({.x = 0, .y = 0, .width = 40, .height = 40, .color = red});
    waitUntil([&] { return eye.pixel(20, 20) == red; });
    eye.setNumbers(probe, "_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL, {0});
    waitUntil([&] { return eye.pixel(20, 20) != red; });
    eye.close(probe);
    waitUntil([&] {
        const auto left = eye.numbers(eye.root(), "_NET_CLIENT_LIST");
        return std::ranges::find(left, probe) == left.end();
    });
}

void VirtualDesktop::stopCompositor() {
    stop(compositor_);
}

OtherProgram::OtherProgram(const std::string& display)
    : xcb_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(xcb_)) throw std::runtime_error("no display " + display);
    root_ = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root;
}

OtherProgram::~OtherProgram() {
    xcb_disconnect(xcb_);
}

xcb_atom_t OtherProgram::atom(const std::string& name) {
    auto* answer = xcb_intern_atom_reply(
        xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const auto number = answer ? answer->atom : 0;
    std::free(answer);
    return number;
}

xcb_window_t OtherProgram::open(const WindowSpec& spec) {
    const auto window = xcb_generate_id(xcb_);
    const std::uint32_t values[] = {spec.color, XCB_EVENT_MASK_BUTTON_PRESS |
                                                    XCB_EVENT_MASK_BUTTON_RELEASE |
                                                    XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, root_, static_cast<std::int16_t>(spec.x),
                      static_cast<std::int16_t>(spec.y), static_cast<std::uint16_t>(spec.width),
                      static_cast<std::uint16_t>(spec.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    setNumbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {atom(spec.type)});
    setNumbers(window, "_MOTIF_WM_HINTS", atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0});  // no border
    setNumbers(window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS,
               {5, static_cast<std::uint32_t>(spec.x), static_cast<std::uint32_t>(spec.y), 0, 0, 0,
                0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {4321});
    if (!spec.strut.empty()) {
        setNumbers(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, spec.strut);
    }
    setText(window, "WM_CLASS", spec.windowClass + '\0' + spec.windowClass + '\0');
    int looks = 0;
    waitUntil([&] {
        // A window manager that is still starting may forget a window.
        if (looks++ % 30 == 0) xcb_map_window(xcb_, window);
        xcb_flush(xcb_);
        bool shown = false;
        while (auto* event = shown ? nullptr : xcb_poll_for_event(xcb_)) {
            shown = (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
            std::free(event);
        }
        return shown;
    });
    return window;
}

void OtherProgram::close(xcb_window_t window) {
    xcb_destroy_window(xcb_, window);
    xcb_flush(xcb_);
}

void OtherProgram::setText(xcb_window_t window, const std::string& property,
                           const std::string& text) {
    xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
    xcb_flush(xcb_);
}

void OtherProgram::setNumbers(xcb_window_t window, const std::string& property, xcb_atom_t type,
                              const std::vector<std::uint32_t>& values) {
    xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
    xcb_flush(xcb_);
}

std::vector<std::uint32_t> OtherProgram::numbers(xcb_window_t window, const std::string& property) {
    auto* answer = xcb_get_property_reply(
        xcb_, xcb_get_property(xcb_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1000),
        nullptr);
    std::vector<std::uint32_t> values;
    if (answer && answer->format == 32) {
        const auto* first = static_cast<std::uint32_t*>(xcb_get_property_value(answer));
        values.assign(first, first + xcb_get_property_value_length(answer) / 4);
    }
    std::free(answer);
    return values;
}

void OtherProgram::message(xcb_window_t to, const std::string& type,
                           const std::vector<std::uint32_t>& data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = to;
    event.type = atom(type);
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(xcb_, 0, to, 0, reinterpret_cast<const char*>(&event));
    xcb_flush(xcb_);
}

void OtherProgram::addMonitor(const std::string& name, const xcb_rectangle_t& area, bool primary) {
    constexpr std::uint16_t millimetres = 200;
    // Written out, since the library's own call sends too little of it.
    struct {
        xcb_randr_set_monitor_request_t request;
        xcb_randr_monitor_info_t info;
        xcb_randr_output_t output;
    } message{.request = {.window = root_},
              .info = {.name = atom(name),
                       .primary = primary,
                       .nOutput = static_cast<std::uint16_t>(primary ? 1 : 0),
                       .x = area.x,
                       .y = area.y,
                       .width = area.width,
                       .height = area.height,
                       .width_in_millimeters = millimetres,
                       .height_in_millimeters = millimetres},
              .output = 0};
    if (primary) {  // in place of the monitor that the display's one output is else
        auto* all = xcb_randr_get_screen_resources_reply(
            xcb_, xcb_randr_get_screen_resources(xcb_, root_), nullptr);
        message.output = *xcb_randr_get_screen_resources_outputs(all);
        std::free(all);
    }
    std::array<iovec, 3> parts{};  // the first two are the library's
    parts[2] = {&message, sizeof message - (primary ? 0 : sizeof message.output)};
    const xcb_protocol_request_t protocol{
        .count = 1, .ext = &xcb_randr_id, .opcode = XCB_RANDR_SET_MONITOR, .isvoid = 1};
    const auto sent = xcb_send_request(xcb_, XCB_REQUEST_CHECKED, &parts[2], &protocol);
    auto* error = xcb_request_check(xcb_, {sent});
    std::free(error);
    if (error) throw std::runtime_error("no further monitor");
}

void OtherProgram::resizeScreen(int width, int height) {
    const auto w = static_cast<std::uint16_t>(width);
    const auto h = static_cast<std::uint16_t>(height);
    auto* all = xcb_randr_get_screen_resources_reply(
        xcb_, xcb_randr_get_screen_resources(xcb_, root_), nullptr);
    if (!all) throw std::runtime_error("no RandR");
    const auto crtc = *xcb_randr_get_screen_resources_crtcs(all);
    const auto output = *xcb_randr_get_screen_resources_outputs(all);
    const std::string name = std::to_string(width) + "x" + std::to_string(height);
    xcb_randr_mode_info_t info{};
    info.width = info.htotal = w;
    info.height = info.vtotal = h;
    info.name_len = static_cast<std::uint16_t>(name.size());
    auto* mode = xcb_randr_create_mode_reply(
        xcb_,
        xcb_randr_create_mode(xcb_, root_, info, static_cast<std::uint32_t>(name.size()),
                              name.data()),
        nullptr);
    if (!mode) throw std::runtime_error("no mode of that size");
    xcb_randr_add_output_mode(xcb_, output, mode->mode);
    const auto use = [&](xcb_randr_mode_t wanted, std::uint32_t outputs) {
        std::free(xcb_randr_set_crtc_config_reply(
            xcb_,
            xcb_randr_set_crtc_config(xcb_, crtc, XCB_CURRENT_TIME, XCB_CURRENT_TIME, 0, 0, wanted,
                                      XCB_RANDR_ROTATION_ROTATE_0, outputs, &output),
            nullptr));
    };
    use(XCB_NONE, 0);
    xcb_randr_set_screen_size(xcb_, root_, w, h, 300, 200);
    use(mode->mode, 1);
    std::free(mode);
    std::free(all);
}

void OtherProgram::fake(int type, int detail, int x, int y) {
    xcb_test_fake_input(xcb_, static_cast<std::uint8_t>(type), static_cast<std::uint8_t>(detail), 0,
                        root_, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(xcb_);
}

void OtherProgram::sync() {
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
}

xcb_window_t OtherProgram::underPointer() {
    auto* answer = xcb_query_pointer_reply(xcb_, xcb_query_pointer(xcb_, root_), nullptr);
    const auto found = answer ? answer->child : 0;
    std::free(answer);
    return found;
}

xcb_window_t OtherProgram::frameOf(xcb_window_t window) {
    for (;;) {
        auto* tree = xcb_query_tree_reply(xcb_, xcb_query_tree(xcb_, window), nullptr);
        const auto parent = tree ? tree->parent : root_;
        std::free(tree);
        if (parent == root_ || parent == 0) return window;
        window = parent;
    }
}

void OtherProgram::movePointer(int x, int y) {
    fake(XCB_MOTION_NOTIFY, 0, x, y);
}
void OtherProgram::press(int button) {
    fake(XCB_BUTTON_PRESS, button);
}
void OtherProgram::release(int button) {
    fake(XCB_BUTTON_RELEASE, button);
}
void OtherProgram::key(int code, bool down) {
    fake(down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code);
}

std::vector<std::uint32_t> OtherProgram::pixels(const xcb_rectangle_t& area) {
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> image(
        xcb_get_image_reply(xcb_,
                            xcb_get_image(xcb_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, area.x, area.y,
                                          area.width, area.height, ~0u),
                            nullptr),
        &std::free);
    std::vector<std::uint32_t> colors(std::size_t{area.width} * area.height);
    if (image) std::memcpy(colors.data(), xcb_get_image_data(image.get()), colors.size() * 4);
    for (auto& color : colors) color &= 0xffffff;
    return colors;
}

std::uint32_t OtherProgram::pixel(int x, int y) {
    return pixels({static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1}).front();
}

std::size_t OtherProgram::count(const xcb_rectangle_t& area, std::uint32_t color) {
    return static_cast<std::size_t>(std::ranges::count(pixels(area), color));
}

int OtherProgram::takenClicks() {
    xcb_generic_event_t* event = nullptr;
    int clicks = 0;
    sync();
    while ((event = xcb_poll_for_event(xcb_))) {
        const int type = event->response_type & 0x7f;
        clicks += type == XCB_BUTTON_PRESS || type == XCB_BUTTON_RELEASE;
        std::free(event);
    }
    return clicks;
}

xcb_generic_event_t* OtherProgram::nextEvent() {
    return xcb_poll_for_event(xcb_);
}

}  // namespace quibbits
