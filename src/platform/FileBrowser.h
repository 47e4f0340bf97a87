#pragma once
// The file manager: what it draws on the desktop.

#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace quibbits {

struct DesktopIcon {
    std::string name;
    Rect frame;  // global coordinates
    bool operator==(const DesktopIcon&) const = default;
};

class FileBrowser {
public:
    virtual ~FileBrowser() = default;
    /// The icons that the desktop shows, in the file manager's order. An empty list is an empty
    /// desktop; nothing means that the desktop does not tell.
    virtual std::optional<std::vector<DesktopIcon>> desktopIcons() = 0;
};

}  // namespace quibbits
