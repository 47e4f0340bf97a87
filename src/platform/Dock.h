#pragma once
// The panels and docks along the edges of the screen.

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
    /// Those of the main screen as they are seen, in global coordinates and in no order. One that
    /// hides itself is told of while it is out; one that reserves room at the bottom reaches down
    /// to it.
    virtual std::vector<Rect> panels() const = 0;
    /// The widest of those that lie along the bottom.
    std::optional<Rect> bottom() const {
        std::optional<Rect> widest;
        for (const Rect& panel : panels()) {
            const bool lies = panel.minY() <= 0 && panel.width > panel.height;
            if (lies && (!widest || panel.width > widest->width)) widest = panel;
        }
        return widest;
    }
    /// The dock's own file, where only such a file tells of it.
    virtual std::optional<DockPreferences> preferences() const { return std::nullopt; }
    Signal<> changed;
};

}  // namespace quibbits
