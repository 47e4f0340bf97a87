#pragma once
// What is particular about the window manager that runs.

#include "desktop/x11/Connection.h"

namespace quibbits::x11 {

/// i3 shortens the room of all windows by the whole height of every dock, and names no dock in its
/// list of windows.
bool isI3(const Connection& connection);

/// Whether one program has made both windows.
bool isOfOneProgram(const Connection& connection, xcb_window_t one, xcb_window_t other);

}  // namespace quibbits::x11
