#pragma once
// The panel or dock along the bottom of the screen.

#include <optional>

#include "platform/Geometry.h"
#include "platform/Signal.h"

namespace quibbits {

class Dock {
public:
    virtual ~Dock() = default;
    /// The dock's rectangle at the bottom of the main screen, in global coordinates. Nothing when
    /// there is none there, or it hides itself.
    virtual std::optional<Rect> bottom() const = 0;
    Signal<> changed;
};

}  // namespace quibbits
