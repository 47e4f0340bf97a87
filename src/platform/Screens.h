#pragma once
// The screens of the desktop. Global coordinates are points with y upwards, and their origin is the
// lower left corner of the main screen.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Geometry.h"
#include "platform/Signal.h"

namespace quibbits {

struct Screen {
    Rect frame;         // all of it
    Rect visibleFrame;  // without the panels and docks along its edges
    double scale = 1;   // device pixels per point
    bool operator==(const Screen&) const = default;
};

/// The default under which the name of the screen is kept that the user wants creatures to live on.
/// Absent or empty, and while no screen of that name is connected, it is the primary one.
inline constexpr std::string_view chosenScreenKey = "screen.name";

class Screens {
public:
    virtual ~Screens() = default;
    /// The screen that creatures live on; nothing while no screen is connected.
    virtual std::optional<Screen> main() const = 0;
    /// The screen that a global point is on, else the one nearest to it; nothing while there is
    /// none.
    virtual std::optional<Screen> at(Point point) const = 0;
    /// The connected screens as the user knows them, by the names of their outputs. Fewer than two
    /// leave nothing to choose.
    virtual std::vector<std::string> names() const { return {}; }
    /// A screen's size, place, scale or edge panels changed.
    Signal<> changed;
};

}  // namespace quibbits
