#pragma once
// The panels along the edges of the screen, as the core sees them.

#include "desktop/x11/XScreens.h"
#include "platform/Dock.h"

namespace quibbits::x11 {

class XDock final : public Dock {
public:
    explicit XDock(XScreens& screens)
        : screens_(screens),
          changes_(screens.panelsChanged.subscribe([this] { changed.emit(); })) {}

    std::vector<Rect> panels() const override { return screens_.panels(); }

private:
    XScreens& screens_;
    Subscription changes_;
};

}  // namespace quibbits::x11
