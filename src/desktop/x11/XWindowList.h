#pragma once
// The windows on screen by the window manager's stacking order. One question costs two round trips,
// however many windows there are.

#include "desktop/x11/XScreens.h"
#include "platform/WindowList.h"

namespace quibbits::x11 {

class XWindowList final : public WindowList {
public:
    XWindowList(Connection& connection, const XScreens& screens)
        : connection_(connection), screens_(screens) {}

    std::vector<WindowInfo> onScreen() const override;

private:
    Connection& connection_;
    const XScreens& screens_;
};

}  // namespace quibbits::x11
