#pragma once
// The mouse, seen globally: wherever it is and whoever has the focus.

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/Image.h"
#include "platform/Signal.h"

namespace quibbits {

enum class MouseButton { left, right, middle };

/// Which buttons are down.
struct MouseButtons {
    bool left = false;
    bool right = false;
    bool middle = false;
    bool operator==(const MouseButtons&) const = default;
    bool any() const { return left || right || middle; }
};

/// The keys that change what a gesture means. On Linux command is Super and option is Alt.
struct Modifiers {
    bool command = false;
    bool option = false;
    bool control = false;
    bool shift = false;
    bool operator==(const Modifiers&) const = default;
};

/// What the pointer did over other programs' windows.
enum class PointerEvent { moved, leftDragged, leftDown, leftUp, rightDown };

/// A picture of the pointer. The hot spot counts from the upper left corner; it and the size are in
/// points.
struct PointerPicture {
    Image image;
    Size size;
    Point hotSpot;
};

class Pointer {
public:
    virtual ~Pointer() = default;
    /// In global coordinates.
    virtual Point location() const = 0;
    virtual MouseButtons buttons() const = 0;
    virtual Modifiers modifiers() const = 0;
    /// Seconds since any input of the user, keys included.
    virtual Seconds idle() const = 0;
    /// Seconds since the user last moved, pressed or scrolled the mouse.
    virtual Seconds untouched() const = 0;
    /// Hides the pointer everywhere, or shows it again. False when it cannot be hidden.
    virtual bool setHidden(bool hidden) = 0;
    /// What it looks like now.
    virtual PointerPicture picture() const = 0;

    /// The user has moved, pressed or scrolled the mouse, wherever.
    Signal<> touched;

    /// Moves, presses and releases that no panel of this program received.
    Signal<PointerEvent> elsewhere;
};

}  // namespace quibbits
