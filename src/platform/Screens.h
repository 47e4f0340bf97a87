#pragma once
// The screens of the desktop. Global coordinates are points with y upwards, and their origin is the
// lower left corner of the main screen.

#include <optional>

#include "platform/Geometry.h"
#include "platform/Signal.h"

namespace quibbits {

struct Screen {
    Rect frame;         // all of it
    Rect visibleFrame;  // without the panels and docks along its edges
    double scale = 1;   // device pixels per point
    bool operator==(const Screen&) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;
    /// The screen that creatures live on; nothing while no screen is connected.
    virtual std::optional<Screen> main() const = 0;
    /// The screen that a global point is on, else the one nearest to it; nothing while there is
    /// none.
    virtual std::optional<Screen> at(Point point) const = 0;
    /// A screen's size, place, scale or edge panels changed.
    Signal<> changed;
};

}  // namespace quibbits
