#pragma once
// How the desktop looks.

namespace quibbits {

class DesktopLook {
public:
    virtual ~DesktopLook() = default;
    /// The user prefers dark windows. False where nobody tells.
    virtual bool isDark() const = 0;
};

}  // namespace quibbits
