#include "desktop/x11/WindowManager.h"

#include "desktop/x11/Properties.h"

namespace quibbits::x11 {

bool isI3(const Connection& connection) {
    const auto window = propertyOf(connection, connection.root(), Atom::supportingWmCheck).number();
    return window && propertyOf(connection, *window, Atom::windowName).text() == "i3";
}

bool isOfOneProgram(const Connection& connection, xcb_window_t one, xcb_window_t other) {
    const std::uint32_t own = xcb_get_setup(connection.xcb())->resource_id_mask;
    return one != XCB_NONE && (one & ~own) == (other & ~own);
}

}  // namespace quibbits::x11
