#pragma once
// Light or dark, as the desktop's portal tells programs. Without a portal it is light.

#include "desktop/session/Bus.h"
#include "platform/DesktopLook.h"

namespace quibbits::session {

class PortalAppearance final : public DesktopLook {
public:
    explicit PortalAppearance(Bus& session);

    bool isDark() const override { return dark_; }
    bool isKnown() const override { return known_; }

private:
    void ask();
    void found(bool dark);

    Bus& session_;
    bool dark_ = false;
    bool known_ = false;
    Subscription question_;
    Subscription changes_;
    Subscription returns_;
};

}  // namespace quibbits::session
