#pragma once
// How the desktop looks.

#include "platform/Signal.h"

namespace quibbits {

class DesktopLook {
public:
    virtual ~DesktopLook() = default;
    /// The user prefers dark windows. False where nobody tells.
    virtual bool isDark() const = 0;
    /// Whether that has been found out, or nobody is there to tell.
    virtual bool isKnown() const { return true; }

    Signal<> changed;  // or is known now
};

}  // namespace quibbits
