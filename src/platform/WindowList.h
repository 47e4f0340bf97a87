#pragma once
// The windows on screen, front to back.

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Geometry.h"

namespace quibbits {

struct WindowInfo {
    std::int64_t process = 0;
    int layer = 0;  // 0 for ordinary windows; desktop, docks and panels have others
    std::optional<double> alpha;
    std::optional<Rect> frame;  // global, y upwards, without shadows drawn by the program itself
    bool operator==(const WindowInfo&) const = default;
};

class WindowList {
public:
    virtual ~WindowList() = default;
    /// Windows shown on the present workspace, without desktop elements. Empty where the desktop
    /// does not tell.
    virtual std::vector<WindowInfo> onScreen() const = 0;
};

}  // namespace quibbits
