#include "desktop/x11/WindowManager.h"

#include "desktop/x11/Properties.h"

namespace quibbits::x11 {

bool isI3(const Connection& connection) {
    const auto window = propertyOf(connection, connection.root(), Atom::supportingWmCheck).number();
    return window && propertyOf(connection, *window, Atom::windowName).text() == "i3";
}

}  // namespace quibbits::x11
