#pragma once
// Windows that show a tree of views.

#include <functional>
#include <memory>
#include <string>

#include "platform/Geometry.h"
#include "views/View.h"

namespace quibbits::views {

struct WindowSpec {
    std::string title;
    Size size;               // points, of its content
    bool resizable = false;  // and can be minimised
};

/// An open window. Letting go of it closes it.
class ViewWindow {
public:
    virtual ~ViewWindow() = default;
    /// Shows another tree in place of the present one.
    virtual void update(View tree) = 0;
    /// Brings the window before all others and gives it the keyboard.
    virtual void bringToFront() = 0;
    /// Whether it has ever been on the screen.
    virtual bool wasShown() const = 0;

    std::function<void(const Action&)> onAction;
    /// The user closed it, or whoever showed it has gone. Nothing is called any more after this;
    /// the object may be let go of in the call.
    std::function<void()> onClose;
};

class ViewWindows {
public:
    virtual ~ViewWindows() = default;
    /// Opens a window in the middle of the screen. One that cannot be shown is closed a moment
    /// later.
    virtual std::unique_ptr<ViewWindow> open(const WindowSpec& spec, View tree) = 0;
};

}  // namespace quibbits::views
