#pragma once
// The panel at the bottom of the screen, as the core sees it.

#include "desktop/x11/XScreens.h"
#include "platform/Dock.h"

namespace quibbits::x11 {

class XDock final : public Dock {
public:
    explicit XDock(XScreens& screens)
        : screens_(screens), changes_(screens.dockChanged.subscribe([this] { changed.emit(); })) {}

    std::optional<Rect> bottom() const override { return screens_.bottomDock(); }

private:
    XScreens& screens_;
    Subscription changes_;
};

}  // namespace quibbits::x11
