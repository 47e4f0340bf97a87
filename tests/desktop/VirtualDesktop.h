#pragma once
// A desktop without a screen for one test: an X server with a display number of its own, and as
// asked a window manager and a compositor. Also another program on that desktop, which has windows,
// moves the pointer and looks at the screen.

#include <sys/types.h>
#include <xcb/xcb.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quibbits {

class VirtualDesktop {
public:
    /// The server's further arguments, such as an extension that it shall lack.
    explicit VirtualDesktop(const std::vector<std::string>& arguments = {});
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    /// The first tool that is needed and not installed; empty when none is missing.
    static std::string missingTool();

    void startWindowManager();
    void startCompositor();
    void stopCompositor();
    /// Ends the X server under everybody's feet.
    void endServer();
    const std::string& display() const { return display_; }

private:
    pid_t start(const std::vector<std::string>& command, int keepOpen = -1) const;
    static void stop(pid_t& process);

    std::string display_;
    pid_t server_ = 0;
    pid_t windowManager_ = 0;
    pid_t compositor_ = 0;
};

class OtherProgram {
public:
    explicit OtherProgram(const std::string& display);
    ~OtherProgram();
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    struct WindowSpec {
        int x = 0, y = 0, width = 100, height = 100;
        std::uint32_t color = 0xffffff;
        std::string type = "_NET_WM_WINDOW_TYPE_NORMAL";
        std::vector<std::uint32_t> strut;
        std::string windowClass = "Other";
    };
    xcb_window_t open(const WindowSpec& spec);
    void close(xcb_window_t window);
    void setText(xcb_window_t window, const std::string& property, const std::string& text);
    void setNumbers(xcb_window_t window, const std::string& property, xcb_atom_t type,
                    const std::vector<std::uint32_t>& values);
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property);
    void message(xcb_window_t to, const std::string& type, const std::vector<std::uint32_t>& data);
    void resizeScreen(int width, int height);
    /// Another monitor over a part of the display, as if the display were wider than one.
    void addMonitor(const std::string& name, const xcb_rectangle_t& area, bool primary);

    /// Returns when the server has done everything that this program asked for.
    void sync();
    /// The outermost window that a press would go to now.
    xcb_window_t underPointer();
    /// The outermost window around one, which a window manager may have made.
    xcb_window_t frameOf(xcb_window_t window);

    void movePointer(int x, int y);
    void press(int button = 1);
    void release(int button = 1);
    void key(int code, bool down);
    /// Row after row, each 0xRRGGBB as the user sees it.
    std::vector<std::uint32_t> pixels(const xcb_rectangle_t& area);
    /// How many pixels of an area have a colour.
    std::size_t count(const xcb_rectangle_t& area, std::uint32_t color);
    /// 0xRRGGBB as the user sees it.
    std::uint32_t pixel(int x, int y);
    xcb_atom_t atom(const std::string& name);
    /// Button presses and releases that its windows got since the last question.
    int takenClicks();
    /// The next event that is no click, if one has come.
    xcb_generic_event_t* nextEvent();

    xcb_connection_t* xcb() const { return xcb_; }
    xcb_window_t root() const { return root_; }

private:
    void fake(int type, int detail, int x = 0, int y = 0);

    xcb_connection_t* xcb_;
    xcb_window_t root_ = 0;
};

}  // namespace quibbits
