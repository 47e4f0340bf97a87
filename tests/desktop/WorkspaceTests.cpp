// Windows on workspaces that monitors have of their own, and windows that fill a screen.
#include "XTest.h"
#include "desktop/x11/XWindowList.h"

namespace quibbits {
namespace {

struct WindowsOfWorkspaces : XTest {
    /// Lists windows as a window manager does, the lowest first.
    void list(const std::vector<std::uint32_t>& windows) {
        other->setNumbers(other->root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW, windows);
    }
    xcb_window_t openOn(std::uint32_t workspace) {
        const auto window = other->open({.x = 100, .y = 100, .width = 300, .height = 200});
        other->setNumbers(window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {workspace});
        return window;
    }
    std::size_t shown() { return x11::XWindowList(*connection, *screens).onScreen().size(); }
};

TEST_F(WindowsOfWorkspaces, AWorkspaceOfAnotherMonitorIsOnScreenThoughItIsNotTheCurrentOne) {
    const auto here = openOn(0);
    const auto there = openOn(1);
    const auto hidden = openOn(2);
    xcb_unmap_window(other->xcb(), hidden);
    other->setNumbers(other->root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {1});
    list({here, there, hidden});
    connect();
    EXPECT_EQ(shown(), 2u);

    // One that paints the windows itself keeps those of hidden workspaces.
    other->setNumbers(other->root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {here});
    xcb_set_selection_owner(other->xcb(), here, other->atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    other->sync();
    EXPECT_TRUE(eventually([&] { return shown() == 1; }));
}

TEST_F(WindowsOfWorkspaces, AFilmThatIsKeptAboveIsAFullScreenWindowAllTheSame) {
    const auto film = other->open({.x = 0, .y = 0, .width = 1280, .height = 800});
    const auto note = other->open({.x = 0, .y = 0, .width = 200, .height = 200});
    const auto above = other->atom("_NET_WM_STATE_ABOVE");
    other->setNumbers(film, "_NET_WM_STATE", XCB_ATOM_ATOM,
                      {above, other->atom("_NET_WM_STATE_FULLSCREEN")});
    other->setNumbers(note, "_NET_WM_STATE", XCB_ATOM_ATOM, {above});
    list({film, note});
    connect();
    const auto windows = x11::XWindowList(*connection, *screens).onScreen();
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_NE(windows[0].layer, 0) << "a note that floats over the others";
    EXPECT_EQ(windows[1].layer, 0) << "the film";
}

}  // namespace
}  // namespace quibbits
