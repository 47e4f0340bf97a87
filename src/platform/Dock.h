#pragma once
// The panel or dock along the bottom of the screen.

#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Signal.h"

namespace quibbits {

/// What a dock has been told to hold, where nobody tells its size on screen.
struct DockPreferences {
    std::optional<std::string> orientation;   // "bottom" unless told
    std::vector<std::string> persistentApps;  // ids of applications; those without one are left out
    std::vector<std::string> recentApps;
    std::optional<bool> showRecents;
    int persistentOthers = 0;        // folders and files
    std::optional<double> tileSize;  // points
};

class Dock {
public:
    virtual ~Dock() = default;
    /// The dock's rectangle at the bottom of the main screen, in global coordinates. Nothing when
    /// there is none there, or it hides itself.
    virtual std::optional<Rect> bottom() const = 0;
    /// The dock's own file, where only such a file tells of it.
    virtual std::optional<DockPreferences> preferences() const { return std::nullopt; }
    Signal<> changed;
};

}  // namespace quibbits
